// What INPUTs and outputs stand for. The pictures are empty files: none is opened.

#include "render/shots/SequencePlan.h"
#include "tests/support/TestFolder.h"
#include "text/Failure.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace kovalune::test {

using namespace shots;

namespace {

class Planned : public testing::Test {
protected:
    void add(const std::string& name) { writeBytes(folder_ / name, {}); }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    SequenceInput input(const std::vector<std::string>& names) const {
        std::vector<std::string> paths;
        for (const std::string& name : names) {
            paths.push_back(path(name));
        }
        return sequenceInput(paths);
    }

    /// "7:a.7.png>b.7.png" for each frame, without the folder.
    std::string plan(const std::vector<std::string>& names, const std::string& output,
                     const SequenceOptions& options = {}) {
        plan_ = planSequence(input(names), path(output), options);
        std::string text;
        for (const PlannedFrame& frame : plan_.frames) {
            text += (text.empty() ? "" : " ") + (frame.number ? std::to_string(*frame.number) + ':' : "") +
                    bare(frame.input) + '>' + bare(frame.output) + (frame.isMissing ? "!" : "");
        }
        return text;
    }

    std::string bare(const std::string& name) const {
        return name.substr(folder_.path().string().size() + 1);
    }

    std::string refusal(const std::vector<std::string>& names, const std::string& output,
                        const SequenceOptions& options = {}) {
        try {
            return "planned: " + plan(names, output, options);
        } catch (const text::Failure& failure) {
            return failure.what();
        }
    }

    static SequenceOptions frames(const std::vector<int64_t>& list) {
        SequenceOptions options;
        options.frames = list;
        return options;
    }

    TestFolder folder_;
    SequencePlan plan_;
};

class PlannedShot : public Planned {
protected:
    PlannedShot() {
        for (const char* name :
             {"a.008.png", "a.009.png", "a.010.png", "a.012.png", "a.0011.png", "b.001.png", "notes.txt"}) {
            add(name);
        }
    }
};

TEST_F(PlannedShot, HasTheFramesOnDiskByNumber) {
    EXPECT_EQ(plan({"a.###.png"}, "o.##.tif"),
              "8:a.008.png>o.08.tif 9:a.009.png>o.09.tif 10:a.010.png>o.10.tif 12:a.012.png>o.12.tif");
    EXPECT_EQ(plan_.gaps, std::vector<int64_t>({11}));
}

TEST_F(PlannedShot, HasTheListedFramesInTheirOrder) {
    EXPECT_EQ(plan({"a.###.png"}, "o.#####.tif", frames({10, 8})),
              "10:a.010.png>o.00010.tif 8:a.008.png>o.00008.tif");
}

TEST_F(PlannedShot, OfOneFrameMayGoToOneFile) {
    EXPECT_EQ(plan({"a.###.png"}, "o.tif", frames({10})), "10:a.010.png>o.tif");
    EXPECT_NE(refusal({"a.###.png"}, "o.tif", frames({10, 9})).find("is one picture"), std::string::npos);
}

TEST_F(PlannedShot, IsRenumberedAsAWhole) {
    SequenceOptions options = frames({9, 8, 12});
    options.renumber = -1;
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options),
              "9:a.009.png>o.-1.png 8:a.008.png>o.-2.png 12:a.012.png>o.02.png");
}

/// Whatever their number, parts have every frame of the list once, in its order, and as many as each other but for one.
TEST_F(PlannedShot, IsSharedOutInParts) {
    for (const bool isNumbered : {true, false}) {
        const std::vector<std::string> inputs =
            isNumbered ? std::vector<std::string>{"a.###.png"}
                       : std::vector<std::string>{"a.008.png", "b.001.png", "a.009.png", "a.010.png"};
        std::filesystem::create_directory(folder_ / "parts");
        const std::string whole = plan(inputs, "parts");
        for (std::size_t count = 1; count <= 9; ++count) {
            std::string joined;
            std::size_t most = 0;
            std::size_t least = 100;
            for (std::size_t number = 1; number <= count; ++number) {
                SequenceOptions options;
                options.part = FramePart{number, count};
                const std::string part = plan(inputs, "parts", options);
                joined += (joined.empty() || part.empty() ? "" : " ") + part;
                most = std::max(most, plan_.frames.size());
                least = std::min(least, plan_.frames.size());
            }
            EXPECT_EQ(joined, whole) << count;
            EXPECT_LE(most - least, 1U) << count;
        }
        std::filesystem::remove(folder_ / "parts");
    }
}

