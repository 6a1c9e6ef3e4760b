// What a signal does to this process, changed for a while. A signal that is ignored or handled already keeps
// its meaning.
#pragma once

#include <array>
#include <csignal>

namespace kovalune {

/// By which the user or the system asks the command to end: Ctrl-C, the end of the session, Ctrl-\ and the like.
inline constexpr std::array<int, 4> kEndingSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

extern "C" using SignalHandler = void(int);

/// Where the signal has its default meaning, `handler` gets the next one of it and the default is back from then
/// on. While the handler runs, all signals wait.
void takeSignal(int signalNumber, SignalHandler* handler);

/// The default is back, if the signal is still `handler`'s.
void giveSignalBack(int signalNumber, SignalHandler* handler);

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

} // namespace kovalune
