// The words of one SPIR-V module, section by section (SPIR-V 1.6, 2.4), and its ids.
#pragma once

#include <llvm/ADT/ArrayRef.h>
#include <llvm/ADT/SmallVector.h>
#include <llvm/ADT/StringRef.h>
#include <spirv/unified1/spirv.hpp11>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <vector>

namespace tarnwick::msl::spirv {

using Id = std::uint32_t;
using Words = std::vector<std::uint32_t>;
using Operands = llvm::ArrayRef<std::uint32_t>;

// A short literal string's words, as instructions hold it.
llvm::SmallVector<std::uint32_t, 4> literal(const char* text);

// Appends one instruction whose operands are the two lists, one after the other.
void append(Words& words, spv::Op op, Operands first, Operands second = {});

class Module {
  public:
    Id newId() { return bound_++; }

    // Each capability is declared once, however often it is required.
    void require(spv::Capability capability);
    void extension(const char* name); // likewise
    Id extendedInstructions(); // GLSL.std.450's import

    void decorate(Id target, spv::Decoration decoration, Operands operands = {});
    void decorateMember(Id type, std::uint32_t member, spv::Decoration decoration,
                        Operands operands = {});
    void executionMode(spv::ExecutionMode mode, Operands operands = {});

    // Types, constants and global variables: appends an instruction and gives its new id, which
    // stands first or behind the type; a type that stands there already (aggregates aside) is it.
    Id declareType(spv::Op op, Operands operands);
    Id declare(spv::Op op, Id type, Operands operands);
    // A global variable, which becomes part of the entry point's interface.
    Id variable(Id pointerType, spv::StorageClass storage, Id initialiser = 0);

    Id main() const { return main_; }
    // The whole module, with `main`'s function words.
    Words finish(spv::ExecutionModel model, const Words& function);

  private:
    Id bound_ = 2; // 1 is main
    Id main_ = 1;
    Id extended_ = 0;
    llvm::SmallVector<spv::Capability, 8> capabilities_;
    llvm::SmallVector<llvm::StringRef, 2> extensions_;
    llvm::SmallVector<Id, 16> interface_;
    Words modes_, decorations_, declarations_;
    std::map<std::vector<std::uint32_t>, Id> types_; // by opcode and operands
};

} // namespace tarnwick::msl::spirv
