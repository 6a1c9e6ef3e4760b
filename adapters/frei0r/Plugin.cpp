// The functions of the plug-in's file. None of them lets an exception out. Hosts call them in orders that the interface does not
// promise: the description before f0r_init, f0r_init once for each instance, f0r_deinit while instances live or never.

#include "adapters/frei0r/Filter.h"
#include "adapters/frei0r/Interface.h"
#include "adapters/frei0r/ParamTable.h"

#include <cstdio>
#include <exception>

#define KOVALUNE_EXPORTED extern "C" __attribute__((visibility("default")))

using kovalune::frei0r::Filter;

namespace {

namespace frei0r = kovalune::frei0r;

Filter* filterOf(frei0r::Instance instance) {
    return static_cast<Filter*>(instance);
}

bool isPlace(int place) {
    return place >= 0 && place < frei0r::kParamCount;
}

/// Where no instance is that could tell it.
void tellFailure(const char* what, const char* reason) noexcept {
    std::fprintf(stderr, "kovalune: %s: %s\n", what, reason);
}

/// False where `action` has thrown.
template <class Action>
bool shielded(const char* what, const Action& action) noexcept {
    try {
        action();
        return true;
    } catch (const std::exception& reason) {
        tellFailure(what, reason.what());
    } catch (...) {
        tellFailure(what, "an unknown failure");
    }
    return false;
}

} // namespace

// NOLINTBEGIN(readability-identifier-naming): the interface's names

/// The effect's first call, which sets the locale of the process, is made and undone here.
KOVALUNE_EXPORTED int f0r_init() {
    return shielded("cannot be set up", [] { frei0r::paramTable(); }) ? 1 : -1;
}

/// Instances may live on, and another f0r_init may follow.
KOVALUNE_EXPORTED void f0r_deinit() {}

/// Asks nothing of the effect: some hosts do no more with the file than this.
KOVALUNE_EXPORTED void f0r_get_plugin_info(frei0r::PluginInfo* info) {
    if (info == nullptr) {
        return;
    }
    *info = {.name = "Kovalune",
             .author = "Kovalune",
             .pluginType = frei0r::kFilter,
             .colorModel = frei0r::kRgba8888,
             .frei0rVersion = frei0r::kMajorVersion,
             .majorVersion = KOVALUNE_MAJOR,
             .minorVersion = KOVALUNE_MINOR,
             .paramCount = frei0r::kParamCount,
             .explanation =
                 "Softens flat-colour animation drawings region by region; lines stay as they are"};
}

KOVALUNE_EXPORTED void f0r_get_param_info(frei0r::ParamInfo* info, int place) {
    if (info == nullptr) {
        return;
    }
    *info = {.name = "", .type = frei0r::kDouble, .explanation = ""};
    if (isPlace(place)) {
        shielded("cannot describe its parameters", [&] {
            const frei0r::Param& param = frei0r::paramTable()[static_cast<std::size_t>(place)];
            *info = {
                .name = param.name.c_str(), .type = param.type, .explanation = param.explanation.c_str()};
        });
    }
}

KOVALUNE_EXPORTED frei0r::Instance f0r_construct(unsigned width, unsigned height) {
    Filter* filter = nullptr;
    shielded("cannot make an instance", [&] { filter = new Filter(width, height); });
    return filter;
}

KOVALUNE_EXPORTED void f0r_destruct(frei0r::Instance instance) {
    delete filterOf(instance);
}

KOVALUNE_EXPORTED void f0r_set_param_value(frei0r::Instance instance, void* value, int place) {
    if (instance != nullptr && value != nullptr && isPlace(place)) {
        shielded("cannot set a parameter", [&] { filterOf(instance)->set(place, value); });
    }
}

KOVALUNE_EXPORTED void f0r_get_param_value(frei0r::Instance instance, void* value, int place) {
    if (instance != nullptr && value != nullptr && isPlace(place)) {
        shielded("cannot tell a parameter", [&] { filterOf(instance)->get(place, value); });
    }
}

/// The time has another unit in every host, and is never read.
KOVALUNE_EXPORTED void f0r_update(frei0r::Instance instance, double /*time*/, const uint32_t* input,
                                  uint32_t* output) {
    if (instance != nullptr && input != nullptr && output != nullptr) {
        filterOf(instance)->update(input, output);
    }
}

// NOLINTEND(readability-identifier-naming)
