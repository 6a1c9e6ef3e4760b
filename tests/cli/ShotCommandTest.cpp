// Shots as a compositor renders them: whole command lines, files in, files out, and what goes wrong on the way.

#include "tests/cli/CommandProcess.h"
#include "tests/pictures/PngMaker.h"
#include "tests/support/TestFolder.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

namespace kovalune::test {

namespace {

using Words = std::vector<std::string>;

class ShotCommand : public testing::Test {
protected:
    ShotCommand() {
        for (int frame = 1; frame <= 6; ++frame) {
            writePng(folder_ / name("cel", frame),
                     randomPng(PngColor::kRgb, 8, 23, 17, static_cast<uint32_t>(frame)));
        }
    }

    static std::string name(const std::string& stem, int frame) {
        return stem + ".000" + std::to_string(frame) + ".png";
    }

    CommandOutcome run(Words words, CommandSetting setting = {}) {
        words.insert(words.begin(), "render");
        setting.folder = folder_.path();
        return runCommand(words, setting);
    }

    static Words with(Words words, const Words& more) {
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }

    /// Nothing appears, and one line of error says why.
    void expectRefused(const Words& words, int exitCode, const std::string& part) {
        const std::vector<std::string> before = folder_.names();
        const CommandOutcome outcome = run(words);
        EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
        EXPECT_TRUE(outcome.hasOneErrorLine()) << outcome.err;
        EXPECT_NE(outcome.err.find(part), std::string::npos) << outcome.err;
        EXPECT_EQ(folder_.names(), before);
    }

    std::vector<uint8_t> bytes(const std::string& file) const { return bytesOf(folder_ / file); }
    bool exists(const std::string& file) const { return std::filesystem::exists(folder_ / file); }
    void cutShort(int frame) const { std::filesystem::resize_file(folder_ / name("cel", frame), 60); }

    std::size_t leftovers() const {
        const std::vector<std::string> names = folder_.names();
        return static_cast<std::size_t>(
            std::count_if(names.begin(), names.end(), [](const std::string& each) {
                return each.find(".kovalune-") != std::string::npos;
            }));
    }

    const Words shot_ = {"cel.####.png",    "-o",    "soft.####.png",  "--set",
                         "Blur Amount@1=1", "--set", "Blur Amount@6=9"};
    TestFolder folder_;
};

TEST_F(ShotCommand, RendersEveryFrameAsItIsRenderedAlone) {
    const CommandOutcome outcome = run(shot_);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.err.find("6 frames: 6 written"), std::string::npos) << outcome.err;
    for (const int frame : {1, 3, 6}) {
        EXPECT_EQ(run({name("cel", frame), "-o", "alone.png", "--frame", std::to_string(frame), "--set",
                       "Blur Amount@1=1", "--set", "Blur Amount@6=9"})
                      .exitCode,
                  0);
        EXPECT_EQ(bytes("alone.png"), bytes(name("soft", frame))) << frame;
    }
}

TEST_F(ShotCommand, GivesTheSamePixelsForEveryDivision) {
    ASSERT_EQ(run(shot_).exitCode, 0);
    std::vector<std::vector<uint8_t>> first;
    for (int frame = 1; frame <= 6; ++frame) {
        first.push_back(bytes(name("soft", frame)));
    }
    for (const Words& division : {Words{"--jobs", "1", "--threads", "1"}, Words{"--jobs", "4"},
                                  Words{"--jobs", "3", "--threads", "5"}}) {
        ASSERT_EQ(run(with(shot_, division)).exitCode, 0);
        for (int frame = 1; frame <= 6; ++frame) {
            EXPECT_EQ(bytes(name("soft", frame)), first[static_cast<std::size_t>(frame - 1)]) << frame;
        }
    }
}

TEST_F(ShotCommand, StopsAtAFrameThatCannotBeReadOrGoesOn) {
    cutShort(5);
    CommandOutcome outcome = run(with(shot_, {"--jobs", "1"}));
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.err.find("1 failed (0005: "), std::string::npos) << outcome.err;
    EXPECT_TRUE(exists(name("soft", 4)));
    EXPECT_FALSE(exists(name("soft", 5)));
    outcome = run(with(shot_, {"--keep-going"}));
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.err.find("6 frames: 5 written, 1 failed (0005: "), std::string::npos) << outcome.err;
    EXPECT_TRUE(exists(name("soft", 6)));
    EXPECT_EQ(leftovers(), 0U);
}

