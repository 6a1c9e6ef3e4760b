#include "tests/adapters/openfx/TestHost.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace kovalune::test {

using namespace openfx;

namespace {

TestHost* theHost = nullptr;

struct ThreadState {
    std::vector<std::string> actions; ///< that it is in, the innermost last
    bool isSpawned = false;           ///< by the suite, for as long as it runs
    unsigned int index = 0;
    std::string lent; ///< what a property suite has handed out last: it is worth nothing after the next call
};

/// Of the calling thread. Not thread-local: on Windows such objects are gone before they are destroyed.
ThreadState& ofThread() {
    static std::mutex mutex;
    static std::map<std::thread::id, ThreadState> states;
    const std::lock_guard lock(mutex);
    return states[std::this_thread::get_id()];
}

std::string currentAction() {
    const std::vector<std::string>& actions = ofThread().actions;
    return actions.empty() ? "" : actions.back();
}

class InAction {
public:
    explicit InAction(const char* name) { ofThread().actions.emplace_back(name); }
    ~InAction() { ofThread().actions.pop_back(); }
    InAction(const InAction&) = delete;
    InAction& operator=(const InAction&) = delete;
};

/// A call of a suite's function, counted and looked at.
class Call {
public:
    explicit Call(const char* name) : lock_(theHost->mutex()), name_(name), status_(theHost->enter(name)) {
        std::string& lent = ofThread().lent;
        lent.assign(lent.size(), '?');
        if (currentAction().empty()) {
            fault("outside of any action");
        }
    }
    bool fails() const { return status_ != kOk; }
    Status status() const { return status_; }
    Status wrong(Status status, const std::string& why) const {
        fault(why);
        return status;
    }
    void fault(const std::string& why) const {
        theHost->fault(std::string(name_) + " in " + currentAction() + ": " + why);
    }
    void onlyIn(std::initializer_list<const char*> where) const {
        for (const char* const each : where) {
            if (currentAction() == each) {
                return;
            }
        }
        fault("out of order");
    }

private:
    std::lock_guard<std::recursive_mutex> lock_;
    const char* name_;
    Status status_;
};

PropertyBag* bagOf(Properties handle) {
    return reinterpret_cast<PropertyBag*>(handle);
}

Properties handleOf(PropertyBag& bag) {
    return reinterpret_cast<Properties>(&bag);
}

template <class Type>
constexpr PropertyType kTypeOf = PropertyType::kPointer;
template <>
constexpr PropertyType kTypeOf<int> = PropertyType::kInt;
template <>
constexpr PropertyType kTypeOf<double> = PropertyType::kDouble;
template <>
constexpr PropertyType kTypeOf<std::string> = PropertyType::kString;

/// The property that a call is about; null with the call's answer otherwise.
const PropertySpec* specFor(const Call& call, Properties handle, const char* name, PropertyType type,
                            Status& answer) {
    if (handle == nullptr || name == nullptr) {
        answer = call.wrong(kBadHandle, "no set or no name");
        return nullptr;
    }
    PropertyBag& bag = *bagOf(handle);
    if (theHost->options().lacking.count(name) == 1 || bag.isRemoved(name)) {
        answer = kUnknown;
        return nullptr;
    }
    const PropertySpec* const spec = bag.specOf(name);
    if (spec == nullptr) {
        answer = call.wrong(kUnknown, bag.what() + " has no " + name);
        return nullptr;
    }
    if (spec->type != type) {
        answer = call.wrong(kBadValue, std::string(name) + " has another type");
        return nullptr;
    }
    answer = kOk;
    return spec;
}

template <class Value>
Status setProperty(const char* function, Properties handle, const char* name, int index, Value value) {
    const Call call(function);
    if (call.fails()) {
        return call.status();
    }
    Status answer = kOk;
    const PropertySpec* const spec = specFor(call, handle, name, kTypeOf<Value>, answer);
    if (spec == nullptr) {
        return answer;
    }
    std::vector<PropertyValue>& values = bagOf(handle)->values(name);
    if (!spec->isWritable) {
        return call.wrong(kBadValue, std::string(name) + " of " + bagOf(handle)->what() + " is the host's");
    }
    const auto place = static_cast<std::size_t>(index);
    if (index < 0 || (spec->dimension > 0 && index >= spec->dimension) ||
        (spec->dimension == 0 && place > values.size())) {
        return call.wrong(kBadIndex, std::string(name) + " has no place " + std::to_string(index));
    }
    if (values.size() <= place) {
        values.resize(place + 1, PropertyValue(Value{}));
    }
    values[place] = value;
    return kOk;
}

template <class Value, class Out>
Status getProperty(const char* function, Properties handle, const char* name, int index, Out* out) {
    const Call call(function);
    if (call.fails()) {
        return call.status();
    }
    Status answer = kOk;
    if (specFor(call, handle, name, kTypeOf<Value>, answer) == nullptr) {
        return answer;
    }
    PropertyBag& bag = *bagOf(handle);
    if (!bag.has(name)) {
        return kUnknown;
    }
    const std::vector<PropertyValue>& values = bag.values(name);
    if (index < 0 || static_cast<std::size_t>(index) >= values.size()) {
        return kBadIndex;
    }
    const Value& value = std::get<Value>(values[static_cast<std::size_t>(index)]);
    if constexpr (std::is_same_v<Value, std::string>) {
        std::string& lent = ofThread().lent;
        lent = value;
        *out = lent.data();
    } else {
        *out = value;
    }
    return kOk;
}

Status setPointer(Properties set, const char* name, int index, void* value) {
    return setProperty<void*>("propSetPointer", set, name, index, value);
}
Status setString(Properties set, const char* name, int index, const char* value) {
    return setProperty<std::string>("propSetString", set, name, index, value);
}
Status setDouble(Properties set, const char* name, int index, double value) {
    return setProperty<double>("propSetDouble", set, name, index, value);
}
Status setInt(Properties set, const char* name, int index, int value) {
    return setProperty<int>("propSetInt", set, name, index, value);
}
Status getPointer(Properties set, const char* name, int index, void** value) {
    return getProperty<void*>("propGetPointer", set, name, index, value);
}
Status getString(Properties set, const char* name, int index, char** value) {
    return getProperty<std::string>("propGetString", set, name, index, value);
}
Status getDouble(Properties set, const char* name, int index, double* value) {
    return getProperty<double>("propGetDouble", set, name, index, value);
}
Status getInt(Properties set, const char* name, int index, int* value) {
    return getProperty<int>("propGetInt", set, name, index, value);
}

TestEffect* effectOf(Effect handle) {
    return reinterpret_cast<TestEffect*>(handle);
}

Status getEffectProperties(Effect effect, Properties* out) {
    const Call call("getPropertySet");
    if (call.fails()) {
        return call.status();
    }
    if (effect == nullptr) {
        return call.wrong(kBadHandle, "no effect");
    }
    *out = handleOf(effectOf(effect)->bag);
    return kOk;
}

Status getParamSet(Effect effect, ParamSet* out) {
    const Call call("getParamSet");
    if (call.fails()) {
        return call.status();
    }
    *out = reinterpret_cast<ParamSet>(effect);
    return effect == nullptr ? call.wrong(kBadHandle, "no effect") : kOk;
}

Status clipDefine(Effect effect, const char* name, Properties* out) {
    const Call call("clipDefine");
    call.onlyIn({name::kDescribeInContext});
    if (call.fails()) {
        return call.status();
    }
    TestEffect& of = *effectOf(effect);
    for (const TestClip& clip : of.clips) {
        if (clip.name == name) {
            return call.wrong(kExists, std::string("a second clip ") + name);
        }
    }
    TestClip& clip = of.clips.emplace_back(name, clipProperties());
    clip.bag.put("OfxPropType", std::string("OfxTypeClip"));
    clip.bag.put("OfxPropName", std::string(name));
    *out = handleOf(clip.bag);
    return kOk;
}

/// A clip or a parameter by its name, with its properties where they are asked for.
template <class Handle, class Owned>
Status handOut(const char* callName, std::deque<Owned>& all, const char* name, Handle* out,
               Properties* properties) {
    const Call call(callName);
    if (call.fails()) {
        return call.status();
    }
    for (Owned& each : all) {
        if (each.name == name) {
            *out = reinterpret_cast<Handle>(&each);
            if (properties != nullptr) {
                *properties = handleOf(each.bag);
            }
            return kOk;
        }
    }
    return kUnknown;
}

Status handOutProperties(const char* callName, PropertyBag& bag, Properties* out) {
    const Call call(callName);
    if (call.fails()) {
        return call.status();
    }
    *out = handleOf(bag);
    return kOk;
}

Status clipGetHandle(Effect effect, const char* name, Clip* out, Properties* properties) {
    return handOut("clipGetHandle", effectOf(effect)->clips, name, out, properties);
}

Status clipGetPropertySet(Clip clip, Properties* out) {
    return handOutProperties("clipGetPropertySet", reinterpret_cast<TestClip*>(clip)->bag, out);
}

Status clipGetImage(Clip handle, double, const RectD*, Properties* out) {
    const Call call("clipGetImage");
    call.onlyIn({name::kRender});
    if (call.fails()) {
        return call.status();
    }
    TestClip& clip = *reinterpret_cast<TestClip*>(handle);
    if (clip.picture == nullptr) {
        if (clip.noImage == kOk) {
            *out = nullptr;
        }
        return clip.noImage;
    }
    TestPicture& picture = *clip.picture;
    auto bag = std::make_unique<PropertyBag>("image of " + clip.name, imageProperties());
    const RectI bounds = picture.bounds();
    bag->put("OfxPropType", std::string("OfxTypeImage"));
    bag->put("OfxImageEffectPropPixelDepth", picture.form().depth);
    bag->put("OfxImageEffectPropComponents", picture.form().components);
    bag->put("OfxImageEffectPropPreMultiplication", picture.form().premultiplication);
    bag->put("OfxImagePropData", static_cast<void*>(picture.lowerLeft()));
    bag->put("OfxImagePropBounds", bounds.x1, bounds.y1, bounds.x2, bounds.y2);
    bag->put("OfxImagePropRowBytes", static_cast<int>(picture.rowBytes()));
    *out = handleOf(*bag.release());
    theHost->lend(1);
    return kOk;
}

Status clipReleaseImage(Properties image) {
    const Call call("clipReleaseImage");
    call.onlyIn({name::kRender});
    if (image == nullptr) {
        return call.wrong(kBadHandle, "no image");
    }
    delete bagOf(image); // given back even where the call is to fail, for the count of what is out
    theHost->lend(-1);
    return call.status();
}

Status clipGetRegionOfDefinition(Clip clip, double, RectD* out) {
    const Call call("clipGetRegionOfDefinition");
    if (call.fails()) {
        return call.status();
    }
    *out = reinterpret_cast<TestClip*>(clip)->definition;
    return kOk;
}

int abortOf(Effect handle) {
    const Call call("abort");
    call.onlyIn({name::kRender});
    TestEffect& effect = *effectOf(handle);
    return effect.abortAfter >= 0 && effect.abortsAsked++ >= effect.abortAfter ? 1 : 0;
}

Status paramDefine(ParamSet set, const char* type, const char* name, Properties* out) {
    const Call call("paramDefine");
    call.onlyIn({name::kDescribeInContext});
    if (call.fails()) {
        return call.status();
    }
    TestEffect& effect = *reinterpret_cast<TestEffect*>(set);
    for (const TestParam& param : effect.params) {
        if (param.name == name) {
            return call.wrong(kExists, std::string("a second parameter ") + name);
        }
    }
    TestParam& param = effect.params.emplace_back(name, type, paramProperties(type, false));
    param.bag.put("OfxPropType", std::string("OfxTypeParameter"));
    param.bag.put("OfxPropName", std::string(name));
    *out = handleOf(param.bag);
    return kOk;
}

Status paramGetHandle(ParamSet set, const char* name, Param* out, Properties* properties) {
    return handOut("paramGetHandle", reinterpret_cast<TestEffect*>(set)->params, name, out, properties);
}

Status paramGetPropertySet(Param param, Properties* out) {
    return handOutProperties("paramGetPropertySet", reinterpret_cast<TestParam*>(param)->bag, out);
}

Status readValue(const Call& call, const TestParam& param, double time, va_list out) {
    if (param.keys.empty()) {
        return call.wrong(kBadHandle, param.name + " has no value");
    }
    auto key = param.keys.upper_bound(time);
    if (key != param.keys.begin()) {
        --key;
    }
    const bool isDouble = param.type == "OfxParamTypeDouble" || param.type == "OfxParamTypeRGB";
    for (const double value : key->second) {
        if (isDouble) {
            *va_arg(out, double*) = value;
        } else {
            *va_arg(out, int*) = static_cast<int>(value);
        }
    }
    return kOk;
}

Status paramGetValue(Param handle, ...) {
    const Call call("paramGetValue");
    if (currentAction() == name::kRender || currentAction() == name::kIsIdentity) {
        call.fault("without a time");
    }
    if (call.fails()) {
        return call.status();
    }
    va_list out;
    va_start(out, handle);
    const Status status = readValue(call, *reinterpret_cast<TestParam*>(handle), 0.0, out);
    va_end(out);
    return status;
}

Status paramGetValueAtTime(Param handle, double time, ...) {
    if (theHost->options().readsSlowly) {
        std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
    const Call call("paramGetValueAtTime");
    theHost->noteReader();
    if (call.fails()) {
        return call.status();
    }
    va_list out;
    va_start(out, time);
    const Status status = readValue(call, *reinterpret_cast<TestParam*>(handle), time, out);
    va_end(out);
    return status;
}

Status multiThread(ThreadFunction function, unsigned int count, void* argument) {
    {
        const Call call("multiThread");
        if (call.fails()) {
            return call.status();
        }
        if (ofThread().isSpawned) {
            return call.wrong(kExists, "nested");
        }
    }
    const unsigned int given = std::min(count, theHost->options().threads);
    if (given == 0) {
        return kFailed;
    }
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < given; ++i) {
        threads.emplace_back([=] {
            ThreadState& state = ofThread();
            state.isSpawned = true;
            state.index = i;
            function(i, given, argument);
            state = {}; // another thread may get its number
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return kOk;
}

Status numCpus(unsigned int* count) {
    const Call call("multiThreadNumCPUs");
    *count = theHost->options().cpus;
    return call.status();
}

Status indexOfThread(unsigned int* index) {
    *index = ofThread().index;
    return kOk;
}

int isSpawnedThread() {
    return ofThread().isSpawned || theHost->options().callsOnSpawnedThread ? 1 : 0;
}

std::string formatted(const char* format, va_list arguments) {
    char text[1024];
    std::vsnprintf(text, sizeof text, format, arguments);
    return text;
}

Status message(void*, const char* type, const char*, const char* format, ...) {
    const Call call("message");
    va_list arguments;
    va_start(arguments, format);
    theHost->show(std::string(type) + ": " + formatted(format, arguments));
    va_end(arguments);
    return call.status();
}

Status setPersistentMessage(void* effect, const char* type, const char*, const char* format, ...) {
    const Call call("setPersistentMessage");
    if (effect == nullptr) {
        call.fault("no effect");
    }
    va_list arguments;
    va_start(arguments, format);
    theHost->show(std::string(type) + ": " + formatted(format, arguments));
    va_end(arguments);
    theHost->showLasting(1);
    return call.status();
}

Status clearPersistentMessage(void*) {
    const Call call("clearPersistentMessage");
    theHost->showLasting(-theHost->lastingMessages());
    return call.status();
}

const void* fetchSuite(Properties, const char* name, int version) {
    if (currentAction().empty()) {
        theHost->fault("fetchSuite before OfxActionLoad");
    }
    return theHost->suite(name, version);
}

std::vector<double> numbersOf(const std::vector<PropertyValue>& values) {
    std::vector<double> numbers;
    for (const PropertyValue& value : values) {
        numbers.push_back(std::holds_alternative<int>(value) ? std::get<int>(value)
                                                             : std::get<double>(value));
    }
    return numbers;
}

} // namespace

TestClip& TestEffect::clip(const std::string& name) {
    for (TestClip& each : clips) {
        if (each.name == name) {
            return each;
        }
    }
    throw std::runtime_error("no clip " + name);
}

TestParam& TestEffect::param(const std::string& name) {
    for (TestParam& each : params) {
        if (each.name == name) {
            return each;
        }
    }
    throw std::runtime_error("no parameter " + name);
}

TestHost::TestHost(TestHostOptions options, const std::string& file) : options_(std::move(options)) {
    theHost = this;
    fillHostProperties();
    makeSuites();
    record_ = {handleOf(properties_), fetchSuite};
    openLibrary(file);
    plugin_->setHost(&record_);
}

TestHost::~TestHost() {
#ifdef _WIN32
    FreeLibrary(static_cast<HMODULE>(library_));
#else
    dlclose(library_);
#endif
    theHost = nullptr;
}

void TestHost::openLibrary(const std::string& file) {
    using GetNumber = int (*)();
    using GetPlugin = Plugin* (*)(int);
#ifdef _WIN32
    library_ = LoadLibraryA(file.c_str());
    const auto symbol = [this](const char* name) {
        return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library_), name));
    };
#else
    library_ = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    const auto symbol = [this](const char* name) { return dlsym(library_, name); };
#endif
    if (library_ == nullptr) {
        throw std::runtime_error("cannot open " + file);
    }
    const auto number = reinterpret_cast<GetNumber>(symbol("OfxGetNumberOfPlugins"));
    const auto plugin = reinterpret_cast<GetPlugin>(symbol("OfxGetPlugin"));
    if (number == nullptr || plugin == nullptr || number() != 1 || plugin(1) != nullptr ||
        plugin(-1) != nullptr) {
        throw std::runtime_error("no plug-in in " + file);
    }
    plugin_ = plugin(0);
}

