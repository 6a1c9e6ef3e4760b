#include "effect/Kovalune.h"

#include "effect/raster/Rows.h"
#include "effect/raster/ScratchBlock.h"
#include "effect/share/SizeProduct.h"
#include "effect/smoothing/EdgeFlagMap.h"
#include "effect/smoothing/SmoothBoundaries.h"
#include "effect/smoothing/SmoothOf.h"

#include <cstring>
#include <new>

namespace kovalune {
namespace {

static_assert(kEdgeRight == EDGE_RIGHT && kEdgeDown == EDGE_DOWN && kEdgeFalling == EDGE_FALLING &&
              kEdgeRising == EDGE_RISING);

constexpr int32_t kChannels = 4;

/// 0 for a format that is none of the three.
int32_t channelBytes(PF_PixelFormat format) {
    switch (format) {
    case PF_PixelFormat_ARGB32:
        return sizeof(PF_Pixel::red);
    case PF_PixelFormat_ARGB64:
        return sizeof(PF_Pixel16::red);
    case PF_PixelFormat_ARGB128:
        return sizeof(PF_PixelFloat::red);
    default:
        return 0;
    }
}

/// The bytes of a row that belong to pixels.
int64_t usedRowBytes(PF_PixelFormat format, int32_t width) {
    return int64_t{width} * kChannels * channelBytes(format);
}

/// The two suites that the smoothing asks a host for, for the length of one call. A world does not tell its format, so
/// `effect_ref` stands for this object, which knows it.
class LoneHost {
public:
    explicit LoneHost(PF_PixelFormat format) : format_(format) {
        basic_.AcquireSuite = acquire;
        basic_.ReleaseSuite = [](const char*, int32_t) -> int32_t { return 0; };
        in_.pica_basicP = &basic_;
        in_.effect_ref = static_cast<PF_ProgPtr>(static_cast<void*>(this));
    }
    LoneHost(const LoneHost&) = delete;
    LoneHost& operator=(const LoneHost&) = delete;

    PF_InData* in() { return &in_; }

private:
    static int32_t acquire(const char* name, int32_t version, const void** suite) {
        if (version == kPFWorldTransformSuiteVersion1 && std::strcmp(name, kPFWorldTransformSuite) == 0) {
            *suite = &kTransform;
            return 0;
        }
        if (version == kPFWorldSuiteVersion1 && std::strcmp(name, kPFWorldSuite) == 0) {
            *suite = &kWorlds;
            return 0;
        }
        return PF_Err_BAD_CALLBACK_PARAM;
    }

    /// Whole worlds of one size.
    static PF_Err copyWorld(PF_ProgPtr self, PF_EffectWorld* from, PF_EffectWorld* to, PF_Rect*, PF_Rect*) {
        const PF_PixelFormat format = static_cast<LoneHost*>(static_cast<void*>(self))->format_;
        const auto used = static_cast<std::size_t>(usedRowBytes(format, from->width));
        for (int32_t y = 0; y < from->height; ++y) {
            std::memcpy(objectAt<uint8_t>(to->data, sizeProduct<std::ptrdiff_t>(y, to->rowbytes)),
                        objectAt<uint8_t>(from->data, sizeProduct<std::ptrdiff_t>(y, from->rowbytes)), used);
        }
        return PF_Err_NONE;
    }

    static PF_Err newWorld(PF_ProgPtr, A_long width, A_long height, PF_NewWorldFlags, PF_EffectWorld* world) {
        *world = {};
        world->width = width;
        world->height = height;
        world->rowbytes = sizeProduct<A_long>(width, sizeof(PF_Pixel));
        world->data = new (std::nothrow) PF_Pixel[sizeProduct<std::size_t>(width, height)];
        return world->data != nullptr ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
    }

    static PF_Err disposeWorld(PF_ProgPtr, PF_EffectWorld* world) {
        delete[] world->data;
        return PF_Err_NONE;
    }

    static constexpr PFWorldTransformSuite1 kTransform = [] {
        PFWorldTransformSuite1 suite = {};
        suite.copy = copyWorld;
        return suite;
    }();
    static constexpr PFWorldSuite1 kWorlds = {newWorld, disposeWorld};

