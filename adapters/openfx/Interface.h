// Our own declarations of the interface that OpenFX hosts and plug-ins speak: types, records, tables of functions, numbers.
// Every slot and offset is part of the interface; the order of a table's members too. All functions have C linkage's calling
// convention and return a status unless a comment says otherwise.
#pragma once

#include <cstddef>

namespace kovalune::openfx {

// Handles: the host's own, of distinct types so that they are not mixed up.
using Properties = struct PropertiesOfHost*;
using Effect = struct EffectOfHost*;
using Clip = struct ClipOfHost*;
using ParamSet = struct ParamSetOfHost*;
using Param = struct ParamOfHost*;
using ImageMemory = struct ImageMemoryOfHost*;
using Mutex = struct MutexOfHost*;

using Status = int;

inline constexpr Status kOk = 0;
inline constexpr Status kFailed = 1;
inline constexpr Status kFatal = 2;
inline constexpr Status kUnknown = 3;
inline constexpr Status kMissingHostFeature = 4;
inline constexpr Status kUnsupported = 5;
inline constexpr Status kExists = 6;
inline constexpr Status kFormat = 7;
inline constexpr Status kMemory = 8;
inline constexpr Status kBadHandle = 9;
inline constexpr Status kBadIndex = 10;
inline constexpr Status kBadValue = 11;
inline constexpr Status kReplyYes = 12;
inline constexpr Status kReplyNo = 13;
inline constexpr Status kReplyDefault = 14;

struct RectI {
    int x1, y1, x2, y2; ///< the upper ends are outside
};

struct RectD {
    double x1, y1, x2, y2;
};

struct RangeD {
    double min, max;
};

struct Host {
    Properties properties;
    const void* (*fetchSuite)(Properties host, const char* name, int version);
};

struct Plugin {
    const char* api;
    int apiVersion;
    const char* identifier;
    unsigned int versionMajor;
    unsigned int versionMinor;
    void (*setHost)(Host* host);
    Status (*mainEntry)(const char* action, const void* handle, Properties inArgs, Properties outArgs);
};

struct PropertySuite {
    Status (*setPointer)(Properties, const char* name, int index, void* value);
    Status (*setString)(Properties, const char* name, int index, const char* value);
    Status (*setDouble)(Properties, const char* name, int index, double value);
    Status (*setInt)(Properties, const char* name, int index, int value);
    Status (*setPointerN)(Properties, const char* name, int count, void* const* values);
    Status (*setStringN)(Properties, const char* name, int count, const char* const* values);
    Status (*setDoubleN)(Properties, const char* name, int count, const double* values);
    Status (*setIntN)(Properties, const char* name, int count, const int* values);
    Status (*getPointer)(Properties, const char* name, int index, void** value);
    Status (*getString)(Properties, const char* name, int index, char** value);
    Status (*getDouble)(Properties, const char* name, int index, double* value);
    Status (*getInt)(Properties, const char* name, int index, int* value);
    Status (*getPointerN)(Properties, const char* name, int count, void** values);
    Status (*getStringN)(Properties, const char* name, int count, char** values);
    Status (*getDoubleN)(Properties, const char* name, int count, double* values);
    Status (*getIntN)(Properties, const char* name, int count, int* values);
    Status (*reset)(Properties, const char* name);
    Status (*getDimension)(Properties, const char* name, int* count);
};

struct ImageEffectSuite {
    Status (*getPropertySet)(Effect, Properties* properties);
    Status (*getParamSet)(Effect, ParamSet* params);
    Status (*clipDefine)(Effect, const char* name, Properties* properties);
    Status (*clipGetHandle)(Effect, const char* name, Clip* clip, Properties* properties);
    Status (*clipGetPropertySet)(Clip, Properties* properties);
    Status (*clipGetImage)(Clip, double time, const RectD* region, Properties* image);
    Status (*clipReleaseImage)(Properties image);
    Status (*clipGetRegionOfDefinition)(Clip, double time, RectD* region);
    int (*abort)(Effect); ///< no status: 1 to stop
    Status (*imageMemoryAlloc)(Effect, std::size_t bytes, ImageMemory* memory);
    Status (*imageMemoryFree)(ImageMemory);
    Status (*imageMemoryLock)(ImageMemory, void** bytes);
    Status (*imageMemoryUnlock)(ImageMemory);
};

struct ParameterSuite {
    Status (*define)(ParamSet, const char* type, const char* name, Properties* properties);
    Status (*getHandle)(ParamSet, const char* name, Param* param, Properties* properties);
    Status (*setGetPropertySet)(ParamSet, Properties* properties);
    Status (*getPropertySet)(Param, Properties* properties);
    Status (*getValue)(Param, ...);
    Status (*getValueAtTime)(Param, double time, ...);
    Status (*getDerivative)(Param, double time, ...);
    Status (*getIntegral)(Param, double from, double to, ...);
    Status (*setValue)(Param, ...);
    Status (*setValueAtTime)(Param, double time, ...);
    Status (*getNumKeys)(Param, unsigned int* count);
    Status (*getKeyTime)(Param, unsigned int index, double* time);
    Status (*getKeyIndex)(Param, double time, int direction, int* index);
    Status (*deleteKey)(Param, double time);
    Status (*deleteAllKeys)(Param);
    Status (*copy)(Param to, Param from, double offset, const RangeD* range);
    Status (*editBegin)(ParamSet, const char* name);
    Status (*editEnd)(ParamSet);
};

using ThreadFunction = void (*)(unsigned int index, unsigned int count, void* argument);

struct MultiThreadSuite {
    Status (*multiThread)(ThreadFunction, unsigned int count, void* argument);
    Status (*numCpus)(unsigned int* count);
    Status (*index)(unsigned int* index);
    int (*isSpawnedThread)(); ///< no status
    Status (*mutexCreate)(Mutex*, int locks);
    Status (*mutexDestroy)(Mutex);
    Status (*mutexLock)(Mutex);
    Status (*mutexUnlock)(Mutex);
    Status (*mutexTryLock)(Mutex);
};

struct MessageSuite1 {
    Status (*message)(void* effect, const char* type, const char* id, const char* format, ...);
};

struct MessageSuite2 {
    Status (*message)(void* effect, const char* type, const char* id, const char* format, ...);
    Status (*setPersistentMessage)(void* effect, const char* type, const char* id, const char* format, ...);
    Status (*clearPersistentMessage)(void* effect);
};

static_assert(sizeof(int) == 4 && sizeof(void*) == 8, "the offsets below are those of 64 bits");
static_assert(sizeof(RectI) == 16 && offsetof(RectI, x2) == 8);
static_assert(sizeof(RectD) == 32 && offsetof(RectD, x2) == 16);
static_assert(sizeof(RangeD) == 16 && offsetof(RangeD, max) == 8);
static_assert(offsetof(Host, fetchSuite) == 8 && sizeof(Host) == 16);
static_assert(offsetof(Plugin, apiVersion) == 8);
static_assert(offsetof(Plugin, identifier) == 16);
static_assert(offsetof(Plugin, versionMajor) == 24);
static_assert(offsetof(Plugin, versionMinor) == 28);
static_assert(offsetof(Plugin, setHost) == 32);
static_assert(offsetof(Plugin, mainEntry) == 40 && sizeof(Plugin) == 48);

/// Of a slot's offset.
inline constexpr std::size_t kSlot = sizeof(void*);
static_assert(offsetof(PropertySuite, setPointerN) == 4 * kSlot);
static_assert(offsetof(PropertySuite, getPointer) == 8 * kSlot);
static_assert(offsetof(PropertySuite, getPointerN) == 12 * kSlot);
static_assert(offsetof(PropertySuite, getDimension) == 17 * kSlot && sizeof(PropertySuite) == 18 * kSlot);
static_assert(offsetof(ImageEffectSuite, clipGetImage) == 5 * kSlot);
static_assert(offsetof(ImageEffectSuite, abort) == 8 * kSlot && sizeof(ImageEffectSuite) == 13 * kSlot);
static_assert(offsetof(ParameterSuite, getValueAtTime) == 5 * kSlot);
static_assert(offsetof(ParameterSuite, setValue) == 8 * kSlot);
static_assert(offsetof(ParameterSuite, copy) == 15 * kSlot && sizeof(ParameterSuite) == 18 * kSlot);
static_assert(offsetof(MultiThreadSuite, isSpawnedThread) == 3 * kSlot &&
              sizeof(MultiThreadSuite) == 9 * kSlot);
static_assert(sizeof(MessageSuite1) == kSlot);
static_assert(offsetof(MessageSuite2, setPersistentMessage) == kSlot && sizeof(MessageSuite2) == 3 * kSlot);

// Names of suites, actions, properties and their values, as far as this plug-in has use for them.
namespace name {

inline constexpr char kApi[] = "OfxImageEffectPluginAPI";

inline constexpr char kPropertySuite[] = "OfxPropertySuite";
inline constexpr char kImageEffectSuite[] = "OfxImageEffectSuite";
inline constexpr char kParameterSuite[] = "OfxParameterSuite";
inline constexpr char kMultiThreadSuite[] = "OfxMultiThreadSuite";
inline constexpr char kMessageSuite[] = "OfxMessageSuite";

inline constexpr char kLoad[] = "OfxActionLoad";
inline constexpr char kUnload[] = "OfxActionUnload";
inline constexpr char kDescribe[] = "OfxActionDescribe";
inline constexpr char kDescribeInContext[] = "OfxImageEffectActionDescribeInContext";
inline constexpr char kCreateInstance[] = "OfxActionCreateInstance";
inline constexpr char kDestroyInstance[] = "OfxActionDestroyInstance";
inline constexpr char kBeginInstanceChanged[] = "OfxActionBeginInstanceChanged";
inline constexpr char kInstanceChanged[] = "OfxActionInstanceChanged";
inline constexpr char kEndInstanceChanged[] = "OfxActionEndInstanceChanged";
inline constexpr char kPurgeCaches[] = "OfxActionPurgeCaches";
inline constexpr char kSyncPrivateData[] = "OfxActionSyncPrivateData";
inline constexpr char kGetClipPreferences[] = "OfxImageEffectActionGetClipPreferences";
inline constexpr char kGetRegionOfDefinition[] = "OfxImageEffectActionGetRegionOfDefinition";
inline constexpr char kGetRegionsOfInterest[] = "OfxImageEffectActionGetRegionsOfInterest";
inline constexpr char kIsIdentity[] = "OfxImageEffectActionIsIdentity";
inline constexpr char kBeginSequenceRender[] = "OfxImageEffectActionBeginSequenceRender";
inline constexpr char kRender[] = "OfxImageEffectActionRender";
inline constexpr char kEndSequenceRender[] = "OfxImageEffectActionEndSequenceRender";

inline constexpr char kType[] = "OfxPropType";
inline constexpr char kName[] = "OfxPropName";
inline constexpr char kLabel[] = "OfxPropLabel";
inline constexpr char kShortLabel[] = "OfxPropShortLabel";
inline constexpr char kLongLabel[] = "OfxPropLongLabel";
inline constexpr char kVersion[] = "OfxPropVersion";
inline constexpr char kVersionLabel[] = "OfxPropVersionLabel";
inline constexpr char kDescription[] = "OfxPropPluginDescription";
inline constexpr char kTime[] = "OfxPropTime";
inline constexpr char kInstanceData[] = "OfxPropInstanceData";

inline constexpr char kContext[] = "OfxImageEffectPropContext";
inline constexpr char kSupportedContexts[] = "OfxImageEffectPropSupportedContexts";
inline constexpr char kSupportedPixelDepths[] = "OfxImageEffectPropSupportedPixelDepths";
inline constexpr char kSupportedComponents[] = "OfxImageEffectPropSupportedComponents";
inline constexpr char kGrouping[] = "OfxImageEffectPluginPropGrouping";
inline constexpr char kSingleInstance[] = "OfxImageEffectPluginPropSingleInstance";
inline constexpr char kThreadSafety[] = "OfxImageEffectPluginRenderThreadSafety";
inline constexpr char kHostFrameThreading[] = "OfxImageEffectPluginPropHostFrameThreading";
inline constexpr char kSupportsMultiResolution[] = "OfxImageEffectPropSupportsMultiResolution";
inline constexpr char kSupportsTiles[] = "OfxImageEffectPropSupportsTiles";
inline constexpr char kTemporalClipAccess[] = "OfxImageEffectPropTemporalClipAccess";
inline constexpr char kFieldRenderTwiceAlways[] = "OfxImageEffectPluginPropFieldRenderTwiceAlways";
inline constexpr char kMultipleClipDepths[] = "OfxImageEffectPropMultipleClipDepths";
inline constexpr char kMultipleClipPars[] = "OfxImageEffectPropSupportsMultipleClipPARs";
inline constexpr char kSlaveParam[] = "OfxImageEffectPropClipPreferencesSlaveParam";

inline constexpr char kOptional[] = "OfxImageClipPropOptional";
inline constexpr char kIsMask[] = "OfxImageClipPropIsMask";
inline constexpr char kConnected[] = "OfxImageClipPropConnected";
inline constexpr char kPixelDepth[] = "OfxImageEffectPropPixelDepth";
inline constexpr char kComponents[] = "OfxImageEffectPropComponents";
inline constexpr char kPreMultiplication[] = "OfxImageEffectPropPreMultiplication";
inline constexpr char kComponentsOf[] = "OfxImageClipPropComponents_"; ///< and the clip's name
inline constexpr char kDepthOf[] = "OfxImageClipPropDepth_";
inline constexpr char kRegionOfInterestOf[] = "OfxImageClipPropRoI_";

inline constexpr char kRegionOfDefinition[] = "OfxImageEffectPropRegionOfDefinition";
inline constexpr char kRenderWindow[] = "OfxImageEffectPropRenderWindow";
inline constexpr char kRenderScale[] = "OfxImageEffectPropRenderScale";

inline constexpr char kImageData[] = "OfxImagePropData";
inline constexpr char kImageBounds[] = "OfxImagePropBounds";
inline constexpr char kImageRowBytes[] = "OfxImagePropRowBytes";

inline constexpr char kDefault[] = "OfxParamPropDefault";
inline constexpr char kMin[] = "OfxParamPropMin";
inline constexpr char kMax[] = "OfxParamPropMax";
inline constexpr char kDisplayMin[] = "OfxParamPropDisplayMin";
inline constexpr char kDisplayMax[] = "OfxParamPropDisplayMax";
inline constexpr char kDigits[] = "OfxParamPropDigits";
inline constexpr char kIncrement[] = "OfxParamPropIncrement";
inline constexpr char kHint[] = "OfxParamPropHint";
inline constexpr char kParent[] = "OfxParamPropParent";
inline constexpr char kAnimates[] = "OfxParamPropAnimates";
inline constexpr char kEnabled[] = "OfxParamPropEnabled";
inline constexpr char kGroupOpen[] = "OfxParamPropGroupOpen";
inline constexpr char kChoiceOption[] = "OfxParamPropChoiceOption";
inline constexpr char kHostBooleanAnimation[] = "OfxParamHostPropSupportsBooleanAnimation";

inline constexpr char kTypeInteger[] = "OfxParamTypeInteger";
inline constexpr char kTypeDouble[] = "OfxParamTypeDouble";
inline constexpr char kTypeRgb[] = "OfxParamTypeRGB";
inline constexpr char kTypeBoolean[] = "OfxParamTypeBoolean";
inline constexpr char kTypeChoice[] = "OfxParamTypeChoice";
inline constexpr char kTypeGroup[] = "OfxParamTypeGroup";

inline constexpr char kContextFilter[] = "OfxImageEffectContextFilter";
inline constexpr char kContextGeneral[] = "OfxImageEffectContextGeneral";
inline constexpr char kSource[] = "Source";
inline constexpr char kOutput[] = "Output";
inline constexpr char kMask[] = "Mask";
inline constexpr char kDepthByte[] = "OfxBitDepthByte";
inline constexpr char kDepthShort[] = "OfxBitDepthShort";
inline constexpr char kDepthFloat[] = "OfxBitDepthFloat";
inline constexpr char kRgba[] = "OfxImageComponentRGBA";
inline constexpr char kRgb[] = "OfxImageComponentRGB";
inline constexpr char kAlpha[] = "OfxImageComponentAlpha";
inline constexpr char kOpaque[] = "OfxImageOpaque";
inline constexpr char kPremultiplied[] = "OfxImageAlphaPremultiplied";
inline constexpr char kUnpremultiplied[] = "OfxImageAlphaUnPremultiplied";
inline constexpr char kFullySafe[] = "OfxImageEffectRenderFullySafe";
inline constexpr char kMessageError[] = "OfxMessageError";

} // namespace name

} // namespace kovalune::openfx
