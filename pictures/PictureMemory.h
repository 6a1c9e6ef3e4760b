// What a lack of memory for a picture is to the user: a failure that names the picture.
#pragma once

#include "text/Failure.h"
#include "text/MessageText.h"

#include <new>
#include <string>

namespace kovalune::pictures {

/// The result of `body`; throws Failure in place of std::bad_alloc.
template <class Body>
auto withMemoryFor(const std::string& name, const Body& body) {
    // Made beforehand: there may be no memory for the words later.
    const text::Failure noMemory(text::FailureKind::kFile,
                                 "not enough memory for the picture " + text::inQuotes(name));
    try {
        return body();
    } catch (const std::bad_alloc&) {
        throw noMemory;
    }
}

} // namespace kovalune::pictures
