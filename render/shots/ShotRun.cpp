#include "render/shots/ShotRun.h"

#include "pictures/PictureFile.h"
#include "pictures/PictureMemory.h"
#include "render/RenderFrame.h"
#include "render/SelectionNotes.h"
#include "render/shots/AtomicFile.h"
#include "render/shots/SourceFrame.h"
#include "text/MessageText.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>

namespace kovalune::shots {

namespace fs = std::filesystem;

namespace {

/// The milliseconds that `body` takes.
template <class Body>
double timed(const Body& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// Whether `output` is at least as new as all that it is made of.
bool isNewest(const fs::path& output, const fs::path& input, const std::vector<std::string>& others) {
    std::error_code error;
    const fs::file_time_type time = fs::last_write_time(output, error);
    const auto isOlder = [&](const fs::path& file) {
        std::error_code ignored;
        const fs::file_time_type other = fs::last_write_time(file, ignored);
        return !ignored && other > time;
    };
    return !error && !isOlder(input) && std::none_of(others.begin(), others.end(), isOlder);
}

class ShotTask : public FrameTask {
public:
    ShotTask(render::OpenEffect& effect, const render::ShotSettings& settings, const PlannedFrame& frame,
             const ShotRequest& request, const std::function<bool()>& isToStop)
        : effect_(effect), settings_(settings), frame_(frame), request_(request), isToStop_(isToStop) {}

    void read() override {
        record.times.reading = timed([this] {
            if (frame_.isMissing) {
                throw text::Failure(text::FailureKind::kFile, "cannot read " + text::inQuotes(frame_.input) +
                                                                  ": there is no such file");
            }
            pictures::withMemoryFor(frame_.input, [this] { readPictures(); });
        });
    }

    void make(std::size_t /*job*/) override {
        if (record.state == FrameState::kPassedOver) {
            return;
        }
        record.times.effect =
            timed([this] { pictures::withMemoryFor(frame_.input, [this] { makePasses(); }); });
    }

    void write() override {
        if (record.state == FrameState::kPassedOver) {
            return;
        }
        record.times.writing =
            timed([this] { pictures::withMemoryFor(frame_.output, [this] { writePicture(); }); });
    }

    /// Of a pass; the session takes the values of the frame for it.
    void addNotes(std::size_t pass) {
        host::Session& session = effect_.session();
        render::setValues(session, settings_.valuesAt(pass, number()));
        std::vector<std::string>& notes = record.passes[pass].notes; // what there is of masks
        for (std::string& note :
             render::selectionNotes(session, settings_.named(pass), record.passes[pass].counts)) {
            notes.push_back(std::move(note));
        }
    }

    FrameRecord record;

private:
    int64_t number() const { return frame_.number.value_or(request_.frame); }

    /// One that is cut short is not what was to be there.
    bool opensWithSize(const pictures::Picture& input) const {
        try {
            const pictures::Picture output = pictures::readPicture(frame_.output);
            return output.width == input.width && output.height == input.height;
        } catch (const text::Failure&) {
            return false;
        }
    }

    bool mayBePassedOver() const {
        std::error_code error;
        if (request_.existing == ExistingOutputs::kReplace || !fs::exists(frame_.output, error)) {
            return false;
        }
        if (request_.existing == ExistingOutputs::kSkip) {
            return true;
        }
        std::vector<std::string> others = request_.settingsFiles;
        if (request_.areas != nullptr) {
            const std::vector<std::string> masks = request_.areas->masksOf(frame_);
            others.insert(others.end(), masks.begin(), masks.end());
        }
        return isNewest(frame_.output, frame_.input, others);
    }

    void readPictures() {
        source_ = readFrame(frame_.input, request_.form);
        if (mayBePassedOver() && opensWithSize(source_.picture)) {
            record.state = FrameState::kPassedOver;
            source_ = {};
        }
    }

    void makePasses() {
        for (std::size_t pass = 0; pass < settings_.passCount(); ++pass) {
            PassRecord& of = record.passes.emplace_back();
            if (request_.counts) {
                of.counts = FrameReport{.countsChanges = request_.countsChanges};
            }
            render::FrameRequest request;
            request.name = source_.name;
            request.downsample = request_.downsample;
            request.legacy = request_.legacy;
            request.values = settings_.valuesAt(pass, number());
            request.onProgress = [this](int, int) { return !isToStop_ || !isToStop_(); };
            request.counts = of.counts ? &*of.counts : nullptr;
            std::shared_ptr<const render::FrameArea> area;
            if (request_.areas != nullptr) {
                area = request_.areas->areaOf(pass, frame_, source_.image.width(), source_.image.height(),
                                              of.notes);
            }
            request.area = area.get();
            result_ = render::renderFrame(effect_, pass == 0 ? source_.image : result_, request);
        }
    }

    void writePicture() {
        const pictures::FileFormat format = pictures::formatToWrite(frame_.output);
        const pictures::PictureForm form = outputForm(source_.picture, format, request_.form);
        const std::vector<uint8_t> bytes = pictures::encodePicture(
            format, pictures::pictureOf(result_, source_.image, source_.picture, form),
            request_.form.encoding);
        writeAtomically(frame_.output, bytes);
        record.leftOut = leftOutOf(source_.picture, format);
    }

    render::OpenEffect& effect_;
    const render::ShotSettings& settings_;
    const PlannedFrame& frame_;
    const ShotRequest& request_;
    const std::function<bool()>& isToStop_;
    SourceFrame source_;
    host::Image result_;
};

void takeOutcome(FrameRecord& record, const FrameOutcome& outcome) {
    switch (outcome.end) {
    case FrameEnd::kDone:
        break; // written or passed over
    case FrameEnd::kFailed:
        record.state = FrameState::kFailed;
        break;
    case FrameEnd::kGivenUp:
        record.state = FrameState::kGivenUp;
        break;
    }
    record.kind = outcome.kind;
    record.message = outcome.reason;
}

} // namespace

void runShot(render::OpenEffect& effect, const render::ShotSettings& settings, const SequencePlan& plan,
             const ShotRequest& request, const RunOptions& options,
             const std::function<void(const FrameRecord& record)>& ended) {
    const auto begin = [&](std::size_t frame) -> std::unique_ptr<FrameTask> {
        return std::make_unique<ShotTask>(effect, settings, plan.frames[frame], request, options.isToStop);
    };
    runSequence(plan.frames.size(), options, begin,
                [&](std::size_t frame, FrameTask& task, const FrameOutcome& outcome) {
                    auto& shot = static_cast<ShotTask&>(task);
                    shot.record.index = frame;
                    takeOutcome(shot.record, outcome);
                    for (std::size_t pass = 0; pass < shot.record.passes.size(); ++pass) {
                        if (shot.record.state == FrameState::kWritten) {
                            shot.addNotes(pass);
                        }
                    }
                    ended(shot.record);
                });
}

} // namespace kovalune::shots
