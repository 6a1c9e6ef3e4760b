// Planes of one element per pixel of a frame's working rectangle, with one summary byte per row and per
// column that tells whether the line holds anything, so that passes skip empty lines with one read.
//
// A plane is a small value on shared storage in host memory: a copy, also in a pass record or an argument, is
// a second handle on the same bytes, and nothing here ever copies the bytes. The last handle gives the
// storage back. Handles are copied and dropped, and the operations called, only on the frame's own thread
// between passes.
#pragma once

#include "effect/share/AEUtil/SharedArray.h"
#include "effect/share/FrameRect.h"
#include "hostapi/HostApi.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace kovalune {

/// A summary byte that several iterations of a pass may write at once, always with the value 1.
inline void markShared(uint8_t& byte) {
    const std::atomic_ref<uint8_t> shared(byte);
    if (shared.load(std::memory_order_relaxed) == 0) {
        shared.store(1, std::memory_order_relaxed);
    }
}

/// The storage and the fields of a plane. Element (x, y) stands for the world pixel (`rect.left + x`,
/// `rect.top + y`) of the rectangle that the plane was made for. Elements and summaries hold no defined value
/// until something writes them. Invariant while `activityStale` is 0: `rowActive[y]` is non-zero exactly if
/// row `y` holds a non-zero element, and `colActive[x]` exactly if column `x` does.
template <class Element>
class PlaneStorage {
public:
    /// Empty: no storage, all numbers 0, flags 0, but an owner block of its own.
    PlaneStorage();

    /// Fresh host memory for `w` by `h` elements. Throws what AEUtil::AEMemory::alloc throws; sizes that do
    /// not fit the host's 32 bits count as out of memory.
    PlaneStorage(PF_InData* inData, int32_t w, int32_t h);

    /// Replaces the storage by a fresh one, or by none if `w * h` is 0. Other handles keep the old one.
    void resize(PF_InData* inData, int32_t w, int32_t h);

    Element* row(int32_t y) { return data + static_cast<std::ptrdiff_t>(y) * rowStride; }
    const Element* row(int32_t y) const { return data + static_cast<std::ptrdiff_t>(y) * rowStride; }

    /// How many handles share the storage.
    int32_t useCount() const { return owner.useCount(); }

    Element* data = nullptr;
    AEUtil::SharedCount owner;
    uint32_t byteSize = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t rowBytes = 0;
    int32_t rowStride = 0; ///< elements from one row to the next
    FrameRect bounds;      ///< of the non-zero elements, when known; no pass reads it
    uint8_t activityStale = 0;
    uint8_t boundsStale = 0;
    uint8_t* rowActive = nullptr;
    uint8_t* colActive = nullptr;

protected:
    /// Sets every row and column byte.
    void setActivity(uint8_t value);
    FrameRect wholeBounds() const;

private:
    void allocate(PF_InData* inData, int32_t w, int32_t h);
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

    /// Copies the non-zero elements of the other in, over the smaller of the two sizes; it can only add.
    /// Trusts the other's row summary unless that is stale.
    void unionWith(const MaskPlane& other);

    /// Rebuilds both summaries from the elements.
    void refreshActivity();

    /// Whether the plane holds anything; stores `bounds`.
    bool refreshBounds();
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
