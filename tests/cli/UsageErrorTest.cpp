#include "tests/cli/ErrorCase.h"
#include "tests/pictures/ExrMaker.h"

#include <algorithm>

namespace kovalune::test {
namespace {

class UsageError : public ErrorCase {
protected:
    void expectRefused(const std::vector<std::string>& options, const std::vector<std::string>& named) {
        std::vector<std::string> words = {"render", "in.png", "-o", "old.png"};
        words.insert(words.end(), options.begin(), options.end());
        expectFailure(words, 2, named);
    }
};

TEST_F(UsageError, CommandLinesOfWrongForm) {
    expectFailure({}, 2, {"subcommand"});
    expectFailure({"rendr", "in.png"}, 2, {"'rendr'"});
    expectFailure({"render", "in.png"}, 2, {"--output"});
    expectFailure({"render", "-o", "new.png"}, 2, {"INPUT"});
    expectRefused({"--bogus"}, {"--bogus"});
    expectRefused({"--two\nlines"}, {"two"});
    expectRefused({"--threads", "65"}, {"--threads", "1", "64"});
    expectRefused({"--threads", "many"}, {"--threads"});
    expectRefused({"--max-pixels", "0"}, {"--max-pixels takes a whole number, 1 to 900000000, not '0'"});
    expectRefused({"--max-pixels", "900000001"}, {"--max-pixels takes a whole number, 1 to 900000000"});
    expectFailure({"params", "--max-pixels", "9"}, 2, {"--max-pixels", "--from"});
    expectRefused({"--png-level", "10"}, {"--png-level takes a whole number, 0 to 9, not '10'"});
}

TEST_F(UsageError, WordsThatAreOneMoreAreNamed) {
    expectFailure({"sheet", "in.png", "new.png"}, 2, {"'new.png'", "stands after -o"});
    expectFailure({"compare", "in.png", "in.png", "b.png"}, 2, {"takes no 'b.png' here"});
    expectFailure({"render", "in.png", "new.png"}, 2, {"'new.png'", "stands after -o"});
    expectFailure({"pick", "in.png", "1,1", "b.png"}, 2, {"PIXEL takes X,Y", "not 'b.png'"});
    expectFailure({"params", "x"}, 2, {"takes no 'x'", "'kovalune params --help'"});
}

TEST_F(UsageError, NumberedSequencesAreAnsweredWhereTheyAreNone) {
    expectFailure({"sheet", "seq_####.png", "-o", "old.png"}, 3,
                  {"cannot read 'seq_####.png'", "no file has such a name"});
    expectFailure(
        {"sheet", "in.png", "-o", "views_##.png"}, 3,
        {"cannot write 'views_##.png'", "for f in *.png; do kovalune sheet \"$f\" -o \"out/$f\"; done"});
    expectFailure({"pick", "s_%d.png", "1,1"}, 3, {"'s_%d.png'", "'kovalune pick' takes one picture"});
    expectFailure({"colors", "in.png", "-o", "out_%04d.png"}, 3,
                  {"cannot write 'out_%04d.png'", "for f in *.png; do kovalune colors \"$f\"; done"});
    expectFailure({"compare", "in.png", "in.png", "--diff", "out_####.png"}, 3,
                  {"cannot write 'out_####.png'", "into its name\n"});
    expectFailure({"smooth", "in.png", "-o", "new.png", "--flag-map", "map_%d.png"}, 3,
                  {"cannot write 'map_%d.png'", "into its name"});
}

TEST_F(UsageError, FilesOfSuchNamesArePictures) {
    CommandSetting setting;
    setting.folder = folder_.path();
    for (const char* const name : {"s_####.png", "s%04d.png", "-"}) {
        std::filesystem::copy_file(folder_ / "in.png", folder_ / name);
        EXPECT_TRUE(runCommand({"smooth", std::string("./") + name, "-o", "soft#1.png"}, setting).ok())
            << name;
    }
    EXPECT_EQ(runCommand({"smooth", "in.png", "-o", "s_####.png"}, setting).exitCode, 2)
        << "an output is never looked up";
}

TEST_F(UsageError, StandardStreamsTakeNoDrawnPicturesAndNoSettings) {
    expectFailure({"colors", "in.png", "-o", "-"}, 2, {"not to the standard output", "'./-'"});
    expectFailure({"compare", "in.png", "in.png", "--diff", "-"}, 2, {"not to the standard output"});
    expectFailure({"smooth", "in.png", "-o", "new.png", "--flag-map", "-"}, 2,
                  {"not to the standard output"});
    expectRefused({"--params", "-"}, {"settings are read from a file"});
}

TEST_F(UsageError, AFolderIsNoPicture) {
    std::filesystem::create_directory(folder_ / "out");
    std::filesystem::create_directory(folder_ / "out.png");
    for (const std::string name : {"out", "out/", "out.png", "gone/"}) {
        expectFailure({"render", "in.png", "-o", name}, 3,
                      {"cannot write '" + name + "': it is a folder",
                       (std::filesystem::path(name) / "soft.png").string()});
    }
}

TEST_F(UsageError, SettingsThatTheShellCut) {
    const auto expectQuoted = [this](const std::vector<std::string>& words, const std::string& quoted) {
        expectFailure(words, 2, {"needs quotes: " + quoted + "\n"});
    };
    expectQuoted({"render", "--set", "Blur", "Amount=3", "in.png", "-o", "old.png"},
                 "--set \"Blur Amount=3\"");
    expectQuoted({"render", "--set", "Blur", "Amount=3", "-o", "old.png"}, "--set \"Blur Amount=3\"");
    expectQuoted({"render", "in.png", "-o", "old.png", "--set=Blur", "Amount", "=", "3"},
                 "--set \"Blur Amount = 3\"");
    expectQuoted({"sheet", "in.png", "-o", "old.png", "--set", "1", ":", "Color=#000000"},
                 "--set \"1 : Color=#000000\"");
    expectQuoted({"render", "in.png", "--set", "view=Process", "2", "-o", "old.png"},
                 "--set \"view=Process 2\"");
    expectQuoted({"render", "--view", "Process", "4", "in.png", "-o", "old.png"}, "--view \"Process 4\"");
    expectRefused({"--set", "Blur", "--set", "View=Base"}, {"LABEL=VALUE", "'Blur'"});
}

TEST_F(UsageError, OptionsOnceWithAValueOfTheirOwn) {
    expectRefused({"--output", "new.png"}, {"--output was given twice", "'kovalune render --help'"});
    expectRefused({"--depth", "8", "--depth", "8", "--depth", "8"}, {"--depth was given 3 times"});
    expectRefused({"--depth"}, {"--depth needs a value"});
    expectRefused({"--quiet=loud"}, {"--quiet takes no value"});
    expectRefused({"--depth", "10"}, {"--depth takes 8, 16, 32 or auto, not '10'"});
    expectRefused({"--alpha", "no"}, {"--alpha takes premultiplied or straight, not 'no'"});
}

TEST_F(UsageError, TheHintIsTheHelpOfTheCommandAtHand) {
    expectFailure({}, 2, {"'kovalune --help' shows the usage"});
    expectFailure({"sheet"}, 2, {"INPUT", "'kovalune sheet --help' shows the usage"});
    expectFailure({"defaults", "keep"}, 2,
                  {"save, forget or show", "'kovalune defaults --help' shows the usage"});
    expectFailure({"help", "rendr"}, 2, {"'rendr'", "did you mean 'render'?"});
}

TEST_F(UsageError, OptionsStandBehindTheCommand) {
    expectFailure({"--quiet", "render"}, 2, {"options stand behind the command: kovalune render --quiet\n"});
    expectFailure({"--output=new.png", "render", "in.png"}, 2,
                  {"options stand behind the command: kovalune render --output\n"});
    expectFailure({"-o", "new.png", "render", "in.png"}, 2,
                  {"options stand behind the command: kovalune render -o\n"});
    expectFailure({"-onew.png", "colors", "in.png"}, 2,
                  {"options stand behind the command: kovalune colors -o\n"});
    expectFailure({"-o", "new.png", "pick", "in.png", "1,1"}, 2, {"'kovalune pick' has no option '-o'"});
}

TEST_F(UsageError, UnknownLabelsNameTheNearest) {
    expectRefused({"--set", "Blur Amont=3"}, {"'Blur Amont'", "'Blur Amount'"});
    expectRefused({"--set", "Colour 2=#000000"}, {"'Colour 2'", "'Color 2'"});
    expectRefused({"--set", "=3"}, {"''"});
}

TEST_F(UsageError, SettingsWithoutAValue) {
    expectRefused({"--set", "Blur Amount"}, {"LABEL=VALUE", "'Blur Amount'"});
    expectRefused({"--set", "Blur Amount="}, {"'Blur Amount'", "a number"});
}

TEST_F(UsageError, GroupsHaveNoValue) {
    expectRefused({"--set", "base=1"}, {"'Base' is a group"});
    expectRefused({"--set", "Process 1=1"}, {"'Process 1' is a group"});
}

TEST_F(UsageError, ValuesOutsideTheValidRange) {
    expectRefused({"--set", "Blur Amount=1000.5"}, {"'Blur Amount'", "1000.5", "0 to 1000"});
    expectRefused({"--set", "Blur Repeat Num=0"}, {"'Blur Repeat Num'", " 0:", "1 to 10"});
    expectRefused({"--set", "Color 1=0,0,256"}, {"'Color 1'", "0,0,256", "0 to 255"});
}

TEST_F(UsageError, ValuesOfWrongForm) {
    expectRefused({"--set", "Blur Amount=1,5"}, {"'Blur Amount'", "'1,5'"});
    expectRefused({"--set", "Blur Repeat Num=2.5"}, {"'Blur Repeat Num'", "'2.5'"});
    expectRefused({"--set", "Enable 1=maybe"}, {"'Enable 1'", "'maybe'", "on or off"});
    expectRefused({"--set", "Color 1=#12345"}, {"'Color 1'", "'#12345'", "#RRGGBB"});
    expectRefused({"--set", "Color 1=\n"}, {"'\\n'"});
}

TEST_F(UsageError, ViewsThatCannotBeChosen) {
    expectRefused({"--view", "Basis"}, {"'View'", "'Basis'", "Normal, Extract, Base"});
    expectRefused({"--view", "2"}, {"'View'", "'(-'", "separates"});
    expectRefused({"--set", "View=(-"}, {"'View'", "'(-'", "separates"});
    expectRefused({"--view", "9"}, {"'View'", "'9'"});
}

TEST_F(UsageError, LabelsThatSeveralParametersHave) {
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "TWIN=1"}, {"'TWIN'", "2 parameters"});
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "Same=1"}, {"'Same'", "2 parameters"});
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--set", "Place=1"}, {"'Place'", "cannot be set"});
    expectRefused({"--plugin", KOVALUNE_TEST_EFFECT, "--view", "Base"}, {"'View'"});
}

