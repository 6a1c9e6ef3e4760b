// A host of our own, stricter than any: it checks what it is handed, refuses calls out of order, counts what it lends, guards
// its images, and misbehaves where a test wants it to. What the plug-in does wrong comes to `faults`.
#pragma once

#include "adapters/openfx/Interface.h"
#include "tests/adapters/openfx/PropertyBag.h"
#include "tests/adapters/openfx/TestPicture.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace kovalune::test {

struct TestParam {
    TestParam(const std::string& paramName, const std::string& paramType,
              std::vector<PropertySpec> paramSpecs)
        : name(paramName), type(paramType), specs(std::move(paramSpecs)),
          bag("parameter " + paramName, specs) {}

    std::string name;
    std::string type;
    std::vector<PropertySpec> specs;
    PropertyBag bag;
    std::map<double, std::vector<double>> keys; ///< a value holds until the next one
};

struct TestClip {
    TestClip(const std::string& clipName, std::span<const PropertySpec> specs)
        : name(clipName), bag("clip " + clipName, specs) {}

    std::string name;
    PropertyBag bag;
    TestPicture* picture = nullptr; ///< null: the answer below
    openfx::Status noImage = openfx::kFailed;
    openfx::RectD definition = {};
};

/// A descriptor, one in a context, or an instance.
struct TestEffect {
    TestEffect(const std::string& what, std::span<const PropertySpec> specs) : bag(what, specs) {}

    PropertyBag bag;
    std::deque<TestClip> clips;
    std::deque<TestParam> params;
    std::atomic<int> abortAfter = -1; ///< so many times abort is answered with 0; negative: always
    std::atomic<int> abortsAsked = 0;

    TestClip& clip(const std::string& name);
    TestParam& param(const std::string& name);
    void set(const std::string& name, std::vector<double> value) {
        param(name).keys = {{0.0, std::move(value)}};
    }
    bool isEnabled(const std::string& name) { return param(name).bag.integer("OfxParamPropEnabled") != 0; }
};

struct TestHostOptions {
    std::set<std::string> withheld = {};   ///< suites by name and version: "OfxMessageSuite2"
    std::set<std::string> emptySlots = {}; ///< "OfxMessageSuite2", "OfxImageEffectSuite.abort"
    std::set<std::string> lacking = {};    ///< properties that this host does not know
    std::string type = "OfxTypeImageEffectHost";
    bool readsSlowly = false; ///< takes its time before it tells a value at a time
    bool hasRgb = true;
    bool booleansAnimate = true;
    unsigned int cpus = 3;
    unsigned int threads = 3; ///< that it gives at most; 0: it refuses
    bool callsOnSpawnedThread = false;
    int failingCall = 0; ///< of all calls that have a status, from 1; 0: none
    openfx::Status failure = openfx::kFailed;
};

struct RenderCall {
    double time = 0.0;
    openfx::RectI window = {};
    double scaleX = 1.0;
    double scaleY = 1.0;
};

class TestHost {
public:
    /// Opens the bundle's file; throws std::runtime_error if it cannot. One at a time.
    explicit TestHost(TestHostOptions options = {}, const std::string& file = KOVALUNE_OFX);
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    TestHostOptions& options() { return options_; }
    openfx::Plugin& plugin() const { return *plugin_; }

    openfx::Status load();
    openfx::Status unload();
    openfx::Status describe();
    openfx::Status describeInContext(const std::string& context);
    /// All four, which must be answered with 0.
    bool start(const std::string& context = openfx::name::kContextFilter);

    TestEffect& descriptor() { return *descriptor_; }
    TestEffect& descriptorIn(const std::string& context) { return *contexts_.at(context); }

    /// With the defaults, its picture clips connected.
    std::unique_ptr<TestEffect> makeInstance(const std::string& context = openfx::name::kContextFilter);
    openfx::Status create(TestEffect& instance);
    openfx::Status destroy(TestEffect& instance);
    openfx::Status changed(TestEffect& instance, const std::string& param);
    openfx::Status render(TestEffect& instance, const RenderCall& call);
    /// The arguments' set of an action that a test looks into.
    PropertyBag arguments() const { return {"arguments", argumentProperties()}; }
    PropertyBag renderArguments(const RenderCall& call) const;

    openfx::Status action(const char* name, TestEffect* effect, PropertyBag* in = nullptr,
                          PropertyBag* out = nullptr);

    std::vector<std::string> faults() const;
    /// Those shown since this was called last.
    std::vector<std::string> takeMessages();
    int lastingMessages() const { return lasting_; }
    int calls() const { return calls_; }
    int imagesOut() const { return imagesOut_; }
    /// Who read a value at a time, call by call.
    const std::vector<std::thread::id>& readers() const { return readers_; }

    // For the suites' functions.
    void fault(const std::string& what);
    /// Of a call that has a status: kOk, or that of the call that is to fail.
    openfx::Status enter(const char* call);
    openfx::Host* record() { return &record_; }
    const void* suite(const std::string& name, int version);
    void show(const std::string& text);
    void showLasting(int change) { lasting_ += change; }
    void lend(int images) { imagesOut_ += images; }
    void noteReader() { readers_.push_back(std::this_thread::get_id()); }
    std::recursive_mutex& mutex() { return mutex_; }

private:
    void openLibrary(const std::string& file);
    void fillHostProperties();
    void makeSuites();

    TestHostOptions options_;
    void* library_ = nullptr;
    openfx::Plugin* plugin_ = nullptr;
    PropertyBag properties_{"host", hostProperties()};
    openfx::Host record_ = {};
    openfx::PropertySuite propertySuite_ = {};
    openfx::ImageEffectSuite effectSuite_ = {};
    openfx::ParameterSuite paramSuite_ = {};
    openfx::MultiThreadSuite threadSuite_ = {};
    openfx::MessageSuite1 messageSuite1_ = {};
    openfx::MessageSuite2 messageSuite2_ = {};
    std::unique_ptr<TestEffect> descriptor_;
    std::map<std::string, std::unique_ptr<TestEffect>> contexts_;
    mutable std::recursive_mutex mutex_;
    std::vector<std::string> faults_;
    std::vector<std::string> messages_;
    std::vector<std::thread::id> readers_;
    std::atomic<int> calls_ = 0;
    std::atomic<int> lasting_ = 0;
    std::atomic<int> imagesOut_ = 0;
};

/// How many threads this process has.
int threadsOfProcess();

} // namespace kovalune::test
