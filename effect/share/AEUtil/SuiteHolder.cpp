#include "effect/share/AEUtil/SuiteHolder.h"

namespace AEUtil {
namespace {

enum SlotIndex : std::size_t { kTransformSlot, kFillSlot, kHandleSlot, kWorldSlot };

} // namespace

SuiteHolder::SuiteHolder(const SPBasicSuite* basic)
    : basic_(basic), slots_{{
                         {kPFWorldTransformSuite, kPFWorldTransformSuiteVersion1, nullptr},
                         {kPFFillMatteSuite, kPFFillMatteSuiteVersion1, nullptr},
                         {kPFHandleSuite, kPFHandleSuiteVersion1, nullptr},
                         {kPFWorldSuite, kPFWorldSuiteVersion1, nullptr},
                     }} {
    if (basic_ == nullptr) {
        throw kMissingSuite;
    }
}

SuiteHolder::~SuiteHolder() {
    for (const Slot& slot : slots_) {
        if (slot.table != nullptr) {
            basic_->ReleaseSuite(slot.name, slot.version);
        }
    }
}

const void* SuiteHolder::table(std::size_t index) {
    Slot& slot = slots_[index];
    if (slot.table == nullptr) {
        const void* acquired = nullptr;
        if (basic_->AcquireSuite(slot.name, slot.version, &acquired) != 0 || acquired == nullptr) {
            throw kMissingSuite;
        }
        slot.table = acquired;
    }
    return slot.table;
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
