// Building vectors and aggregates and taking them apart.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Body.h"

#include <llvm/IR/Instructions.h>

namespace tarnwick::msl::spirv {

Id writeInsertElement(Body& body, const llvm::InsertElementInst& insert);
Id writeExtractElement(Body& body, const llvm::ExtractElementInst& extract);
Id writeShuffle(Body& body, const llvm::ShuffleVectorInst& shuffle);
Id writeInsertValue(Body& body, const llvm::InsertValueInst& insert);
Id writeExtractValue(Body& body, const llvm::ExtractValueInst& extract);

} // namespace tarnwick::msl::spirv
