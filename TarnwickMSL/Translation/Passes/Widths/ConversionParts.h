// Conversions from and to types that the target lacks.
#pragma once

#include "TarnwickMSL/Translation/Passes/Widths/PartMap.h"

#include <llvm/IR/InstrTypes.h>

#include <optional>

namespace tarnwick::msl {

// The parts of the result, or the result itself if the target has its type; nothing if the
// conversion is not known. Throws TranslationError for an address, which has 64 bits.
std::optional<Parts> loweredConversion(llvm::CastInst& conversion, const PartMap& parts,
                                       FoldingBuilder& builder);

} // namespace tarnwick::msl
