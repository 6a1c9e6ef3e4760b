// The host's memory under the judge's eyes: with JudgeOptions::audit every block is fresh and stands between guard bytes,
// rows of worlds end in guard bytes too, addresses of dead handles never come again, and a change of the input's pixels
// is seen. Without it memory is the host's own.
#pragma once

#include "host/MemoryWatch.h"
#include "host/judge/JudgeOptions.h"
#include "host/judge/Ledger.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace kovalune::host::judge {

class GuardedMemory : public MemoryWatch {
public:
    GuardedMemory(const JudgeOptions& options, Ledger& ledger) : options_(options), ledger_(ledger) {}
    ~GuardedMemory() override;

    [[nodiscard]] MemoryBlock take(MemoryPool& pool, std::size_t bytes, const BlockPolicy& policy) override;
    void give(MemoryPool& pool, const MemoryBlock& block, const BlockPolicy& policy) override;

    void handleGrown(std::byte* bytes, std::size_t count) override;
    void handleGoes(const MemoryBlock& block) override;
    void handleGone(std::unique_ptr<void*> place) override;

    std::size_t rowGuardBytes() const override;
    void worldMade(const WorldMemory& world, bool cleared) override;
    void worldGoes(const WorldMemory& world) override;

    void inputLent(const void* tag, const WorldInfo& world) override;
    void inputBack(const void* tag, const WorldInfo& world) override;

    /// The damage at this moment as a text; empty where there is none.
    static std::string damageOf(const MemoryBlock& handle);
    static std::string damageOf(const WorldMemory& world);

private:
    const JudgeOptions& options_;
    Ledger& ledger_;
    std::mutex mutex_;
    std::vector<std::unique_ptr<void*>> deadHandles_;    ///< closed
    std::map<const void*, std::vector<std::byte>> lent_; ///< pixels as they were, row by row
};

} // namespace kovalune::host::judge
