// An instance of the plug-in: the effect in a reference host of its own, so that instances share nothing that is written. Hosts set
// parameters and render on one thread at a time; but some render several bands of a picture at once on one instance, which is
// borne as well.
#pragma once

#include "adapters/frei0r/ParamTable.h"
#include "host/Image.h"
#include "render/OpenEffect.h"
#include "render/SettingsLayer.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kovalune::frei0r {

class Filter {
public:
    /// Any size; one without pixels has frames of nothing. Throws text::Failure where the effect cannot be set up.
    Filter(unsigned width, unsigned height);

    /// `value` is of the parameter's type; what is out of range becomes the nearest that is in it, a text that is no choice leaves
    /// the value as it was and is told.
    void set(int place, const void* value);

    /// As it counts without a settings file. A text is the filter's own, until the parameter is set again.
    void get(int place, void* value);

    /// RGBA with straight alpha, rows one after the other. `output` may be `input`. Where the frame fails it becomes the input, and
    /// why is told: once, however many frames fail so.
    void update(const uint32_t* input, uint32_t* output) noexcept;

    /// A line on standard error, unless this filter has told the same before.
    void tell(const std::string& text) noexcept;

private:
    /// What a frame takes with it.
    struct FrameParts {
        host::ParamValues values;
        host::Image scratch;
    };

    void setText(const Param& param, const char* text);
    void readFile();
    const host::ParamValues& values();
    FrameParts partsOfFrame();
    void giveBack(host::Image scratch) noexcept;
    void render(const uint32_t* input, uint32_t* output);

    const unsigned width_;
    const unsigned height_;
    render::OpenEffect effect_; ///< takes several frames at once
    std::mutex mutex_;
    std::vector<host::ParamValue> singles_; ///< by place; what the settings file does not name
    std::vector<std::string> texts_;        ///< by place, as they were set
    std::optional<render::SettingsLayer> file_;
    std::string fileFault_;                   ///< why it cannot be taken; then no frame can be rendered
    std::optional<host::ParamValues> values_; ///< for frames; empty after a change
    std::optional<host::Image> scratch_;      ///< of an earlier frame
    std::mutex toldMutex_;
    std::set<std::string> told_;
};

} // namespace kovalune::frei0r
