// How a piece of work ends that cannot do what it was asked: one line of text, and what the failure is about.
#pragma once

#include <stdexcept>
#include <string>

namespace kovalune::text {

enum class FailureKind {
    kUsage,  ///< what the user asked for: options, labels, values
    kFile,   ///< anything about a file, the lack of memory for a picture included
    kEffect, ///< what the effect reported
};

/// Its text names the thing that it is about. It may hold any bytes; printable() makes it one line.
class Failure : public std::runtime_error {
public:
    Failure(FailureKind kind, const std::string& text) : std::runtime_error(text), kind_(kind) {}

    FailureKind kind() const { return kind_; }

private:
    FailureKind kind_;
};

} // namespace kovalune::text