/// Places count in the whole list, so that a machine's share does not move with the files of others.
TEST_F(PlannedShot, IsSharedOutBeforeAnythingIsLeftOut) {
    SequenceOptions options = frames({7, 8, 9, 10});
    options.missing = MissingFrames::kSkip;
    options.part = FramePart{1, 2};
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options), "8:a.008.png>o.08.png");
    EXPECT_EQ(plan_.skipped, std::vector<int64_t>({7}));
    options.part = FramePart{2, 2};
    options.renumber = 1;
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options), "9:a.009.png>o.03.png 10:a.010.png>o.04.png");
    EXPECT_TRUE(plan_.skipped.empty());
    options.part = FramePart{1, 8};
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options), "");
}

TEST(FramePart, IsANumberOfANumber) {
    EXPECT_EQ(parsePart("3/12").number, 3U);
    EXPECT_EQ(parsePart("1000000/1000000").count, kMostParts);
    for (const char* const text :
         {"", "/", "0/1", "2/1", "1", "1/", "/2", "1/2/3", "a/b", "1/1000001", "-1/2", " 1/2"}) {
        EXPECT_THROW(parsePart(text), text::Failure) << text;
    }
    EXPECT_EQ(nameForPart("logs/shot.log", {3, 4}), "logs/shot.3.log");
    EXPECT_EQ(nameForPart("shot", {3, 4}), "shot.3");
}

TEST_F(PlannedShot, HasNoMissingFramesUnlessToldSo) {
    SequenceOptions options = frames({7, 8, 11});
    EXPECT_NE(refusal({"a.###.png"}, "o.##.png", options).find("frames 007,011 of"), std::string::npos);
    options.keepGoing = true;
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options),
              "7:a.007.png>o.07.png! 8:a.008.png>o.08.png 11:a.011.png>o.11.png!");
    options.missing = MissingFrames::kSkip;
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options), "8:a.008.png>o.08.png");
    EXPECT_EQ(plan_.skipped, std::vector<int64_t>({7, 11}));
    options.frames = {7, 11};
    EXPECT_NE(refusal({"a.###.png"}, "o.##.png", options).find("nothing to do"), std::string::npos);
    options.frames = {7, 8, 11};
    options.missing = MissingFrames::kHold;
    EXPECT_NE(refusal({"a.###.png"}, "o.##.png", options).find("no earlier one"), std::string::npos);
    options.frames = {8, 11, 20};
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options),
              "8:a.008.png>o.08.png 11:a.010.png>o.11.png 20:a.012.png>o.20.png");
    options.frames.reset();
    EXPECT_EQ(plan({"a.###.png"}, "o.##.png", options),
              "8:a.008.png>o.08.png 9:a.009.png>o.09.png 10:a.010.png>o.10.png 11:a.010.png>o.11.png "
              "12:a.012.png>o.12.png");
}

TEST_F(PlannedShot, GoesIntoAFolderUnderItsNames) {
    std::filesystem::create_directory(folder_ / "out");
    EXPECT_EQ(plan({"a.###.png"}, "out", frames({8})), "8:a.008.png>out/a.008.png");
    SequenceOptions options = frames({8});
    options.renumber = 100;
    EXPECT_EQ(plan({"a.###.png"}, "out", options), "8:a.008.png>out/a.100.png");
    EXPECT_EQ(plan({"a.###.png"}, "new/", frames({8})), "8:a.008.png>new/a.008.png");
}

TEST_F(PlannedShot, MayBeReplacedButNotByAnotherFrame) {
    EXPECT_EQ(plan({"a.###.png"}, "a.%03d.png", frames({8, 9})),
              "8:a.008.png>a.008.png 9:a.009.png>a.009.png");
    SequenceOptions options = frames({8, 9});
    options.renumber = 9;
    EXPECT_NE(refusal({"a.###.png"}, "a.%03d.png", options).find("is the input of frame 009"),
              std::string::npos);
    options = frames({10, 11});
    options.missing = MissingFrames::kHold;
    EXPECT_NE(refusal({"a.###.png"}, "a.%03d.png", options).find("is the input of frame 011"),
              std::string::npos);
    std::filesystem::create_hard_link(folder_ / "a.009.png", folder_ / "o.08.png");
    EXPECT_NE(refusal({"a.###.png"}, "o.##.png", frames({8, 9})).find("is the input of frame 009"),
              std::string::npos);
}

