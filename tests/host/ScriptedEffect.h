// An effect whose answer to each command is written in the test, and a host and session around it.
#pragma once

#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/HostApi.h"

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

namespace kovalune::test {
using namespace host;

/// The arguments of one entry, with the shortcuts that most handlers want.
struct Call {
    PF_InData& in;
    PF_OutData& out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;

    PF_ProgPtr ref() const { return in.effect_ref; }
    PF_UtilCallbacks& utils() const { return *in.utils; }
    PF_PreRenderExtra& preRender() const { return *static_cast<PF_PreRenderExtra*>(extra); }
    PF_SmartRenderExtra& smartRender() const { return *static_cast<PF_SmartRenderExtra*>(extra); }

    /// Acquires; null if refused.
    template <class Suite>
    const Suite* acquire(const char* name, int32_t version) const {
        const void* suite = nullptr;
        return in.pica_basicP->AcquireSuite(name, version, &suite) == 0 ? static_cast<const Suite*>(suite)
                                                                        : nullptr;
    }
    /// Acquires what the test cannot do without.
    template <class Suite>
    const Suite& need(const char* name, int32_t version) const {
        const Suite* suite = acquire<Suite>(name, version);
        if (suite == nullptr) {
            throw std::runtime_error(std::string("no suite ") + name);
        }
        return *suite;
    }
    void release(const char* name, int32_t version) const { in.pica_basicP->ReleaseSuite(name, version); }
};

using Handler = std::function<PF_Err(Call&)>;

/// The only effect of a test at a time; handlers are set before the commands that they answer.
class Script {
public:
    Script();
    ~Script();
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    Handler& operator[](PF_Cmd command) { return handlers_[command]; }
    PF_Err answer(PF_Cmd command, Call& call) const;

private:
    std::map<PF_Cmd, Handler> handlers_;
};

/// The entry point of the script that lives at the moment.
PF_Err scriptedEntry(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                     PF_LayerDef* output, void* extra);

/// Parameter set-up with one of each kind: 1 slider "Count" (id 11, 0 to 100, 5), 2 float slider "Amount"
/// (id 12, 2.5), 3 checkbox "Enable" (id 13, on), 4 colour "Colour" (id 14), 5 popup "View" (id 15, three
/// choices, 2), 6 and 7 the start and end of a group "Group" (ids 16 and 17).
PF_Err registerParams(Call& call);

/// Asks for the request's part of the layer under checkout id 0 and keeps a handle as pre-render data.
PF_Err askForLayer(Call& call);

/// Copies the input's rows to the output and checks the layer in, first error first.
PF_Err copyThrough(Call& call);

/// A script with registerParams, askForLayer and copyThrough, a host and one session.
class Stage {
public:
    explicit Stage(judge::JudgeOptions options = audited());

    static judge::JudgeOptions audited();

    Script script;
    judge::JudgedHost host;
    EffectModule module = EffectModule::linked(scriptedEntry);

    /// Opened at the first use.
    Session& session();
    void endSession() { session_.reset(); }

    /// Runs the handler as the effect's answer to a command.
    CommandResult during(const Handler& handler);

private:
    std::unique_ptr<Session> session_;
};

/// A picture whose bytes all differ from their neighbours'; floats are finite.
Image patterned(PF_PixelFormat format, A_long width, A_long height);

std::byte* worldRow(const PF_EffectWorld& world, A_long y);

} // namespace kovalune::test
