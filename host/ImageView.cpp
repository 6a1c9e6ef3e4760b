#include "host/ImageView.h"

#include "host/HostError.h"
#include "host/Image.h"

#include <cstdint>
#include <limits>
#include <string>

namespace kovalune::host {

namespace {

[[noreturn]] void refuse(const char* name, const std::string& text) {
    throw HostError(std::string("the ") + name + text);
}

std::uintptr_t addressOf(const std::byte* byte) {
    return reinterpret_cast<std::uintptr_t>(byte);
}

void checkRows(const ConstImageView& view, const char* name) {
    const std::size_t pixelBytes = bytesPerPixel(view.format);
    const std::size_t channelBytes = pixelBytes / 4;
    const auto distance = static_cast<int64_t>(view.rowBytes);
    const std::string rows = "'s rows of " + std::to_string(distance) + " bytes";
    if (distance > std::numeric_limits<A_long>::max() || distance < -std::numeric_limits<A_long>::max()) {
        refuse(name, rows + " are further apart than " + std::to_string(std::numeric_limits<A_long>::max()));
    }
    const int64_t used = int64_t{view.width} * static_cast<int64_t>(pixelBytes);
    if (std::abs(distance) < used) {
        refuse(name, rows + " are shorter than their pixels, which take " + std::to_string(used));
    }
    if (std::abs(distance) * int64_t{view.height} > std::numeric_limits<std::ptrdiff_t>::max()) {
        refuse(name, rows + " do not fit in memory");
    }
    const std::string aligned = " bytes, as its channels must be";
    if (distance % static_cast<int64_t>(channelBytes) != 0) {
        refuse(name, rows + " are not a multiple of " + std::to_string(channelBytes) + aligned);
    }
    if (addressOf(view.data) % channelBytes != 0) {
        refuse(name, "'s pixels do not start at a multiple of " + std::to_string(channelBytes) + aligned);
    }
}

/// The rows of a view in the order of their addresses.
class RowWalk {
public:
    explicit RowWalk(const ConstImageView& view)
        : step_(static_cast<std::uintptr_t>(std::abs(view.rowBytes))),
          bytes_(static_cast<std::uintptr_t>(view.width) * bytesPerPixel(view.format)),
          left_(bytes_ != 0 ? view.height : 0) {
        if (left_ != 0) {
            first_ = addressOf(view.rowBytes < 0 ? view.row(view.height - 1) : view.data);
        }
    }

    bool atEnd() const { return left_ == 0; }
    std::uintptr_t first() const { return first_; }
    std::uintptr_t end() const { return first_ + bytes_; }

    void next() {
        first_ += step_;
        --left_;
    }

private:
    std::uintptr_t step_;
    std::uintptr_t bytes_;
    A_long left_;
    std::uintptr_t first_ = 0;
};

} // namespace

void checkView(const ConstImageView& view, const char* name) {
    bytesPerPixel(view.format);
    if (view.width < 0 || view.height < 0) {
        throw HostError("a picture cannot have a negative side");
    }
    if (view.width == 0 || view.height == 0) {
        return;
    }
    if (view.data == nullptr) {
        refuse(name, " has no memory");
    }
    checkRows(view, name);
}

bool overlap(const ConstImageView& a, const ConstImageView& b) {
    RowWalk one(a);
    RowWalk other(b);
    while (!one.atEnd() && !other.atEnd()) {
        if (one.end() <= other.first()) {
            one.next();
        } else if (other.end() <= one.first()) {
            other.next();
        } else {
            return true;
        }
    }
    return false;
}

} // namespace kovalune::host
