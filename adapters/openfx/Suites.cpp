#include "adapters/openfx/Suites.h"

#include "adapters/openfx/ActionFailure.h"

namespace kovalune::openfx {

namespace {

template <class Suite>
const Suite* fetch(const Host& host, const char* suite, int version) {
    return host.fetchSuite == nullptr
               ? nullptr
               : static_cast<const Suite*>(host.fetchSuite(host.properties, suite, version));
}

bool serves(const PropertySuite* suite) {
    return suite != nullptr && suite->setPointer != nullptr && suite->setString != nullptr &&
           suite->setDouble != nullptr && suite->setInt != nullptr && suite->getPointer != nullptr &&
           suite->getString != nullptr && suite->getDouble != nullptr && suite->getInt != nullptr;
}

bool serves(const ImageEffectSuite* suite) {
    return suite != nullptr && suite->getPropertySet != nullptr && suite->getParamSet != nullptr &&
           suite->clipDefine != nullptr && suite->clipGetHandle != nullptr &&
           suite->clipGetPropertySet != nullptr && suite->clipGetImage != nullptr &&
           suite->clipReleaseImage != nullptr;
}

bool serves(const ParameterSuite* suite) {
    return suite != nullptr && suite->define != nullptr && suite->getHandle != nullptr &&
           suite->getPropertySet != nullptr && suite->getValue != nullptr && suite->getValueAtTime != nullptr;
}

template <class Suite>
const Suite* indispensable(const Host& host, const char* suite) {
    const auto* const found = fetch<Suite>(host, suite, 1);
    if (!serves(found)) {
        throw ActionFailure(kMissingHostFeature,
                            std::string("Kovalune needs version 1 of the host's ") + suite);
    }
    return found;
}

} // namespace

Suites fetchSuites(const Host& host) {
    Suites suites;
    suites.host = host.properties;
    suites.properties = indispensable<PropertySuite>(host, name::kPropertySuite);
    suites.effects = indispensable<ImageEffectSuite>(host, name::kImageEffectSuite);
    suites.params = indispensable<ParameterSuite>(host, name::kParameterSuite);
    const auto* const threads = fetch<MultiThreadSuite>(host, name::kMultiThreadSuite, 1);
    if (threads != nullptr && threads->multiThread != nullptr) {
        suites.threads = threads;
    }
    suites.messages = fetchMessages(host);
    const auto* const lasting = fetch<MessageSuite2>(host, name::kMessageSuite, 2);
    if (lasting != nullptr && lasting->setPersistentMessage != nullptr &&
        lasting->clearPersistentMessage != nullptr) {
        suites.lastingMessages = lasting;
    }
    return suites;
}

const MessageSuite1* fetchMessages(const Host& host) {
    const auto* const found = fetch<MessageSuite1>(host, name::kMessageSuite, 1);
    return found != nullptr && found->message != nullptr ? found : nullptr;
}

void tell(const Suites& suites, Effect effect, const std::string& words) {
    constexpr const char* kNoId = "";
    if (effect != nullptr && suites.lastingMessages != nullptr) {
        suites.lastingMessages->setPersistentMessage(effect, name::kMessageError, kNoId, "%s", words.c_str());
    } else if (suites.messages != nullptr) {
        suites.messages->message(effect, name::kMessageError, kNoId, "%s", words.c_str());
    }
}

} // namespace kovalune::openfx
