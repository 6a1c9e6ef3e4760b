// The four commands by which the host has an instance's block made, saved, read back and disposed of.

#include "effect/frame/BaseFilter.h"
#include "effect/frame/sequence/SequenceRecord.h"
#include "effect/share/AEUtil/HandleLock.h"

#include <array>
#include <cstring>

namespace kovalune {
namespace {

/// A locked handle's bytes; none for one that cannot be locked. The length is asked for with each call.
std::span<uint8_t> blockOf(const PF_InData* in, PF_Handle handle, const AEUtil::HandleLock& lock) {
    if (lock.memory() == nullptr) {
        return {};
    }
    return {static_cast<uint8_t*>(lock.memory()), in->utils->host_get_handle_size(handle)};
}

bool holdsSequenceBlock(const PF_InData* in, PF_Handle handle) {
    const AEUtil::HandleLock lock(in, handle);
    return isSequenceBlock(blockOf(in, handle, lock));
}

/// A new handle with these bytes. `noHandle` is the code for a host that has none.
PF_Err newBlock(const PF_InData* in, const std::array<uint8_t, SequenceRecord::kBytes>& bytes,
                PF_Err noHandle, PF_Handle& handle) {
    const AEUtil::NewHandle fresh(in, bytes.size());
    if (fresh.err() != PF_Err_NONE) {
        return fresh.err(noHandle);
    }
    std::memcpy(fresh.memory(), bytes.data(), bytes.size());
    handle = fresh.handle();
    return PF_Err_NONE;
}

} // namespace

PF_Err BaseFilter::sequenceSetup(PF_InData* in, PF_OutData* out) {
    std::array<uint8_t, SequenceRecord::kBytes> bytes{};
    writeInMemory({}, bytes);
    return newBlock(in, bytes, PF_Err_OUT_OF_MEMORY, out->sequence_data);
}

PF_Err BaseFilter::sequenceDefault(PF_InData* in, PF_OutData* out) {
    return sequenceSetup(in, out);
}

PF_Err BaseFilter::sequenceSetdown(PF_InData* in, PF_OutData*) {
    if (in->sequence_data != nullptr) {
        in->utils->host_dispose_handle(in->sequence_data);
    }
    return PF_Err_NONE;
}

/// The block in memory stays with the host, which disposes of it when it takes the flattened one.
PF_Err BaseFilter::sequenceFlatten(PF_InData* in, PF_OutData* out) {
    const PF_Handle old = out->sequence_data;
    const AEUtil::HandleLock lock(in, old);
    const std::span<const uint8_t> block = blockOf(in, old, lock);
    if (block.size() < SequenceRecord::kBytes) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    std::array<uint8_t, SequenceRecord::kBytes> bytes{};
    writeFlattened(readInMemory(block.first<SequenceRecord::kBytes>()), bytes);
    return newBlock(in, bytes, PF_Err_INTERNAL_STRUCT_DAMAGED, out->sequence_data);
}

/// A block that is not ours is left alone, and so is one that was read: the host replaces either.
PF_Err BaseFilter::sequenceResetup(PF_InData* in, PF_OutData* out) {
    if (!holdsSequenceBlock(in, in->sequence_data)) {
        return sequenceDefault(in, out);
    }
    const PF_Handle old = in->sequence_data;
    const AEUtil::HandleLock oldLock(in, old);
    if (oldLock.memory() == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    const PF_Err err = sequenceSetup(in, out);
    if (err != PF_Err_NONE) {
        return err;
    }
    const AEUtil::HandleLock freshLock(in, out->sequence_data);
    if (freshLock.memory() == nullptr) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
    writeInMemory(readFlattened(blockOf(in, old, oldLock)),
                  SequenceBlock(static_cast<uint8_t*>(freshLock.memory()), SequenceRecord::kBytes));
    return PF_Err_NONE;
}

} // namespace kovalune
