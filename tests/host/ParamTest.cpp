#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <cstring>

namespace kovalune::test {
using namespace host;
namespace {

A_long whole(const ParamValue& value) {
    return std::get<A_long>(value);
}

TEST(Param, RegisteredDefinitionsCanBeListed) {
    Stage stage;
    Session& session = stage.session();
    ASSERT_TRUE(session.setupResult().ok());
    ASSERT_EQ(session.params().size(), 8U);
    EXPECT_EQ(session.params()[0].param_type, PF_Param_LAYER);
    EXPECT_STREQ(session.params()[1].name, "Count");
    EXPECT_EQ(session.params()[1].u.sd.valid_max, 100);
    EXPECT_EQ(session.params()[6].param_type, PF_Param_GROUP_START);
    EXPECT_EQ(session.findParam("Colour"), 4);
    EXPECT_EQ(session.findParam("Nothing"), std::nullopt);
    EXPECT_EQ(session.findParamById(13), 3);
    EXPECT_EQ(session.findParamById(99), std::nullopt);
}

TEST(Param, ChoicesAreTheHostsOwnCopies) {
    Stage stage;
    EXPECT_EQ(stage.session().choices(5), (std::vector<std::string>{"One", "Two", "Three"}));
    EXPECT_TRUE(stage.session().choices(1).empty());
}

TEST(Param, ValuesStartAtTheDefaults) {
    Stage stage;
    EXPECT_EQ(whole(stage.session().value(1)), 5);
    EXPECT_EQ(std::get<double>(stage.session().value(2)), 2.5);
    EXPECT_EQ(whole(stage.session().value(3)), 1);
    EXPECT_EQ(std::get<PF_Pixel>(stage.session().value(4)).blue, 3);
    EXPECT_EQ(whole(stage.session().value(5)), 2);
}

TEST(Param, SettingAValueLeavesTheDefault) {
    Stage stage;
    stage.session().setValue(2, 7.25);
    EXPECT_EQ(std::get<double>(stage.session().value(2)), 7.25);
    EXPECT_EQ(std::get<double>(stage.session().defaultValue(2)), 2.5);
}

TEST(Param, KeysHoldUntilTheNextOne) {
    Stage stage;
    Session& session = stage.session();
    session.setKey(1, 20, A_long{2});
    session.setKey(1, 10, A_long{1});
    session.setKey(1, 30, A_long{4});
    session.setKey(1, 30, A_long{3});
    EXPECT_EQ(whole(session.value(1, 0)), 1); // the first one holds before itself
    EXPECT_EQ(whole(session.value(1, 10)), 1);
    EXPECT_EQ(whole(session.value(1, 19)), 1);
    EXPECT_EQ(whole(session.value(1, 20)), 2);
    EXPECT_EQ(whole(session.value(1, 1000)), 3);
    session.setValue(1, A_long{8});
    EXPECT_EQ(whole(session.value(1, 20)), 8);
}

TEST(Param, WrongTypesAndIndicesAreRefused) {
    Stage stage;
    Session& session = stage.session();
    EXPECT_THROW(session.setValue(1, 1.5), HostError);
    EXPECT_THROW(session.setValue(2, A_long{1}), HostError);
    EXPECT_THROW(session.setValue(0, A_long{1}), HostError);
    EXPECT_THROW(session.setValue(6, A_long{1}), HostError);
    EXPECT_THROW(session.setValue(8, A_long{1}), HostError);
    EXPECT_THROW(session.value(-1), HostError);
    EXPECT_THROW(session.setKey(5, 0, A_long{1}), HostError); // cannot vary with time
    EXPECT_NO_THROW(session.setValue(5, A_long{1}));
}

TEST(Param, CheckoutGivesTheValueAtItsTime) {
    Stage stage;
    stage.session().setKey(1, 0, A_long{10});
    stage.session().setKey(1, 24, A_long{20});
    stage.during([](Call& c) {
        const auto at = [&c](A_long time, A_u_long scale) {
            PF_ParamDef def{};
            EXPECT_EQ(c.in.inter.checkout_param(c.ref(), 1, time, 1, scale, &def), PF_Err_NONE);
            const A_long value = def.u.sd.value;
            EXPECT_EQ(def.uu.id, 11);
            EXPECT_EQ(c.in.inter.checkin_param(c.ref(), &def), PF_Err_NONE);
            return value;
        };
        EXPECT_EQ(at(23, 24), 10);
        EXPECT_EQ(at(24, 24), 20);
        EXPECT_EQ(at(47, 48), 10); // 23.5 in the session's units
        EXPECT_EQ(at(1, 1), 20);
        EXPECT_EQ(at(-1, 48), 10);
        return PF_Err_NONE;
    });
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST(Param, CheckoutOutOfRangeIsRefused) {
    Stage stage;
    stage.during([](Call& c) {
        PF_ParamDef def{};
        EXPECT_EQ(c.in.inter.checkout_param(c.ref(), 8, 0, 1, 24, &def), PF_Err_INVALID_INDEX);
        EXPECT_EQ(c.in.inter.checkout_param(c.ref(), -1, 0, 1, 24, &def), PF_Err_INVALID_INDEX);
        EXPECT_EQ(c.in.inter.checkout_param(c.ref(), 1, 0, 1, 0, &def), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(c.in.inter.checkout_param(c.ref(), 1, 0, 1, 24, nullptr), PF_Err_BAD_CALLBACK_PARAM);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().paramCheckouts, 0);
}

TEST(Param, CheckoutsLeftOpenAreCountedPerCommand) {
    Stage stage;
    PF_ParamDef def{};
    stage.during([&](Call& c) {
        c.in.inter.checkout_param(c.ref(), 1, 0, 1, 24, &def);
        return c.in.inter.checkout_param(c.ref(), 2, 0, 1, 24, &def);
    });
    EXPECT_EQ(stage.host.audit().paramCheckouts, 2);
    // A later command cannot check in what belonged to an earlier one.
    stage.during([&](Call& c) { return c.in.inter.checkin_param(c.ref(), &def); });
    EXPECT_EQ(stage.host.audit().paramCheckouts, 2);
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
    stage.host.resetAudit();
    EXPECT_TRUE(stage.host.audit().clean());
}

TEST(Param, TheArrayCarriesIdsValuesAndItsEnd) {
    Stage stage;
    stage.session().setKey(1, 0, A_long{10});
    stage.session().setKey(1, 5, A_long{20});
    stage.script[PF_Cmd_COMPLETELY_GENERAL] = [](Call& c) -> PF_Err {
        EXPECT_EQ(c.params[1]->uu.id, 11);
        EXPECT_EQ(c.params[1]->u.sd.value, 20);
        EXPECT_EQ(c.params[2]->u.fs_d.value, 2.5);
        EXPECT_EQ(c.params[5]->flags, PF_ParamFlag_CANNOT_TIME_VARY);
        EXPECT_EQ(c.params[7]->param_type, PF_Param_GROUP_END);
        EXPECT_EQ(c.params[8], nullptr);
        return PF_Err_NONE;
    };
    EXPECT_TRUE(stage.session().run(PF_Cmd_COMPLETELY_GENERAL, nullptr, {}, 7).ok());
}

TEST(Param, FirstLayerWordIsNullUnlessSet) {
    Stage stage;
    A_long word = 0;
    const auto read = [&word](Call& c) {
        std::memcpy(&word, &c.params[0]->u, sizeof word);
        PF_ParamDef def{};
        c.in.inter.checkout_param(c.ref(), 0, 0, 1, 24, &def);
        A_long other = 0;
        std::memcpy(&other, &def.u, sizeof other);
        EXPECT_EQ(other, word);
        return c.in.inter.checkin_param(c.ref(), &def);
    };
    stage.during(read);
    EXPECT_EQ(word, 0);
    stage.host.options().firstLayerWord = 0x1234;
    stage.during(read);
    EXPECT_EQ(word, 0x1234);
}

TEST(Param, AddParamChecksIndexTypeAndCommand) {
    Stage stage;
    stage.script[PF_Cmd_PARAMS_SETUP] = [](Call& c) -> PF_Err {
        PF_ParamDef def{};
        def.param_type = PF_Param_SLIDER;
        EXPECT_EQ(c.in.inter.add_param(c.ref(), 7, &def), PF_Err_INVALID_INDEX);
        EXPECT_EQ(c.in.inter.add_param(c.ref(), 1, &def), PF_Err_NONE);
        def.param_type = 99;
        EXPECT_EQ(c.in.inter.add_param(c.ref(), -1, &def), PF_Err_UNRECOGNIZED_PARAM_TYPE);
        EXPECT_EQ(c.in.inter.add_param(c.ref(), -1, nullptr), PF_Err_BAD_CALLBACK_PARAM);
        c.out.num_params = 2;
        return PF_Err_NONE;
    };
    EXPECT_EQ(stage.session().params().size(), 2U);
    EXPECT_TRUE(stage.host.audit().misuse.empty());
    stage.during([](Call& c) {
        PF_ParamDef def{};
        def.param_type = PF_Param_SLIDER;
        EXPECT_EQ(c.in.inter.add_param(c.ref(), -1, &def), PF_Err_INVALID_CALLBACK);
        return PF_Err_NONE;
    });
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

TEST(Param, AWrongNumberOfParametersIsMisuse) {
    Stage stage;
    stage.script[PF_Cmd_PARAMS_SETUP] = [](Call& c) -> PF_Err {
        c.out.num_params = 3;
        return PF_Err_NONE;
    };
    stage.session();
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

} // namespace
} // namespace kovalune::test
