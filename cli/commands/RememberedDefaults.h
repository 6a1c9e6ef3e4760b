// Tells the user where remembered defaults make a command's result another than on a machine that has none.
#pragma once

#include "cli/arguments/Arguments.h"
#include "host/Session.h"

#include <optional>
#include <string>

namespace kovalune::cli {

class RememberedDefaults {
public:
    /// Before the command's own effect is opened: a process of its own finds out what the values would be without them,
    /// since the effect keeps what it has seen for as long as its process lives.
    RememberedDefaults(const EffectArguments& arguments, const std::optional<std::string>& view);

    /// For a command that shows all views, whatever is remembered.
    static RememberedDefaults forAllViews(const EffectArguments& arguments) {
        return RememberedDefaults(arguments, std::nullopt, true);
    }

    /// One line on standard error with the file's name, if the values of `session`, which the arguments have been
    /// brought into, are others than they would be without remembered defaults.
    void tellIfTheyCount(const host::Session& session) const;

private:
    RememberedDefaults(const EffectArguments& arguments, const std::optional<std::string>& view,
                       bool allViews);

    std::string file_;
    bool allViews_;
    std::optional<std::string> withoutThem_; ///< the values; none where they cannot count
};

} // namespace kovalune::cli
