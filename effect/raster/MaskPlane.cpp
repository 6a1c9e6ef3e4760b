#include "effect/raster/MaskPlane.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace kovalune {
namespace {

AEUtil::SharedCount emptyOwner() {
    return AEUtil::SharedCount::adopt<uint8_t>(nullptr, AEUtil::array_deleterAE<uint8_t>());
}

struct LineRange {
    int32_t first;
    int32_t end;
};

// The stretch from the first to the last non-zero byte; `count` and 0 where there is none.
LineRange activeRange(const uint8_t* active, int32_t count) {
    const uint8_t* const last = active + count;
    const auto isSet = [](uint8_t byte) { return byte != 0; };
    const uint8_t* const first = std::find_if(active, last, isSet);
    int32_t end = 0;
    for (const uint8_t* byte = first; byte != last; ++byte) {
        if (*byte != 0) {
            end = static_cast<int32_t>(byte - active) + 1;
        }
    }
    return {static_cast<int32_t>(first - active), end};
}

/// Marks the columns of a row's non-zero elements, eight at a time. Whether there are any.
bool markHeld(const uint8_t* elements, int32_t count, uint8_t* colActive) {
    constexpr uint64_t kLowBits = ~uint64_t{0} / 0xff * 0x7f;
    uint64_t any = 0;
    int32_t x = 0;
    for (; x + 8 <= count; x += 8) {
        uint64_t eight = 0;
        std::memcpy(&eight, elements + x, sizeof eight);
        if (eight != 0) {
            const uint64_t held = (((eight & kLowBits) + kLowBits) | eight) >> 7 & ~uint64_t{0} / 0xff;
            uint64_t marks = 0;
            std::memcpy(&marks, colActive + x, sizeof marks);
            marks |= held;
            std::memcpy(colActive + x, &marks, sizeof marks);
            any |= held;
        }
    }
    for (; x < count; ++x) {
        const auto held = static_cast<uint8_t>(elements[x] != 0);
        colActive[x] |= held;
        any |= held;
    }
    return any != 0;
}

} // namespace

template <class Element>
PlaneStorage<Element>::PlaneStorage() : owner_(emptyOwner()) {}

template <class Element>
PlaneStorage<Element>::PlaneStorage(PF_InData* inData, int32_t w, int32_t h) {
    allocate(inData, w, h);
}

template <class Element>
PlaneStorage<Element>& PlaneStorage<Element>::operator=(PlaneStorage&& other) noexcept(false) {
    layout_ = std::exchange(other.layout_, {});
    marks_ = std::exchange(other.marks_, {});
    owner_ = std::move(other.owner_);
    return *this;
}

template <class Element>
void PlaneStorage<Element>::shareOf(const PlaneStorage& other) {
    layout_ = other.layout_;
    marks_ = other.marks_;
    owner_ = other.owner_;
}

template <class Element>
void PlaneStorage<Element>::allocate(PF_InData* inData, int32_t w, int32_t h) {
    const int64_t rowWords = (int64_t{w} + 3) / 4;
    const int64_t colWords = (int64_t{h} + 3) / 4;
    const int64_t bytesPerRow = rowWords * 4 * static_cast<int64_t>(sizeof(Element));
    const int64_t elementBytes = h * bytesPerRow;
    const int64_t rowSummaryBytes = colWords * 4;
    const int64_t bytes = elementBytes + rowSummaryBytes + rowWords * 4;
    const bool fits = bytes >= 0 && bytes <= std::numeric_limits<uint32_t>::max();

    const SPBasicSuite* const basic = inData->pica_basicP;
    auto* const storage = static_cast<uint8_t*>(AEUtil::AEMemory::alloc(
        fits ? static_cast<std::size_t>(bytes) : std::numeric_limits<std::size_t>::max(), basic));
    AEUtil::SharedCount fresh = AEUtil::SharedCount::adopt(storage, AEUtil::array_deleterAE<uint8_t>{basic});

    uint8_t* const rowActive = storage != nullptr ? storage + elementBytes : nullptr;
    layout_ = {static_cast<Element*>(static_cast<void*>(storage)),
               rowActive,
               storage != nullptr ? rowActive + rowSummaryBytes : nullptr,
               static_cast<uint32_t>(bytes),
               w,
               h,
               static_cast<int32_t>(rowWords * 4)};
    marks_ = {wholeBounds(), 1, 1};
    owner_ = std::move(fresh);
}

