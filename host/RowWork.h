// The host's own work on many rows of pixels, divided over its threads.
#pragma once

#include "host/Options.h"
#include "host/ThreadPool.h"
#include "hostapi/HostApi.h"

#include <algorithm>
#include <cstddef>

namespace kovalune::host {

class RowWork {
public:
    /// Both outlive this object; the options count as they are when work is done.
    RowWork(ThreadPool& threads, const HostOptions& options) : threads_(threads), options_(options) {}

    /// Calls part(first, end) for parts of the rows from 0 to `rows`, each row in one of them. On the calling thread
    /// alone where the rows are too few bytes to be worth a second one. Parts must not throw.
    template <class Part>
    void run(A_long rows, std::size_t bytesPerRow, const Part& part) const {
        const A_long together = rowsTogether(rows, bytesPerRow);
        const A_long pieces = (rows + together - 1) / together;
        threads_.run(pieces, helpers(), [&](int, int piece) {
            const A_long first = piece * together;
            part(first, std::min(first + together, rows));
        });
    }

private:
    /// At least 1.
    static A_long rowsTogether(A_long rows, std::size_t bytesPerRow);
    int helpers() const;

    ThreadPool& threads_;
    const HostOptions& options_;
};

} // namespace kovalune::host
