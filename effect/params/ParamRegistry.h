// The process-wide tables of parameter objects: one list by persistent id, one by the host's index. Built on
// the first host call and only read afterwards; the objects live until the library is unloaded.
#pragma once

#include "effect/params/BaseParam.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kovalune {

class ParamRegistry {
public:
    /// The next number of the index counter, which starts at 1 when the library is loaded and is never reset.
    int32_t takeIndex() { return nextIndex_++; }

    /// The number of the host's parameters, its input layer included.
    int32_t indexCounter() const { return nextIndex_; }

    void add(std::unique_ptr<BaseParam> param, int32_t diskId, int32_t linkId);

    /// Sorts both lists and resolves the links; called after the last object.
    void finish();

    /// Deletes all objects.
    void clear();

    /// The object with this persistent id, or null; never a neighbour.
    BaseParam* findById(int32_t diskId) const;

    /// Sorted by `paramIndex`; entry 0, the host's input layer, is null.
    const std::vector<BaseParam*>& byIndex() const { return byIndex_; }

    /// Calls `operation(param)`, which returns a host code, on every parameter in the host's order. Stops at the first
    /// failure and returns it.
    template <class Operation>
    [[nodiscard]] PF_Err forEach(Operation&& operation) const {
        for (BaseParam* const param : byIndex_) {
            const PF_Err err = param != nullptr ? operation(*param) : PF_Err{PF_Err_NONE};
            if (err != PF_Err_NONE) {
                return err;
            }
        }
        return PF_Err_NONE;
    }

    /// The section of the defaults file, at most 127 bytes; a longer name is cut.
    const char* sectionName() const { return sectionName_; }
    void setSectionName(const char* name);

private:
    std::vector<std::unique_ptr<BaseParam>> byId_;
    std::vector<BaseParam*> byIndex_;
    int32_t nextIndex_ = 1;
    char sectionName_[128] = {};
};

ParamRegistry& paramRegistry();

} // namespace kovalune
