// A set of the host's properties, read and written with care: hosts lack some, and what they hand out does not last.
#pragma once

#include "adapters/openfx/Interface.h"

#include <optional>
#include <string>

namespace kovalune::openfx {

class PropertySet {
public:
    PropertySet(const PropertySuite& suite, Properties handle) : suite_(suite), handle_(handle) {}

    /// Nothing where the host has no such property, or no such element of it, or where there is no set at all. Texts are copies: the host's own last until
    /// the next call only.
    std::optional<std::string> text(const char* property, int index = 0) const;
    std::optional<int> integer(const char* property, int index = 0) const;
    std::optional<double> number(const char* property, int index = 0) const;
    void* pointer(const char* property) const;

    std::optional<RectI> rectangle(const char* property) const;

    /// Throws ActionFailure, naming the property, where the host does not take it.
    void set(const char* property, const char* value, int index = 0) const;
    void set(const char* property, int value, int index = 0) const;
    void set(const char* property, double value, int index = 0) const;
    void setPointer(const char* property, void* value) const;

    /// Of properties that not all hosts know.
    void offer(const char* property, const char* value) const;
    void offer(const char* property, int value) const;
    void offer(const char* property, double value, int index = 0) const;
    void offerPointer(const char* property, void* value) const;

private:
    const PropertySuite& suite_;
    Properties handle_;
};

} // namespace kovalune::openfx
