// Phis of vectors, which the packaged CPU driver takes for others than they are.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Makes one phi of each lane. Run last, on structured code: what uses a loop's phis after the loop
// gets its vectors put together there, never in the loop.
void splitVectorPhis(llvm::Function& main, const Structure& structure);

} // namespace tarnwick::msl
