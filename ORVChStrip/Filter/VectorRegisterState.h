#pragma once

// Some code in a host process (seen during Qt's own start-up) leaves the upper
// halves of the AVX registers dirty. Many Intel processors then run every
// later SSE instruction, libm's pow, sin and cos among them, several times
// slower, until a vzeroupper. The graphs' math loops call this first; it is
// one instruction, and nothing where AVX is absent or the build uses AVX.
void clearUpperVectorRegisters();
