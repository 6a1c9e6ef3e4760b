// The exception for wrong use of the reference host by its caller: a picture of a refused size, a value of
// the wrong type, a module that cannot be loaded. What the effect does wrong or reports is never one of
// these; it is found in the results and in the audit.
#pragma once

#include <stdexcept>

namespace kovalune::host {

class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace kovalune::host
