// Watches the passes that code under test gives to the host, and makes one of them fail.
#pragma once

#include "tests/support/StrictHost.h"

#include <functional>
#include <vector>

namespace kovalune::test {

/// While it lives, iterate_generic of the host's command goes through it. One at a time in a program.
class IterateWatch {
public:
    /// The `failing`-th pass (from 1; 0: none) is not run but fails with `kCode`.
    explicit IterateWatch(StrictHost& host, int failing = 0);
    ~IterateWatch();
    IterateWatch(const IterateWatch&) = delete;
    IterateWatch& operator=(const IterateWatch&) = delete;

    static constexpr PF_Err kCode = 4321;

    int count() const { return static_cast<int>(passes_.size()); }

    /// The pass functions in their order.
    const std::vector<PF_IterateGenericFunc>& passes() const { return passes_; }

    /// Called with each pass and its record before it runs.
    std::function<void(PF_IterateGenericFunc pass, void* record)> onPass;

private:
    static PF_Err iterate(A_long iterations, void* record, PF_IterateGenericFunc pass);

    PF_UtilCallbacks& table_;
    int failing_;
    std::vector<PF_IterateGenericFunc> passes_;
};

} // namespace kovalune::test