void TestHost::fillHostProperties() {
    properties_.put("OfxPropAPIVersion", 1, 4);
    properties_.put("OfxPropType", options_.type);
    properties_.put("OfxPropName", std::string("org.example.host"));
    properties_.put("OfxPropLabel", std::string("Host"));
    if (options_.hasRgb) {
        properties_.put("OfxImageEffectPropSupportedComponents", std::string("OfxImageComponentRGBA"),
                        std::string("OfxImageComponentRGB"), std::string("OfxImageComponentAlpha"));
    } else {
        properties_.put("OfxImageEffectPropSupportedComponents", std::string("OfxImageComponentRGBA"));
    }
    properties_.put("OfxParamHostPropSupportsBooleanAnimation", options_.booleansAnimate ? 1 : 0);
    properties_.put("OfxParamHostPropSupportsChoiceAnimation", 0);
}

void TestHost::makeSuites() {
    propertySuite_.setPointer = setPointer;
    propertySuite_.setString = setString;
    propertySuite_.setDouble = setDouble;
    propertySuite_.setInt = setInt;
    propertySuite_.getPointer = getPointer;
    propertySuite_.getString = getString;
    propertySuite_.getDouble = getDouble;
    propertySuite_.getInt = getInt;
    effectSuite_ = {};
    effectSuite_.getPropertySet = getEffectProperties;
    effectSuite_.getParamSet = getParamSet;
    effectSuite_.clipDefine = clipDefine;
    effectSuite_.clipGetHandle = clipGetHandle;
    effectSuite_.clipGetPropertySet = clipGetPropertySet;
    effectSuite_.clipGetImage = clipGetImage;
    effectSuite_.clipReleaseImage = clipReleaseImage;
    effectSuite_.clipGetRegionOfDefinition = clipGetRegionOfDefinition;
    effectSuite_.abort = options_.emptySlots.count("OfxImageEffectSuite.abort") == 1 ? nullptr : abortOf;
    paramSuite_.define = paramDefine;
    paramSuite_.getHandle = paramGetHandle;
    paramSuite_.getPropertySet = paramGetPropertySet;
    paramSuite_.getValue = paramGetValue;
    paramSuite_.getValueAtTime = paramGetValueAtTime;
    threadSuite_.multiThread = multiThread;
    threadSuite_.numCpus = numCpus;
    threadSuite_.index = indexOfThread;
    threadSuite_.isSpawnedThread = isSpawnedThread;
    messageSuite1_.message = message;
    if (options_.emptySlots.count("OfxMessageSuite2") == 0) {
        messageSuite2_ = {message, setPersistentMessage, clearPersistentMessage};
    }
}

