// What the randomised comparisons of all blurs share: hosts of many kinds, and a blur run beside its plain twin.
#pragma once

#include "tests/blur/BlurDrivers.h"

#include <gtest/gtest.h>

#include <string>

namespace kovalune::test {

/// 1 to 9 iterations in any order on up to four threads, rows of any length.
inline host::judge::JudgeOptions anyOptions(Random& random) {
    host::judge::JudgeOptions options =
        shuffledOptions(random.between(1, 9), random.between(1, 4), random.next());
    options.rowPadding = 4 * random.below(7);
    options.dataOffset = 4 * random.below(4);
    return options;
}

/// `plain` is the twin: it takes the scene's job, the source and the two pictures that are written.
template <class Driver, class Scene, class Plain>
void expectLikeThePlainOne(Plain&& plain, const Driver& driver, Scene& scene, int32_t repeat, double amount) {
    const PlainPicture source = read(scene.src);
    PlainPicture dst = read(scene.dst);
    PlainPicture tmp = read(scene.tmp);
    plain(scene.plainJob(driver, repeat, amount), source, dst, tmp);
    ASSERT_EQ(scene.run(driver, repeat, amount), PF_Err_NONE);
    const auto what = [&] {
        return std::to_string(scene.mask.width) + " by " + std::to_string(scene.mask.height) + ", amount " +
               std::to_string(amount) + ", repeat " + std::to_string(repeat);
    };
    ASSERT_EQ(difference(dst, scene.dst), "") << what();
    ASSERT_EQ(difference(tmp, scene.tmp), "") << what();
    ASSERT_EQ(difference(source, scene.src), "") << what() << ": the source was written";
}

} // namespace kovalune::test
