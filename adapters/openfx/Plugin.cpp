// The functions by which hosts find the plug-in, and the one by which they call it: every action, and what becomes of what it
// throws.
#include "adapters/openfx/ActionFailure.h"
#include "adapters/openfx/Describe.h"
#include "adapters/openfx/Engine.h"
#include "adapters/openfx/Instance.h"
#include "adapters/openfx/Interface.h"
#include "adapters/openfx/PropertySet.h"
#include "adapters/openfx/Render.h"
#include "adapters/openfx/Suites.h"
#include "host/HostError.h"
#include "render/EffectVersion.h"

#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

#ifdef _WIN32
#define KOVALUNE_EXPORTED extern "C" __declspec(dllexport)
#else
#define KOVALUNE_EXPORTED extern "C" __attribute__((visibility("default")))
#endif

namespace kovalune::openfx {

namespace {

/// From a load to the unload; instances hold it longer where a host takes them along.
class Loaded {
public:
    explicit Loaded(const Host& host) : suites_(fetchSuites(host)) {
        Engine engine(suites_); // the effect's first call is made and undone here
        controls_ = controlsOf(engine.session());
        version_ = render::versionText(engine.session().effectVersion());
    }

    const Suites& suites() const { return suites_; }
    const std::vector<Control>& controls() const { return controls_; }
    const std::string& version() const { return version_; }

    /// The one of all instances: made for the first, gone with the last.
    std::shared_ptr<Engine> engine() {
        const std::lock_guard lock(mutex_);
        std::shared_ptr<Engine> engine = engine_.lock();
        if (!engine) {
            engine = std::make_shared<Engine>(suites_);
            engine_ = engine;
        }
        return engine;
    }

    void purge() {
        const std::lock_guard lock(mutex_);
        if (const std::shared_ptr<Engine> engine = engine_.lock()) {
            engine->forgetImages();
        }
    }

private:
    Suites suites_;
    std::vector<Control> controls_;
    std::string version_;
    std::mutex mutex_;
    std::weak_ptr<Engine> engine_;
};

/// What the host keeps as the instance's data.
struct Kept {
    Kept(std::shared_ptr<Loaded> of, Effect effect)
        : loaded(std::move(of)), instance(loaded->suites(), loaded->controls(), loaded->engine(), effect) {}

    const std::shared_ptr<Loaded> loaded; ///< what the instance refers to
    Instance instance;
};

std::mutex stateMutex;
constinit Host* theHost = nullptr;
constinit std::shared_ptr<Loaded> theLoaded;

/// Loading again is not doing it twice: some hosts load and describe for each frame, on several threads, and unload once.
Status load() {
    const std::lock_guard lock(stateMutex);
    if (theHost == nullptr) {
        return kFailed;
    }
    if (theLoaded) {
        return kOk;
    }
    try {
        theLoaded = std::make_shared<Loaded>(*theHost);
    } catch (const ActionFailure& failure) {
        if (const MessageSuite1* const messages = fetchMessages(*theHost)) {
            messages->message(nullptr, name::kMessageError, "", "%s", failure.what());
        }
        return failure.status();
    }
    return kOk;
}

Status unload() {
    const std::lock_guard lock(stateMutex);
    theLoaded.reset();
    return kOk;
}

std::shared_ptr<Loaded> loaded() {
    const std::lock_guard lock(stateMutex);
    return theLoaded;
}

class Action {
public:
    Action(std::string_view action, const void* handle, Properties in, Properties out)
        : action_(action), effect_(static_cast<Effect>(const_cast<void*>(handle))), in_(in), out_(out) {}

    Status run() {
        if (action_ == name::kLoad) {
            return load();
        }
        if (action_ == name::kUnload) {
            return unload();
        }
        const std::shared_ptr<Loaded> loaded = openfx::loaded();
        if (!loaded) {
            return kFailed;
        }
        if (effect_ == nullptr) {
            return kBadHandle;
        }
        loaded_ = loaded;
        return told(*loaded);
    }

private:
    PropertySet in() const { return {*loaded_->suites().properties, in_}; }
    PropertySet out() const { return {*loaded_->suites().properties, out_}; }

    /// What it throws, the user is told.
    Status told(const Loaded& loaded) {
        try {
            return runLoaded();
        } catch (const ActionFailure& failure) {
            return fail(loaded, failure.status(), failure.what());
        } catch (const host::HostError& failure) {
            return fail(loaded, kFailed, std::string("Kovalune: ") + failure.what());
        } catch (const std::bad_alloc&) {
            return fail(loaded, kMemory, "Kovalune has too little memory");
        }
    }

