#include "tests/windows/ShiftedStack.h"

#include <array>

// Calls a function with six words of arguments, of which it may take fewer: the caller removes them. With the return
// address, the function finds its stack pointer at 16 n - shift - 28.
extern "C" int32_t kovaluneCallShifted(const void* function, uint32_t shift, const uint32_t* arguments);
asm(".text\n"
    ".globl _kovaluneCallShifted\n"
    "_kovaluneCallShifted:\n"
    "    pushl %ebp\n"
    "    movl %esp, %ebp\n"
    "    movl 8(%ebp), %eax\n"
    "    movl 16(%ebp), %ecx\n"
    "    andl $-16, %esp\n"
    "    subl 12(%ebp), %esp\n"
    "    pushl 20(%ecx)\n"
    "    pushl 16(%ecx)\n"
    "    pushl 12(%ecx)\n"
    "    pushl 8(%ecx)\n"
    "    pushl 4(%ecx)\n"
    "    pushl (%ecx)\n"
    "    call *%eax\n"
    "    movl %ebp, %esp\n"
    "    popl %ebp\n"
    "    ret\n");

namespace kovalune::test {
namespace {

PF_EntryPoint realEntry = nullptr;
uint32_t realShift = 0;

template <class Argument>
uint32_t word(Argument* argument) {
    return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(argument));
}

uint32_t word(int32_t argument) {
    return static_cast<uint32_t>(argument);
}

template <class Function, class... Arguments>
PF_Err callShifted(Function* function, Arguments... arguments) {
    const std::array<uint32_t, 6> words = {word(arguments)...};
    return kovaluneCallShifted(reinterpret_cast<const void*>(function), realShift, words.data());
}

struct Pass {
    PF_IterateGenericFunc function;
    void* record;
};

PF_Err runPass(void* pass, A_long thread, A_long i, A_long iterations) {
    const Pass& real = *static_cast<const Pass*>(pass);
    return callShifted(real.function, real.record, thread, i, iterations);
}

PF_UtilCallbacks realUtils = {};

PF_Err iterateShifted(A_long iterations, void* record, PF_IterateGenericFunc function) {
    Pass pass = {function, record};
    return realUtils.iterate_generic(iterations, &pass, runPass);
}

PF_Err enterShifted(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                    PF_LayerDef* output, void* extra) {
    realUtils = *in->utils;
    PF_UtilCallbacks utils = realUtils;
    utils.iterate_generic = iterateShifted;
    in->utils = &utils;
    return callShifted(realEntry, command, in, out, params, output, extra);
}

} // namespace

host::EffectModule onShiftedStack(const host::EffectModule& module, uint32_t shift) {
    realEntry = module.entry();
    realShift = shift;
    return host::EffectModule::linked(enterShifted);
}

} // namespace kovalune::test