template <class Element>
void PlaneStorage<Element>::resize(PF_InData* inData, int32_t w, int32_t h) {
    if (w != 0 && h != 0) {
        allocate(inData, w, h);
        return;
    }
    AEUtil::SharedCount none = emptyOwner();
    layout_ = {};
    marks_ = {{}, 1, 1};
    owner_ = std::move(none);
}

template <class Element>
void PlaneStorage<Element>::setActivity(uint8_t value) {
    std::fill_n(layout_.colActive, width(), value);
    std::fill_n(layout_.rowActive, height(), value);
}

template <class Element>
FrameRect PlaneStorage<Element>::wholeBounds() const {
    return {0, 0, static_cast<int16_t>(height()), static_cast<int16_t>(width())};
}

template class PlaneStorage<uint8_t>;
template class PlaneStorage<uint16_t>;

void MaskPlane::clearTo(uint8_t value) {
    for (int32_t y = 0; y < height(); ++y) {
        std::fill_n(row(y), width(), value);
    }
    setActivity(value != 0 ? 1 : 0);
    marks() = {value != 0 ? wholeBounds() : FrameRect{}, 0, 0};
}

void MaskPlane::invert() {
    uint8_t* const colActive = layout().colActive;
    setActivity(0);
    for (int32_t y = 0; y < height(); ++y) {
        uint8_t* const elements = row(y);
        uint8_t marked = 0;
        for (int32_t x = 0; x < width(); ++x) {
            const auto inverted = static_cast<uint8_t>(elements[x] == 0);
            elements[x] = inverted;
            colActive[x] |= inverted;
            marked |= inverted;
        }
        layout().rowActive[y] = marked;
    }
    marks().activityStale = 0;
    marks().boundsStale = 1;
}

void MaskPlane::copyFrom(const MaskPlane& other) {
    if (other.layout().data == layout().data) {
        return;
    }
    clearTo(0);
    unionWith(other);
}

void MaskPlane::unionWith(const MaskPlane& other) {
    const int32_t columns = std::min(width(), other.width());
    const int32_t rows = std::min(height(), other.height());
    uint8_t* const colActive = layout().colActive;
    for (int32_t y = 0; y < rows; ++y) {
        if (!other.activityStale() && !other.rowActive(y)) {
            continue;
        }
        uint8_t* const elements = row(y);
        const uint8_t* const added = other.row(y);
        bool marked = rowActive(y);
        for (int32_t x = 0; x < columns; ++x) {
            if (added[x] != 0) {
                elements[x] = added[x];
                colActive[x] = 1;
                marked = true;
            }
        }
        layout().rowActive[y] = marked ? 1 : 0;
    }
    marks().boundsStale = 1;
}

void MaskPlane::refreshActivity() {
    uint8_t* const colActive = layout().colActive;
    setActivity(0);
    for (int32_t y = 0; y < height(); ++y) {
        const uint8_t marked = markHeld(row(y), width(), colActive) ? 1 : 0;
        layout().rowActive[y] = marked;
        marks().boundsStale = 1;
    }
    marks().activityStale = 0;
    if (!boundsStale()) {
        refreshBounds();
    }
}

bool MaskPlane::refreshBounds() {
    if (activityStale()) {
        refreshActivity();
    }
    const LineRange rows = activeRange(layout().rowActive, height());
    const LineRange columns = activeRange(layout().colActive, width());
    if (rows.first < rows.end && columns.first < columns.end) {
        marks().bounds = {static_cast<int16_t>(rows.first), static_cast<int16_t>(columns.first),
                          static_cast<int16_t>(rows.end), static_cast<int16_t>(columns.end)};
        marks().boundsStale = 0;
        return true;
    }
    marks().bounds = {};
    marks().boundsStale = 1;
    return false;
}

void MaskPlane16::fillFar() {
    for (int32_t y = 0; y < height(); ++y) {
        std::fill_n(row(y), width(), kFar);
    }
    setActivity(1);
    marks() = {wholeBounds(), 0, 0};
}

} // namespace kovalune
