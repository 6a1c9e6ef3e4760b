#include "tests/pipeline/IterateWatch.h"

#include "host/CallbackTables.h"

namespace kovalune::test {
namespace {

IterateWatch* current = nullptr;

} // namespace

IterateWatch::IterateWatch(StrictHost& host, int failing) : table_(host.utils()), failing_(failing) {
    current = this;
    table_.iterate_generic = iterate;
}

IterateWatch::~IterateWatch() {
    table_.iterate_generic = host::utilCallbacks()->iterate_generic;
    current = nullptr;
}

PF_Err IterateWatch::iterate(A_long iterations, void* record, PF_IterateGenericFunc pass) {
    current->passes_.push_back(pass);
    if (current->onPass) {
        current->onPass(pass, record);
    }
    if (current->count() == current->failing_) {
        return kCode;
    }
    return host::utilCallbacks()->iterate_generic(iterations, record, pass);
}

} // namespace kovalune::test
