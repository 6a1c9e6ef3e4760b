// What every callback goes through: no exception gets back into the effect, the call is logged where a log is kept, and
// the operation may refuse it.
#pragma once

#include "host/CommandContext.h"
#include "host/HostState.h"

#include <cstddef>
#include <sstream>
#include <string>
#include <utility>

namespace kovalune::host {

/// The values with blanks between them.
template <class... Values>
std::string joined(const Values&... values) {
    std::ostringstream text;
    const char* gap = "";
    ((text << std::exchange(gap, " ") << values), ...);
    return text.str();
}

inline std::string noArguments() {
    return {};
}

/// `arguments` gives the text for the log and is called only where a log is kept.
template <class Arguments>
void logCall(CommandContext& context, const char* call, const Arguments& arguments) {
    if (context.host.watch.logsCalls()) {
        context.host.watch.called(call, arguments());
    }
}

/// `body`'s result, or `onException` for what it throws: in practice a lack of memory.
template <class Result, class Body>
Result shielded(Result onException, const Body& body) noexcept {
    try {
        return body();
    } catch (...) {
        return onException;
    }
}

template <class Body>
void shielded(const Body& body) noexcept {
    try {
        body();
    } catch (...) {
        return;
    }
}

/// A fallible call of a known context. `onRefusal` runs when the operation refuses it.
template <class Arguments, class Body, class OnRefusal>
[[nodiscard]] PF_Err admitted(CommandContext& context, const char* call, const Arguments& arguments,
                              const Body& body, const OnRefusal& onRefusal) {
    if (context.watched) {
        logCall(context, call, arguments);
        if (const std::optional<Refusal> refusal = context.operation.refusalOf(call)) {
            onRefusal(context);
            return refusal->code;
        }
    }
    return body(context);
}

/// A fallible callback with an effect reference: body(context) gives its code.
template <class Arguments, class Body, class OnRefusal>
[[nodiscard]] PF_Err countedCall(const char* call, PF_ProgPtr reference, const Arguments& arguments,
                                 const Body& body, const OnRefusal& onRefusal) noexcept {
    return shielded(PF_Err{PF_Err_OUT_OF_MEMORY}, [&]() -> PF_Err {
        CommandContext* context = contextOf(reference, call);
        if (context == nullptr) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        return admitted(*context, call, arguments, body, onRefusal);
    });
}

template <class Arguments, class Body>
[[nodiscard]] PF_Err countedCall(const char* call, PF_ProgPtr reference, const Arguments& arguments,
                                 const Body& body) noexcept {
    return countedCall(call, reference, arguments, body, [](CommandContext&) {});
}

/// A fallible callback without one: it belongs to the command that this thread works for.
template <class Arguments, class Body>
[[nodiscard]] PF_Err countedCall(const char* call, const Arguments& arguments, const Body& body) noexcept {
    return shielded(PF_Err{PF_Err_OUT_OF_MEMORY}, [&]() -> PF_Err {
        CommandContext* context = currentContext();
        if (context == nullptr) {
            return PF_Err_INVALID_CALLBACK;
        }
        return admitted(*context, call, arguments, body, [](CommandContext&) {});
    });
}

/// A text that a template can take as an argument.
template <std::size_t Size>
struct CallName {
    consteval CallName(const char (&letters)[Size]) {
        for (std::size_t i = 0; i < Size; ++i) {
            text[i] = letters[i];
        }
    }
    char text[Size];
};

/// Of a record that the effect owns.
template <class Record>
void handOver(const CommandContext& context, Record* record) {
    context.host.manners.recordHandedOver(record + 1);
}

/// Books the call of a function that this host does not have.
void bookUnsupported(const char* call) noexcept;

/// Fills a slot of any signature with a function that refuses: `slot = Unsupported<"blend">::call`.
template <CallName Name>
struct Unsupported {
    template <class... Arguments>
    static PF_Err call(Arguments...) {
        bookUnsupported(Name.text);
        return PF_Err_INVALID_CALLBACK;
    }
};

} // namespace kovalune::host
