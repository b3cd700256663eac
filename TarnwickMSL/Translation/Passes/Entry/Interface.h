// A stage's border: which external globals stand for its inputs and outputs, and at which
// locations the stages of one program meet.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/StringMap.h>
#include <llvm/IR/IRBuilder.h>

namespace tarnwick::msl {

// The locations of the values between the stages, by name, the same for every entry point of a
// program, so that any vertex function goes with any fragment function whose names it has.
class Varyings {
  public:
    explicit Varyings(const std::vector<EntrySignature>& entries);
    std::uint32_t location(llvm::StringRef name) const;

  private:
    llvm::StringMap<std::uint32_t> locations_;
};

// The type in which a value stands in a record: bools as i8.
llvm::Type* memoryType(llvm::LLVMContext& context, const StageValue& value);

// Makes the interface's globals as they are asked for, and moves values through them. Globals of
// locations have 32-bit components (halves cross as floats, small integers and bools as i32);
// globals of built-ins have the type that Vulkan gives them.
class Interface {
  public:
    Interface(ShaderModule& shader, const Varyings& varyings)
        : shader_(shader), varyings_(varyings) {}

    // The input's value in its memory type. Throws TranslationError on words that no stage of this
    // kind has.
    llvm::Value* read(llvm::IRBuilder<>& builder, const StageValue& value);
    // Takes the output from `record` (its start, or null where `value` stands alone in `plain`).
    void write(llvm::IRBuilder<>& builder, const StageValue& value, llvm::Value* stored);

    // The external global for a whole buffer, or another one of the interface.
    llvm::GlobalVariable* global(const InterfaceVariable& variable, llvm::Type* type);
    llvm::Value* readBuiltIn(llvm::IRBuilder<>& builder, llvm::StringRef word);

  private:
    llvm::Value* derivedBuiltIn(llvm::IRBuilder<>& builder, llvm::StringRef word);

    ShaderModule& shader_;
    const Varyings& varyings_;
};

} // namespace tarnwick::msl
