// What a tool may call of the effect directly. On pictures in its own memory, without any host: boundary smoothing
// alone, and the edge flags that it works from. Pixels are the very same as in a host; everything is serial, on the
// calling thread, keeps nothing between calls and throws nothing. And the user's remembered defaults, by the code that
// the effect's dialog runs. And what a frame that goes through a host will do, or did, and how it matches a pixel; and the
// instruction set that it works with; and the curve of colours that are linear light.
#pragma once

#include "hostapi/HostApi.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kovalune {

/// A picture of PF_Pixel, PF_Pixel16 or PF_PixelFloat, as the format says, straight, not premultiplied.
template <class Memory>
struct BasicPictureView {
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    int32_t width = 0;
    int32_t height = 0;
    int32_t rowbytes = 0; ///< from row to row, what lies after a row's pixels included; keeps pixels aligned
    Memory* pixels = nullptr; ///< aligned for the format's channels; may be null where the picture is empty
};
using PictureView = BasicPictureView<const void>;
using WritablePictureView = BasicPictureView<void>;

/// Both ends inclusive.
struct IntRange {
    int32_t lowest;
    int32_t highest;

    constexpr bool contains(int32_t value) const { return lowest <= value && value <= highest; }
};

inline constexpr IntRange kThresholdRange = {0, 255};
inline constexpr IntRange kStrengthRange = {0, 100};
inline constexpr IntRange kCurveRange = {-100, 100};
inline constexpr IntRange kKeyChannelRange = {0, 255};
inline constexpr IntRange kKeyToleranceRange = {0, 255};

/// The longest side that a picture may have, as hosts' worlds have it: what 16-bit rectangles hold. All arithmetic below
/// bears it: lengths times two percentages fit 32 bits. The map of flags is two rows higher, up to 32769.
inline constexpr int32_t kLongestSide = 32767;

/// Which pixels count as transparent, in the result as well: none, those near the key colour, or all others.
enum class SmoothKey : uint8_t { kNone, kRemove, kOnly };

/// Levels are those of 8 bits, in every format. What frames are smoothed with are the defaults.
struct SmoothOptions {
    int32_t threshold = 10; ///< neighbours differ when their channels' differences add up to more
    int32_t strength = 70;  ///< percent that stretches every ramp; 0 copies only
    int32_t curve = 0;      ///< S-curve of the ramps; 0 is straight
    SmoothKey key = SmoothKey::kNone;
    int32_t keyRed = 255;
    int32_t keyGreen = 255;
    int32_t keyBlue = 255;
    /// Over the sum of red, green and blue. At 0, `argb` compares the key's red with blue and its blue with red.
    int32_t keyTolerance = 0;
};

/// Fills `destination` with the smoothed picture; bytes after its rows' pixels stay. Returns a host code:
/// - PF_Err_UNRECOGNIZED_PARAM_TYPE: the source's format is none of the three.
/// - PF_Err_BAD_CALLBACK_PARAM: the pictures differ in format or size or overlap in memory; a side is negative or above
///   `kLongestSide`; rows are too short or pixels not aligned; an option lies outside its range.
/// - PF_Err_OUT_OF_MEMORY: the destination holds the copy, unsmoothed. In the cases above nothing was written.
[[nodiscard]] PF_Err smoothPicture(const PictureView& source, const WritablePictureView& destination,
                                   const SmoothOptions& options);

/// What a byte of `edgeFlags` is made of; the upper four bits are 0.
inline constexpr uint8_t kEdgeRight = 1;   ///< (x, y) differs from (x + 1, y)
inline constexpr uint8_t kEdgeDown = 2;    ///< (x, y) differs from (x, y + 1)
inline constexpr uint8_t kEdgeFalling = 4; ///< (x, y) differs from (x + 1, y + 1)
inline constexpr uint8_t kEdgeRising = 8;  ///< (x, y + 1) differs from (x + 1, y)

/// Fills `flags`, one byte a pixel, row by row without padding, with the map that `smoothPicture` works from. Of the
/// options the threshold and the key count. A pair of diagonal neighbours is looked at only where the smoothing does, so
/// that a slow gradient may leave one unmarked. Returns the codes of `smoothPicture`, PF_Err_BAD_CALLBACK_PARAM also
/// where `flags` is not `width * height` long; any code but 0 leaves `flags` as they were.
[[nodiscard]] PF_Err edgeFlags(const PictureView& picture, const SmoothOptions& options,
                               std::span<uint8_t> flags);

/// The instruction sets that the effect has inner loops for and this machine has, the narrowest first: "plain", "sse2",
/// "avx2", "avx512". Pixels are the same with each.
std::vector<std::string> instructionSets();

/// The one in use: the widest, unless another one was asked for.
std::string instructionSet();

/// Makes it the one in use for all frames of this program, by the effect that is linked into it; nothing may be rendered at
/// that moment. False, and nothing changes, where `instructionSets` does not have it.
[[nodiscard]] bool useInstructionSet(const std::string& name);

/// The file of the remembered defaults, which need not exist; empty where the user has no folder for settings or the
/// path is longer than 259 bytes.
std::string defaultsPath();

/// The section of that file in which the values of this version stand, without its brackets.
std::string defaultsSection();