    PF_PixelFormat format_;
    SPBasicSuite basic_ = {};
    PF_InData in_ = {};
};

template <class Memory>
bool isEmpty(const BasicPictureView<Memory>& picture) {
    return picture.width == 0 || picture.height == 0;
}

uintptr_t addressOf(const void* memory) {
    return reinterpret_cast<uintptr_t>(memory);
}

/// Whether a picture of a known format is what it says it is.
template <class Memory>
bool isSound(const BasicPictureView<Memory>& picture) {
    constexpr IntRange kSide = {0, kLongestSide};
    const int32_t channel = channelBytes(picture.format);
    if (!kSide.contains(picture.width) || !kSide.contains(picture.height)) {
        return false;
    }
    return isEmpty(picture) ||
           (picture.pixels != nullptr && picture.rowbytes >= usedRowBytes(picture.format, picture.width) &&
            picture.rowbytes % channel == 0 &&
            addressOf(picture.pixels) % static_cast<uintptr_t>(channel) == 0);
}

/// The address after a picture's last pixel.
template <class Memory>
uintptr_t endOf(const BasicPictureView<Memory>& picture) {
    const int64_t bytes = sizeProduct<int64_t>(picture.height - 1, picture.rowbytes) +
                          usedRowBytes(picture.format, picture.width);
    return addressOf(picture.pixels) + static_cast<uintptr_t>(bytes);
}

bool shareMemory(const PictureView& a, const WritablePictureView& b) {
    return !isEmpty(a) && !isEmpty(b) && addressOf(a.pixels) < endOf(b) && addressOf(b.pixels) < endOf(a);
}

bool areInRange(const SmoothOptions& options) {
    return kThresholdRange.contains(options.threshold) && kStrengthRange.contains(options.strength) &&
           kCurveRange.contains(options.curve) && kKeyChannelRange.contains(options.keyRed) &&
           kKeyChannelRange.contains(options.keyGreen) && kKeyChannelRange.contains(options.keyBlue) &&
           kKeyToleranceRange.contains(options.keyTolerance);
}

PF_Err checkSource(const PictureView& picture, const SmoothOptions& options) {
    if (channelBytes(picture.format) == 0) {
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    return isSound(picture) && areInRange(options) ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
}

SmoothParams paramsOf(const SmoothOptions& options) {
    SmoothParams params;
    params.threshold = options.threshold;
    params.strength = options.strength;
    params.curve = options.curve;
    params.keyEnabled = options.key != SmoothKey::kNone ? 1 : 0;
    params.keyOnly = options.key == SmoothKey::kOnly ? 1 : 0;
    params.keyRed = options.keyRed;
    params.keyGreen = options.keyGreen;
    params.keyBlue = options.keyBlue;
    params.keyTolerance = options.keyTolerance;
    return params;
}

template <class Memory>
PF_EffectWorld worldOn(const BasicPictureView<Memory>& picture) {
    PF_EffectWorld world = {};
    // A host's worlds know no const; the smoothing never writes its source.
    world.data = static_cast<PF_PixelPtr>(const_cast<void*>(static_cast<const void*>(picture.pixels)));
    world.rowbytes = picture.rowbytes;
    world.width = picture.width;
    world.height = picture.height;
    return world;
}

/// The map of a picture that is keyed already; `cells` has room for it.
template <class Format>
void mapEdges(const PF_EffectWorld& keyed, int32_t threshold, const PF_EffectWorld& cells, uint8_t* flags) {
    EdgeFlagMap map(cells, keyed.width, keyed.height);
    fillEdgeFlags<Format>(map, keyed, SmoothOf<Format>::limitOf(threshold));
    for (int32_t y = 0; y < keyed.height; ++y) {
        for (int32_t x = 0; x < keyed.width; ++x) {
            *flags++ = map(x, y);
        }
    }
}

PF_Err mapEdgesIn(PF_PixelFormat format, const PF_EffectWorld& keyed, int32_t threshold, uint8_t* flags) {
    const int32_t stride = EdgeFlagMap::rowCells(keyed.width);
    const ScratchBlock memory(sizeProduct<std::size_t>(stride, EdgeFlagMap::rowCount(keyed.height)));
    if (memory.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    PF_EffectWorld cells = {};
    cells.data = objectAt<PF_Pixel>(memory.memory(), 0);
    cells.rowbytes = stride;
    switch (format) {
    case PF_PixelFormat_ARGB32:
        mapEdges<Argb8>(keyed, threshold, cells, flags);
        break;
    case PF_PixelFormat_ARGB64:
        mapEdges<Argb16>(keyed, threshold, cells, flags);
        break;
    default:
        mapEdges<Argb32>(keyed, threshold, cells, flags);
        break;
    }
    return PF_Err_NONE;
}

/// The map is built from the keyed picture: what a call of strength 0 leaves.
PF_Err mapKeyedEdges(const PictureView& picture, const SmoothOptions& options, uint8_t* flags) {
    const int64_t row = usedRowBytes(picture.format, picture.width);
    const ScratchBlock memory(sizeProduct<std::size_t>(row, picture.height));
    if (memory.memory() == nullptr) {
        return PF_Err_OUT_OF_MEMORY;
    }
    const WritablePictureView keyed = {picture.format, picture.width, picture.height,
                                       static_cast<int32_t>(row), memory.memory()};
    SmoothOptions copyOnly = options;
    copyOnly.strength = 0;
    const PF_Err err = smoothPicture(picture, keyed, copyOnly);
    return err != PF_Err_NONE ? err : mapEdgesIn(picture.format, worldOn(keyed), options.threshold, flags);
}

} // namespace

PF_Err smoothPicture(const PictureView& source, const WritablePictureView& destination,
                     const SmoothOptions& options) {
    const PF_Err err = checkSource(source, options);
    if (err != PF_Err_NONE) {
        return err;
    }
    if (destination.format != source.format || destination.width != source.width ||
        destination.height != source.height || !isSound(destination) || shareMemory(source, destination)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (isEmpty(source)) {
        return PF_Err_NONE;
    }
    LoneHost host(source.format);
    PF_EffectWorld src = worldOn(source);
    PF_EffectWorld dst = worldOn(destination);
    SmoothParams params = paramsOf(options);
    params.inData = host.in();
    params.pixelFormat = source.format;
    params.srcWorld = &src;
    params.dstWorld = &dst;
    return smoothBoundaries(params);
}

PF_Err edgeFlags(const PictureView& picture, const SmoothOptions& options, std::span<uint8_t> flags) {
    const PF_Err err = checkSource(picture, options);
    if (err != PF_Err_NONE) {
        return err;
    }
    if (flags.size() != sizeProduct<std::size_t>(picture.width, picture.height)) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (isEmpty(picture)) {
        return PF_Err_NONE;
    }
    return options.key == SmoothKey::kNone
               ? mapEdgesIn(picture.format, worldOn(picture), options.threshold, flags.data())
               : mapKeyedEdges(picture, options, flags.data());
}

} // namespace kovalune
