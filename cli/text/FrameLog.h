// A file with a line of JSON for each frame of a run, begun anew by each run.
#pragma once

#include "render/ShotSettings.h"
#include "render/shots/ShotRun.h"

#include <cstdio>
#include <memory>
#include <string>

namespace kovalune::cli {

class FrameLog {
public:
    /// Throws Failure if the file cannot be written.
    explicit FrameLog(const std::string& file);

    /// Throws Failure if it cannot be written; the line is there as a whole afterwards, also for who reads while the run goes on.
    void add(const shots::SequencePlan& plan, const render::ShotSettings& settings,
             const shots::FrameRecord& record);

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    const std::string name_;
    std::unique_ptr<std::FILE, Closer> file_;
};

} // namespace kovalune::cli
