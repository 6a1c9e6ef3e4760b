// The reference host: its options, memory pools, threads and suites, shared by its sessions. Several hosts may live in
// one process, and sessions of one host may render on several threads at once.
#pragma once

#include "host/HostError.h"
#include "host/Options.h"

#include <concepts>
#include <memory>

namespace kovalune::host {

struct HostLayer;
struct HostState;
class RowWork;

class Host {
public:
    /// Throws HostError for options out of range.
    explicit Host(HostOptions options = {});

    /// The options of a layer need the host that goes with them.
    template <std::derived_from<HostOptions> Options>
    explicit Host(const Options& options) = delete;

    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// May be changed whenever no command runs; the next command goes by the new values, and is refused
    /// with a HostError if one of them is out of range.
    HostOptions& options();
    const HostOptions& options() const;

    /// For work of a caller's own on many rows, by the threads that frames have too.
    const RowWork& rowWork() const;

    /// For the host's own parts.
    HostState& state() const { return *state_; }

protected:
    /// With a layer over it. Options and layer outlive the host, whose options these are from here on.
    Host(HostOptions& options, const HostLayer& layer);

private:
    struct Own;

    std::unique_ptr<Own> own_; ///< null with a layer
    std::unique_ptr<HostState> state_;
};

} // namespace kovalune::host
