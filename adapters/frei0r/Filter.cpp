#include "adapters/frei0r/Filter.h"

#include "adapters/frei0r/PixelOrder.h"
#include "adapters/frei0r/SettingsFile.h"
#include "hostapi/Constants.h"
#include "render/ParamText.h"
#include "render/ShotSettings.h"
#include "text/AsciiText.h"
#include "text/Failure.h"
#include "text/MessageText.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <new>
#include <utility>

namespace kovalune::frei0r {

namespace {

/// A host that animates a text could have another fault for each frame.
constexpr std::size_t kMostTold = 16;

constexpr auto kLongestSide = static_cast<unsigned>(PF_MAX_WORLD_WIDTH);
static_assert(PF_MAX_WORLD_WIDTH == PF_MAX_WORLD_HEIGHT);

const Param& paramAt(int place) {
    return paramTable()[static_cast<std::size_t>(place)];
}

template <class Value>
Value valueAt(const void* value) {
    Value copy;
    std::memcpy(&copy, value, sizeof copy);
    return copy;
}

/// In the parts that layers have: a colour's channels are settings of their own.
void setInLayer(render::SettingsLayer& layer, int index, const host::ParamValue& value) {
    render::SettingTracks& tracks = layer.common.tracks;
    if (const auto* const color = std::get_if<PF_Pixel>(&value)) {
        tracks[{index, 'r'}].constant = A_long{color->red};
        tracks[{index, 'g'}].constant = A_long{color->green};
        tracks[{index, 'b'}].constant = A_long{color->blue};
    } else if (index != 0) {
        tracks[{index}].constant = value;
    }
}

template <class Value>
void store(void* place, const Value& value) {
    std::memcpy(place, &value, sizeof value);
}

} // namespace

Filter::Filter(unsigned width, unsigned height)
    : width_(width), height_(height), effect_(0, render::Defaults::kFactory) {
    for (const Param& param : paramTable()) {
        singles_.push_back(param.initial);
        texts_.push_back(param.type == kString && param.index != 0
                             ? render::valueText(param.def, param.choices, param.initial)
                             : std::string());
    }
}

void Filter::set(int place, const void* value) {
    const Param& param = paramAt(place);
    const std::lock_guard lock(mutex_);
    std::optional<host::ParamValue> taken;
    switch (param.type) {
    case kString:
        setText(param, valueAt<const char*>(value));
        return;
    case kColor:
        taken = valueOfColor(valueAt<Color>(value));
        break;
    default:
        taken = valueOfNumber(param, valueAt<double>(value));
        break;
    }
    if (taken) {
        singles_[static_cast<std::size_t>(place)] = *taken;
        values_.reset();
    }
}

void Filter::setText(const Param& param, const char* text) {
    const auto place = static_cast<std::size_t>(&param - paramTable().data());
    const std::string given = text == nullptr ? "" : text;
    values_.reset();
    if (param.index == 0) {
        texts_[place] = given;
        readFile();
        return;
    }
    try {
        singles_[place] = text::trimmed(given).empty() ? param.initial
                                                       : render::parseValue(param.def, param.choices, given);
        texts_[place] = render::valueText(param.def, param.choices, singles_[place]);
    } catch (const text::Failure& failure) {
        tell(failure.what());
    }
}

void Filter::readFile() {
    file_.reset();
    fileFault_.clear();
    const std::string& path = texts_[kSettingsFile];
    if (path.empty()) {
        return;
    }
    try {
        file_ = readSettingsFile(effect_.session(), path);
    } catch (const text::Failure& failure) {
        fileFault_ = failure.what();
    } catch (const std::bad_alloc&) {
        fileFault_ = "out of memory"; // so short that it needs none
    }
    if (!fileFault_.empty()) {
        tell(fileFault_);
    }
}

void Filter::get(int place, void* value) {
    const Param& param = paramAt(place);
    const std::lock_guard lock(mutex_);
    const host::ParamValue& single = singles_[static_cast<std::size_t>(place)];
    switch (param.type) {
    case kString:
        store(value, const_cast<const char*>(texts_[static_cast<std::size_t>(place)].c_str()));
        return;
    case kColor:
        store(value, colorOfValue(std::get<PF_Pixel>(single)));
        return;
    default:
        store(value, numberOfValue(param, single));
        return;
    }
}

/// The file's over the single ones. The session keeps its first values: frames may be under way.
const host::ParamValues& Filter::values() {
    if (!fileFault_.empty()) {
        throw text::Failure(text::FailureKind::kFile, fileFault_);
    }
    if (!values_) {
        render::SettingsLayer singles;
        for (std::size_t place = 0; place < singles_.size(); ++place) {
            setInLayer(singles, paramTable()[place].index, singles_[place]);
        }
        std::vector<render::SettingsLayer> layers = {std::move(singles)};
        if (file_) {
            layers.push_back(*file_);
        }
        values_ = render::ShotSettings(effect_.session(), layers).valuesAt(0, 0);
    }
    return *values_;
}

Filter::FrameParts Filter::partsOfFrame() {
    const std::lock_guard lock(mutex_);
    FrameParts parts{values(), {}};
    if (scratch_) {
        parts.scratch = std::move(*scratch_);
        scratch_.reset();
    } else {
        parts.scratch =
            host::Image(PF_PixelFormat_ARGB32, static_cast<A_long>(width_), static_cast<A_long>(height_));
    }
    return parts;
}

void Filter::giveBack(host::Image scratch) noexcept {
    const std::lock_guard lock(mutex_);
    scratch_ = std::move(scratch);
}

/// Throws before it has written anything.
void Filter::render(const uint32_t* input, uint32_t* output) {
    if (width_ > kLongestSide || height_ > kLongestSide) {
        throw text::Failure(text::FailureKind::kUsage, "a picture of " + std::to_string(width_) + 'x' +
                                                           std::to_string(height_) +
                                                           " cannot be rendered: no side may be above " +
                                                           std::to_string(kLongestSide) + " pixels");
    }
    FrameParts parts = partsOfFrame();
    const std::size_t pixels = std::size_t{width_} * height_;
    auto* const copy = static_cast<uint32_t*>(static_cast<void*>(parts.scratch.row(0)));
    alphaToFront(input, copy, pixels);
    const host::ImageView result = {parts.scratch.format(), parts.scratch.width(), parts.scratch.height(),
                                    static_cast<std::byte*>(static_cast<void*>(output)),
                                    static_cast<std::ptrdiff_t>(parts.scratch.rowBytes())};
    try {
        host::RenderRequest request;
        request.values = std::move(parts.values);
        render::requireSuccess(effect_.session().render(std::as_const(parts.scratch).view(), result, request),
                               "the effect");
    } catch (...) {
        alphaToEnd(copy, output, pixels); // the copy, since the input may lie in the same memory
        throw;
    }
    alphaToEnd(output, output, pixels);
    giveBack(std::move(parts.scratch));
}

void Filter::update(const uint32_t* input, uint32_t* output) noexcept {
    const uint64_t pixels = uint64_t{width_} * height_;
    if (pixels == 0 || pixels > std::numeric_limits<std::ptrdiff_t>::max() / sizeof *input) {
        return; // nobody has such a picture
    }
    try {
        render(input, output);
    } catch (const std::bad_alloc&) {
        std::memmove(output, input, pixels * sizeof *input);
        tell("there is not enough memory for a frame");
    } catch (const std::exception& reason) {
        std::memmove(output, input, pixels * sizeof *input);
        tell(reason.what());
    }
}

void Filter::tell(const std::string& text) noexcept {
    try {
        const std::lock_guard lock(toldMutex_);
        if (told_.size() < kMostTold && told_.insert(text).second) {
            std::fprintf(stderr, "kovalune: %s\n", text::printable(text).c_str());
        }
    } catch (const std::bad_alloc&) {
        return; // there is no memory for words either
    }
}

} // namespace kovalune::frei0r
