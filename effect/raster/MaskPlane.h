// Planes of one element per pixel of a frame's working rectangle, with one summary byte per row and per
// column that tells whether the line holds anything, so that passes skip empty lines with one read.
//
// A plane is a handle on storage in host memory, not a value: it can be moved, never copied. What looks like a copy has
// to be asked for by name, the elements' by `copyFrom`, a second handle on the same bytes by `shareOf`. Passes get a
// `MaskView`. The last handle gives the storage back. Handles are moved, shared and dropped, and the operations called,
// only on the frame's own thread between passes.
#pragma once

#include "effect/share/AEUtil/SharedArray.h"
#include "effect/share/FrameRect.h"
#include "effect/share/SizeProduct.h"
#include "effect/share/StandardParts.h"
#include "hostapi/HostApi.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace kovalune {

/// A summary byte that several iterations of a pass may write at once, always with the value 1.
inline void markShared(uint8_t& byte) {
    if (loadRelaxed(byte) == 0) {
        storeRelaxed(byte, 1);
    }
}

/// The storage of a plane. Element (x, y) stands for the world pixel (`rect.left + x`, `rect.top + y`) of the
/// rectangle that the plane was made for. One block of host memory holds the rows, each padded to a multiple of four
/// elements, then a byte for each row, padded likewise, then a byte for each column. Nothing of it has a defined value
/// until something writes it.
///
/// Invariant while the summaries are not stale: a row's byte is non-zero exactly if the row holds a non-zero element, a
/// column's exactly if the column does. Whether they are is a mark of this handle, not of the bytes: what is written
/// through one of two handles on the same bytes changes the other's elements and summaries, but not its marks.
template <class Element>
class PlaneStorage {
public:
    /// Empty: no storage, all numbers 0, nothing stale, but an owner block of its own.
    PlaneStorage();

    /// Fresh host memory for `w` by `h` elements, everything stale. Throws what AEUtil::AEMemory::alloc throws; sizes
    /// that do not fit the host's 32 bits count as out of memory.
    PlaneStorage(PF_InData* inData, int32_t w, int32_t h);

    PlaneStorage(const PlaneStorage&) = delete;
    PlaneStorage& operator=(const PlaneStorage&) = delete;

    /// Hands the storage over. The other is left without any, also without an owner block.
    PlaneStorage(PlaneStorage&& other) noexcept
        : owner_(std::move(other.owner_)), layout_(std::exchange(other.layout_, {})),
          marks_(std::exchange(other.marks_, {})) {}

    /// Gives up the own storage for the other's. May throw what its release throws.
    PlaneStorage& operator=(PlaneStorage&& other) noexcept(false);

    /// Gives up the own storage and becomes a second handle on the other's bytes, with the other's marks of this moment.
    void shareOf(const PlaneStorage& other);

    /// Replaces the storage by a fresh one, or by none if `w * h` is 0. Other handles keep the old one.
    void resize(PF_InData* inData, int32_t w, int32_t h);

    Element* row(int32_t y) { return layout_.data + offsetOf(y); }
    const Element* row(int32_t y) const { return layout_.data + offsetOf(y); }

    bool rowActive(int32_t y) const { return layout_.rowActive[y] != 0; }
    bool colActive(int32_t x) const { return layout_.colActive[x] != 0; }

    // For a pass that fills a plane which was cleared to 0: a line holds something now. Iterations may call them at
    // once, each for rows of its own and for any columns.
    void markRow(int32_t y) {
        layout_.rowActive[y] = 1;
        markShared(marks_.boundsStale);
    }
    void markColumn(int32_t x) { markShared(layout_.colActive[x]); }

    int32_t width() const { return layout_.width; }
    int32_t height() const { return layout_.height; }
    int32_t rowStride() const { return layout_.rowStride; } ///< elements from one row to the next
    int32_t rowBytes() const { return layout_.rowStride * static_cast<int32_t>(sizeof(Element)); }
    uint32_t byteSize() const { return layout_.byteSize; }