const void* TestHost::suite(const std::string& name, int version) {
    if (options_.withheld.count(name + std::to_string(version)) == 1) {
        return nullptr;
    }
    if (version == 1) {
        return name == name::kPropertySuite      ? static_cast<const void*>(&propertySuite_)
               : name == name::kImageEffectSuite ? &effectSuite_
               : name == name::kParameterSuite   ? &paramSuite_
               : name == name::kMultiThreadSuite ? &threadSuite_
               : name == name::kMessageSuite     ? static_cast<const void*>(&messageSuite1_)
                                                 : nullptr;
    }
    return name == name::kMessageSuite && version == 2 ? &messageSuite2_ : nullptr;
}

Status TestHost::enter(const char*) {
    return ++calls_ == options_.failingCall ? options_.failure : kOk;
}

void TestHost::fault(const std::string& what) {
    const std::lock_guard lock(mutex_);
    faults_.push_back(what);
}

std::vector<std::string> TestHost::faults() const {
    const std::lock_guard lock(mutex_);
    return faults_;
}

void TestHost::show(const std::string& text) {
    const std::lock_guard lock(mutex_);
    messages_.push_back(text);
}

std::vector<std::string> TestHost::takeMessages() {
    const std::lock_guard lock(mutex_);
    return std::exchange(messages_, {});
}

