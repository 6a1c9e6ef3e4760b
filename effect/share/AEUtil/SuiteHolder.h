// How the effect asks the host for its suites. A holder lives on the stack for the length of some work,
// acquires a suite when it is first asked for, and gives all of them back at its end, whichever way the scope
// is left.
#pragma once

#include "hostapi/HostApi.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace AEUtil {

/// How a missing suite reports: this value, thrown as a long.
inline constexpr long kMissingSuite = PF_Err_BAD_CALLBACK_PARAM;

/// A suite's table, or null, and the version that was acquired.
struct AcquiredSuite {
    const void* table = nullptr;
    int32_t version = 0;
};

/// Asks for the versions in their order and takes the first that the host has.
AcquiredSuite acquireFirst(const SPBasicSuite* basic, const char* name, std::span<const int32_t> versions);

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
        AcquiredSuite suite = {};
    };
    const void* table(std::size_t slot);

    const SPBasicSuite* basic_;
    std::array<Slot, 4> slots_;
};

/// One version of a suite whose absence is normal: acquired at construction, released at the end, never
/// throws.
template <class Table>
class OptionalSuite {
public:
    OptionalSuite(const SPBasicSuite* basic, const char* name, int32_t version)
        : basic_(basic), name_(name), version_(version) {
        const void* table = nullptr;
        error_ = basic_->AcquireSuite(name_, version_, &table);
        if (error_ == 0) {
            table_ = static_cast<const Table*>(table);
        }
    }
    ~OptionalSuite() {
        if (table_ != nullptr) {
            basic_->ReleaseSuite(name_, version_);
        }
    }
    OptionalSuite(const OptionalSuite&) = delete;
    OptionalSuite& operator=(const OptionalSuite&) = delete;

    /// Null where this version is missing.
    const Table* get() const { return table_; }
    int32_t acquireError() const { return error_; }

private:
    const SPBasicSuite* basic_;
    const Table* table_ = nullptr;
    const char* name_;
    int32_t version_;
    int32_t error_ = 0;
};

} // namespace AEUtil
