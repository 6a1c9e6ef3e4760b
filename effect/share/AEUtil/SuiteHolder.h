// How the effect asks the host for its suites. All of these owners live on the stack for the length of some work and give
// back what they hold at its end, whichever way the scope is left. No suite is acquired or released anywhere else.
#pragma once

#include "hostapi/HostApi.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace AEUtil {

/// How a missing suite reports: this value, thrown as a long.
inline constexpr long kMissingSuite = PF_Err_BAD_CALLBACK_PARAM;

/// Throws `kMissingSuite` where the host gave no basic suite. Asks the host for nothing.
void requireBasicSuite(const SPBasicSuite* basic);

/// One suite of the host, or none.
class OwnedSuite {
public:
    OwnedSuite() = default;

    /// Asks for the versions in their order and takes the first that the host has.
    OwnedSuite(const SPBasicSuite* basic, const char* name, std::span<const int32_t> versions);
    OwnedSuite(OwnedSuite&& other) noexcept { swap(other); }
    OwnedSuite& operator=(OwnedSuite&& other) noexcept {
        OwnedSuite(std::move(other)).swap(*this);
        return *this;
    }
    ~OwnedSuite() { release(); }

    /// Gives the suite back before the scope's end; harmless where there is none.
    void release();

    /// Null where the host has none of the versions.
    const void* table() const { return table_; }
    int32_t version() const { return version_; } ///< the one that was acquired, else 0
    int32_t error() const { return error_; }     ///< the host's last answer

private:
    void swap(OwnedSuite& other) noexcept {
        std::swap(basic_, other.basic_);
        std::swap(name_, other.name_);
        std::swap(table_, other.table_);
        std::swap(version_, other.version_);
        std::swap(error_, other.error_);
    }

    const SPBasicSuite* basic_ = nullptr;
    const char* name_ = nullptr;
    const void* table_ = nullptr;
    int32_t version_ = 0;
    int32_t error_ = 0;
};

/// The suites that must be there: each is acquired when it is first asked for.
class SuiteHolder {
public:
    /// Throws `kMissingSuite` where the host gave no basic suite.
    explicit SuiteHolder(const SPBasicSuite* basic);
    ~SuiteHolder();
    SuiteHolder(const SuiteHolder&) = delete;
    SuiteHolder& operator=(const SuiteHolder&) = delete;

    // Each throws `kMissingSuite` where the host has no such suite.
    const PFWorldTransformSuite1& worldTransform();
    const PFFillMatteSuite1& fillMatte();
    const PFHandleSuite1& handles();
    const PFWorldSuite1& world1();

private:
    struct Slot {
        const char* name;
        std::span<const int32_t> versions;
        OwnedSuite suite = {};
    };
    const void* table(std::size_t slot);

    const SPBasicSuite* basic_;
    std::array<Slot, 4> slots_;
};

/// A suite whose absence is normal: acquired at construction, never throws.
template <class Table>
class OptionalSuite {
public:
    OptionalSuite(const SPBasicSuite* basic, const char* name, std::span<const int32_t> versions)
        : suite_(basic, name, versions) {}
    OptionalSuite(const SPBasicSuite* basic, const char* name, int32_t version)
        : OptionalSuite(basic, name, std::span(&version, 1)) {}

    /// Null where the host has none of the versions.
    const Table* get() const { return static_cast<const Table*>(suite_.table()); }
    int32_t acquireError() const { return suite_.error(); }

private:
    OwnedSuite suite_;
};

} // namespace AEUtil
