#include "tests/host/ScriptedEffect.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <type_traits>

namespace kovalune::test {
using namespace host;
namespace {

/// Notes every command that reaches the effect.
class CommandLog {
public:
    explicit CommandLog(Stage& stage) {
        for (const PF_Cmd command : {PF_Cmd_GLOBAL_SETUP, PF_Cmd_SEQUENCE_SETDOWN, PF_Cmd_GLOBAL_SETDOWN}) {
            stage.script[command] = [this, command](Call&) -> PF_Err {
                commands.push_back(command);
                return PF_Err_NONE;
            };
        }
        stage.script[PF_Cmd_PARAMS_SETUP] = [this](Call& c) -> PF_Err {
            commands.push_back(PF_Cmd_PARAMS_SETUP);
            return registerParams(c);
        };
    }
    std::vector<PF_Cmd> commands;
};

TEST(Session, SetsUpAndDownInOrder) {
    Stage stage;
    CommandLog log(stage);
    stage.session();
    stage.endSession();
    EXPECT_EQ(log.commands,
              (std::vector<PF_Cmd>{PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP, PF_Cmd_GLOBAL_SETDOWN}));
}

TEST(Session, GlobalSetdownCanBeLeftOut) {
    Stage stage;
    CommandLog log(stage);
    stage.module = EffectModule::linked(scriptedEntry, SetDown::kNever);
    stage.session();
    stage.endSession();
    EXPECT_EQ(log.commands, (std::vector<PF_Cmd>{PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP}));
}

TEST(Session, CloseEndsItOnce) {
    Stage stage;
    CommandLog log(stage);
    EXPECT_EQ(stage.session().close().command, PF_Cmd_GLOBAL_SETDOWN);
    stage.session().close();
    EXPECT_EQ(log.commands.size(), 3U);
    EXPECT_THROW(stage.session().about(), HostError);
}

TEST(Session, AFailedGlobalSetupEndsTheSetup) {
    Stage stage;
    CommandLog log(stage);
    stage.script[PF_Cmd_GLOBAL_SETUP] = [](Call&) -> PF_Err { return 600; };
    EXPECT_EQ(stage.session().setupResult().code, 600);
    EXPECT_EQ(stage.session().setupResult().command, PF_Cmd_GLOBAL_SETUP);
    stage.endSession();
    EXPECT_TRUE(log.commands.empty());
}

TEST(Session, GlobalFlagsAreKept) {
    Stage stage;
    stage.script[PF_Cmd_GLOBAL_SETUP] = [](Call& c) -> PF_Err {
        EXPECT_EQ(c.params, nullptr);
        c.out.my_version = 5;
        c.out.out_flags = PF_OutFlag_I_DO_DIALOG;
        c.out.out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER;
        return PF_Err_NONE;
    };
    EXPECT_EQ(stage.session().effectVersion(), 5U);
    EXPECT_EQ(stage.session().outFlags(), PF_OutFlag_I_DO_DIALOG);
    EXPECT_EQ(stage.session().outFlags2(), PF_OutFlag2_SUPPORTS_SMART_RENDER);
}

TEST(Session, ACommandsCodeAndMessageAreGivenBack) {
    Stage stage;
    stage.script[PF_Cmd_ABOUT] = [](Call& c) -> PF_Err {
        std::memset(c.out.return_msg, 'x', sizeof c.out.return_msg); // without an end
        return 42;
    };
    const CommandResult result = stage.session().about();
    EXPECT_EQ(result.code, 42);
    EXPECT_EQ(result.command, PF_Cmd_ABOUT);
    EXPECT_EQ(result.returnMsg, std::string(256, 'x'));
    EXPECT_FALSE(result.ok());
}

TEST(Session, SurvivesWhateverTheEntryThrows) {
    Stage stage;
    CommandResult result = stage.during([](Call&) -> PF_Err { throw std::runtime_error("broken"); });
    EXPECT_TRUE(result.threw);
    EXPECT_EQ(result.exceptionText, "broken");
    EXPECT_EQ(result.code, PF_Err_INTERNAL_STRUCT_DAMAGED);
    result = stage.during([](Call&) -> PF_Err { throw 516L; });
    EXPECT_EQ(result.thrownValue, 516);
    result = stage.during([](Call&) -> PF_Err { throw 'c'; });
    EXPECT_TRUE(result.threw);
    EXPECT_EQ(stage.during([](Call&) -> PF_Err { return PF_Err_NONE; }).threw, false);
}

TEST(Session, TheHookMayChangeWhatIsHandedOver) {
    Stage stage;
    stage.session();
    int extra = 3;
    stage.script[PF_Cmd_EVENT] = [](Call& c) -> PF_Err {
        return c.in.quality + c.params[1]->u.sd.value + *static_cast<int*>(c.extra);
    };
    const CommandResult result = stage.session().run(PF_Cmd_EVENT, &extra, [](CommandFrame& frame) {
        frame.in.quality = 1000;
        frame.params[1].u.sd.value = 200;
    });
    EXPECT_EQ(result.code, 1203);
}

PF_Err makeSequence(Call& c, const char* text) {
    PF_Handle handle = c.utils().host_new_handle(4);
    std::memcpy(*handle, text, 4);
    c.out.sequence_data = handle;
    return PF_Err_NONE;
}

std::string sequenceText(const Session& session) {
    std::string text;
    for (const std::byte b : session.sequenceBytes()) {
        text += static_cast<char>(b);
    }
    return text;
}

class Sequence : public testing::Test {
protected:
    Sequence() {
        stage.script[PF_Cmd_SEQUENCE_SETUP] = [](Call& c) { return makeSequence(c, "live"); };
        stage.script[PF_Cmd_SEQUENCE_FLATTEN] = [](Call& c) {
            EXPECT_EQ(c.out.sequence_data, c.in.sequence_data);
            return makeSequence(c, "flat");
        };
        stage.script[PF_Cmd_SEQUENCE_SETDOWN] = [](Call& c) -> PF_Err {
            c.utils().host_dispose_handle(c.in.sequence_data);
            return PF_Err_NONE;
        };
    }
    Stage stage;
};

TEST_F(Sequence, DataAreKeptAndHandedBack) {
    stage.session().sequenceSetup();
    EXPECT_EQ(sequenceText(stage.session()), "live");
    PF_Handle seen = nullptr;
    stage.during([&](Call& c) {
        seen = c.in.sequence_data;
        return PF_Err_NONE;
    });
    EXPECT_EQ(seen, stage.session().sequenceData());
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_F(Sequence, TheHostDisposesOfWhatAFlattenReplaces) {
    stage.session().sequenceSetup();
    stage.session().sequenceFlatten();
    EXPECT_EQ(sequenceText(stage.session()), "flat");
    stage.session().sequenceSetdown();
    EXPECT_EQ(stage.session().sequenceData(), nullptr);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_F(Sequence, TheEndOfTheSessionEndsTheSequence) {
    stage.session().sequenceSetup();
    stage.endSession();
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_F(Sequence, DataNotDisposedOfAtTheEndAreALeak) {
    stage.script[PF_Cmd_SEQUENCE_SETDOWN] = nullptr;
    stage.session().sequenceSetup();
    stage.session().sequenceSetdown();
    EXPECT_EQ(stage.host.audit().liveHandles, 1);
}

TEST_F(Sequence, BytesOfAProjectCanBePutInPlace) {
    stage.session().setSequenceBytes({std::byte{'p'}, std::byte{'q'}});
    EXPECT_EQ(sequenceText(stage.session()), "pq");
    stage.session().setSequenceBytes({});
    EXPECT_EQ(stage.session().sequenceData(), nullptr);
    EXPECT_TRUE(stage.host.audit().clean()) << stage.host.audit().text();
}

TEST_F(Sequence, AnythingButAHandleIsMisuse) {
    static void* notAHandle = nullptr;
    stage.script[PF_Cmd_SEQUENCE_SETUP] = [](Call& c) -> PF_Err {
        c.out.sequence_data = &notAHandle;
        return PF_Err_NONE;
    };
    stage.session().sequenceSetup();
    EXPECT_EQ(stage.session().sequenceData(), nullptr);
    EXPECT_EQ(stage.host.audit().misuse.size(), 1U);
}

TEST(Host, RefusesOptionsOutOfRange) {
    const auto made = [](auto change) {
        HostOptions options;
        change(options);
        const Host host(options);
    };
    EXPECT_THROW(made([](HostOptions& o) { o.threads = 65; }), HostError);
    EXPECT_THROW(made([](HostOptions& o) { o.threads = -1; }), HostError);
    EXPECT_THROW(made([](HostOptions& o) { o.iterations = -1; }), HostError);
    EXPECT_THROW(made([](HostOptions& o) { o.rowPadding = 6; }), HostError);
    EXPECT_THROW(made([](HostOptions& o) { o.rowPadding = -4; }), HostError);
    EXPECT_THROW(made([](HostOptions& o) { o.timeScale = 0; }), HostError);
    EXPECT_NO_THROW(made([](HostOptions& o) { o.rowPadding = 12; }));
}

TEST(JudgedHost, RefusesOptionsOutOfRange) {
    const auto made = [](auto change) {
        judge::JudgeOptions options;
        change(options);
        const judge::JudgedHost host(options);
    };
    EXPECT_THROW(made([](judge::JudgeOptions& o) { o.threads = 65; }), HostError);
    EXPECT_THROW(made([](judge::JudgeOptions& o) { o.rowGuard = 6; }), HostError);
    EXPECT_THROW(made([](judge::JudgeOptions& o) { o.extraRecordBytes = 33; }), HostError);
    EXPECT_THROW(made([](judge::JudgeOptions& o) { o.extraRecordBytes = -1; }), HostError);
    EXPECT_NO_THROW(made([](judge::JudgeOptions& o) { o.rowGuard = 12; }));
}

// Else a host would drop what only a judge knows of the options.
static_assert(std::is_constructible_v<Host, HostOptions>);
static_assert(!std::is_constructible_v<Host, judge::JudgeOptions>);

// A host without a judge bears an effect's misuse as well, and renders.
TEST(Host, NeedsNoJudge) {
    Script script;
    script[PF_Cmd_PARAMS_SETUP] = registerParams;
    script[PF_Cmd_SMART_PRE_RENDER] = askForLayer;
    script[PF_Cmd_SMART_RENDER] = [](Call& c) -> PF_Err {
        c.utils().host_dispose_handle(nullptr);
        PF_Handle handle = c.utils().host_new_handle(5);
        c.utils().host_unlock_handle(handle);
        c.utils().host_dispose_handle(handle);
        PF_EffectWorld unknown{};
        EXPECT_EQ(c.utils().dispose_world(c.ref(), &unknown), PF_Err_BAD_CALLBACK_PARAM);
        return copyThrough(c);
    };
    Host host;
    EffectModule module = EffectModule::linked(scriptedEntry);
    Session session(host, module);
    const Image input = patterned(PF_PixelFormat_ARGB64, 7, 3);
    Image output;
    EXPECT_TRUE(session.render(input, output).ok());
    EXPECT_EQ(output, input);
    const Image fromViews(input.format(), 7, 3);
    Image written = fromViews;
    EXPECT_TRUE(session.render(input.view(), written.view()).ok());
    EXPECT_EQ(written, input);
}

} // namespace
} // namespace kovalune::test