Status TestHost::action(const char* name, TestEffect* effect, PropertyBag* in, PropertyBag* out) {
    const InAction inside(name);
    return plugin_->mainEntry(name, effect, in == nullptr ? nullptr : handleOf(*in),
                              out == nullptr ? nullptr : handleOf(*out));
}

Status TestHost::load() {
    return action(name::kLoad, nullptr);
}

Status TestHost::unload() {
    return action(name::kUnload, nullptr);
}

Status TestHost::describe() {
    descriptor_ = std::make_unique<TestEffect>("descriptor", effectProperties());
    return action(name::kDescribe, descriptor_.get());
}

Status TestHost::describeInContext(const std::string& context) {
    auto described = std::make_unique<TestEffect>("descriptor in " + context, effectProperties());
    described->bag = descriptor_->bag;
    PropertyBag in = arguments();
    in.put("OfxImageEffectPropContext", context);
    const Status status = action(name::kDescribeInContext, described.get(), &in);
    contexts_[context] = std::move(described);
    return status;
}

bool TestHost::start(const std::string& context) {
    return load() == kOk && describe() == kOk && describeInContext(context) == kOk;
}

std::unique_ptr<TestEffect> TestHost::makeInstance(const std::string& context) {
    auto instance = std::make_unique<TestEffect>("instance", instanceProperties());
    instance->bag.put("OfxPropType", std::string("OfxTypeImageEffectInstance"));
    instance->bag.put("OfxImageEffectPropContext", context);
    instance->bag.put("OfxPropInstanceData", static_cast<void*>(nullptr));
    TestEffect& described = *contexts_.at(context);
    for (TestClip& clip : described.clips) {
        TestClip& own = instance->clips.emplace_back(clip.name, clipInstanceProperties());
        own.bag.put("OfxImageClipPropConnected", clip.name == "Mask" ? 0 : 1);
        own.bag.put("OfxImageEffectPropPixelDepth", std::string("OfxBitDepthByte"));
        own.bag.put("OfxImageEffectPropComponents", std::string("OfxImageComponentRGBA"));
        own.bag.put("OfxImageEffectPropPreMultiplication", std::string("OfxImageAlphaUnPremultiplied"));
        own.definition = {0.0, 0.0, 640.0, 480.0};
    }
    for (TestParam& param : described.params) {
        TestParam& own =
            instance->params.emplace_back(param.name, param.type, paramProperties(param.type, true));
        own.bag.put("OfxPropName", param.name);
        own.bag.put("OfxParamPropEnabled", 1);
        if (param.type != name::kTypeGroup) {
            own.keys = {{0.0, numbersOf(param.bag.values("OfxParamPropDefault"))}};
        }
    }
    return instance;
}