TEST_F(ShotCommand, PassesOverWhatIsThere) {
    ASSERT_EQ(run(shot_).exitCode, 0);
    std::filesystem::remove(folder_ / name("soft", 2));
    std::filesystem::resize_file(folder_ / name("soft", 3), 50);
    CommandOutcome outcome = run(with(shot_, {"--skip-existing"}));
    EXPECT_NE(outcome.err.find("6 frames: 2 written, 4 passed over"), std::string::npos) << outcome.err;
    using namespace std::chrono_literals;
    const auto later = std::filesystem::last_write_time(folder_ / name("soft", 1)) + 10s;
    std::filesystem::last_write_time(folder_ / name("cel", 4), later);
    outcome = run(with(shot_, {"--newer"}));
    EXPECT_NE(outcome.err.find("6 frames: 1 written, 5 passed over"), std::string::npos) << outcome.err;
    std::ofstream(folder_ / "x.params") << "Blur Amount=2\n";
    std::filesystem::last_write_time(folder_ / "x.params", later);
    outcome = run({"cel.####.png", "-o", "soft.####.png", "--params", "x.params", "--newer"});
    EXPECT_NE(outcome.err.find("6 frames: 6 written"), std::string::npos) << outcome.err;
    expectRefused(with(shot_, {"--no-clobber"}), 3, "--no-clobber keeps it");
}

/// A value of --set has no time, but its pictures say what they were made with.
TEST_F(ShotCommand, MakesPicturesOfOtherSettingsAgain) {
    const Words words = with(shot_, {"--embed", "--newer"});
    ASSERT_EQ(run(words).exitCode, 0);
    CommandOutcome outcome = run(words);
    EXPECT_NE(outcome.err.find("0 written, 6 passed over"), std::string::npos) << outcome.err;
    // The first key and the last stay what they were.
    outcome = run(with(words, {"--set", "Blur Amount@5=8"}));
    EXPECT_NE(outcome.err.find("6 frames: 4 written, 2 passed over"), std::string::npos) << outcome.err;
    outcome = run(with(words, {"--set", "Color 1=#102030"}));
    EXPECT_NE(outcome.err.find("6 frames: 6 written"), std::string::npos) << outcome.err;
    outcome = run(with(shot_, {"--newer", "--set", "Color 1=#405060"}));
    EXPECT_NE(outcome.err.find("0 written, 6 passed over"), std::string::npos) << outcome.err;
}

