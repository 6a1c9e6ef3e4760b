#include "tests/cli/FaultCase.h"

#include "tests/pictures/PngMaker.h"

#include <algorithm>
#include <filesystem>

namespace kovalune::test {

namespace {

namespace fs = std::filesystem;

const std::vector<uint8_t> kOld = {'o', 'l', 'd'};

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

std::vector<OutputCommand> outputCommands() {
    return {{{"render", "in.png", "-o", "old.png"}, {"old.png"}},
            {{"render", "in.png", "-o", "old.tif", "--save-params", "old.params"}, {"old.tif", "old.params"}},
            {{"render", "in.png", "-o", "old.exr", "--depth", "32", "--embed"}, {"old.exr"}},
            {{"smooth", "in.png", "-o", "old.tga", "--flag-map", "map.png"}, {"old.tga", "map.png"}},
            {{"sheet", "in.png", "-o", "old.png"}, {"old.png"}},
            {{"colors", "in.png", "-o", "old.png"}, {"old.png"}},
            {{"compare", "in.png", "near.png", "--diff", "old.png"}, {"old.png"}},
            {{"render", "cel.####.png", "-o", "soft.####.tga", "--jobs", "2", "--quiet"},
             {"soft.0001.tga", "soft.0002.tga", "soft.0003.tga"}}};
}

FaultCase::FaultCase() {
    PngPicture picture = randomPng(PngColor::kRgb, 8, 24, 18, 1);
    writePng(folder_ / "in.png", picture);
    std::fill_n(picture.rows.begin(), picture.rowBytes(), uint8_t{7});
    writePng(folder_ / "near.png", picture);
    for (uint32_t frame = 1; frame <= 3; ++frame) {
        writePng(folder_ / ("cel.000" + std::to_string(frame) + ".png"),
                 randomPng(PngColor::kRgb, 8, 24, 18, frame));
    }
    for (const std::string& name : filesThere()) {
        inputs_[name] = bytesOf(folder_ / name);
    }
}

void FaultCase::learn(const OutputCommand& command) {
    command_ = command;
    whole_.clear();
    restore();
    const CommandOutcome unharmed = run(command.words);
    code_ = unharmed.exitCode;
    out_ = unharmed.out;
    ASSERT_TRUE(code_ == 0 || code_ == 1) << unharmed.err;
    for (const std::string& output : command.outputs) {
        whole_[output] = bytesOf(folder_ / output);
        ASSERT_FALSE(isOld(output)) << output;
    }
}

void FaultCase::restore() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_.path())) {
        fs::remove_all(entry.path());
    }
    for (const auto& [name, bytes] : inputs_) {
        fs::create_directories((folder_ / name).parent_path());
        writeBytes(folder_ / name, bytes);
    }
    for (const std::string& output : command_.outputs) {
        fs::create_directories((folder_ / output).parent_path());
        writeBytes(folder_ / output, kOld);
    }
}

CommandOutcome FaultCase::run(const std::vector<std::string>& words, CommandSetting setting) const {
    setting.folder = folder_.path();
    return runCommand(words, setting);
}

std::vector<std::string> FaultCase::filesThere() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder_.path())) {
        if (!entry.is_directory()) {
            names.push_back(fs::relative(entry.path(), folder_.path()).string());
        }
    }
    return names;
}

bool FaultCase::isOld(const std::string& output) const {
    return bytesOf(folder_ / output) == kOld;
}

bool FaultCase::isWhole(const std::string& output) const {
    return bytesOf(folder_ / output) == whole_.at(output);
}

void FaultCase::expectNothingElse() const {
    for (const std::string& name : filesThere()) {
        EXPECT_TRUE(inputs_.contains(name) || contains(command_.outputs, name)) << name << " is left behind";
    }
}

void FaultCase::expectNothingHalf(const CommandOutcome& run) const {
    expectNothingElse();
    const bool succeeded = run.exitCode == code_;
    for (const std::string& output : command_.outputs) {
        if (!fs::exists(folder_ / output)) {
            ADD_FAILURE() << output << " is lost";
            continue;
        }
        EXPECT_TRUE(isWhole(output) || (!succeeded && isOld(output)))
            << output << " is neither old nor whole: " << run.err;
    }
    if (succeeded) {
        EXPECT_EQ(run.out, out_);
    } else if (run.exitCode < 0) {
        EXPECT_TRUE(run.err.empty() || run.hasOneErrorLine()) << run.err;
    } else {
        EXPECT_TRUE(run.exitCode == 3 || run.exitCode == 4) << run.exitCode << ": " << run.err;
        EXPECT_TRUE(run.hasOneErrorLine()) << run.err;
    }
}

} // namespace kovalune::test
