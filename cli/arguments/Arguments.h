// The command line as plain records, one for each sub-command. It is parsed once, before anything else happens.
#pragma once

#include "effect/Kovalune.h"
#include "pictures/EncodeOptions.h"
#include "pictures/Picture.h"
#include "render/AreaSettings.h"
#include "render/FrameRequest.h"
#include "render/OpenEffect.h"
#include "render/shots/FrameForm.h"
#include "render/shots/SequencePlan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kovalune::cli {

/// Which effect, and what its parameters are set to: first its defaults, then the files in order, then the settings, then
/// the view.
struct EffectArguments {
    std::optional<std::string> plugin;
    bool factory = false; ///< not the user's remembered defaults
    int threads = 0;      ///< to render::kMostThreads; 0: not said
    std::optional<std::string>
        cpu; ///< the instruction set to work with, one of the machine's; else its widest
    std::vector<std::string> paramsFiles;
    std::vector<std::string> passFiles; ///< each a pass more, named after the file
    std::vector<std::string> settings;  ///< "LABEL=VALUE", in order
    std::optional<std::string> until;   ///< the pass that is the last
};

/// How a frame is made of a picture.
struct FrameArguments {
    shots::FrameForm form;
    render::Downsample downsample{};
    bool legacy = false;
    bool quiet = false;
};

/// What is told of the settings that a frame is made with.
struct ReportArguments {
    bool strict = false; ///< one that does nothing is an error
    bool report = false;
    bool json = false; ///< the report's form
};

/// Which pictures are read and written, and how many at once.
struct SequenceArguments {
    std::vector<std::string> inputs;
    std::string output; ///< a file, a pattern or a folder
    shots::SequenceOptions options;
    std::optional<int> jobs; ///< frames at once
    bool verbose = false;
};

/// Which pictures a command looks at.
struct ReadArguments {
    std::vector<std::string> inputs;
    shots::SequenceOptions options; ///< frames and missing ones alone
};

/// Of every record, `force` lets write-protected files be replaced.
struct RenderArguments {
    EffectArguments effect;
    FrameArguments frame;
    ReportArguments report;
    SequenceArguments sequence; ///< without inputs and output nothing is rendered, the parameters are printed
    render::AreaSettings area;  ///< of all passes
    std::optional<int64_t> valueFrame; ///< whose values a picture without a number gets
    std::optional<std::string> log;
    std::optional<std::string> saveParams;
    std::optional<std::string> view;
    bool printParams = false;
    bool time = false;
    bool listMissing = false; ///< nothing is rendered; the frames that would have to be are printed
    bool listFrames = false;  ///< nothing is rendered; what a farm has to know of the shot is printed
    bool sweep = false;       ///< first, what runs that were killed have left beside the outputs is removed
};

struct SheetArguments {
    EffectArguments effect;
    FrameArguments frame;
    ReportArguments report;
    ReadArguments pictures;
    std::string output;
    bool force = false;
    render::AreaSettings area;         ///< of all passes
    std::optional<int64_t> valueFrame; ///< whose values a picture without a number gets
    std::vector<std::string> views;    ///< of one picture, by their names, in order; none: all
    std::optional<std::string> view;   ///< of a shot
    int columns = 0;                   ///< of the sheet; 0: as many as are usual
    std::optional<double> scale;       ///< of the views, above 0 to 1; not with `width`
    int width = 0;                     ///< that the sheet has at most, in pixels; 0: what is usual
};

/// The boundary smoothing alone.
struct SmoothArguments {
    SequenceArguments sequence;
    bool quiet = false;
    SmoothOptions options; ///< but for the key's colour
    std::optional<std::string> keyColor;
    std::optional<std::string> flagMap; ///< a picture of the edge flags
    std::optional<std::string> cpu;     ///< as of EffectArguments
    shots::FrameForm form;
};

/// The table of parameters, or with a frame the values that settings give them there.
struct ParamsArguments {
    EffectArguments effect; ///< without a frame: plug-in and factory alone
    std::optional<int64_t> frame;
    std::optional<std::string> from;  ///< a picture whose embedded settings are printed instead
    pictures::DecodeOptions decoding; ///< of it
    bool json = false;
};

enum class DefaultsAction { kSave, kForget, kShow };

/// What new instances start with.
struct DefaultsArguments {
    DefaultsAction action = DefaultsAction::kShow;
    EffectArguments effect; ///< with kSave; plugin and threads do not count
    std::optional<std::string> view;
};

struct InfoArguments {
    std::optional<std::string> plugin;
    bool json = false;
};

/// The golden scenes on this machine.
struct SelfCheckArguments {
    std::optional<std::string> plugin;
    bool quick = false; ///< some of them, with the instruction set in use alone
};

struct ColorsArguments {
    ReadArguments pictures;
    std::optional<std::string> output; ///< a picture of the colours
    bool force = false;
    std::optional<pictures::AlphaKind> alphaKind;
    bool linear = false;
    pictures::DecodeOptions decoding;
    int most = 32; ///< colours listed; 0: all
    bool where = false;
    bool json = false;
    pictures::EncodeOptions encoding;
};

/// Settings proposed for a picture.
struct SuggestArguments {
    ReadArguments pictures;
    std::string output;
    bool force = false;
    std::optional<pictures::AlphaKind> alphaKind;
    bool linear = false;
    pictures::DecodeOptions decoding;
};

/// Counted from 0,0 at the left top.
struct PickedPoint {
    uint32_t x = 0;
    uint32_t y = 0;
};

struct PickArguments {
    std::string input;
    std::vector<PickedPoint> points; ///< at least one
    bool json = false;
    std::optional<pictures::AlphaKind> alphaKind;
    bool linear = false;
    pictures::DecodeOptions decoding;
};

struct CompareArguments {
    std::string first;
    std::string second;
    std::optional<std::vector<int64_t>> frames; ///< of shots
    std::optional<std::string> diff;            ///< a picture of the differences
    double tolerance = 0.0;                     ///< of 255; samples that are no farther apart do not differ
    bool json = false;
    bool force = false;
    pictures::DecodeOptions decoding; ///< of both
    pictures::EncodeOptions encoding;
};

/// What --help and --version ask for.
struct ShownText {
    std::string text;
};

using Arguments = std::variant<RenderArguments, SheetArguments, SmoothArguments, ParamsArguments,
                               DefaultsArguments, InfoArguments, SelfCheckArguments, ColorsArguments,
                               SuggestArguments, PickArguments, CompareArguments, ShownText>;

/// Throws Failure for a command line that is wrong in form, naming what may have been meant; labels and values
/// of parameters are looked at later.
Arguments parseArguments(int count, const char* const* words);

} // namespace kovalune::cli
