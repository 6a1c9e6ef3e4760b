// A host's code, or a flag that says whether something went well, is a plain return value that somebody has to look at.
// This is the word for the places where nobody does.
#pragma once

namespace kovalune {

/// Drops a result on purpose: its step may fail without anything following from it.
template <class Result>
constexpr void ignored(const Result& /*result*/) {}

} // namespace kovalune
