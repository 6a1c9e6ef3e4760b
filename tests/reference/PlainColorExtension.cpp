#include "tests/reference/PlainColorExtension.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace kovalune::test {
namespace {

constexpr int32_t kUnreached = 1000;

struct Distances {
    int32_t width;
    std::vector<int32_t> elements;

    Distances(int32_t w, int32_t h)
        : width(w), elements(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), kUnreached) {}
    int32_t& at(int32_t x, int32_t y) {
        return elements[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                        static_cast<std::size_t>(x)];
    }
};

struct Place {
    int32_t x;
    int32_t y;
};

class Extender {
public:
    Extender(const PlainExtension& job, const PlainPicture& src, PlainPicture& dst, PlainPicture& spread)
        : job_(job), src_(src), dst_(dst), spread_(spread), width_(job.rect.width()),
          height_(job.rect.height()), reach_(static_cast<int32_t>(job.reach)), horizontal_(width_, height_),
          vertical_(width_, height_), scratch_(width_, height_) {}

    void run() {
        for (int32_t y = 0; y < height_; ++y) {
            if (isActive(y)) {
                spreadRow(y);
            }
        }
        for (int32_t x = 0; x < width_; ++x) {
            spreadColumn(x);
        }
        for (int32_t y = 0; y < height_; ++y) {
            for (int32_t x = 0; x < width_ && isActive(y); ++x) {
                resolve(x, y);
            }
        }
    }

private:
    bool isActive(int32_t y) const {
        for (int32_t x = 0; x < width_; ++x) {
            if (job_.limit.at(x, y) != 0) {
                return true;
            }
        }
        return false;
    }

    const PlainPixel& source(int32_t x, int32_t y) const {
        return src_.at(job_.rect.left + x, job_.rect.top + y);
    }
    PlainPixel& spread(int32_t x, int32_t y) { return spread_.at(job_.rect.left + x, job_.rect.top + y); }

    void spreadRow(int32_t y) {
        bool fresh = true;
        for (int32_t x = 0; x < width_; ++x) {
            if (job_.seed.at(x, y) == 0) {
                continue;
            }
            spread(x, y) = source(x, y);
            horizontal_.at(x, y) = 0;
            if (fresh) {
                fresh = false;
                const int32_t lo = std::max(x - reach_, 0);
                for (int32_t j = x - 1, d = 1; j > lo; --j, ++d) {
                    if (!takeInRow(x, y, j, d)) {
                        break;
                    }
                }
            }
            if (x < width_ - 1 && job_.seed.at(x + 1, y) == 0) {
                fresh = true;
                const int32_t hi = std::min(x + reach_, width_ - 1);
                for (int32_t j = x + 1, d = 1; j < hi; ++j, ++d) {
                    if (!takeInRow(x, y, j, d)) {
                        break;
                    }
                }
            }
        }
    }

    /// Whether the walk goes on.
    bool takeInRow(int32_t x, int32_t y, int32_t j, int32_t d) {
        if (job_.limit.at(j, y) == 0) {
            return !job_.stopAtGap;
        }
        if (horizontal_.at(j, y) > d) {
            horizontal_.at(j, y) = d;
            spread(j, y) = source(x, y);
        }
        return true;
    }

    void spreadColumn(int32_t x) {
        bool fresh = true;
        for (int32_t y = 0; y < height_; ++y) {
            if (job_.seed.at(x, y) == 0) {
                continue;
            }
            spread(x, y) = source(x, y);
            scratch_.at(x, y) = 0;
            if (fresh) {
                fresh = false;
                const int32_t lo = std::max(y - reach_, 0);
                for (int32_t i = y - 1, d = 1; i > lo; --i, ++d) {
                    if (!takeInColumn(x, y, i, d)) {
                        break;
                    }
                }
            }
            if (y < height_ - 1 && job_.seed.at(x, y + 1) == 0) {
                fresh = true;
                const int32_t hi = std::min(y + reach_, height_ - 1);
                for (int32_t i = y + 1, d = 1; i < hi; ++i, ++d) {
                    if (!takeInColumn(x, y, i, d)) {
                        break;
                    }
                }
            }
        }
    }

    bool takeInColumn(int32_t x, int32_t y, int32_t i, int32_t d) {
        if (job_.limit.at(x, i) == 0) {
            return !job_.stopAtGap;
        }
        if (scratch_.at(x, i) > d) {
            scratch_.at(x, i) = d;
            vertical_.at(x, i) = d;
            spread(x, i) = source(x, y);
        }
        return true;
    }

    void consider(int32_t offset, int32_t entry, Place place) {
        if (entry == kUnreached) {
            return;
        }
        const double o = offset;
        const double e = entry;
        const auto length = static_cast<float>(std::sqrt(o * o + e * e));
        if (best_ > length) {
            best_ = length;
            place_ = place;
        }
    }

    void search(int32_t x, int32_t y) {
        best_ = 1000.0F;
        place_ = {0, 0};
        for (int32_t j = x; j > std::max(x - reach_, 0) && job_.limit.at(j, y) != 0; --j) {
            consider(x - j, vertical_.at(j, y), {j, y});
        }
        for (int32_t j = x + 1; j < std::min(x + reach_, width_) && job_.limit.at(j, y) != 0; ++j) {
            consider(j - x, vertical_.at(j, y), {j, y});
        }
        for (int32_t i = y; i > std::max(y - reach_, 0) && job_.limit.at(x, i) != 0; --i) {
            consider(y - i, horizontal_.at(x, i), {x, i});
        }
        for (int32_t i = y + 1; i < std::min(y + reach_, height_) && job_.limit.at(x, i) != 0; ++i) {
            consider(i - y, horizontal_.at(x, i), {x, i});
        }
    }

    void resolve(int32_t x, int32_t y) {
        PlainPixel& out = dst_.at(job_.rect.left + x, job_.rect.top + y);
        if (job_.seed.at(x, y) != 0) {
            out = source(x, y);
            return;
        }
        if (job_.limit.at(x, y) == 0) {
            return;
        }
        search(x, y);
        out = spread(place_.x, place_.y);
        if (static_cast<double>(best_) > job_.reach || best_ < 0.0F) {
            best_ = static_cast<float>(job_.reach);
        }
        const float s = (static_cast<float>(job_.reach) - best_) * static_cast<float>(out.alpha);
        const double alpha = static_cast<double>(s) / job_.reach;
        out.alpha = src_.format == PF_PixelFormat_ARGB64 ? std::trunc(alpha)
                                                         : static_cast<double>(static_cast<float>(alpha));
    }

    const PlainExtension& job_;
    const PlainPicture& src_;
    PlainPicture& dst_;
    PlainPicture& spread_;
    int32_t width_;
    int32_t height_;
    int32_t reach_;
    Distances horizontal_;
    Distances vertical_;
    Distances scratch_; ///< of the vertical spread; 0 in the core it has passed
    float best_ = 0.0F;
    Place place_ = {0, 0};
};

} // namespace

void plainExtendColors(const PlainExtension& job, const PlainPicture& src, PlainPicture& dst,
                       PlainPicture& spread) {
    Extender(job, src, dst, spread).run();
}

} // namespace kovalune::test