Status TestHost::create(TestEffect& instance) {
    return action(name::kCreateInstance, &instance);
}

Status TestHost::destroy(TestEffect& instance) {
    return action(name::kDestroyInstance, &instance);
}

Status TestHost::changed(TestEffect& instance, const std::string& param) {
    PropertyBag in = arguments();
    in.put("OfxPropChangeReason", std::string("OfxChangeUserEdited"));
    if (action(name::kBeginInstanceChanged, &instance, &in) != kOk) {
        return kFailed;
    }
    in.put("OfxPropType", std::string("OfxTypeParameter"));
    in.put("OfxPropName", param);
    in.put("OfxPropTime", 0.0);
    in.put("OfxImageEffectPropRenderScale", 1.0, 1.0);
    const Status status = action(name::kInstanceChanged, &instance, &in);
    return action(name::kEndInstanceChanged, &instance, &in) == kOk ? status : kFailed;
}

PropertyBag TestHost::renderArguments(const RenderCall& call) const {
    PropertyBag in = arguments();
    in.put("OfxPropTime", call.time);
    in.put("OfxImageEffectPropFieldToRender", std::string("OfxFieldBoth"));
    in.put("OfxImageEffectPropRenderWindow", call.window.x1, call.window.y1, call.window.x2, call.window.y2);
    in.put("OfxImageEffectPropRenderScale", call.scaleX, call.scaleY);
    return in;
}

Status TestHost::render(TestEffect& instance, const RenderCall& call) {
    PropertyBag in = renderArguments(call);
    PropertyBag sequence = arguments();
    sequence.put("OfxImageEffectPropFrameRange", call.time, call.time);
    if (action(name::kBeginSequenceRender, &instance, &sequence) != kOk) {
        return kFailed;
    }
    const Status status = action(name::kRender, &instance, &in);
    return action(name::kEndSequenceRender, &instance, &sequence) == kOk ? status : kFailed;
}

int threadsOfProcess() {
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        ++count;
    }
    return count;
}

} // namespace kovalune::test
