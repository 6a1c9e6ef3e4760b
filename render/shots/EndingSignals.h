// The signals that ask the process to end, held back for a while, and the end by one of them.
#pragma once

#include <array>
#include <csignal>

namespace kovalune::shots {

/// By which the user or the system asks the process to end: Ctrl-C, the end of the session, Ctrl-\ and the like.
inline constexpr std::array<int, 4> kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// For as long as this lives, kEndingSignals that come to the calling thread wait.
class SignalsHeldBack {
public:
    SignalsHeldBack();
    ~SignalsHeldBack();
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
    sigset_t before_;
};

/// Ends the process as if nothing had ever taken the signal. Who started it learns of the signal only so, not by an
/// exit code: a shell goes on with its loop after any code.
[[noreturn]] void endBySignal(int signalNumber) noexcept;

} // namespace kovalune::shots
