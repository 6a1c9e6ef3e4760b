// Settings that select nothing are told, and with --report what the others select and change.

#include "tests/cli/ErrorCase.h"

#include <nlohmann/json.hpp>

namespace kovalune::test {
namespace {

using Json = nlohmann::json;

/// Stripes of 10 pixels a side: red, dark red, blue, and grey; 40 by 10.
PngPicture stripes() {
    constexpr uint8_t kColors[4][3] = {{200, 0, 0}, {100, 0, 0}, {0, 0, 200}, {90, 90, 90}};
    PngPicture picture = blankPng(PngColor::kRgb, 8, 40, 10);
    for (std::size_t at = 0; at < picture.rows.size(); ++at) {
        picture.rows[at] = kColors[at / 3 % 40 / 10][at % 3];
    }
    return picture;
}

const std::vector<std::string> kReds = {"--set",       "Color 1=#C80000", "--set",
                                        "Enable 2=on", "--set",           "Color 2=#640000"};
const std::vector<std::string> kNoProcess = {"--set", "1 : Enable Process=off"};

class Selection : public ErrorCase {
protected:
    void SetUp() override {
        ErrorCase::SetUp();
        writePng(folder_ / "art.png", stripes());
    }

    CommandOutcome run(const std::string& command,
                       std::initializer_list<std::vector<std::string>> parts) const {
        std::vector<std::string> words = {command, "art.png", "-o", "out.png"};
        for (const std::vector<std::string>& part : parts) {
            words.insert(words.end(), part.begin(), part.end());
        }
        CommandSetting setting;
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    Json report(std::initializer_list<std::vector<std::string>> parts) const {
        std::vector<std::string> words = {"--report", "--json"};
        for (const std::vector<std::string>& part : parts) {
            words.insert(words.end(), part.begin(), part.end());
        }
        const CommandOutcome outcome = run("render", {words});
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        return Json::parse(outcome.out);
    }

    bool isWritten() const { return std::filesystem::exists(folder_ / "out.png"); }
};

TEST_F(Selection, IsSilentWhereEverySettingSelectsSomething) {
    for (const char* const command : {"render", "sheet"}) {
        const CommandOutcome outcome = run(command, {kReds, kNoProcess, {"--strict"}});
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(outcome.notes, "") << command;
    }
}

TEST_F(Selection, NamesEveryColourThatSelectsNothing) {
    for (const char* const command : {"render", "sheet"}) {
        const CommandOutcome outcome = run(command, {kReds, {"--set", "Color 2=#00FF00"}});
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(
            outcome.notes,
            "kovalune: note: 'Color 2' (#00FF00) selects no pixel beyond those of the colours before it\n"
            "kovalune: note: '1 : Color' (#03B4F5, the default) selects no pixel: Process 1 does nothing\n");
    }
    EXPECT_EQ(run("render", {kNoProcess}).notes,
              "kovalune: note: 'Color 1' (#03B4F5, the default) selects no pixel\n");
    EXPECT_EQ(run("render", {{"--view", "Base"}}).notes,
              "kovalune: note: 'Color 1' (#03B4F5, the default) selects no pixel\n")
        << "Process 1 does not come in this view";
}

TEST_F(Selection, NamesSettingsThatAreSwitchedOffUnlessTheirSwitchWasNamed) {
    EXPECT_EQ(run("render", {{"--set", "Color 1=#C80000", "--set", "Color 2=#640000"}, kNoProcess}).notes,
              "kovalune: note: 'Color 2' is set but 'Enable 2' is off\n");
    EXPECT_EQ(run("render", {{"--set", "Color 1=#C80000", "--set", "2 : Boundary Blur=9"}, kNoProcess}).notes,
              "kovalune: note: '2 : Boundary Blur' is set but '2 : Enable Process' is off\n");
    EXPECT_EQ(
        run("render",
            {{"--set", "Color 1=#C80000", "--set", "Color 2=#640000", "--set", "Enable 2=off"}, kNoProcess})
            .notes,
        "");
    const std::string text = "Color 1=#C80000\nColor 3=#640000\n1 : Enable Process=off\n";
    writeBytes(folder_ / "a.txt", {text.begin(), text.end()});
    EXPECT_EQ(run("render", {{"--params", "a.txt"}}).notes,
              "kovalune: note: 'Color 3' is set but 'Enable 3' is off\n");
    const CommandOutcome printed = run("render", {{"--params", "a.txt", "--print-params"}});
    writeBytes(folder_ / "b.txt", {printed.out.begin(), printed.out.end()});
    EXPECT_EQ(run("render", {{"--params", "b.txt"}}).notes, "") << "it names every switch";
}

TEST_F(Selection, TellsWhichStageKeepProcessTiesAnotherTo) {
    const std::vector<std::string> far = {"--set", "Color 1=#640000",     "--set", "1 : Color=#C80000",
                                          "--set", "1 : Boundary Blur=3", "--set", "2 : Enable Process=on",
                                          "--set", "2 : Color=#0000C8",   "--set", "2 : Boundary Blur=3"};
    // Process 2 may grow over what lies beside blue, where Process 1 has nothing.
    const std::vector<std::string> grey = {"--set", "Enable 2=on", "--set", "Color 2=#5A5A5A"};
    EXPECT_EQ(
        run("render", {far, grey}).notes,
        "kovalune: note: '2 : Keep Process' ties Process 2 to Process 1, nothing left of its soft edge\n");
    EXPECT_EQ(run("render", {far, grey, {"--set", "2 : Keep Process=off"}}).notes, "");
}

TEST_F(Selection, NamesTheViewOfAStageThatIsOff) {
    const std::string note = "kovalune: note: View shows Process 3, but '3 : Enable Process' is off\n";
    const std::vector<std::string> view = {"--view", "Process 3"};
    EXPECT_EQ(run("render", {kReds, kNoProcess, view}).notes, note);
    EXPECT_EQ(run("render", {kReds, kNoProcess, {"--set", "View=Process 3"}}).notes, note);
    EXPECT_EQ(run("render", {kReds, kNoProcess, view, {"--set", "3 : Enable Process=off"}}).notes, note);
    EXPECT_EQ(run("render", {view, {"--plugin", KOVALUNE_PLUGIN, "--report"}}).notes, note);
    EXPECT_EQ(run("render", {kReds, kNoProcess, view, {"--strict"}}).exitCode, 4);
    EXPECT_EQ(run("render", {kReds, kNoProcess, {"--view", "Process 1"}}).notes,
              "kovalune: note: View shows Process 1, but '1 : Enable Process' is off\n");
    EXPECT_EQ(run("render", {kReds, kNoProcess, {"--view", "Base"}}).notes, "");
    EXPECT_EQ(run("render", {kReds, {"--set", "1 : Color=#640000", "--view", "Process 1"}}).notes, "");
    EXPECT_EQ(run("sheet", {kReds, kNoProcess}).notes, "") << "it labels its views";
}

TEST_F(Selection, IsAnErrorWhenItIsStrict) {
    for (const char* const command : {"render", "sheet"}) {
        const CommandOutcome lenient = run(command, {kReds, {"--report"}});
        std::filesystem::remove(folder_ / "out.png");
        const CommandOutcome outcome = run(command, {kReds, {"--strict", "--report"}});
        EXPECT_EQ(outcome.exitCode, 4);
        EXPECT_TRUE(lenient.out.starts_with("Stage  ")) << lenient.out;
        EXPECT_EQ(outcome.out, lenient.out) << "it shows what is wrong";
        EXPECT_NE(outcome.notes, "");
        EXPECT_EQ(outcome.err,
                  "kovalune: --strict: 'out.png' is not written, since a setting does nothing\n");
        EXPECT_FALSE(isWritten()) << command;
    }
    const CommandOutcome json = run("render", {kReds, {"--strict", "--report", "--json"}});
    EXPECT_EQ(json.exitCode, 4);
    EXPECT_EQ(Json::parse(json.out)["notes"].size(), 1U);
    EXPECT_EQ(run("render", {{"--strict"}}).out, "");
    EXPECT_EQ(run("render", {{"--strict"}}).err,
              "kovalune: --strict: 'out.png' is not written, since 2 settings do nothing\n");
}

TEST_F(Selection, IsReportedByStageAndColour) {
    const CommandOutcome outcome = run("render", {kReds, kNoProcess, {"--report"}});
    EXPECT_TRUE(outcome.ok()) << outcome.err;
    const std::string changed =
        std::to_string(report({kReds, kNoProcess})["stages"][0]["changed"].get<int>());
    EXPECT_EQ(outcome.out, "Stage        Colour     Selected    Changed\n"
                           "Base                         200        " +
                               changed +
                               "\n"
                               "  Color 1    #C80000         100\n"
                               "  Color 2    #640000         100\n"
                               "Process 1    off\nProcess 2    off\nProcess 3    off\nProcess 4    off\n");
    CommandSetting setting;
    setting.folder = folder_.path();
    EXPECT_NE(
        runCommand({"compare", "art.png", "out.png"}, setting).out.find("different: " + changed + " of 400"),
        std::string::npos);
}

TEST_F(Selection, IsReportedAsJson) {
    const Json json = report({kReds, {"--set", "1 : Color=#640000", "--view", "Process 1"}});
    EXPECT_EQ(json["pixels"], 400);
    EXPECT_EQ(json["stages"][0]["stage"], "Base");
    EXPECT_EQ(json["stages"][0]["selected"], 200);
    EXPECT_EQ(json["stages"][0]["colors"][1],
              Json({{"label", "Color 2"}, {"color", "#640000"}, {"selected", 100}}));
    const Json& process = json["stages"][1];
    EXPECT_EQ(process["state"], "run");
    EXPECT_EQ(process["selected"], 100);
    EXPECT_GT(process["softEdge"], 0);
    EXPECT_GT(process["changed"], 0);
    EXPECT_EQ(process["cutByKeepProcess"], 0);
    EXPECT_EQ(json["stages"][2]["state"], "off");
    EXPECT_EQ(json["notes"], Json::array());
    const Json base = report({kReds, {"--view", "Base"}});
    EXPECT_EQ(base["stages"][1], Json({{"stage", "Process 1"}, {"state", "not in this view"}}));
    EXPECT_EQ(report({kNoProcess})["notes"], Json({"'Color 1' (#03B4F5, the default) selects no pixel"}));
}

TEST_F(Selection, IsReportedOfTheViewThatRunsAllStagesOnASheet) {
    const CommandOutcome outcome =
        run("sheet", {kReds, {"--set", "1 : Color=#640000", "--report", "--json"}});
    EXPECT_TRUE(outcome.ok()) << outcome.err;
    EXPECT_EQ(Json::parse(outcome.out), report({kReds, {"--set", "1 : Color=#640000"}}));
}

TEST_F(Selection, IsNotKnownOfAnEffectFromAFile) {
    const std::vector<std::string> plugin = {"--plugin", KOVALUNE_PLUGIN};
    const std::string reason = "no counts: only the built-in effect tells what it selects and changes";
    for (const char* const command : {"render", "sheet"}) {
        const CommandOutcome outcome = run(command, {plugin, {"--report"}});
        EXPECT_TRUE(outcome.ok()) << outcome.err;
        EXPECT_EQ(outcome.out, reason + '\n') << command;
        EXPECT_EQ(outcome.notes, "");
        for (const std::vector<std::string>& more : {std::vector<std::string>{}, {"--quiet"}}) {
            const CommandOutcome plain = run(command, {plugin, more});
            EXPECT_TRUE(plain.ok()) << plain.err;
            EXPECT_EQ(plain.out, "");
            EXPECT_EQ(plain.notes, "kovalune: note: " + reason + '\n') << command;
        }
        const CommandOutcome strict = run(command, {plugin, {"--strict"}});
        EXPECT_EQ(strict.exitCode, 2);
        EXPECT_NE(strict.err.find("--strict"), std::string::npos) << strict.err;
    }
    const Json json = report({plugin});
    EXPECT_TRUE(json["stages"].is_null());
    EXPECT_EQ(json["reason"], reason);
}

TEST_F(Selection, IsNotReportedBesideOtherText) {
    EXPECT_EQ(run("render", {kReds, {"--json"}}).exitCode, 2);
    EXPECT_EQ(run("render", {kReds, {"--report", "--json", "--time"}}).exitCode, 2);
    EXPECT_EQ(run("render", {kReds, {"--report", "--json", "--print-params"}}).exitCode, 2);
    EXPECT_EQ(runCommand({"render", "--print-params", "--report"}).exitCode, 2);
    EXPECT_FALSE(isWritten());
    const CommandOutcome printed = run("render", {kReds, kNoProcess, {"--report", "--print-params"}});
    EXPECT_NE(printed.out.find("\n; Base    "), std::string::npos) << printed.out;
    writeBytes(folder_ / "a.txt", {printed.out.begin(), printed.out.end()});
    EXPECT_EQ(run("render", {{"--params", "a.txt"}}).exitCode, 0);
}

} // namespace
} // namespace kovalune::test
