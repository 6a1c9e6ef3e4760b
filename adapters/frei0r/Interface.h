// The frei0r interface, version 1.2, declared for this plug-in: what a host calls and hands over. Sizes and offsets are those of
// 64-bit systems. Texts are UTF-8 and end with a zero; what a plug-in hands out stays valid for as long as it is loaded.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kovalune::frei0r {

inline constexpr int kMajorVersion = 1;
inline constexpr int kMinorVersion = 2;

enum PluginType : int { kFilter = 0, kSource = 1, kMixer2 = 2, kMixer3 = 3 };

/// The order of a pixel's four bytes in memory, whatever the machine's.
enum ColorModel : int { kBgra8888 = 0, kRgba8888 = 1, kPacked32 = 2 };

/// A check box is a double below 0.5 or not; a number is a double from 0 to 1.
enum ParamType : int { kBool = 0, kDouble = 1, kColor = 2, kPosition = 3, kString = 4 };

struct PluginInfo {
    const char* name;
    const char* author;
    int pluginType;
    int colorModel;
    int frei0rVersion;
    int majorVersion;
    int minorVersion;
    int paramCount;
    const char* explanation; ///< may be null
};

struct ParamInfo {
    const char* name;
    int type;
    const char* explanation; ///< may be null
};

/// Each channel from 0 to 1.
struct Color {
    float red;
    float green;
    float blue;
};

struct Position {
    double x;
    double y;
};

using Instance = void*;

static_assert(sizeof(void*) != 8 ||
              (offsetof(PluginInfo, name) == 0 && offsetof(PluginInfo, author) == 8 &&
               offsetof(PluginInfo, pluginType) == 16 && offsetof(PluginInfo, colorModel) == 20 &&
               offsetof(PluginInfo, frei0rVersion) == 24 && offsetof(PluginInfo, majorVersion) == 28 &&
               offsetof(PluginInfo, minorVersion) == 32 && offsetof(PluginInfo, paramCount) == 36 &&
               offsetof(PluginInfo, explanation) == 40 && sizeof(PluginInfo) == 48));
static_assert(sizeof(void*) != 8 || (offsetof(ParamInfo, name) == 0 && offsetof(ParamInfo, type) == 8 &&
                                     offsetof(ParamInfo, explanation) == 16 && sizeof(ParamInfo) == 24));
static_assert(offsetof(Color, red) == 0 && offsetof(Color, green) == 4 && offsetof(Color, blue) == 8 &&
              sizeof(Color) == 12);
static_assert(offsetof(Position, x) == 0 && offsetof(Position, y) == 8 && sizeof(Position) == 16);
static_assert(sizeof(int) == 4 && sizeof(unsigned) == 4);

// The functions of a plug-in's file, by their types.
using Init = int();
using Deinit = void();
using GetPluginInfo = void(PluginInfo*);
using GetParamInfo = void(ParamInfo*, int);
using Construct = Instance(unsigned, unsigned);
using Destruct = void(Instance);
using SetParamValue = void(Instance, void*, int);
using GetParamValue = void(Instance, void*, int);
using Update = void(Instance, double, const uint32_t*, uint32_t*);

} // namespace kovalune::frei0r
