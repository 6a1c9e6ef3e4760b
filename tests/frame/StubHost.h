// Scripted callbacks for tests of single pieces of the effect: every call is noted, every answer can be set,
// and any call can be made to fail or to throw. It draws nothing; whole frames are tested on the reference
// host. One object at a time may live in a process; at its end nothing may be held but handles.
#pragma once

#include "hostapi/HostApi.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kovalune::test {

/// A suite's name and version, such as "PF World Suite 2".
std::string suiteText(const char* name, int version);

// The versions that hosts of this build's era have, where eras differ.
inline const std::string kFillMatteSuiteText = suiteText(kPFFillMatteSuite, kPFFillMatteSuiteVersions[0]);
inline const std::string kHandleSuiteText = suiteText(kPFHandleSuite, kPFHandleSuiteVersions[0]);
inline const std::string kParamUtilsSuiteText = suiteText(kPFParamUtilsSuite, kPFParamUtilsSuiteVersions[0]);

class StubHost {
public:
    StubHost();
    ~StubHost();
    StubHost(const StubHost&) = delete;
    StubHost& operator=(const StubHost&) = delete;

    // What the effect is handed.
    PF_InData in = {};
    PF_OutData out = {};
    PF_UtilCallbacks utils = {};
    SPBasicSuite basic = {};
    PF_PreRenderCallbacks preRender = {};
    PF_SmartRenderCallbacks smartRender = {};

    // How the host answers.
    std::set<std::string> missingSuites; ///< as suiteText has them
    std::set<std::string> emptySuites;   ///< found, but with a null table
    /// Asked before each call, with its name and how often it has come, from 1. Not 0: the call fails with
    /// this code, or with null. What it throws goes to the effect.
    std::function<PF_Err(const std::string& call, int nth)> fault;
    PF_PixelFormat reportedFormat = PF_PixelFormat_ARGB32;
    PF_EffectWorld* inputWorld = nullptr;
    PF_EffectWorld* outputWorld = nullptr;
    PF_CheckoutResult layerAnswer = {};
    void* mainWindow = nullptr;
    std::string plugInPath; ///< without an end from 260 bytes on

    // What the host has seen.
    std::vector<std::string> calls;      ///< names, in order
    std::vector<std::string> callTexts;  ///< the same with arguments
    std::vector<PF_ParamDef> params;     ///< as registered; entry 0 is the input layer
    std::vector<PF_ProgPtr> references;  ///< of all calls that carry one
    std::vector<PF_ParamDef*> checkedIn; ///< the records given back, in order
    PF_RenderRequest lastRequest = {};

    struct UiUpdate {
        PF_ParamIndex index;
        PF_ParamDef def;
    };
    std::vector<UiUpdate> uiUpdates;

    struct WorldCall {
        std::string call;
        PF_EffectWorld* source;
        PF_EffectWorld* target;
        bool wholeWorld; ///< null rectangles, or for a fill a null colour
        PF_Rect rect;
    };
    std::vector<WorldCall> worldCalls; ///< copies and fills

    int count(const std::string& call) const;
    int suiteBalance() const { return suitesHeld; }
    int liveHandles() const { return static_cast<int>(blocks.size()); }
    int liveLocks() const;
    int liveWorlds() const { return static_cast<int>(worlds.size()); }
    bool isLive(PF_Handle handle) const { return blocks.count(handle) != 0; }
    void* memoryOf(PF_Handle handle) const { return *handle; }

    /// The array that goes with a command, over `params`, null at its end.
    PF_ParamDef** paramArray();

    /// Fails every call of this name.
    void failAll(const std::string& call, PF_Err code);

    // For the callbacks.
    struct Block {
        void* memory = nullptr;
        std::size_t size = 0;
        std::unique_ptr<std::max_align_t[]> bytes;
        int locks = 0;
    };
    PF_Err enter(const char* call, const std::string& arguments, PF_ProgPtr reference);
    PF_Err enter(const char* call, const std::string& arguments);
    Block& blockOf(PF_Handle handle);

    std::map<PF_Handle, std::unique_ptr<Block>> blocks;
    std::map<const void*, std::unique_ptr<std::max_align_t[]>> worlds; ///< by pixel address
    std::map<std::string, int> heldSuites;
    int suitesHeld = 0;

private:
    std::map<std::string, int> counts_;
    std::vector<PF_ParamDef*> array_;
};

/// The one that lives.
StubHost& stubHost();

/// The suite tables of the stub.
const void* stubSuite(const std::string& suite);
/// Fills the callback slots of a stub.
void connectStub(StubHost& host);

} // namespace kovalune::test
