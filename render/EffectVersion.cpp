#include "render/EffectVersion.h"

namespace kovalune::render {

namespace {

const char* const kStageNames[] = {"development", "alpha", "beta", "release"};

} // namespace

/// The fields are those of PF_VERSION.
std::string versionText(A_u_long packed) {
    const A_u_long version = ((packed >> 26) & 0xfU) << 3 | ((packed >> 19) & 0x7U);
    const A_u_long subversion = (packed >> 15) & 0xfU;
    const A_u_long bugfix = (packed >> 11) & 0xfU;
    const A_u_long stage = (packed >> 9) & 0x3U;
    const A_u_long build = packed & 0x1ffU;
    return std::to_string(version) + '.' + std::to_string(subversion) + '.' + std::to_string(bugfix) + ' ' +
           kStageNames[stage] + ", build " + std::to_string(build);
}

std::string hexNumber(A_u_long number) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
        text += kDigits[(number >> shift) & 0xfU];
    }
    return text;
}

std::string settingsWithVersion(const host::Session& session, const std::string& settings) {
    const A_u_long version = session.effectVersion();
    return "; effect version " + versionText(version) + " (" + hexNumber(version) + ")\n" + settings;
}

} // namespace kovalune::render
