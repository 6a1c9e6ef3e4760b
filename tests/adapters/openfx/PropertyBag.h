// A set of properties as a strict host has it: each with a type, a dimension and who may write it.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace kovalune::test {

enum class PropertyType { kInt, kDouble, kString, kPointer };

struct PropertySpec {
    const char* name;
    PropertyType type;
    int dimension = 1;       ///< 0: any
    bool isWritable = false; ///< by the plug-in
};

using PropertyValue = std::variant<int, double, std::string, void*>;

class PropertyBag {
public:
    PropertyBag(std::string what, std::span<const PropertySpec> specs)
        : what_(std::move(what)), specs_(specs) {}

    const std::string& what() const { return what_; }

    /// Null for a name that this set does not have.
    const PropertySpec* specOf(const std::string& name) const;

    /// The host's own writing, unchecked.
    template <class... Values>
    void put(const std::string& name, Values... values) {
        values_[name] = {PropertyValue(values)...};
    }
    void remove(const std::string& name) { removed_[name] = true; }
    bool isRemoved(const std::string& name) const { return removed_.count(name) == 1; }

    std::vector<PropertyValue>& values(const std::string& name) { return values_[name]; }
    bool has(const std::string& name) const { return values_.count(name) == 1; }

    /// Of the type as it is named; throws where it is not there.
    int integer(const std::string& name, std::size_t index = 0) {
        return std::get<int>(values_.at(name).at(index));
    }
    double number(const std::string& name, std::size_t index = 0) {
        return std::get<double>(values_.at(name).at(index));
    }
    std::string text(const std::string& name, std::size_t index = 0) {
        return std::get<std::string>(values_.at(name).at(index));
    }
    std::vector<std::string> texts(const std::string& name);

private:
    std::string what_;
    std::span<const PropertySpec> specs_;
    std::map<std::string, std::vector<PropertyValue>> values_;
    std::map<std::string, bool> removed_;
};

// The interface's tables, by the object whose set it is.
std::span<const PropertySpec> hostProperties();
std::span<const PropertySpec> effectProperties();
std::span<const PropertySpec> instanceProperties();
std::span<const PropertySpec> clipProperties();
std::span<const PropertySpec> clipInstanceProperties();
std::span<const PropertySpec> imageProperties();
/// By the type of the parameter; of an instance, fewer may be written.
std::vector<PropertySpec> paramProperties(const std::string& type, bool isInstance);
/// All arguments of all actions.
std::span<const PropertySpec> argumentProperties();

} // namespace kovalune::test