/// Two texts of the user in one message, and what the command itself says about them.
class LongTexts : public ErrorCase {
protected:
    static constexpr int kMany = 11;

    /// The user's letters here are Z and 9, of which the command's own words have none.
    int exitCodeOfCut(const std::vector<std::string>& words) const {
        CommandSetting setting;
        setting.folder = folder_.path();
        const CommandOutcome outcome = runCommand(words, setting);
        EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
        EXPECT_LT(outcome.err.size(), 700U) << outcome.err;
        const auto isOfTheUser = [](char letter) { return letter == 'Z' || letter == '9'; };
        const auto count = std::count_if(outcome.err.begin(), outcome.err.end(), isOfTheUser);
        EXPECT_GE(count, 100) << outcome.err;
        EXPECT_LT(count, 300) << outcome.err;
        return outcome.exitCode;
    }

    /// The test's own, by a long way.
    std::string longFolder() const {
        const std::string name(200, 'Z');
        std::filesystem::create_directory(folder_ / name);
        std::string folders;
        for (int i = 0; i < 8; ++i) {
            folders += name + "/../";
        }
        return folders;
    }

    static std::string longName(int number) {
        return static_cast<char>('a' + number) + std::string(200, 'Z');
    }

    /// With these layers of one letter and so many of long names.
    static ExrSheet sheetWith(const std::string& letters, int longLayers) {
        ExrSheet sheet;
        sheet.width = 2;
        sheet.height = 1;
        for (const char letter : letters) {
            sheet.layers.push_back({std::string(1, letter), Imf::HALF, halves({0.5F, 0.25F})});
        }
        for (int layer = 0; layer < longLayers; ++layer) {
            sheet.layers.push_back({longName(layer), Imf::HALF, halves({0.5F, 0.25F})});
        }
        return sheet;
    }

