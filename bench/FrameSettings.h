// What frames are rendered with to be measured.
#pragma once

#include "host/Session.h"

#include <string>

namespace kovalune::bench {

/// Four colours of the drawing: a jacket and a face, each with its shadow. About a tenth of its pixels.
inline constexpr PF_Pixel kPicked[4] = {
    {255, 0x32, 0x64, 0xb4}, {255, 0x1e, 0x46, 0x82}, {255, 0xff, 0xd9, 0xbe}, {255, 0xe8, 0xa9, 0x8c}};

using FrameSetting = void (*)(host::Session&);

inline void set(host::Session& session, const std::string& label, host::ParamValue value) {
    session.setValue(session.findParam(label).value(), value);
}

/// As the effect comes, all stages on; few pixels match its default colours.
inline void useDefaults(host::Session& /*session*/) {}

/// The Base stage alone, on the four picked colours.
template <int amount>
void useBase(host::Session& session) {
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        set(session, "Enable " + number, A_long{1});
        set(session, "Color " + number, kPicked[i]);
        set(session, number + " : Enable Process", A_long{0});
    }
    set(session, "Blur Amount", static_cast<double>(amount));
}

/// Base on the picked colours and each Process stage on one of them, with the default amounts.
inline void useAllStages(host::Session& session) {
    useBase<10>(session);
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        set(session, number + " : Enable Process", A_long{1});
        set(session, number + " : Color", kPicked[i]);
    }
}

/// The same with every amount and repeat at its largest.
inline void useLargest(host::Session& session) {
    useAllStages(session);
    set(session, "Blur Amount", 1000.0);
    set(session, "Blur Repeat Num", A_long{10});
    for (int i = 0; i < 4; ++i) {
        const std::string number = std::to_string(i + 1);
        set(session, number + " : Boundary Blur", 1000.0);
        set(session, number + " : Blur Repeat Num", A_long{10});
    }
}

} // namespace kovalune::bench
