#include "effect/share/AEUtil/SuiteHolder.h"

namespace AEUtil {
namespace {

enum SlotIndex : std::size_t { kTransformSlot, kFillSlot, kHandleSlot, kWorldSlot };

constexpr std::array kTransformVersions = {kPFWorldTransformSuiteVersion1};
constexpr std::array kWorldVersions = {kPFWorldSuiteVersion1};

} // namespace

AcquiredSuite acquireFirst(const SPBasicSuite* basic, const char* name, std::span<const int32_t> versions) {
    for (const int32_t version : versions) {
        const void* table = nullptr;
        if (basic->AcquireSuite(name, version, &table) == 0 && table != nullptr) {
            return {table, version};
        }
    }
    return {};
}

SuiteHolder::SuiteHolder(const SPBasicSuite* basic)
    : basic_(basic), slots_{{
                         {kPFWorldTransformSuite, kTransformVersions},
                         {kPFFillMatteSuite, kPFFillMatteSuiteVersions},
                         {kPFHandleSuite, kPFHandleSuiteVersions},
                         {kPFWorldSuite, kWorldVersions},
                     }} {
    if (basic_ == nullptr) {
        throw kMissingSuite;
    }
}

SuiteHolder::~SuiteHolder() {
    for (const Slot& slot : slots_) {
        if (slot.suite.table != nullptr) {
            basic_->ReleaseSuite(slot.name, slot.suite.version);
        }
    }
}

const void* SuiteHolder::table(std::size_t index) {
    Slot& slot = slots_[index];
    if (slot.suite.table == nullptr) {
        slot.suite = acquireFirst(basic_, slot.name, slot.versions);
        if (slot.suite.table == nullptr) {
            throw kMissingSuite;
        }
    }
    return slot.suite.table;
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
