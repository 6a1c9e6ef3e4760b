// Every control that the effect registers has a sentence in both languages.

#include "render/Hints.h"
#include "render/OpenEffect.h"
#include "render/ParamLabel.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

namespace kovalune::test {

using render::Hint;
using render::hintOf;

namespace {

TEST(Hints, AreThereForEveryControlAndGroup) {
    render::OpenEffect effect(1, render::Defaults::kFactory);
    std::set<std::string_view> sentences;
    int controls = 0;
    for (const PF_ParamDef& def : effect.session().params()) {
        if (!render::isSettable(def) && def.param_type != PF_Param_GROUP_START) {
            continue;
        }
        const Hint hint = hintOf(def.name);
        EXPECT_TRUE(hint.english.ends_with('.')) << def.name;
        EXPECT_TRUE(hint.japanese.ends_with("。")) << def.name;
        EXPECT_LE(hint.english.size(), 120U) << def.name;
        sentences.insert(hint.english);
        ++controls;
    }
    EXPECT_EQ(controls, 52);
    EXPECT_EQ(sentences.size(), 17U) << "the same for every number, another one for every control";
}

TEST(Hints, GoByTheLabelAsSettingsDo) {
    EXPECT_EQ(hintOf("Color 1").english, hintOf("color 4").english);
    EXPECT_EQ(hintOf("2:Boundary Blur").english, hintOf("3 : Boundary Blur").english);
    EXPECT_NE(hintOf("1 : Color").english, hintOf("Color 1").english);
}

TEST(Hints, AreEmptyForForeignLabels) {
    for (const char* const label : {"", "Colour 1", "5 : Color", "Process", "Shininess"}) {
        EXPECT_TRUE(hintOf(label).english.empty()) << label;
        EXPECT_TRUE(hintOf(label).japanese.empty()) << label;
    }
}

} // namespace
} // namespace kovalune::test