TEST_F(ShotCommand, IsStartedAgainAfterItWasKilled) {
    RunningCommand command(with(with({"render"}, shot_), {"--jobs", "1", "--threads", "1"}),
                           {.environment = {},
                            .folder = folder_.path(),
                            .mostFileBytes = 0,
                            .mostMemoryBytes = 0,
                            .standardOutput = {},
                            .program = {},
                            .ownGroup = false,
                            .errorColumns = 0});
    while (!exists(name("soft", 1)) && !command.hasEnded()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (!command.hasEnded()) {
        command.send(SIGKILL);
    }
    command.wait();
    const CommandOutcome outcome = run(with(shot_, {"--skip-existing"}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    for (int frame = 1; frame <= 6; ++frame) {
        EXPECT_TRUE(exists(name("soft", frame))) << frame;
    }
}

/// By an effect that waits in every frame until it is given up.
TEST_F(ShotCommand, EndsByTheSignalThatInterruptedIt) {
    const TestFolder marks;
    CommandSetting setting;
    setting.folder = folder_.path();
    setting.environment = {{"TEST_EFFECT", "cancel"}, {"TEST_EFFECT_FRAME", (marks / "frame").string()}};
    RunningCommand command(
        {"render", "cel.####.png", "-o", "soft.####.png", "--plugin", KOVALUNE_TEST_EFFECT, "--jobs", "2"},
        setting);
    while (!std::filesystem::exists(marks / "frame") && !command.hasEnded()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    command.send(SIGINT);
    const CommandOutcome outcome = command.wait();
    EXPECT_EQ(outcome.exitCode, -SIGINT);
    EXPECT_NE(outcome.err.find("kovalune: interrupted: 0 of 6 written\n"), std::string::npos) << outcome.err;
    EXPECT_FALSE(exists(name("soft", 1)));
    EXPECT_EQ(leftovers(), 0U);
}

TEST_F(ShotCommand, BearsTwoRunsAtOnce) {
    const CommandSetting setting = {.environment = {},
                                    .folder = folder_.path(),
                                    .mostFileBytes = 0,
                                    .mostMemoryBytes = 0,
                                    .standardOutput = {},
                                    .program = {},
                                    .ownGroup = false,
                                    .errorColumns = 0};
    RunningCommand one(with({"render"}, shot_), setting);
    RunningCommand other(with({"render"}, shot_), setting);
    EXPECT_EQ(one.wait().exitCode, 0);
    EXPECT_EQ(other.wait().exitCode, 0);
    const std::vector<uint8_t> sixth = bytes(name("soft", 6));
    ASSERT_EQ(run(shot_).exitCode, 0);
    EXPECT_EQ(bytes(name("soft", 6)), sixth);
    EXPECT_EQ(leftovers(), 0U);
}

TEST_F(ShotCommand, LeavesNothingHalfWrittenOnAFullDisk) {
    CommandSetting setting;
    setting.mostFileBytes = 300;
    const CommandOutcome outcome = run(with(shot_, {"--keep-going"}), setting);
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.err.find("6 frames: 0 written, 6 failed (0001: cannot write "), std::string::npos)
        << outcome.err;
    EXPECT_FALSE(exists(name("soft", 1)));
    EXPECT_EQ(leftovers(), 0U);
}

TEST_F(ShotCommand, WritesALineOfJsonAFrame) {
    cutShort(2);
    EXPECT_EQ(run(with(shot_, {"--keep-going", "--log", "log.json", "--jobs", "2"})).exitCode, 3);
    std::ifstream file(folder_ / "log.json");
    std::string line;
    std::vector<int> frames;
    while (std::getline(file, line)) {
        const nlohmann::json json = nlohmann::json::parse(line);
        frames.push_back(json["frame"]);
        EXPECT_EQ(json["code"], json["frame"] == 2 ? 3 : 0);
        EXPECT_EQ(json["state"], json["frame"] == 2 ? "failed" : "written");
        EXPECT_EQ(json["output"], name("soft", json["frame"]));
        EXPECT_EQ(json["passes"].size(), json["frame"] == 2 ? 0U : 1U);
    }
    std::sort(frames.begin(), frames.end());
    EXPECT_EQ(frames, std::vector<int>({1, 2, 3, 4, 5, 6}));
}

TEST_F(ShotCommand, PrintsWhatItWouldDo) {
    const CommandOutcome outcome = run(with(shot_, {"--frames", "2,1", "--dry-run"}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "cel.0002.png -> soft.0002.png\ncel.0001.png -> soft.0001.png\n");
    EXPECT_FALSE(exists(name("soft", 1)));
    writeBytes(folder_ / name("soft", 2), {});
    const CommandOutcome stopped = run(with(shot_, {"--frames", "2,1", "--dry-run", "--no-clobber"}));
    EXPECT_EQ(stopped.exitCode, 3);
    EXPECT_NE(stopped.out.find("cel.0001.png -> "), std::string::npos);
}

TEST_F(ShotCommand, JudgesStrictlyAtTheEnd) {
    const CommandOutcome outcome =
        run(with(shot_, {"--strict", "--set", "Color 1=#010203", "--set", "Enable 1=on"}));
    EXPECT_EQ(outcome.exitCode, 4) << outcome.err;
    EXPECT_NE(outcome.notes.find("in 6 of 6 frames (0001-0006)"), std::string::npos) << outcome.notes;
    EXPECT_TRUE(exists(name("soft", 6)));
}

TEST_F(ShotCommand, GoesThroughItsPasses) {
    std::ofstream(folder_ / "a.params") << "Blur Amount=3\n";
    std::ofstream(folder_ / "b.params") << "Blur Amount=5\n";
    ASSERT_EQ(run({name("cel", 1), "-o", "one.tif", "--params", "a.params"}).exitCode, 0);
    ASSERT_EQ(run({"one.tif", "-o", "two.tif", "--params", "b.params"}).exitCode, 0);
    ASSERT_EQ(run({name("cel", 1), "-o", "both.tif", "--pass", "a.params", "--pass", "b.params"}).exitCode,
              0);
    EXPECT_EQ(bytes("both.tif"), bytes("two.tif"));
    ASSERT_EQ(
        run({name("cel", 1), "-o", "until.tif", "--pass", "a.params", "--pass", "b.params", "--until", "a"})
            .exitCode,
        0);
    EXPECT_EQ(bytes("until.tif"), bytes("one.tif"));
    const CommandOutcome outcome =
        run({name("cel", 1), "-o", "both.tif", "--pass", "a.params", "--pass", "b.params", "--report"});
    EXPECT_NE(outcome.out.find("Pass a\nStage"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("Pass b\nStage"), std::string::npos) << outcome.out;
}

TEST_F(ShotCommand, SavesItsSettingsWhereTheyChange) {
    const Words words = with(shot_, {"--save-params", "used.params"});
    ASSERT_EQ(run(words).exitCode, 0);
    const std::vector<uint8_t> text = bytes("used.params");
    EXPECT_EQ(std::string(text.begin(), text.begin() + 14), "[Version=2.0]\n");
    const auto time = std::filesystem::last_write_time(folder_ / "used.params");
    CommandOutcome outcome = run(with(words, {"--newer"}));
    EXPECT_NE(outcome.err.find("6 passed over"), std::string::npos) << outcome.err;
    EXPECT_EQ(std::filesystem::last_write_time(folder_ / "used.params"), time);
    ASSERT_EQ(run({"cel.####.png", "-o", "again.####.png", "--params", "used.params"}).exitCode, 0);
    EXPECT_EQ(bytes(name("again", 4)), bytes(name("soft", 4)));
}

/// What `params --at` prints is what the effect reads: rendered from that text, the frame is the same.
TEST_F(ShotCommand, HasTheValuesThatParamsPrintsAtAFrame) {
    ASSERT_EQ(run(shot_).exitCode, 0);
    CommandSetting setting;
    setting.folder = folder_.path();
    for (const int frame : {2, 5}) {
        const CommandOutcome outcome = runCommand({"params", "--at", std::to_string(frame), "--factory",
                                                   "--set", "Blur Amount@1=1", "--set", "Blur Amount@6=9"},
                                                  setting);
        ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
        std::ofstream(folder_ / "at.params") << outcome.out;
        ASSERT_EQ(run({name("cel", frame), "-o", "at.png", "--params", "at.params"}).exitCode, 0);
        EXPECT_EQ(bytes("at.png"), bytes(name("soft", frame))) << outcome.out;
    }
    EXPECT_EQ(runCommand({"params", "--set", "Blur Amount=1"}, setting).exitCode, 2);
    EXPECT_EQ(runCommand({"params", "--at", "x"}, setting).exitCode, 2);
}

TEST_F(ShotCommand, ListsTheFramesThatAreNotFinished) {
    const Words embedding = with(shot_, {"--embed"});
    CommandOutcome outcome = run(with(embedding, {"--list-missing"}));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "0001-0006\n");
    EXPECT_FALSE(exists(name("soft", 1)));
    ASSERT_EQ(run(embedding).exitCode, 0);
    outcome = run(with(embedding, {"--list-missing"}));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "");
    std::filesystem::remove(folder_ / name("soft", 2));
    std::filesystem::resize_file(folder_ / name("soft", 3), 50);
    using namespace std::chrono_literals;
    const auto later = std::filesystem::last_write_time(folder_ / name("soft", 5)) + 10s;
    std::filesystem::last_write_time(folder_ / name("cel", 5), later);
    outcome = run(with(embedding, {"--list-missing"}));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "0002,0003,0005\n");
    // What it prints is what is to be rendered.
    std::string frames = outcome.out;
    frames.pop_back();
    std::filesystem::last_write_time(folder_ / name("cel", 5), later - 20s);
    EXPECT_EQ(run(with(embedding, {"--frames", frames})).exitCode, 0);
    EXPECT_EQ(run(with(embedding, {"--list-missing"})).exitCode, 0);
    // Other settings at frames 2 to 5.
    outcome = run(with(embedding, {"--list-missing", "--set", "Blur Amount@5=8"}));
    EXPECT_EQ(outcome.out, "0002-0005\n");
    expectRefused(with(shot_, {"--list-missing", "--dry-run"}), 2,
                  "--list-missing: renders and writes nothing");
}

/// The same arguments with one more.
TEST_F(ShotCommand, ListsWhatIsNotFinishedWhateverElseItWouldTell) {
    const Words telling = with(shot_, {"--mkdir", "--log", "shot.log", "--report", "--strict", "--time",
                                       "--save-params", "all.params", "--list-missing"});
    std::filesystem::remove(folder_ / name("cel", 3));
    CommandOutcome outcome = run(with(telling, {"--frames", "1-6"}));
    EXPECT_EQ(outcome.exitCode, 1) << outcome.err;
    EXPECT_EQ(outcome.out, "0001-0006\n");
    EXPECT_FALSE(exists("shot.log"));
    EXPECT_FALSE(exists("all.params"));
    outcome = run(with(shot_, {"--frames", "1-6", "--keep-going"}));
    EXPECT_EQ(outcome.exitCode, 3);
    outcome = run(with(shot_, {"--frames", "1-6", "--list-missing"}));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "0003\n");
    expectRefused({"cel.####.png", "-o", "soft.####.jpg", "--list-missing"}, 3, "must be .png");
    expectRefused({name("cel", 1), "-o", "-", "--format", "png", "--list-missing"}, 2, "-: is one picture");
}

TEST_F(ShotCommand, TellsAFarmOfItsFrames) {
    std::filesystem::remove(folder_ / name("cel", 3));
    CommandOutcome outcome = run(with(shot_, {"--list-frames"}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "frames 0001,0002,0004-0006\ncount 5\nmebibytes 17\ngiven\nfolder .\n");
    outcome = run({"cel.####.png", "-o", "soft", "--mkdir", "--frames", "6-1:2", "--newer", "--list-frames",
                   "--jobs", "64"});
    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "frames 0006,0004,0002\ncount 3\nmebibytes 20\ngiven frames existing\nfolder soft\n");
    EXPECT_FALSE(exists("soft"));
    outcome = run(with(shot_, {"--frames", "1-4", "--list-frames"}));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err + outcome.notes, "kovalune: note: no file for 0003, which will fail alone\n");
    for (const char* const other : {"--dry-run", "--strict", "--sweep", "--print-params"}) {
        expectRefused(with(shot_, {"--list-frames", other}), 2, "--list-frames: is of all frames together");
    }
    expectRefused(with(shot_, {"--list-frames", "--part", "1/2"}), 2, "--list-frames");
    expectRefused({"cel.####.png", "-o", "nowhere/soft.####.png", "--list-frames"}, 3, "there is no folder");
}

