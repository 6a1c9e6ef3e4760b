#include "effect/share/AEUtil/SuiteHolder.h"

namespace AEUtil {
namespace {

enum SlotIndex : std::size_t { kTransformSlot, kFillSlot, kHandleSlot, kWorldSlot };

constexpr std::array kTransformVersions = {kPFWorldTransformSuiteVersion1};
constexpr std::array kWorldVersions = {kPFWorldSuiteVersion1};

} // namespace

void requireBasicSuite(const SPBasicSuite* basic) {
    if (basic == nullptr) {
        throw kMissingSuite;
    }
}

OwnedSuite::OwnedSuite(const SPBasicSuite* basic, const char* name, std::span<const int32_t> versions)
    : basic_(basic), name_(name) {
    for (const int32_t version : versions) {
        const void* table = nullptr;
        error_ = basic_->AcquireSuite(name_, version, &table);
        if (error_ == 0 && table != nullptr) {
            table_ = table;
            version_ = version;
            return;
        }
    }
}

void OwnedSuite::release() {
    if (std::exchange(table_, nullptr) != nullptr) {
        basic_->ReleaseSuite(name_, version_);
    }
}

SuiteHolder::SuiteHolder(const SPBasicSuite* basic)
    : basic_(basic), slots_{{
                         {kPFWorldTransformSuite, kTransformVersions},
                         {kPFFillMatteSuite, kPFFillMatteSuiteVersions},
                         {kPFHandleSuite, kPFHandleSuiteVersions},
                         {kPFWorldSuite, kWorldVersions},
                     }} {
    requireBasicSuite(basic_);
}

SuiteHolder::~SuiteHolder() {
    // In the order of the slots, not in the reverse one.
    for (Slot& slot : slots_) {
        slot.suite.release();
    }
}

const void* SuiteHolder::table(std::size_t index) {
    Slot& slot = slots_[index];
    if (slot.suite.table() == nullptr) {
        slot.suite = OwnedSuite(basic_, slot.name, slot.versions);
        if (slot.suite.table() == nullptr) {
            throw kMissingSuite;
        }
    }
    return slot.suite.table();
}

const PFWorldTransformSuite1& SuiteHolder::worldTransform() {
    return *static_cast<const PFWorldTransformSuite1*>(table(kTransformSlot));
}

const PFFillMatteSuite1& SuiteHolder::fillMatte() {
    return *static_cast<const PFFillMatteSuite1*>(table(kFillSlot));
}

const PFHandleSuite1& SuiteHolder::handles() {
    return *static_cast<const PFHandleSuite1*>(table(kHandleSlot));
}

const PFWorldSuite1& SuiteHolder::world1() {
    return *static_cast<const PFWorldSuite1*>(table(kWorldSlot));
}

} // namespace AEUtil