TEST_F(PlannedShot, MayBeWrittenAsItsPictures) {
    EXPECT_EQ(plan({"a.010.png", "a.008.png"}, "o.##.png"), "8:a.008.png>o.08.png 10:a.010.png>o.10.png");
    add("8.png");
    add("10.png");
    EXPECT_EQ(plan({"8.png", "10.png"}, "o.##.png"), "8:8.png>o.08.png 10:10.png>o.10.png");
}

TEST_F(PlannedShot, IsNotMadeOfPatternsAndPictures) {
    EXPECT_NE(refusal({"a.###.png", "b.001.png"}, "o.##.png").find("stands for an INPUT alone"),
              std::string::npos);
    std::filesystem::create_directory(folder_ / "empty");
    EXPECT_NE(refusal({"empty"}, "o.##.png").find("holds no picture"), std::string::npos);
    EXPECT_NE(refusal({"c.###.png"}, "o.##.png").find("no file has such a name"), std::string::npos);
    EXPECT_NE(refusal({"no/c.###.png"}, "o.##.png").find("there is no folder"), std::string::npos);
}

TEST_F(Planned, AFolderIsASequenceOrRefused) {
    std::filesystem::create_directory(folder_ / "in");
    for (const char* name : {"in/v2.1.png", "in/v2.2.png", "in/.hidden.png", "in/readme.txt"}) {
        add(name);
    }
    EXPECT_EQ(plan({"in"}, "o.##.png"), "1:in/v2.1.png>o.01.png 2:in/v2.2.png>o.02.png");
    add("in/w.1.png");
    const std::string text = refusal({"in"}, "o.##.png");
    EXPECT_NE(text.find("v2.%d.png"), std::string::npos) << text;
    EXPECT_NE(text.find("w.1.png"), std::string::npos) << text;
}

TEST_F(Planned, OtherPicturesHaveNoNumbers) {
    for (const char* name : {"x.png", "y.png", "a1b1.png", "a2b2.png", "01.png", "1.png"}) {
        add(name);
    }
    std::filesystem::create_directory(folder_ / "out");
    EXPECT_EQ(plan({"x.png", "y.png"}, "out"), "x.png>out/x.png y.png>out/y.png");
    EXPECT_EQ(plan({"a1b1.png", "a2b2.png"}, "out"), "a1b1.png>out/a1b1.png a2b2.png>out/a2b2.png");
    EXPECT_EQ(plan({"01.png", "1.png"}, "out"), "01.png>out/01.png 1.png>out/1.png");
    EXPECT_NE(refusal({"x.png", "y.png"}, "out", frames({1})).find("--frames"), std::string::npos);
    SequenceOptions options;
    options.renumber = 1;
    EXPECT_NE(refusal({"x.png", "y.png"}, "out", options).find("--renumber"), std::string::npos);
    EXPECT_NE(refusal({"x.png", "y.png"}, "o.##.png").find("write a folder"), std::string::npos);
    EXPECT_NE(refusal({"x.png"}, "o.##.png").find("--frames 7"), std::string::npos);
    EXPECT_NE(refusal({"x.png", "x.png"}, "out").find("one file"), std::string::npos);
}

TEST_F(Planned, APictureOfAPatternsNameIsThatPicture) {
    add("a.##.png");
    add("a.01.png");
    EXPECT_EQ(plan({"a.##.png"}, "o.png"), "a.##.png>o.png");
    EXPECT_TRUE(plan_.isOnePicture);
}

TEST_F(Planned, OutputsAreLookedAtBeforeTheFirst) {
    add("a.1.png");
    add("o.1.png");
    SequenceOptions options;
    plan({"a.%d.png"}, "o.%d.png");
    EXPECT_NO_THROW(checkOutputs(plan_, options));
    options.existing = ExistingOutputs::kRefuse;
    EXPECT_THROW(checkOutputs(plan_, options), text::Failure);
    options = {};
    plan({"a.%d.png"}, "no/o.%d.png");
    EXPECT_THROW(checkOutputs(plan_, options), text::Failure);
    options.makeFolders = true;
    EXPECT_NO_THROW(checkOutputs(plan_, options));
    EXPECT_FALSE(std::filesystem::exists(folder_ / "no")) << "something may yet stop the run";
    makeFolders(plan_);
    EXPECT_TRUE(std::filesystem::exists(folder_ / "no"));
    EXPECT_NO_THROW(makeFolders(plan_));
    plan({"a.%d.png"}, "o.%d.bmp");
    EXPECT_THROW(checkOutputs(plan_, options), text::Failure);
}

} // namespace
} // namespace kovalune::test
