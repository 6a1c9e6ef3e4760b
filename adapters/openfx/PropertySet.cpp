#include "adapters/openfx/PropertySet.h"

#include "adapters/openfx/ActionFailure.h"

#include <array>

namespace kovalune::openfx {

namespace {

void require(Status status, const char* property) {
    if (status != kOk) {
        throw ActionFailure(status == kMemory ? kMemory : kFailed,
                            std::string("the host does not take the property ") + property);
    }
}

} // namespace

std::optional<std::string> PropertySet::text(const char* property, int index) const {
    char* value = nullptr;
    if (handle_ == nullptr || suite_.getString(handle_, property, index, &value) != kOk || value == nullptr) {
        return std::nullopt;
    }
    return std::string(value);
}

std::optional<int> PropertySet::integer(const char* property, int index) const {
    int value = 0;
    if (handle_ == nullptr || suite_.getInt(handle_, property, index, &value) != kOk) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> PropertySet::number(const char* property, int index) const {
    double value = 0.0;
    if (handle_ == nullptr || suite_.getDouble(handle_, property, index, &value) != kOk) {
        return std::nullopt;
    }
    return value;
}

void* PropertySet::pointer(const char* property) const {
    void* value = nullptr;
    if (handle_ == nullptr || suite_.getPointer(handle_, property, 0, &value) != kOk) {
        return nullptr;
    }
    return value;
}

std::optional<RectI> PropertySet::rectangle(const char* property) const {
    std::array<int, 4> sides = {};
    for (int i = 0; i < 4; ++i) {
        const std::optional<int> side = integer(property, i);
        if (!side) {
            return std::nullopt;
        }
        sides[static_cast<std::size_t>(i)] = *side;
    }
    return RectI{sides[0], sides[1], sides[2], sides[3]};
}

void PropertySet::set(const char* property, const char* value, int index) const {
    require(handle_ == nullptr ? kBadHandle : suite_.setString(handle_, property, index, value), property);
}

void PropertySet::set(const char* property, int value, int index) const {
    require(handle_ == nullptr ? kBadHandle : suite_.setInt(handle_, property, index, value), property);
}

void PropertySet::set(const char* property, double value, int index) const {
    require(handle_ == nullptr ? kBadHandle : suite_.setDouble(handle_, property, index, value), property);
}

void PropertySet::setPointer(const char* property, void* value) const {
    require(handle_ == nullptr ? kBadHandle : suite_.setPointer(handle_, property, 0, value), property);
}

void PropertySet::offer(const char* property, const char* value) const {
    if (handle_ != nullptr) {
        static_cast<void>(suite_.setString(handle_, property, 0, value));
    }
}

void PropertySet::offer(const char* property, int value) const {
    if (handle_ != nullptr) {
        static_cast<void>(suite_.setInt(handle_, property, 0, value));
    }
}

void PropertySet::offer(const char* property, double value, int index) const {
    if (handle_ != nullptr) {
        static_cast<void>(suite_.setDouble(handle_, property, index, value));
    }
}

void PropertySet::offerPointer(const char* property, void* value) const {
    if (handle_ != nullptr) {
        static_cast<void>(suite_.setPointer(handle_, property, 0, value));
    }
}

} // namespace kovalune::openfx
