#include "hostapi/HostApi.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

std::string lettersInMemory(PF_PixelFormat format) {
    char letters[sizeof(format)];
    std::memcpy(letters, &format, sizeof(format));
    return {letters, sizeof(letters)};
}

std::string lettersHighestFirst(A_long applId) {
    const auto bits = static_cast<A_u_long>(applId);
    std::string letters;
    for (unsigned shift = 32; shift > 0; shift -= 8) {
        letters += static_cast<char>((bits >> (shift - 8)) & 0xffU);
    }
    return letters;
}

TEST(Version, PacksTheReleasedVersion) {
    EXPECT_EQ(PF_VERSION(1, 0, 1, PF_Stage_RELEASE, 8), 0x00080E08U);
}

TEST(Version, GivesEachPartItsOwnBits) {
    EXPECT_EQ(PF_VERSION(0, 0, 0, 0, 0x1ff), 0x000001ffU);
    EXPECT_EQ(PF_VERSION(0, 0, 0, 3, 0), 0x00000600U);
    EXPECT_EQ(PF_VERSION(0, 0, 15, 0, 0), 0x00007800U);
    EXPECT_EQ(PF_VERSION(0, 15, 0, 0, 0), 0x00078000U);
    EXPECT_EQ(PF_VERSION(7, 0, 0, 0, 0), 0x00380000U);
    EXPECT_EQ(PF_VERSION(8, 0, 0, 0, 0), 0x04000000U);
    EXPECT_EQ(PF_VERSION(127, 0, 0, 0, 0), 0x3C380000U);
}

TEST(Version, CutsAPartThatIsTooLarge) {
    EXPECT_EQ(PF_VERSION(128, 16, 16, 4, 0x200), 0U);
}

TEST(OutFlags, AddUpToTheFlagsOfTheEffect) {
    EXPECT_EQ(PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING + PF_OutFlag_I_DO_DIALOG +
                  PF_OutFlag_USE_OUTPUT_EXTENT + PF_OutFlag_DEEP_COLOR_AWARE +
                  PF_OutFlag_SEND_UPDATE_PARAMS_UI,
              0x06000070);
    EXPECT_EQ(PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS + PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG +
                  PF_OutFlag2_I_AM_THREADSAFE + PF_OutFlag2_SUPPORTS_SMART_RENDER +
                  PF_OutFlag2_FLOAT_COLOR_AWARE,
              0x00001419);
}

TEST(PixelFormats, SpellTheirNamesInMemory) {
    EXPECT_EQ(lettersInMemory(PF_PixelFormat_ARGB32), "argb");
    EXPECT_EQ(lettersInMemory(PF_PixelFormat_ARGB64), "ae16");
    EXPECT_EQ(lettersInMemory(PF_PixelFormat_ARGB128), "ae32");
    EXPECT_EQ(lettersInMemory(PF_PixelFormat_INVALID), "badf");
}

TEST(ApplicationIds, SpellTheirNamesFromTheHighestByte) {
    EXPECT_EQ(lettersHighestFirst(PF_AppID_FXTC), "FXTC");
    EXPECT_EQ(lettersHighestFirst(PF_AppID_PrMr), "PrMr");
}

TEST(Hue, UndefinedHasTheTopBitAlone) {
    EXPECT_EQ(static_cast<A_u_long>(PF_HUE_UNDEFINED), 0x80000000U);
    EXPECT_LT(PF_HUE_UNDEFINED, 0);
}

TEST(Pixels, LieInMemoryWithAlphaFirst) {
    const PF_Pixel pixel{1, 2, 3, 4};
    const A_u_char expected[] = {1, 2, 3, 4};
    EXPECT_EQ(std::memcmp(&pixel, expected, sizeof(expected)), 0);
}

TEST(ParamDefs, ShareOnePlaceForEveryKindOfValue) {
    PF_ParamDef def{};
    EXPECT_EQ(static_cast<void*>(&def.u.sd.value), static_cast<void*>(&def.u.fs_d.value));
    EXPECT_EQ(static_cast<void*>(&def.u.ld), static_cast<void*>(&def.u));
    EXPECT_EQ(static_cast<void*>(&def.uu.id), static_cast<void*>(&def.uu.change_flags));
}

TEST(ParamDefs, TakeFlagConstantsInTheirNarrowFields) {
    PF_ParamDef def{};
    def.param_type = PF_Param_FLOAT_SLIDER;
    def.u.fs_d.precision = PF_Precision_TENTHS;
    def.u.fs_d.display_flags = PF_ValueDisplayFlag_PERCENT;
    def.u.fs_d.fs_flags = PF_FSliderFlag_WANT_PHASE;
    EXPECT_EQ(def.param_type, 10);
    EXPECT_EQ(def.u.fs_d.precision, 1);
    EXPECT_EQ(def.u.fs_d.display_flags, 1);
    EXPECT_EQ(def.u.fs_d.fs_flags, 1U);
}

TEST(Suites, HaveTheNamesAndVersionsThatHostsKnow) {
    EXPECT_STREQ(kPFWorldSuite, "PF World Suite");
    EXPECT_STREQ(kPFWorldTransformSuite, "PF World Transform Suite");
    EXPECT_STREQ(kPFFillMatteSuite, "PF Fill Matte Suite");
    EXPECT_STREQ(kPFHandleSuite, "PF Handle Suite");
    EXPECT_STREQ(kPFParamUtilsSuite, "PF Param Utils Suite");
    EXPECT_EQ(kPFWorldSuiteVersion2, 2);
    EXPECT_EQ(kPFParamUtilsSuiteVersion1, 1);
}

TEST(Suites, AreAskedForByTheVersionsOfTheEra) {
    using Versions = std::vector<int32_t>;
    const auto listed = [](const auto& versions) { return Versions(versions.begin(), versions.end()); };
    const bool hosts64 = sizeof(PF_Rect) == sizeof(PF_LRect);
    EXPECT_EQ(listed(kPFFillMatteSuiteVersions), (hosts64 ? Versions{2, 1} : Versions{1}));
    EXPECT_EQ(listed(kPFHandleSuiteVersions), (hosts64 ? Versions{2, 1} : Versions{1}));
    EXPECT_EQ(listed(kPFParamUtilsSuiteVersions), (hosts64 ? Versions{3, 2, 1} : Versions{1}));
}

// Records cross between modules that different compilers built, and hosts clear them as bytes.
TEST(Records, AreTrivialAndOfStandardLayout) {
    EXPECT_TRUE(std::is_trivial_v<PF_InData> && std::is_standard_layout_v<PF_InData>);
    EXPECT_TRUE(std::is_trivial_v<PF_OutData> && std::is_standard_layout_v<PF_OutData>);
    EXPECT_TRUE(std::is_trivial_v<PF_ParamDef> && std::is_standard_layout_v<PF_ParamDef>);
    EXPECT_TRUE(std::is_trivial_v<PF_EffectWorld> && std::is_standard_layout_v<PF_EffectWorld>);
    EXPECT_TRUE(std::is_trivial_v<PF_UtilCallbacks> && std::is_standard_layout_v<PF_UtilCallbacks>);
}

TEST(EntryPoint, HasTheTypeThatHostsLookUpAndMayThrow) {
    EXPECT_TRUE((std::is_same_v<decltype(&EntryPointFunc), PF_EntryPoint>));
    EXPECT_FALSE(noexcept(EntryPointFunc(0, nullptr, nullptr, nullptr, nullptr, nullptr)));
}

} // namespace