enum class DefaultsResult : uint8_t {
    kDone,
    kNothingThere,    ///< there was no file to forget
    kFailed,          ///< something could not be written or deleted
    kWrongParameters, ///< nothing was done: they are not this effect's, or it was not set up yet
};

/// Makes the values in `params`, the host's array with the input layer first, the defaults of the instances of hosts that
/// start from now on. Makes the file's folders. The effect of this program, not one from a file, must have registered its
/// parameters with a host; so it must for isDefaultRemembered.
/// Where the result is kFailed, a new file and folders that were made for it are gone again; a file that was there before
/// may have some of the values. `reason`, if there is one, gets the system's number for it: errno, on Windows what
/// GetLastError gives.
[[nodiscard]] DefaultsResult rememberDefaults(const std::string& path, std::span<const PF_ParamDef> params,
                                              int* reason = nullptr);

/// Deletes the file, and its folders where nothing else lies in them.
[[nodiscard]] DefaultsResult forgetDefaults(const std::string& path);

/// Whether the file has a value for the parameter; of a colour, for one of its channels at least.
bool isDefaultRemembered(const std::string& path, const PF_ParamDef& param);

/// While it lives, the effect of this program, not one from a file, starts from the defaults of its own table in each host
/// that the thread which made it opens: the file of the remembered ones is not looked for. The environment stays as it is.
class FactoryDefaultsScope {
public:
    FactoryDefaultsScope();
    ~FactoryDefaultsScope();
    FactoryDefaultsScope(const FactoryDefaultsScope&) = delete;
    FactoryDefaultsScope& operator=(const FactoryDefaultsScope&) = delete;

private:
    const bool outer_; ///< what holds for the thread again after this one
};

/// The 8-bit level of a channel by which a frame compares its pixels with the colours of its stages. In floats, values
/// outside 0 to 1 wrap around modulo 256; they are not clipped. What no 32 bits hold, NaN too, is level 0.
uint8_t matchedLevel(uint8_t channel);
uint8_t matchedLevel(uint16_t channel);
uint8_t matchedLevel(float channel);

/// The sRGB curve by the effect's own power function, so that the bits are the same on every machine: from linear light to
/// what a screen is sent, and back. 0 to 1 stay there; below 0 it is mirrored, above 1 it goes on as it comes.
double srgbOfLinear(double light);
double linearOfSrgb(double value);

/// Base, and Process 1 to 4.
inline constexpr std::size_t kStageCount = 5;

/// The settings that decide how often a frame calls the host's progress function, as the controls show them.
struct ProgressSettings {
    struct Stage {
        bool enabled = false; ///< Base is always
        double amount = 0.0;  ///< "Blur Amount"; "Boundary Blur"
        int32_t repeat = 0;   ///< "Blur Repeat Num"
    };
    int32_t view = 1; ///< the value of the popup
    std::array<Stage, kStageCount> stages;
    PF_RationalScale downsampleX = {1, 1};
    PF_RationalScale downsampleY = {1, 1};
};

/// The calls that each stage makes, in a frame that neither fails nor is cancelled: one when its region is selected, and
/// one after each pass of its blur. They come stage by stage.
std::array<int32_t, kStageCount> progressCalls(const ProgressSettings& settings);

/// The colours of Base; a Process stage has the first one alone.
inline constexpr std::size_t kStageColors = 4;

/// What a stage of a frame found and did, in pixels of the frame's working rectangle.
struct StageReport {
    bool ran = false; ///< it is enabled, and the view let the frame come to it
    /// Pixels that match a colour and no enabled one before it. Their sum is what the stage selected.
    std::array<int64_t, kStageColors> selected = {};
    /// Pixels whose red, green or blue is another one after the stage than before it, at the depth of the frame. What a
    /// view leaves of them does not count.
    int64_t changed = 0;
    // Of a Process stage.
    int64_t edge = 0;       ///< pixels that its layer holds beyond those it selected: the soft edge
    int64_t cut = 0;        ///< pixels that the edge lost to "Keep Process"
    int32_t keptInside = 0; ///< the stage inside whose layer "Keep Process" held it; 0: none

    int64_t allSelected() const {
        int64_t sum = 0;
        for (const int64_t pixels : selected) {
            sum += pixels;
        }
        return sum;
    }
};

struct FrameReport {
    /// For the frame: without this, what takes most of a report's time stays 0: `changed`, and the `edge` of stages that
    /// "Keep Process" does not hold.
    bool countsChanges = true;
    int64_t pixels = 0; ///< of the working rectangle
    std::array<StageReport, kStageCount> stages = {};

    /// Empties it for another frame.
    void clear() { *this = {.countsChanges = countsChanges}; }
};

/// While it lives, a frame that the thread which made it renders in the effect of this program, not one from a file,
/// fills the report: that thread, not one of those that share the frame's work. A later frame starts it anew; one that
/// fails leaves what it counted until then. The frame's pixels and host calls are those without a report; it takes a few
/// passes over the picture longer.
class FrameReportScope {
public:
    explicit FrameReportScope(FrameReport& report);
    ~FrameReportScope();
    FrameReportScope(const FrameReportScope&) = delete;
    FrameReportScope& operator=(const FrameReportScope&) = delete;

private:
    FrameReport* const outer_; ///< what the thread's frames fill again after this one
};

} // namespace kovalune