    /// Of a text with a zero byte at its end.
    static std::size_t placeBehind(const std::vector<uint8_t>& bytes, const std::string& text) {
        const auto found = std::search(bytes.begin(), bytes.end(), text.begin(), text.end());
        return static_cast<std::size_t>(found - bytes.begin()) + text.size() + 1;
    }
};

TEST_F(LongTexts, OfTheCommandLineAreCut) {
    const std::string longText(5000, 'Z');
    writeBytes(folder_ / "long.params", {longText.begin(), longText.end()});
    const std::string folders = longFolder();
    const std::vector<std::vector<std::string>> commands = {
        {longText},
        {"render", "in.png", "-o", "old.png", "--" + longText},
        {"compare", "in.png", "in.png", longText},
        {"sheet", "in.png", longText, "-o", "old.png"},
        {"render", "in.png", "-o", "old.png", "--threads", longText},
        {"render", "in.png", "-o", "old.png", "--depth", longText},
        {"render", "in.png", "-o", "old.png", "--alpha", longText},
        {"render", "in.png", "-o", "old.png", "--downsample", longText},
        {"render", "in.png", "-o", "old.png", "--set", longText},
        {"render", "in.png", "-o", "old.png", "--set", longText + "=3"},
        {"render", "in.png", "-o", "old.png", "--set", "Blur Amount=" + longText},
        {"render", "in.png", "-o", "old.png", "--set", "Blur Amount=" + std::string(5000, '9')},
        {"render", "in.png", "-o", "old.png", "--view", longText},
        {"render", "in.png", "-o", "old.png", "--params", folders + "long.params"},
        {"render", "in.png", "-o", "old.png", "--plugin", folders + "in.png"},
        {"render", longText, "-o", "old.png"},
        {"render", "in.png", "-o", longText + ".png"},
        {"render", "in.png", "-o", longText + '/' + longText + ".png"},
        {"pick", "in.png", longText},
        {"defaults", longText}};
    for (const std::vector<std::string>& words : commands) {
        EXPECT_NE(exitCodeOfCut(words), 0);
    }
    expectFailure({"render", "in.png", "-o", "old.png", "--quiet=" + longText}, 2,
                  {"kovalune: --quiet takes no value\n"});
}

