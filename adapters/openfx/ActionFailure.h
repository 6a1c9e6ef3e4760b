// What ends an action: its status for the host, and words for the user where there are any.
#pragma once

#include "adapters/openfx/Interface.h"

#include <stdexcept>
#include <string>

namespace kovalune::openfx {

class ActionFailure : public std::runtime_error {
public:
    ActionFailure(Status status, const std::string& words) : std::runtime_error(words), status_(status) {}

    Status status() const { return status_; }

private:
    Status status_;
};

} // namespace kovalune::openfx
