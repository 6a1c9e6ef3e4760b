#include "effect/raster/MaskPlane.h"
#include "effect/share/SizeProduct.h"

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

// Elements are taken sixteen at a time, as a vector: rows, summaries and other planes may lie in one block, so that a compiler
// has to take them for the same bytes.

constexpr int32_t kSixteen = 16;
using Sixteen = uint8_t __attribute__((vector_size(kSixteen)));

Sixteen sixteenAt(const uint8_t* bytes) {
    Sixteen sixteen;
    std::memcpy(&sixteen, bytes, sizeof sixteen);
    return sixteen;
}

void setSixteen(uint8_t* bytes, const Sixteen& sixteen) {
    std::memcpy(bytes, &sixteen, sizeof sixteen);
}

/// All bits of each byte that is not 0.
Sixteen heldOf(const Sixteen& sixteen) {
    return reinterpret_cast<Sixteen>(sixteen != Sixteen{});
}

bool hasAny(const Sixteen& sixteen) {
    uint64_t words[2];
    std::memcpy(words, &sixteen, sizeof words);
    return (words[0] | words[1]) != 0;
}

/// Calls `sixteen(x)` for sixteen elements at a time and `one(x)` for what is left over.
template <class Many, class One>
void forEachElement(int32_t count, const Many& sixteen, const One& one) {
    int32_t x = 0;
    for (; x + kSixteen <= count; x += kSixteen) {
        sixteen(x);
    }
    for (; x < count; ++x) {
        one(x);
    }
}

/// Marks the columns of a row's non-zero elements. Whether there are any.
bool markHeld(const uint8_t* elements, int32_t count, uint8_t* colActive) {
    Sixteen any{};
    uint8_t anyLeft = 0;
    forEachElement(
        count,
        [&](int32_t x) {
            const Sixteen own = sixteenAt(elements + x);
            any |= own;
            setSixteen(colActive + x, sixteenAt(colActive + x) | (heldOf(own) & 1));
        },
        [&](int32_t x) {
            anyLeft |= elements[x];
            colActive[x] |= static_cast<uint8_t>(elements[x] != 0);
        });
    return hasAny(any) || anyLeft != 0;
}

/// Puts a row's non-zero elements into another row, and marks their columns. Whether there are any.
bool putHeld(const uint8_t* added, int32_t count, uint8_t* elements, uint8_t* colActive) {
    Sixteen any{};
    uint8_t anyLeft = 0;
    forEachElement(
        count,
        [&](int32_t x) {
            const Sixteen own = sixteenAt(added + x);
            if (hasAny(own)) {
                any |= own;
                const Sixteen held = heldOf(own);
                setSixteen(elements + x, (sixteenAt(elements + x) & ~held) | own);
                setSixteen(colActive + x, sixteenAt(colActive + x) | (held & 1));
            }
        },
        [&](int32_t x) {
            if (added[x] != 0) {
                anyLeft = 1;
                elements[x] = added[x];
                colActive[x] = 1;
            }
        });
    return hasAny(any) || anyLeft != 0;
}

/// 0 becomes 1 and all else 0, and the columns of what is 1 then are marked. Whether there is any.
bool invertHeld(uint8_t* elements, int32_t count, uint8_t* colActive) {
    Sixteen any{};
    uint8_t anyLeft = 0;
    forEachElement(
        count,
        [&](int32_t x) {
            const Sixteen inverted = ~heldOf(sixteenAt(elements + x)) & 1;
            setSixteen(elements + x, inverted);
            setSixteen(colActive + x, sixteenAt(colActive + x) | inverted);
            any |= inverted;
        },
        [&](int32_t x) {
            const auto inverted = static_cast<uint8_t>(elements[x] == 0);
            elements[x] = inverted;
            colActive[x] |= inverted;
            anyLeft |= inverted;
        });
    return hasAny(any) || anyLeft != 0;
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
    const auto bytesPerRow = sizeProduct<int64_t>(rowWords * 4, sizeof(Element));
    const auto elementBytes = sizeProduct<int64_t>(h, bytesPerRow);
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
        layout().rowActive[y] = invertHeld(row(y), width(), colActive) ? 1 : 0;
    }
    marks().activityStale = 0;
    marks().boundsStale = 1;
}

void MaskPlane::copyFrom(const MaskPlane& other) {
    if (other.layout().data == layout().data) {
        return;
    }
    const int32_t columns = std::min(width(), other.width());
    const int32_t rows = std::min(height(), other.height());
    setActivity(0);
    for (int32_t y = 0; y < height(); ++y) {
        uint8_t* const elements = row(y);
        const bool isTaken = y < rows && (other.activityStale() || other.rowActive(y));
        const int32_t taken = isTaken ? columns : 0;
        if (taken > 0) {
            std::copy_n(other.row(y), taken, elements);
            layout().rowActive[y] = markHeld(elements, taken, layout().colActive) ? 1 : 0;
        }
        std::fill_n(elements + taken, width() - taken, uint8_t{0});
    }
    marks() = {{}, 0, 1};
}

void MaskPlane::unionWith(const MaskPlane& other) {
    const int32_t columns = std::min(width(), other.width());
    const int32_t rows = std::min(height(), other.height());
    uint8_t* const colActive = layout().colActive;
    for (int32_t y = 0; y < rows; ++y) {
        if (!other.activityStale() && !other.rowActive(y)) {
            continue;
        }
        const bool marked = putHeld(other.row(y), columns, row(y), colActive);
        layout().rowActive[y] = marked || rowActive(y) ? 1 : 0;
    }
    marks().boundsStale = 1;
}

void MaskPlane::refreshActivity() {
    uint8_t* const colActive = layout().colActive;
    setActivity(0);
    for (int32_t y = 0; y < height(); ++y) {
        layout().rowActive[y] = markHeld(row(y), width(), colActive) ? 1 : 0;
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