    Status fail(const Loaded& loaded, Status status, const std::string& words) const {
        tell(loaded.suites(), effect_, words);
        if (Kept* const kept = keptOrNull()) {
            kept->instance.hasMessage = true;
        }
        return status;
    }

    Status runLoaded() {
        if (action_ == name::kDescribe) {
            describe(loaded_->suites(), effect_, loaded_->version());
            return kOk;
        }
        if (action_ == name::kDescribeInContext) {
            describeInContext(loaded_->suites(), effect_,
                              in().text(name::kContext).value_or(name::kContextFilter), loaded_->controls());
            return kOk;
        }
        if (action_ == name::kCreateInstance) {
            return createInstance();
        }
        if (action_ == name::kDestroyInstance) {
            return destroyInstance();
        }
        if (action_ == name::kPurgeCaches) {
            loaded_->purge();
            return kOk;
        }
        return runOfInstance();
    }

    Status runOfInstance() {
        if (action_ == name::kRender) {
            return renderFrame(instance());
        }
        if (action_ == name::kIsIdentity) {
            return isIdentity(instance(), in(), out());
        }
        if (action_ == name::kGetRegionsOfInterest) {
            return regionsOfInterest(instance(), in(), out());
        }
        if (action_ == name::kGetRegionOfDefinition) {
            return regionOfDefinition(instance(), in(), out());
        }
        if (action_ == name::kGetClipPreferences) {
            return clipPreferences(instance(), out());
        }
        if (action_ == name::kInstanceChanged) {
            instance().updateEnabled();
            return kOk;
        }
        for (const char* const known :
             {name::kBeginInstanceChanged, name::kEndInstanceChanged, name::kSyncPrivateData,
              name::kBeginSequenceRender, name::kEndSequenceRender}) {
            if (action_ == known) {
                return kOk;
            }
        }
        return kReplyDefault;
    }

    Status renderFrame(Instance& of) const {
        const Status status = render(of, in());
        if (status == kOk && of.suites().lastingMessages != nullptr && of.hasMessage.exchange(false)) {
            of.suites().lastingMessages->clearPersistentMessage(of.effect());
        }
        return status;
    }

    PropertySet effectProperties() const {
        Properties properties = nullptr;
        if (loaded_->suites().effects->getPropertySet(effect_, &properties) != kOk) {
            properties = nullptr;
        }
        return {*loaded_->suites().properties, properties};
    }

    Status createInstance() {
        auto kept = std::make_unique<Kept>(loaded_, effect_);
        kept->instance.updateEnabled();
        effectProperties().setPointer(name::kInstanceData, kept.get());
        static_cast<void>(kept.release()); // the host's until it is destroyed
        return kOk;
    }

    Status destroyInstance() {
        const std::unique_ptr<Kept> kept(keptOrNull());
        if (!kept) {
            return kBadHandle;
        }
        effectProperties().offerPointer(name::kInstanceData, nullptr);
        return kOk;
    }

    Kept* keptOrNull() const {
        if (action_ == name::kDescribe || action_ == name::kDescribeInContext ||
            action_ == name::kCreateInstance) {
            return nullptr;
        }
        return static_cast<Kept*>(effectProperties().pointer(name::kInstanceData));
    }

    Instance& instance() const {
        Kept* const kept = keptOrNull();
        if (kept == nullptr) {
            throw ActionFailure(kBadHandle, "the host calls an instance that was not created");
        }
        return kept->instance;
    }

    std::string_view action_;
    Effect effect_;
    Properties in_;
    Properties out_;
    std::shared_ptr<Loaded> loaded_;
};

/// Nothing may be thrown into the host.
Status mainEntry(const char* action, const void* handle, Properties inArgs, Properties outArgs) {
    try {
        return action == nullptr ? kFailed : Action(action, handle, inArgs, outArgs).run();
    } catch (const std::bad_alloc&) {
        return kMemory;
    } catch (...) {
        return kFailed;
    }
}

void setHost(Host* host) {
    const std::lock_guard lock(stateMutex);
    theHost = host;
}

constinit Plugin thePlugin = {name::kApi, 1, kIdentifier, kVersionMajor, kVersionMinor, setHost, mainEntry};

} // namespace

} // namespace kovalune::openfx

KOVALUNE_EXPORTED int OfxGetNumberOfPlugins() {
    return 1;
}

KOVALUNE_EXPORTED kovalune::openfx::Plugin* OfxGetPlugin(int index) {
    return index == 0 ? &kovalune::openfx::thePlugin : nullptr;
}

KOVALUNE_EXPORTED int OfxSetHost(const kovalune::openfx::Host*) {
    return kovalune::openfx::kOk; // each plug-in gets it too, to keep
}
