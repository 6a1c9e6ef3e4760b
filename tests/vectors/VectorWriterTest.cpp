// The reference frame renders what the vectors of the other reading hold, and what it writes reads back, with its origin.

#include "tests/vectors/VectorWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <unistd.h>

namespace kovalune::test {
namespace {

const std::filesystem::path kVectors = KOVALUNE_VECTORS;

FrameVector someVector() {
    return readFrameVector(kVectors / vectorNames(kVectors).front());
}

/// A folder of a name of its own, removed at the end.
class OwnFolder {
public:
    OwnFolder()
        : path_(std::filesystem::temp_directory_path() / ("kovalune-vector-" + std::to_string(getpid()))) {
        std::filesystem::create_directory(path_);
    }
    ~OwnFolder() { std::filesystem::remove_all(path_); }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

class ReferenceFrame : public testing::TestWithParam<std::string> {};

TEST_P(ReferenceFrame, RendersWhatTheVectorHolds) {
    const FrameVector vector = readFrameVector(kVectors / GetParam());
    EXPECT_EQ(firstDifference(referenceFrame(vector), vector.expected), "");
}

INSTANTIATE_TEST_SUITE_P(All, ReferenceFrame, testing::ValuesIn(vectorNames(kVectors)),
                         [](const auto& tested) {
                             std::string name = tested.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(VectorWriter, WhatItWritesReadsBackAndSaysWhereItCameFrom) {
    const OwnFolder folder;
    const FrameVector vector = someVector();
    writeFrameVector(folder / "new", vector);
    const FrameVector again = readFrameVector(folder / "new");
    EXPECT_EQ(again.settings, vector.settings);
    EXPECT_EQ(firstDifference(again.input, vector.input), "");
    EXPECT_EQ(firstDifference(again.expected, vector.expected), "");
    std::ifstream settings(folder / "new/settings.txt");
    std::string line;
    std::getline(settings, line);
    EXPECT_EQ(line, kOriginLine);
}

TEST(VectorWriter, TheVectorsOfTheOtherReadingDoNotSayThatTheyAreItsOwn) {
    for (const std::string& name : vectorNames(kVectors)) {
        std::ifstream settings(kVectors / name / "settings.txt");
        std::string line;
        std::getline(settings, line);
        EXPECT_NE(line, kOriginLine) << name;
    }
}

TEST(VectorWriter, AFolderThatIsThereStaysAsItIs) {
    const OwnFolder folder;
    std::filesystem::create_directory(folder / "old");
    EXPECT_THROW(writeFrameVector(folder / "old", someVector()), std::runtime_error);
    EXPECT_TRUE(std::filesystem::is_empty(folder / "old"));
}

std::string failureOf(const std::string& label, const char* value) {
    FrameVector vector = someVector();
    if (value == nullptr) {
        vector.settings.erase(label);
    } else {
        vector.settings[label] = value;
    }
    try {
        referenceFrame(vector);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

TEST(VectorWriter, WrongSettingsAreNamed) {
    EXPECT_EQ(failureOf("Blur Amuont", "3"), "the effect has no setting 'Blur Amuont'");
    EXPECT_EQ(failureOf("Blur Amount", nullptr), "the setting 'Blur Amount' is missing");
    EXPECT_EQ(failureOf("Blur Amount", "3x"), "'Blur Amount' cannot be '3x'");
    EXPECT_EQ(failureOf("Blur Repeat Num", "2.5"), "'Blur Repeat Num' cannot be '2.5'");
    EXPECT_EQ(failureOf("Color 1", "1,2"), "'Color 1' cannot be ''");
    EXPECT_EQ(failureOf("Color 1", "1,2,3,4"), "'Color 1' cannot be '1,2,3,4'");
}

} // namespace
} // namespace kovalune::test