TEST_F(ShotCommand, SweepsWhatKilledRunsHaveLeft) {
    using namespace std::chrono_literals;
    const auto make = [this](const char* file, std::chrono::seconds age) {
        std::ofstream(folder_ / file) << "x";
        std::filesystem::last_write_time(folder_ / file, std::filesystem::file_time_type::clock::now() - age);
    };
    make(".kovalune-1.tmp", 60s);
    make(".kovalune-2.tmp", 0s);
    CommandOutcome outcome = run(with(shot_, {"--sweep"}));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(
        outcome.err.find("kovalune: removed './.kovalune-1.tmp', which a run that was killed has left\n"),
        std::string::npos)
        << outcome.err;
    EXPECT_FALSE(exists(".kovalune-1.tmp"));
    EXPECT_TRUE(exists(".kovalune-2.tmp"));
    EXPECT_TRUE(exists(name("soft", 1)));
    make(".kovalune-1.tmp", 60s);
    outcome = run(with(shot_, {"--sweep", "--list-missing"}));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
    EXPECT_FALSE(exists(".kovalune-1.tmp"));
    expectRefused(with(shot_, {"--sweep", "--dry-run"}), 2, "--sweep: removes files");
}

TEST_F(ShotCommand, RendersOneOfItsParts) {
    ASSERT_EQ(run(shot_).exitCode, 0);
    std::vector<std::vector<uint8_t>> whole;
    for (int frame = 1; frame <= 6; ++frame) {
        whole.push_back(bytes(name("soft", frame)));
        std::filesystem::remove(folder_ / name("soft", frame));
    }
    std::filesystem::remove(folder_ / name("cel", 3));
    for (int part = 1; part <= 4; ++part) {
        // Frame 3, which is not there any more, fails alone.
        const CommandOutcome outcome =
            run(with(shot_, {"--frames", "1-6", "--part", std::to_string(part) + "/4", "--log", "shot.log"}));
        EXPECT_EQ(outcome.exitCode, part == 2 ? 3 : 0) << outcome.err;
        EXPECT_TRUE(exists("shot." + std::to_string(part) + ".log"));
    }
    for (const int frame : {1, 2, 4, 5, 6}) {
        EXPECT_EQ(bytes(name("soft", frame)), whole[static_cast<std::size_t>(frame - 1)]) << frame;
    }
    const CommandOutcome empty = run(with(shot_, {"--frames", "1,2", "--part", "1/3"}));
    EXPECT_EQ(empty.exitCode, 0);
    EXPECT_NE(empty.err.find("part 1 of 3 has no frame to make"), std::string::npos) << empty.err;
    EXPECT_EQ(run(with(shot_, {"--frames", "1-6:2", "--missing", "skip", "--dry-run"})).out,
              "cel.0001.png -> soft.0001.png\ncel.0005.png -> soft.0005.png\n");
}

