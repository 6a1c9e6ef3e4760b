// Single calls of the smoothing, compared to the last bit with an independent, naive reading of the same rules, in worlds
// with tight and with long rows.

#include "tests/vectors/VectorFile.h"

#include "effect/smoothing/SmoothBoundaries.h"
#include "tests/support/TestWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <stdexcept>

namespace kovalune::test {
namespace {

using test::StrictHost;
using test::TestWorld;

int32_t numberIn(const std::map<std::string, std::string>& settings, const std::string& key) {
    const std::string& text = settings.at(key);
    int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw std::runtime_error(key + " is not a number: " + text);
    }
    return value;
}

SmoothParams paramsFrom(const std::map<std::string, std::string>& settings) {
    SmoothParams params;
    params.threshold = numberIn(settings, "threshold");
    params.strength = numberIn(settings, "strength");
    params.curve = numberIn(settings, "curve");
    params.keyEnabled = numberIn(settings, "keyEnabled");
    params.keyRed = numberIn(settings, "keyRed");
    params.keyGreen = numberIn(settings, "keyGreen");
    params.keyBlue = numberIn(settings, "keyBlue");
    params.keyTolerance = numberIn(settings, "keyTolerance");
    params.keyOnly = numberIn(settings, "keyOnly");
    return params;
}

void copyIn(TestWorld& world, const host::Image& image) {
    for (A_long y = 0; y < image.height(); ++y) {
        std::memcpy(&world.at<std::byte>(0, y), image.row(y), image.rowBytes());
    }
}

host::Image copyOut(const TestWorld& world) {
    host::Image image(world.format(), world.width(), world.height());
    for (A_long y = 0; y < image.height(); ++y) {
        std::memcpy(image.row(y), &world.at<std::byte>(0, y), image.rowBytes());
    }
    return image;
}

class SmoothVectors : public testing::TestWithParam<std::string> {
protected:
    static void smoothAndCompare(int rowPadding) {
        const std::filesystem::path folder = std::filesystem::path(KOVALUNE_VECTORS) / GetParam();
        const host::Image input = readPicture(folder / "input.kvw");
        host::judge::JudgeOptions options = test::strictOptions();
        options.rowPadding = rowPadding;
        StrictHost host(options);
        TestWorld source(host, input.format(), input.width(), input.height());
        TestWorld destination(host, input.format(), input.width(), input.height());
        copyIn(source, input);
        SmoothParams params = paramsFrom(readSettings(folder / "settings.txt"));
        params.inData = host.in();
        params.pixelFormat = input.format();
        params.srcWorld = source.get();
        params.dstWorld = destination.get();
        ASSERT_EQ(smoothBoundaries(params), PF_Err_NONE);
        EXPECT_EQ(firstDifference(copyOut(destination), readPicture(folder / "expected.kvw")), "");
        EXPECT_EQ(firstDifference(copyOut(source), input), "") << "the source is never written";
    }
};

TEST_P(SmoothVectors, MatchInTightRows) {
    smoothAndCompare(0);
}

TEST_P(SmoothVectors, MatchInLongRows) {
    smoothAndCompare(20);
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, SmoothVectors, testing::ValuesIn(vectorNames(KOVALUNE_VECTORS)), testName);

} // namespace
} // namespace kovalune::test
