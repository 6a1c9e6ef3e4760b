// Records that the host fills in or may write to, with room to spare.
#pragma once

#include <cstdint>

namespace AEUtil {

/// A record with spare bytes after it: a host of a later interface may take it for one with a few more members.
template <class Record>
struct Roomy : Record {
    Roomy() : Record{} {}
    explicit Roomy(const Record& record) : Record(record) {}

    [[maybe_unused]] uint8_t slack[32] = {};
};

} // namespace AEUtil