TEST_F(ShotCommand, RefusesWhatCannotBe) {
    const Words plain = {"cel.####.png", "-o", "soft.####.png"};
    expectRefused(with(plain, {"--part", "5/4"}), 2, "--part takes K/N");
    expectRefused(with(plain, {"--part", "1/4", "--strict"}), 2, "leave it out with --part");
    expectRefused({"hat.####.png", "-o", "soft.####.png"}, 3, "no file has such a name");
    expectRefused(with(plain, {"--frames", "1-"}), 2, "--frames takes");
    expectRefused(with(plain, {"--frames", "7-9"}), 3, "frames 0007-0009");
    expectRefused(with(plain, {"--jobs", "0"}), 2, "--jobs takes a whole number, 1 to 64");
    expectRefused(with(plain, {"--jobs", "65"}), 2, "--jobs takes a whole number, 1 to 64");
    expectRefused(with(plain, {"--renumber", "1.5"}), 2, "--renumber takes");
    expectRefused(with(plain, {"--missing", "no"}), 2, "--missing takes");
    expectRefused(with(plain, {"--skip-existing", "--newer"}), 2, "can hold");
    expectRefused(with(plain, {"--frame", "3"}), 2, "--frame");
    expectRefused(with(plain, {"--set", "Blur Amount@1=1", "--set", "Blur Amount@1=2"}), 2, "already");
    expectRefused(with(plain, {"--until", "hair"}), 2, "there is no pass 'hair'");
    expectRefused(with(plain, {"--log", name("cel", 2)}), 2, "it is the picture");
    expectRefused(with(plain, {"--save-params", name("soft", 2)}), 2, "it is the picture");
    expectRefused(with(plain, {"--save-params", "x", "--log", "./x"}), 2, "it is the settings file");
    expectRefused({"cel.####.png", "-o", "new/", "--mkdir", "--set", "Blur Amount=-1"}, 2, "Blur Amount");
    expectRefused(with(plain, {"--frames", "8,9", "--missing", "skip"}), 3, "nothing to do");
    expectRefused({"cel.####.png", "-o", "soft.##.##.png"}, 2, "2 places for a number");
    expectRefused({"cel.####.png", "-o", "soft.png"}, 2, "is one picture");
    expectRefused({"cel.####.png", "-o", "no/soft.####.png"}, 3, "there is no folder");
    expectRefused({"cel.####.png", "-o", "cel.####.png", "--renumber", "2"}, 2, "is the input of frame 0002");
    expectRefused({name("cel", 1), "-o", "soft.####.png"}, 2, "--frames 7");
    expectRefused({name("cel", 1), "-o", "soft.png", "--set", "Blur Amount@1=1"}, 2, "--frame N");
    expectRefused({name("cel", 1), "-o", "soft.png", "--frames", "1"}, 2, "--frames");
}

} // namespace
} // namespace kovalune::test
