// Lanes of vectors: taken out, put in, and chosen of two vectors.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Body.h"

namespace tarnwick::msl::wgsl {

Expression laneOf(const Expression& vector, unsigned lane);

Expression writeInsertElement(Body& body, const llvm::InsertElementInst& insert);
Expression writeExtractElement(Body& body, const llvm::ExtractElementInst& extract);
Expression writeShuffle(Body& body, const llvm::ShuffleVectorInst& shuffle);

} // namespace tarnwick::msl::wgsl
