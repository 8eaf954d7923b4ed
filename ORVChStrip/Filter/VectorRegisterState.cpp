#include "ORVChStrip/Filter/VectorRegisterState.h"

void clearUpperVectorRegisters()
{
#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__))                  \
    && !defined(__AVX__)
    static const bool hasAvx = __builtin_cpu_supports("avx");
    if (hasAvx)
        __asm__ volatile("vzeroupper");
#endif
}