TEST_F(LongTexts, OfPicturesAreCut) {
    const std::string folders = longFolder();
    for (const auto& [name, layers] : std::initializer_list<std::pair<const char*, std::string>>{
             {"left.exr", "RGB"}, {"some.exr", "R"}, {"none.exr", ""}}) {
        writeBytes(folder_ / name, exrOf(sheetWith(layers, kMany)));
    }
    std::vector<ExrSheet> parts;
    for (int part = 0; part < kMany; ++part) {
        parts.push_back(sheetWith("RGB", 0));
        parts.back().name = longName(part);
    }
    writeBytes(folder_ / "parts.exr", exrOf(parts));
    std::vector<uint8_t> damaged = exrOf(sheetWith("RGB", 1));
    const auto type = damaged.begin() + static_cast<std::ptrdiff_t>(placeBehind(damaged, longName(0)));
    *type = 9;
    writeBytes(folder_ / "damaged.exr", damaged);
    PngPicture picture = randomPng(PngColor::kRgb, 8, 12, 9, 1);
    for (int text = 0; text < kMany; ++text) {
        const std::string keyword = longName(text).substr(0, 79);
        picture.notes.push_back({"tEXt", {keyword.begin(), keyword.end()}});
    }
    writePng(folder_ / "texts.png", picture);
    for (const std::string name : {"left.exr", "parts.exr", "texts.png"}) {
        EXPECT_EQ(exitCodeOfCut({"render", folders + name, "-o", "new.tga"}), 0) << name;
    }
    for (const std::string name : {"some.exr", "none.exr", "damaged.exr"}) {
        EXPECT_EQ(exitCodeOfCut({"render", folders + name, "-o", "new.tga"}), 3) << name;
    }
}

} // namespace
} // namespace kovalune::test
