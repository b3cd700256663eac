// The machine that Clang lays out memory for.
#pragma once

namespace clang {
class CompilerInstance;
} // namespace clang

namespace tarnwick::msl {

// Gives the instance the target of its options with Metal's pointers: 64 bits in memory. Indices,
// sizes and differences of pointers keep 32 bits, since no buffer of Vulkan is longer than 4 GiB
// (maxStorageBufferRange has 32 bits). Call before the instance makes its preprocessor.
void useMetalTarget(clang::CompilerInstance& instance);

} // namespace tarnwick::msl
