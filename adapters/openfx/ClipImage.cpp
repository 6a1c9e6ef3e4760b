#include "adapters/openfx/ClipImage.h"

#include "adapters/openfx/ActionFailure.h"
#include "adapters/openfx/PropertySet.h"
#include "effect/Kovalune.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace kovalune::openfx {

namespace {

template <class Value>
struct Named {
    const char* name;
    Value value;
};

constexpr std::array<Named<Depth>, 3> kDepths = {{
    {name::kDepthByte, Depth::kByte},
    {name::kDepthShort, Depth::kShort},
    {name::kDepthFloat, Depth::kFloat},
}};

constexpr std::array<Named<Components>, 3> kComponents = {{
    {name::kRgba, Components::kRgba},
    {name::kRgb, Components::kRgb},
    {name::kAlpha, Components::kAlpha},
}};

[[noreturn]] void fail(const char* clip, const std::string& what) {
    throw ActionFailure(kFailed, std::string("the image of the clip ") + clip + ' ' + what);
}

template <class Value, std::size_t count>
Value namedBy(const PropertySet& image, const char* property, const std::array<Named<Value>, count>& table,
              const char* clip) {
    const std::optional<std::string> text = image.text(property);
    for (const Named<Value>& each : table) {
        if (text && *text == each.name) {
            return each.value;
        }
    }
    fail(clip, "is of a kind that Kovalune does not work on: " + text.value_or("it does not say which"));
}

/// Its sides fit into an int.
bool isSound(const RectI& bounds) {
    const int64_t width = int64_t{bounds.x2} - bounds.x1;
    const int64_t height = int64_t{bounds.y2} - bounds.y1;
    return width >= 0 && height >= 0 && width <= kLongestSide && height <= kLongestSide;
}

PixelBlock blockOf(const PropertySet& image, const char* clip) {
    PixelBlock block;
    block.depth = namedBy(image, name::kPixelDepth, kDepths, clip);
    block.components = namedBy(image, name::kComponents, kComponents, clip);
    if (image.text(name::kPreMultiplication) == name::kPremultiplied) {
        block.alpha = samples::AlphaKind::kPremultiplied;
    }
    const std::optional<RectI> bounds = image.rectangle(name::kImageBounds);
    if (!bounds || !isSound(*bounds)) {
        fail(clip, "has bounds that no frame has: sides go from 0 to " + std::to_string(kLongestSide));
    }
    block.bounds = *bounds;
    if (isEmpty(block.bounds)) {
        block.bounds = {};
        return block;
    }
    block.data = static_cast<std::byte*>(image.pointer(name::kImageData));
    const std::optional<int> rowBytes = image.integer(name::kImageRowBytes);
    if (block.data == nullptr || !rowBytes) {
        fail(clip, "has no pixels");
    }
    block.rowBytes = *rowBytes;
    const auto leastBytes = static_cast<int64_t>(block.pixelBytes()) * block.width();
    if (block.height() > 1 && std::abs(int64_t{*rowBytes}) < leastBytes) {
        fail(clip, "has rows of " + std::to_string(*rowBytes) + " bytes, whose pixels take " +
                       std::to_string(leastBytes));
    }
    return block;
}

} // namespace

RectI intersection(const RectI& a, const RectI& b) {
    return {std::max(a.x1, b.x1), std::max(a.y1, b.y1), std::min(a.x2, b.x2), std::min(a.y2, b.y2)};
}

ClipImage::ClipImage(const Suites& suites, Clip clip, const char* clipName, double time) : suites_(suites) {
    const Status status = suites.effects->clipGetImage(clip, time, nullptr, &image_);
    if (status == kMemory) {
        throw ActionFailure(kMemory, std::string("no memory for the image of the clip ") + clipName);
    }
    if (status != kOk) {
        image_ = nullptr;
        return;
    }
    try {
        if (image_ != nullptr) {
            block_ = blockOf(PropertySet(*suites.properties, image_), clipName);
        }
    } catch (...) {
        suites.effects->clipReleaseImage(image_);
        throw;
    }
}

ClipImage::~ClipImage() {
    if (image_ != nullptr) {
        suites_.effects->clipReleaseImage(image_);
    }
}

} // namespace kovalune::openfx
