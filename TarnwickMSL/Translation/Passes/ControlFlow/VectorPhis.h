// Divides phis of vectors into lanes: the packaged CPU driver miscompiles phis of vectors.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

namespace tarnwick::msl {

// Must run last, on structured code. Uses of the phis of a loop after the loop assemble the vector
// after the loop, never in it.
void splitVectorPhis(llvm::Function& main, const Structure& structure);

} // namespace tarnwick::msl
