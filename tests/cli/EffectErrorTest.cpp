#include "tests/cli/ErrorCase.h"

namespace kovalune::test {
namespace {

class EffectError : public ErrorCase {
protected:
    static CommandSetting mode(const char* word) {
        CommandSetting setting;
        setting.environment = {{"TEST_EFFECT", word}};
        return setting;
    }

    const std::vector<std::string> words_ = {"render",  "in.png",   "-o",
                                             "old.png", "--plugin", KOVALUNE_TEST_EFFECT};
};

TEST_F(EffectError, OfTheSetUpHasItsCodeAndMessage) {
    expectFailure(words_, 4, {"set-up", "512", "first line\\rsecond\\nthird"}, mode("setup"));
    expectFailure(words_, 4, {"set-up", "514", "first line\\rsecond\\nthird"}, mode("params"));
    expectFailure({"params", "--plugin", KOVALUNE_TEST_EFFECT}, 4, {"set-up", "514"}, mode("params"));
}

TEST_F(EffectError, OfTheRenderHasItsCodeAndMessage) {
    expectFailure(words_, 4, {"the effect failed with code 512", "first line\\rsecond\\nthird"},
                  mode("render"));
}

TEST_F(EffectError, ThatIsLackOfMemoryNamesThePictureAndItsSize) {
    const std::string text = "kovalune: not enough memory for the effect on 'in.png' (12x9)";
    expectFailure(words_, 4, {text + ": first line\\rsecond\\nthird\n"}, mode("no memory"));
    expectFailure(words_, 4, {text + '\n'}, mode("no memory, no words"));
}

TEST_F(EffectError, ThatIsAnExceptionIsReported) {
    expectFailure(words_, 4, {"exception", "thrown by the effect"}, mode("throw"));
}

TEST_F(EffectError, ThatIsAThrownNumberIsReportedAsThatNumber) {
    expectFailure(words_, 4, {"the effect failed by an exception: the number 516\n"}, mode("throw number"));
    expectFailure(words_, 4, {"the effect's set-up failed by an exception: the number 7\n"},
                  mode("throw at setup"));
}

TEST_F(EffectError, ThatIsAnExceptionHasTheMessageToo) {
    expectFailure(words_, 4, {"exception: the number 516: first line\\rsecond\\nthird\n"},
                  mode("throw with message"));
}

TEST_F(EffectError, ThatIsAnEmptyPromiseIsReported) {
    expectFailure(words_, 4, {"the effect promised no pixel"}, mode("empty"));
}

TEST_F(EffectError, DepthsThatTheEffectCannotDoAreRefused) {
    writePng(folder_ / "deep.png", randomPng(PngColor::kRgb, 16, 4, 4, 1));
    expectFailure({"render", "deep.png", "-o", "old.png", "--plugin", KOVALUNE_TEST_EFFECT}, 4, {"16 bits"});
}

// /proc takes no files from anybody.
TEST_F(EffectError, ComesAfterThatOfAFolderThatTakesNoFiles) {
    const TestFolder marks;
    CommandSetting setting = mode("render");
    setting.environment["TEST_EFFECT_FRAME"] = marks / "frame";
    for (const char* const command : {"render", "sheet"}) {
        expectFailure({command, "in.png", "-o", "/proc/new.png", "--plugin", KOVALUNE_TEST_EFFECT}, 3,
                      {"cannot write '/proc/new.png': the folder '/proc' takes no new file: "}, setting);
    }
    expectFailure({"smooth", "missing.png", "-o", "new.png", "--flag-map", "/proc/new.png"}, 3,
                  {"cannot write '/proc/new.png'"});
    expectFailure({"colors", "missing.png", "-o", "/proc/new.png"}, 3, {"cannot write '/proc/new.png'"});
    expectFailure({"compare", "missing.png", "in.png", "--diff", "/proc/new.png"}, 3,
                  {"cannot write '/proc/new.png'"});
    EXPECT_TRUE(marks.names().empty());
}

TEST_F(EffectError, PlugInsThatCannotBeLoadedAreFiles) {
    const auto expectNotLoaded = [this](const std::string& file, const std::vector<std::string>& named) {
        expectFailure({"render", "in.png", "-o", "old.png", "--plugin", file}, 3, named);
        expectFailure({"params", "--plugin", file}, 3, named);
    };
    expectNotLoaded("missing.so", {"'missing.so'"});
    expectNotLoaded("", {"''"});
    expectNotLoaded(".", {"'.'"});
    expectNotLoaded("in.png", {"in.png"});
    expectNotLoaded(KOVALUNE_TEST_NO_EFFECT, {KOVALUNE_TEST_NO_EFFECT, "EntryPointFunc"});
}

} // namespace
} // namespace kovalune::test
