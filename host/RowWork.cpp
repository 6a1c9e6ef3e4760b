#include "host/RowWork.h"

namespace kovalune::host {

namespace {

/// A thread copies that many in some tens of microseconds, which is what it takes to be woken.
constexpr std::size_t kPieceBytes = std::size_t{256} << 10;

} // namespace

A_long RowWork::rowsTogether(A_long rows, std::size_t bytesPerRow) {
    const std::size_t together = kPieceBytes / std::max<std::size_t>(bytesPerRow, 1);
    const auto most = static_cast<std::size_t>(std::max<A_long>(rows, 1));
    return static_cast<A_long>(std::clamp<std::size_t>(together, 1, most));
}

int RowWork::helpers() const {
    return options_.threaded ? threadCountOf(options_) - 1 : 0;
}

} // namespace kovalune::host
