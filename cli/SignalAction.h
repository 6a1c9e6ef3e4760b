// What a signal does to this process, changed for a while. A signal that is ignored or handled already keeps
// its meaning.
#pragma once

namespace kovalune {

extern "C" using SignalHandler = void(int);

// Where the signal has its default meaning, `handler` gets the next one of it and the default is back from then
// on. While the handler runs, all signals wait.
void takeSignal(int signalNumber, SignalHandler* handler);

// The default is back, if the signal is still `handler`'s.
void giveSignalBack(int signalNumber, SignalHandler* handler);

} // namespace kovalune
