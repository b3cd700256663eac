// The scalar types that a target lacks, and what stands for their values.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <cstdint>

namespace tarnwick::msl {

enum class Stand : std::uint8_t {
    itself, // the target has the type
    word,   // 8 or 16 bits: the low bits of an i32, whose others may have any value
    pair,   // 64 bits: two i32, the low one first
    real,   // half: a float whose value is a half's
};

class Stands {
  public:
    explicit Stands(const TypeLacks& lacks) : lacks_(lacks) {}

    // For a scalar, or the lanes of a vector; itself for any other type.
    Stand of(const llvm::Type* type) const;

    // Whether memory of the type has scalars that no memory of the target has. Without one of the
    // small types, there are none of 8 and 16 bits in memory at all, since they share words.
    bool areInMemoryOf(const llvm::Type* type) const;

    // Whether an instruction takes or gives a value of a type that the target lacks. Constants that
    // the writer reads itself do not count: indices, and operands of built-in calls.
    bool concern(const llvm::Instruction& instruction) const;

  private:
    TypeLacks lacks_;
};

// Whether the operand is an index of a step into memory or of a lane, which may have any width.
bool isIndexOfSteps(const llvm::Use& operand);

// Whether the global is the text of a log, which is no memory of the module.
bool isFormatOfLog(const llvm::GlobalVariable& global);

} // namespace tarnwick::msl
