// A SPIR-V module of one entry point: its ids and its words, section by section (SPIR-V 1.6, 2.4).
// It is built from scratch, or parsed so that code can be added around its function. A parsed
// module keeps its ids and the texts of its logs; names and other debug information are removed.
#pragma once

#include "TarnwickSpirv/Instruction.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick::spirv {

class Module {
  public:
    Module(); // has the capability Shader, and no function yet
    // Parses a whole module. Its instructions must be well formed; the only sets of extended
    // instructions are GLSL.std.450 and NonSemantic.DebugPrintf.
    explicit Module(Operands words);

    Id newId() { return bound_++; }
    Id main() const { return main_; } // the entry point's function

    // Each capability and extension is declared once, however often it is required.
    void require(spv::Capability capability);
    void extension(std::string_view name);
    Id extendedInstructions(); // the import of GLSL.std.450, which is made on demand
    std::optional<Id> importedInstructions() const; // the import, if there is one
    Id debugPrintf(); // the import of NonSemantic.DebugPrintf, which is made on demand
    bool hasDebugPrintf() const { return debugPrintf_ != 0; }
    Id text(std::string_view characters); // a new OpString

    void decorate(Id target, spv::Decoration decoration, Operands operands = {});
    void decorateMember(Id type, std::uint32_t member, spv::Decoration decoration,
                        Operands operands = {});
    void executionMode(spv::ExecutionMode mode, Operands operands = {});

    // An existing type of the module, or a new one. Arrays and structs are always new, because each
    // has its own decorations (SPIR-V 1.6, 2.8).
    Id type(spv::Op op, Operands operands);
    Id integer(std::uint32_t bits = 32); // unsigned
    Id real(std::uint32_t bits = 32);
    Id vector(Id scalar, std::uint32_t lanes);
    Id pointer(spv::StorageClass storage, Id pointee);
    Id block(Id content); // a struct of one member at byte 0, decorated as a Block

    // An existing constant of the module, or a new one.
    Id constant(Id type, std::uint32_t bits);
    Id constant(float value);
    Id null(Id type); // zero
    Id truth();
    Id composite(Id type, Operands parts);

    // Always a new declaration, with the result type `type`.
    Id declare(spv::Op op, Id type, Operands operands);
    // A global variable, which becomes part of the entry point's interface.
    Id variable(spv::StorageClass storage, Id pointee, Id initialiser = 0);
    // The variable of a built-in value, an input or output.
    Id builtIn(spv::BuiltIn builtIn, spv::StorageClass storage, Id type);
    // Decorates a variable with its binding in descriptor set 0.
    void bind(Id variable, std::uint32_t binding);

    // Looks up and adds whole declarations. find() compares all operands except the id of the
    // result; absent without a match.
    std::optional<Id> find(const Instruction& declaration) const;
    void add(const Instruction& declaration);

    // The types of pointers, and the global variables.
    struct Pointer {
        spv::StorageClass storage = spv::StorageClass::Private;
        Id pointee = 0;
    };
    Pointer pointerType(Id type) const { return pointerTypes_.at(type); }
    const std::map<Id, Id>& variables() const { return variables_; } // each one's pointer type
    // Declares a variable again in another storage class, with its id, after all other
    // declarations.
    void redeclare(Id variable, spv::StorageClass storage);

    Words finish(spv::ExecutionModel model) const; // all words of the module

    const Words& declarations() const { return declarations_; } // types, constants, variables
    // The other sections, which need no index.
    std::vector<spv::Capability> capabilities;
    Words extensions;  // OpExtension
    Words modes;       // OpExecutionMode and OpExecutionModeId
    Words strings;     // OpString
    Words annotations; // decorations
    Words functions;
    std::vector<Id> interface; // the entry point's global variables

  private:
    using Key = std::vector<std::uint32_t>; // opcode, and operands without the result

    static Key keyOf(const Instruction& declaration);
    Id constantOf(spv::Op op, Id type, Operands operands);
    void take(const Instruction& instruction);
    void remember(const Instruction& instruction);

    Id bound_ = 2;
    Id main_ = 1;
    Id extended_ = 0, debugPrintf_ = 0;
    Words declarations_;
    std::map<Key, Id> known_; // types and constants
    std::map<Id, Id> variables_;
    std::map<Id, Pointer> pointerTypes_;
};

} // namespace tarnwick::spirv
