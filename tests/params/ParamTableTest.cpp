#include "effect/params/ParamTypes.h"
#include "tests/params/ExpectedTable.h"
#include "tests/params/RegisteredTable.h"

#include <cstring>
#include <gtest/gtest.h>

namespace kovalune::test {
namespace {

/// A definition as the host gets it, checked field by field.
void expectDefinition(const PF_ParamDef& def, const ExpectedParam& row) {
    SCOPED_TRACE(std::to_string(row.index) + ' ' + row.label);
    EXPECT_EQ(def.uu.id, row.id);
    EXPECT_EQ(def.param_type, row.type);
    EXPECT_EQ(std::string(def.name), row.label);
    EXPECT_EQ(def.ui_flags, 0);
    EXPECT_EQ(def.ui_width, 0);
    EXPECT_EQ(def.ui_height, 0);
    const bool group = row.type == PF_Param_GROUP_START || row.type == PF_Param_GROUP_END;
    EXPECT_EQ(def.flags, group ? 0 : PF_ParamFlag_COLLAPSE_TWIRLY);
}

void expectFloatSlider(const PF_FloatSliderDef& slider, const ExpectedParam& row) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(slider.value, row.initial);
    EXPECT_EQ(slider.dephault, static_cast<float>(row.initial));
    EXPECT_EQ(slider.valid_min, 0.0F);
    EXPECT_EQ(slider.valid_max, static_cast<float>(row.validMax));
    EXPECT_EQ(slider.slider_min, 0.0F);
    EXPECT_EQ(slider.slider_max, static_cast<float>(row.sliderMax));
    EXPECT_EQ(slider.precision, 1);
    const bool percent = row.label.find("Range") != std::string::npos;
    EXPECT_EQ(slider.display_flags, percent ? PF_ValueDisplayFlag_PERCENT : PF_ValueDisplayFlag_NONE);
    EXPECT_EQ(slider.fs_flags, 0U);
    EXPECT_EQ(slider.curve_tolerance, 0.05F);
    EXPECT_EQ(slider.phase, 0.0);
}

void expectSlider(const PF_SliderDef& slider, const ExpectedParam& row) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(slider.value, 5);
    EXPECT_EQ(slider.dephault, 5);
    EXPECT_EQ(slider.valid_min, 1);
    EXPECT_EQ(slider.valid_max, 10);
    EXPECT_EQ(slider.slider_min, 1);
    EXPECT_EQ(slider.slider_max, 10);
    EXPECT_STREQ(slider.value_str, "");
    EXPECT_STREQ(slider.value_desc, "");
}

void expectValue(const PF_ParamDef& def, const ExpectedParam& row) {
    SCOPED_TRACE(row.label);
    const PF_Pixel& color = def.u.cd.value;
    const PF_Pixel& colorDefault = def.u.cd.dephault;
    switch (row.type) {
    case PF_Param_FLOAT_SLIDER:
        expectFloatSlider(def.u.fs_d, row);
        break;
    case PF_Param_SLIDER:
        expectSlider(def.u.sd, row);
        break;
    case PF_Param_CHECKBOX:
        EXPECT_EQ(def.u.bd.value, static_cast<A_long>(row.initial));
        EXPECT_EQ(def.u.bd.dephault, static_cast<PF_Boolean>(row.initial));
        EXPECT_STREQ(def.u.bd.u.nameptr, "");
        break;
    case PF_Param_COLOR:
        for (const PF_Pixel& each : {color, colorDefault}) {
            EXPECT_EQ(each.alpha, 255);
            EXPECT_EQ(each.red, 3);
            EXPECT_EQ(each.green, 180);
            EXPECT_EQ(each.blue, 245);
        }
        break;
    default:
        break;
    }
}

