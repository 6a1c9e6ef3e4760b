#include "host/Iterate.h"

#include "host/CallbackSupport.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace kovalune::host {

namespace {

/// The first code by number that a set of passes gave.
class FirstFailure {
public:
    bool any() const { return any_; }

    void note(A_long number, PF_Err code) {
        const std::lock_guard lock(mutex_);
        if (!any_ || number < number_) {
            number_ = number;
            code_ = code;
        }
        any_ = true;
    }

    PF_Err code() const {
        const std::lock_guard lock(mutex_);
        return code_;
    }

private:
    mutable std::mutex mutex_;
    std::atomic<bool> any_{false};
    A_long number_ = 0;
    PF_Err code_ = PF_Err_NONE;
};

PF_Err runPass(CommandContext& context, PF_IterateGenericFunc pass, void* refcon, A_long slot, A_long number,
               A_long count) noexcept {
    try {
        return pass(refcon, slot, number, count);
    } catch (...) {
        shielded([&] { context.host.watch.misused("an exception left an iterate_generic pass"); });
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

PF_Err runPasses(CommandContext& context, A_long count, void* refcon, PF_IterateGenericFunc pass) {
    const std::vector<A_long> order = context.operation.passOrder(count);
    const int helpers = context.host.options.threaded ? threadCountOf(context.host.options) - 1 : 0;
    FirstFailure failure;
    context.host.threads.run(count, helpers, [&](int slot, int piece) {
        if (failure.any()) {
            return;
        }
        const ContextScope scope(&context);
        const A_long number = order.empty() ? piece : order[static_cast<std::size_t>(piece)];
        if (const PF_Err code = runPass(context, pass, refcon, slot, number, count); code != PF_Err_NONE) {
            failure.note(number, code);
        }
    });
    return failure.code();
}

} // namespace

PF_Err iterateGeneric(A_long iterations, void* refcon, PF_IterateGenericFunc pass) {
    return shielded(PF_Err{PF_Err_OUT_OF_MEMORY}, [&]() -> PF_Err {
        CommandContext* context = currentContext();
        if (context == nullptr) {
            return PF_Err_INVALID_CALLBACK;
        }
        logCall(*context, "iterate_generic", [&] { return joined(iterations); });
        const std::optional<Refusal> refusal = context->operation.refusalOf("iterate_generic");
        if (refusal && !refusal->afterPasses) {
            return refusal->code;
        }
        if (pass == nullptr || iterations < PF_Iterations_ONCE_PER_PROCESSOR) {
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        const A_long count =
            iterations == PF_Iterations_ONCE_PER_PROCESSOR ? context->host.iterationCount() : iterations;
        const PF_Err code = runPasses(*context, count, refcon, pass);
        return refusal ? refusal->code : code;
    });
}

} // namespace kovalune::host