    /// Of the non-zero elements, unless stale; no pass reads it.
    const FrameRect& bounds() const { return marks_.bounds; }
    bool activityStale() const { return marks_.activityStale != 0; }
    bool boundsStale() const { return marks_.boundsStale != 0; }

    /// How many handles share the storage.
    int32_t useCount() const { return owner_.useCount(); }

protected:
    /// Where everything stands in the storage.
    struct Layout {
        Element* data = nullptr;
        uint8_t* rowActive = nullptr;
        uint8_t* colActive = nullptr;
        uint32_t byteSize = 0;
        int32_t width = 0;
        int32_t height = 0;
        int32_t rowStride = 0;
    };

    /// What the handle believes of the storage.
    struct Marks {
        FrameRect bounds;
        uint8_t activityStale = 0;
        uint8_t boundsStale = 0;
    };

    /// Sets every row and column byte.
    void setActivity(uint8_t value);
    FrameRect wholeBounds() const;

    const Layout& layout() const { return layout_; }
    Marks& marks() { return marks_; }

private:
    std::ptrdiff_t offsetOf(int32_t y) const { return sizeProduct<std::ptrdiff_t>(y, layout_.rowStride); }
    void allocate(PF_InData* inData, int32_t w, int32_t h);

    AEUtil::SharedCount owner_;
    Layout layout_;
    Marks marks_;
};

extern template class PlaneStorage<uint8_t>;
extern template class PlaneStorage<uint16_t>;

/// A mask: 0 is out, anything else is in, normally 1.
class MaskPlane : public PlaneStorage<uint8_t> {
public:
    using PlaneStorage::PlaneStorage;

    /// Every element becomes `value`; summaries and bounds follow.
    void clearTo(uint8_t value);

    /// 0 becomes 1 and every other value 0; summaries follow.
    void invert();

    /// Copies the other's elements, over the smaller of the two sizes; beyond it everything becomes 0. Trusts the
    /// other's row summary unless that is stale.
    void copyFrom(const MaskPlane& other);

    /// Copies the non-zero elements of the other in, over the smaller of the two sizes; it can only add.
    /// Trusts the other's row summary unless that is stale.
    void unionWith(const MaskPlane& other);

    /// Rebuilds both summaries from the elements.
    void refreshActivity();

    /// Whether the plane holds anything; stores `bounds`.
    bool refreshBounds();

private:
    friend class MaskView;
};

/// What a pass reads of a mask: its rows and which lines are active. Points into the storage of a plane that the pass's
/// caller keeps; a default one is on none, for passes that look at no mask.
class MaskView {
public:
    MaskView() = default;
    MaskView(
        const MaskPlane& plane) // NOLINT(google-explicit-constructor): a record takes a plane as it stands
        : data_(plane.layout().data), rowActive_(plane.layout().rowActive),
          colActive_(plane.layout().colActive), rowStride_(plane.layout().rowStride) {}
    MaskView(const MaskPlane&&) = delete; ///< would be gone before the pass runs

    const uint8_t* row(int32_t y) const { return data_ + sizeProduct<std::ptrdiff_t>(y, rowStride_); }
    bool rowActive(int32_t y) const { return rowActive_[y] != 0; }
    bool colActive(int32_t x) const { return colActive_[x] != 0; }

private:
    const uint8_t* data_ = nullptr;
    const uint8_t* rowActive_ = nullptr;
    const uint8_t* colActive_ = nullptr;
    int32_t rowStride_ = 0;
};

/// Distances in pixels; 1000 where no distance is known yet.
class MaskPlane16 : public PlaneStorage<uint16_t> {
public:
    using PlaneStorage::PlaneStorage;
    static constexpr uint16_t kFar = 1000;

    /// Every element becomes `kFar`; all summary bytes 1.
    void fillFar();
};

} // namespace kovalune
