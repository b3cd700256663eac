// The inputs and outputs of a stage: their external globals, and the locations at which the stages
// of one program meet.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/StringMap.h>
#include <llvm/IR/IRBuilder.h>

namespace tarnwick::msl {

// The locations of the values between stages, by name. They are the same for all entry points of a
// program, so that a vertex function fits every fragment function whose names it has. A fragment
// function may take the records of a mesh's vertices and primitives as members: where no function
// gives "member.uv", that is "uv".
class Varyings {
  public:
    explicit Varyings(const std::vector<EntrySignature>& entries);
    std::uint32_t location(llvm::StringRef name) const;
    // Whether the value is one of primitives: mesh functions alone give it, for each primitive.
    bool isOfPrimitive(llvm::StringRef name) const;
    // The name by which a function gives the value; the name itself if none does.
    llvm::StringRef given(llvm::StringRef name) const;

  private:
    std::vector<llvm::StringRef> namesOf(const EntrySignature& entry) const;

    llvm::StringMap<bool> given_; // by functions; whether for each primitive
    llvm::StringMap<std::uint32_t> locations_;
};

// The type of a value in a record: bools are i8.
llvm::Type* memoryType(llvm::LLVMContext& context, const StageValue& value);

// Makes the globals of the interface on demand, and moves values through them. Globals of locations
// have 32-bit components (halves are passed as floats, small integers and bools as i32). Globals of
// built-ins have the type that Vulkan requires.
class Interface {
  public:
    Interface(ShaderModule& shader, const Varyings& varyings)
        : shader_(shader), varyings_(varyings) {}

    // The value of the input in its memory type; the address of an interpolant. Throws
    // TranslationError on words that stages of this kind do not have.
    llvm::Value* read(llvm::IRBuilder<>& builder, const StageValue& value);
    // The value of an attribute of the control point `point`; `point` is any number for a value of
    // another kind.
    llvm::Value* readAttribute(llvm::IRBuilder<>& builder, const StageValue& value,
                               llvm::Value* point);
    // Writes the output from `record` (its start; null if `value` is alone in `plain`).
    void write(llvm::IRBuilder<>& builder, const StageValue& value, llvm::Value* stored);
    // Writes the output of one vertex or primitive of a mesh that has at most `count`.
    void writeElement(llvm::IRBuilder<>& builder, const StageValue& value, llvm::Value* stored,
                      llvm::Value* index, std::uint64_t count);

    // The external global of a whole buffer, or of another variable of the interface.
    llvm::GlobalVariable* global(const InterfaceVariable& variable, llvm::Type* type);
    llvm::Value* readBuiltIn(llvm::IRBuilder<>& builder, llvm::StringRef word);

  private:
    llvm::Value* readColor(llvm::IRBuilder<>& builder, const StageValue& value);
    llvm::Value* readGrid(llvm::IRBuilder<>& builder, GridMember member);
    llvm::Value* derivedBuiltIn(llvm::IRBuilder<>& builder, llvm::StringRef word);
    llvm::Value* barycentric(llvm::IRBuilder<>& builder, Interpolation interpolation);
    llvm::GlobalVariable* atLocation(const StageValue& value);

    ShaderModule& shader_;
    const Varyings& varyings_;
};

} // namespace tarnwick::msl
