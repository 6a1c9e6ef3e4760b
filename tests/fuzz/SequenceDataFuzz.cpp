// Any bytes at all as the block that a project hands back to an instance. Whatever they are, the effect answers
// as it should, lets the block alone, holds on to nothing, and reports each failing handle call; the first thing
// that is not so ends the process with a message.

#include "host/EffectModule.h"
#include "host/HostState.h"
#include "host/Session.h"
#include "host/judge/JudgedHost.h"
#include "hostapi/EntryPoint.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <vector>

namespace kovalune::test {
namespace {

using host::CommandResult;
using Bytes = std::vector<std::byte>;

// ---- What must come of a block, from the bytes alone

constexpr std::size_t kRecordBytes = 24;
constexpr std::size_t kReservedAt = 16;

Bytes bytesOf(const char (&text)[kRecordBytes + 1]) {
    const auto* const first = reinterpret_cast<const std::byte*>(text);
    return {first, first + kRecordBytes};
}

const Bytes kNewRecord = bytesOf("qesp\0\0\0\0\x18\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0");
const Bytes kVersion1 = {std::byte{1}, std::byte{0}, std::byte{0}, std::byte{0}};

bool isOurs(const Bytes& block) {
    return block.size() >= kRecordBytes &&
           std::equal(kNewRecord.begin(), kNewRecord.begin() + 4, block.begin());
}

/// The record that a block gives: a project's version is at 8 and its size at 12, in memory the other way
/// round.
Bytes recordFrom(const Bytes& block) {
    Bytes record = kNewRecord;
    if (isOurs(block) && std::equal(kVersion1.begin(), kVersion1.end(), block.begin() + 8)) {
        std::copy_n(block.begin() + 12, 4, record.begin() + 8);
        std::copy_n(block.begin() + kReservedAt, 8, record.begin() + kReservedAt);
    }
    return record;
}

Bytes flattenedFrom(const Bytes& record) {
    Bytes block = record;
    block[4] = std::byte{1};
    std::swap_ranges(block.begin() + 8, block.begin() + 12, block.begin() + 12);
    return block;
}

/// A fallible handle call and the command's code where the host refuses it.
struct HandleCall {
    const char* name;
    PF_Err code;
};

constexpr HandleCall kCallsForNone[] = {{"host_new_handle", PF_Err_OUT_OF_MEMORY},
                                        {"host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED}};
/// A block that cannot be looked at is as good as a foreign one.
constexpr HandleCall kCallsForForeign[] = {
    {"host_lock_handle", PF_Err_NONE}, kCallsForNone[0], kCallsForNone[1]};
constexpr HandleCall kCallsForOurs[] = {{"host_lock_handle", PF_Err_NONE},
                                        {"host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
                                        {"host_new_handle", PF_Err_OUT_OF_MEMORY},
                                        {"host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
                                        {"host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED}};
constexpr HandleCall kCallsOfFlatten[] = {{"host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
                                          {"host_new_handle", PF_Err_INTERNAL_STRUCT_DAMAGED},
                                          {"host_lock_handle", PF_Err_INTERNAL_STRUCT_DAMAGED}};

// ---- The effect's way to the host and back

host::judge::JudgedHost* watchedHost = nullptr;

host::judge::JudgedHost& watched(host::judge::JudgedHost& host) {
    watchedHost = &host;
    return host;
}

/// The entry point as the host enters it. Only here can the block that went in be looked at afterwards: the host
/// then disposes of it.
PF_Err watchedEntry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef** params, PF_LayerDef* output,
                    void* extra) {
    const host::HandleStore& handles = watchedHost->state().handles;
    const PF_Handle old = in->sequence_data;
    const Bytes before = handles.contents(old);
    const PF_Err code = EntryPointFunc(cmd, in, out, params, output, extra);
    require(handles.balance().locks == 0, "every lock is undone");
    if (cmd == PF_Cmd_SEQUENCE_RESETUP || cmd == PF_Cmd_SEQUENCE_FLATTEN) {
        require(old == nullptr || handles.isLive(old), "the old block is the host's to dispose of");
        require(handles.contents(old) == before, "the old block's bytes stay as they were");
        require(code != PF_Err_NONE || (out->sequence_data != old && handles.isLive(out->sequence_data)),
                "a new handle comes out");
    }
    return code;
}

/// One answer of host_get_handle_size that is too small for a record.
struct ShrunkSize {
    int at = 0; ///< which answer, from 1; 0: none
    int answers = 0;
    PF_UtilCallbacks utils = {};
    A_HandleSize (*hostsOwn)(PF_Handle) = nullptr;
};
ShrunkSize shrunk;

A_HandleSize shrunkHandleSize(PF_Handle handle) {
    const A_HandleSize size = shrunk.hostsOwn(handle);
    return ++shrunk.answers == shrunk.at ? std::min<A_HandleSize>(size, kRecordBytes - 1) : size;
}

void giveShrunkSize(host::CommandFrame& frame) {
    shrunk.utils = *frame.in.utils;
    shrunk.hostsOwn = shrunk.utils.host_get_handle_size;
    shrunk.utils.host_get_handle_size = shrunkHandleSize;
    frame.in.utils = &shrunk.utils;
}

host::judge::JudgeOptions strictOptions() {
    host::judge::JudgeOptions options;
    options.audit = true;
    options.poisonNewWorlds = true;
    return options;
}

// ---- The checks

class Project {
public:
    Project() { require(session_.setupResult().ok(), "the effect is set up"); }

    /// All of them, for this block. `emptyHandle`: no bytes stand for a handle of no bytes, not for none.
    void check(const Bytes& block, bool emptyHandle = false) {
        block_ = block;
        emptyHandle_ = emptyHandle;
        checkResetup();
        checkFlattenAsItIs();
        checkFailingCalls(PF_Cmd_SEQUENCE_RESETUP, callsOfResetup());
        checkShrunkSizes();
        block_ = recordFrom(block);
        checkFailingCalls(PF_Cmd_SEQUENCE_FLATTEN, kCallsOfFlatten);
    }

private:
    std::span<const HandleCall> callsOfResetup() const {
        if (block_.empty() && !emptyHandle_) {
            return kCallsForNone;
        }
        if (isOurs(block_)) {
            return kCallsForOurs;
        }
        return kCallsForForeign;
    }

    void open() {
        session_.setSequenceBytes(emptyHandle_ && block_.empty() ? Bytes(1) : block_);
        if (emptyHandle_ && block_.empty()) {
            require(host_.state().handles.resize(session_.sequenceData(), 0, host_.options()) == PF_Err_NONE,
                    "a handle may be emptied");
        }
    }

    void close() {
        const CommandResult result = session_.sequenceSetdown();
        require(result.ok(), "PF_Cmd_SEQUENCE_SETDOWN succeeds");
        const host::judge::AuditReport audit = host_.audit();
        require(audit.clean(), "nothing is held, misused or damaged", audit.text());
    }

    CommandResult run(PF_Cmd command, const host::CommandHook& prepare = {}) {
        CommandResult result = session_.run(command, nullptr, prepare);
        require(!result.threw, "nothing is thrown");
        return result;
    }

    void requireOutcome(const CommandResult& result, const Bytes& expected, const char* what) {
        require(result.code == PF_Err_NONE, what, "(code " + std::to_string(result.code) + ")");
        require(session_.sequenceBytes() == expected, what, "(other bytes)");
    }

    void checkResetup() {
        const Bytes record = recordFrom(block_);
        open();
        requireOutcome(run(PF_Cmd_SEQUENCE_RESETUP), record, "a block becomes a record");
        requireOutcome(run(PF_Cmd_SEQUENCE_FLATTEN), flattenedFrom(record), "a record is flattened");
        requireOutcome(run(PF_Cmd_SEQUENCE_RESETUP), record, "a flattened record becomes what it was");
        close();
    }

    /// A host that flattens what it never set up gets 24 bytes or an error.
    void checkFlattenAsItIs() {
        open();
        const CommandResult result = run(PF_Cmd_SEQUENCE_FLATTEN);
        if (result.code == PF_Err_NONE) {
            require(session_.sequenceBytes().size() == kRecordBytes, "a flattened block has 24 bytes");
        } else {
            require(result.code == PF_Err_INTERNAL_STRUCT_DAMAGED, "what cannot be flattened is damaged");
        }
        close();
    }

    /// Each fallible call refused in its turn; past the last one nothing is left to refuse.
    void checkFailingCalls(PF_Cmd command, std::span<const HandleCall> calls) {
        for (std::size_t at = 0; at <= calls.size(); ++at) {
            open();
            host_.armFaults({.failCall = static_cast<int>(at) + 1, .failCode = PF_Err_INVALID_INDEX});
            const CommandResult result = run(command);
            const HandleCall expected = at < calls.size() ? calls[at] : HandleCall{"", PF_Err_NONE};
            require(host_.failedCallName() == expected.name, "the handle calls come in their order",
                    host_.failedCallName());
            require(result.code == expected.code, "a failing handle call gives its code", expected.name);
            const Bytes left = session_.sequenceBytes();
            require(at == calls.size() || left == kNewRecord ||
                        (result.code != PF_Err_NONE && left == block_),
                    "a failing handle call leaves the old block or a new record", expected.name);
            close();
        }
    }

    /// A block that is too short by any of the answers is none of ours.
    void checkShrunkSizes() {
        shrunk.at = 0;
        do {
            ++shrunk.at;
            shrunk.answers = 0;
            open();
            const CommandResult result = run(PF_Cmd_SEQUENCE_RESETUP, giveShrunkSize);
            requireOutcome(result, shrunk.answers >= shrunk.at ? kNewRecord : recordFrom(block_),
                           "a block with a wrong size becomes a record");
            close();
        } while (shrunk.answers >= shrunk.at);
    }

    host::judge::JudgedHost host_{strictOptions()};
    host::EffectModule module_ = host::EffectModule::linked(watchedEntry, host::SetDown::kNever);
    host::Session session_{watched(host_), module_};
    Bytes block_;
    bool emptyHandle_ = false;
};

} // namespace
} // namespace kovalune::test

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const auto* const first = reinterpret_cast<const std::byte*>(data);
    kovalune::test::Project project;
    project.check({first, first + size});
    if (size == 0) {
        project.check({}, true);
    }
    return 0;
}
