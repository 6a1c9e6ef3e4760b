// How often each suite is acquired at the moment.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>

namespace kovalune::host {

class SuiteLedger {
public:
    void acquired(const std::string& name, int32_t version) {
        const std::lock_guard lock(mutex_);
        ++counts_[{name, version}];
    }

    /// False, and no change, for a suite that is not acquired.
    bool released(const std::string& name, int32_t version) {
        const std::lock_guard lock(mutex_);
        const auto found = counts_.find({name, version});
        if (found == counts_.end()) {
            return false;
        }
        if (--found->second == 0) {
            counts_.erase(found);
        }
        return true;
    }

    int live() const {
        const std::lock_guard lock(mutex_);
        int sum = 0;
        for (const auto& [suite, count] : counts_) {
            sum += count;
        }
        return sum;
    }

private:
    mutable std::mutex mutex_;
    std::map<std::pair<std::string, int32_t>, int> counts_;
};

} // namespace kovalune::host