TEST(ParamTable, RegistersEveryParameterInOrder) {
    StubHost host;
    ASSERT_EQ(registerTable(host, nullptr), 0);
    ASSERT_EQ(host.params.size(), 58U);
    ASSERT_EQ(expectedTable().size(), 57U);
    for (const ExpectedParam& row : expectedTable()) {
        const PF_ParamDef& def = host.params[static_cast<std::size_t>(row.index)];
        expectDefinition(def, row);
        expectValue(def, row);
        EXPECT_EQ(host.callTexts[static_cast<std::size_t>(row.index) - 1],
                  "add_param -1 " + std::to_string(row.id));
    }
}

TEST(ParamTable, OffersEightViews) {
    StubHost host;
    registerTable(host, nullptr);
    const PF_PopupDef& view = host.params.at(1).u.pd;
    EXPECT_EQ(view.num_choices, 8);
    EXPECT_EQ(view.value, 1);
    EXPECT_EQ(view.dephault, 1);
    EXPECT_STREQ(view.u.namesptr, "Normal|(-|Extract|Base|Process 1|Process 2|Process 3|Process 4|");
}

TEST(ParamTable, KnowsEachParametersPlaceInTheRecord) {
    for (const ExpectedParam& row : expectedTable()) {
        SCOPED_TRACE(row.label);
        const BaseParam* const param = builtTable().byIndex().at(static_cast<std::size_t>(row.index));
        ASSERT_NE(param, nullptr);
        EXPECT_EQ(param->paramIndex, row.index);
        EXPECT_EQ(param->diskId, row.id);
        EXPECT_STREQ(param->label, row.label.c_str());
        EXPECT_EQ(param->fieldWidth, row.fieldWidth);
        if (row.fieldWidth != 0) {
            EXPECT_EQ(param->fieldPlace, row.fieldPlace);
        }
    }
}

TEST(ParamTable, LinksNothing) {
    for (const ExpectedParam& row : expectedTable()) {
        const BaseParam* const param = builtTable().findById(row.id);
        ASSERT_NE(param, nullptr) << row.id;
        EXPECT_EQ(param->linkId, 0);
        EXPECT_EQ(param->linkIndex, 0);
    }
}

TEST(ParamTable, FindsExactlyItsOwnIds) {
    ParamRegistry& registry = builtTable();
    for (A_long id = -5; id <= 400; ++id) {
        int index = 0;
        for (const ExpectedParam& row : expectedTable()) {
            index = row.id == id ? row.index : index;
        }
        const BaseParam* const found = registry.findById(id);
        EXPECT_EQ(found != nullptr ? found->paramIndex : 0, index) << id;
    }
}

TEST(ParamTable, LacksTheIdsThatTheGroupsLeaveOut) {
    for (const A_long id : {52, 53, 56, 57, 58, 60, 73, 80}) {
        EXPECT_EQ(builtTable().findById(id), nullptr) << id;
    }
    for (const A_long group : {100, 150, 200, 250}) {
        for (const A_long offset : {3, 4, 8, 11, 14, 15, 16, 17, 18, 19, 20, 21, 22}) {
            EXPECT_EQ(builtTable().findById(group + offset), nullptr) << group + offset;
        }
    }
    EXPECT_EQ(builtTable().findById(110), nullptr);
    EXPECT_NE(builtTable().findById(160), nullptr);
}

TEST(ParamTable, CountsTheInputLayerToo) {
    EXPECT_EQ(builtTable().indexCounter(), 58);
    EXPECT_EQ(builtTable().byIndex().size(), 58U);
    EXPECT_EQ(builtTable().byIndex()[0], nullptr);
}

TEST(ParamTable, BuiltAgainReplacesTheObjectsAndGoesOnCounting) {
    ParamRegistry& registry = builtTable();
    buildParamTable();
    EXPECT_EQ(registry.byIndex().size(), 58U);
    ASSERT_NE(registry.findById(1), nullptr);
    EXPECT_EQ(registry.findById(1)->paramIndex, 58);
    EXPECT_EQ(registry.indexCounter(), 58 + 57);
}

} // namespace
} // namespace kovalune::test
