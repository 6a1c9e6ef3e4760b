#include "effect/share/AEUtil/AEMemory.h"

#include "effect/platform/Platform.h"
#include "effect/share/AEUtil/AEException.h"
#include "effect/share/AEUtil/HandleLock.h"
#include "effect/share/AEUtil/SuiteHolder.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <mutex>

namespace AEUtil {
namespace {

// What stands at the front of a block, ahead of the user's bytes. The rest of the 32 bytes is not written: frozen, since the
// host sees the size.
struct BlockHeader {
    PF_Handle handle;
    uint32_t flag;
    uint32_t size;
    uint8_t reserved[8];
};
constexpr std::size_t kHeaderBytes = 32;
static_assert(sizeof(BlockHeader) <= kHeaderBytes);

// Frozen: users know failures by these.
constexpr char kFile[] = "..\\..\\..\\share\\AEUtil\\AEMemory";
constexpr int kNoHandleLine = 45;
constexpr int kNoLockLine = 56;

/// One for the process: the host's handle functions are never entered twice at once from here, but by a call that one of
/// them makes itself.
kovalune::platform::CriticalSection memoryLock;

AEException outOfMemory(int line, std::size_t hostBytes) {
    return {PF_Err_OUT_OF_MEMORY, line, kFile,
            "void *__cdecl AEUtil::AEMemory::alloc(unsigned int,unsigned int,const struct SPBasicSuite *,"
            "unsigned int,unsigned int)メモリ確保に失敗しました。alloc_size=%d\n",
            static_cast<int>(hostBytes)};
}

} // namespace

void* AEMemory::alloc(std::size_t bytes, const SPBasicSuite* basic) {
    if (bytes == 0 || basic == nullptr) {
        return nullptr;
    }
    SuiteHolder suites(basic);
    const PFHandleSuite1& handles = suites.handles();
    const std::lock_guard lock(memoryLock);

    const std::size_t hostBytes = bytes + kHeaderBytes;
    const bool fits = bytes <= std::numeric_limits<uint32_t>::max() - kHeaderBytes;
    const LockedHandle locked = fits ? newLockedHandle(handles, hostBytes) : LockedHandle();
    if (locked.memory == nullptr) {
        const bool noHandle = locked.lack == LockedHandle::Lack::kHandle;
        throw outOfMemory(noHandle ? kNoHandleLine : kNoLockLine, hostBytes);
    }
    const BlockHeader header = {locked.handle, 1, static_cast<uint32_t>(bytes), {}};
    std::memcpy(locked.memory, &header, sizeof header);
    return static_cast<uint8_t*>(locked.memory) + kHeaderBytes;
}

void AEMemory::release(void* address, const SPBasicSuite* basic) {
    if (address == nullptr || basic == nullptr) {
        return;
    }
    SuiteHolder suites(basic);
    const PFHandleSuite1& handles = suites.handles();
    const std::lock_guard lock(memoryLock);

    BlockHeader header;
    std::memcpy(&header, static_cast<uint8_t*>(address) - kHeaderBytes, sizeof header);
    if (header.handle != nullptr) {
        handles.host_unlock_handle(header.handle);
        handles.host_dispose_handle(header.handle);
    }
}

} // namespace AEUtil
