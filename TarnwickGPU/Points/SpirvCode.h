// A SPIR-V module taken apart so that code can be added around its function: sections of words
// (SPIR-V 1.6, 2.4), whose ids stay what they were. For the modules of the layer's compiler, and
// others of one entry point. Names and other debug information are left out.
#pragma once

#include <spirv/unified1/spirv.hpp11>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace tarnwick::gpu {

using Id = std::uint32_t;
using Words = std::vector<std::uint32_t>;
using Operands = std::span<const std::uint32_t>;

// Appends one instruction.
void append(Words& words, spv::Op op, Operands operands);
void append(Words& words, spv::Op op, std::initializer_list<std::uint32_t> operands);

// One instruction of a section: its operands follow its first word.
struct Instruction {
    spv::Op op;
    Operands operands;
};

// Splits well-formed words; calls `take(Instruction)` for each.
template <typename Take> void eachInstruction(Operands words, const Take& take) {
    while (!words.empty()) {
        const std::size_t count = words[0] >> spv::WordCountShift;
        if (count == 0 || count > words.size())
            return;
        take(Instruction{static_cast<spv::Op>(words[0] & spv::OpCodeMask),
                         words.subspan(1, count - 1)});
        words = words.subspan(count);
    }
}

class SpirvCode {
  public:
    SpirvCode(); // an empty module with an entry point of no code
    explicit SpirvCode(Operands module);

    Id newId() { return bound_++; }
    Id bound() const { return bound_; }
    void require(spv::Capability capability);
    Id extendedInstructions(); // GLSL.std.450's import
    std::optional<Id> importedInstructions() const;

    // Types and constants: the one that stands there, or a new one.
    Id type(spv::Op op, Operands operands);
    Id type(spv::Op op, std::initializer_list<std::uint32_t> operands);
    Id scalar(spv::Op op, std::uint32_t bits = 32); // OpTypeFloat, or OpTypeInt without sign
    Id vector(Id scalar, std::uint32_t lanes);
    Id pointer(spv::StorageClass storage, Id pointee);
    Id constant(Id type, std::uint32_t bits);
    Id constant(float value);
    Id null(Id type); // zero
    Id truth();
    Id composite(Id type, std::initializer_list<std::uint32_t> parts);
    // The same for a whole declaration, whatever its result is called.
    std::optional<Id> find(const Instruction& declaration) const;
    void add(const Instruction& declaration);
    // A type that carries decorations of its own, and so is always new.
    Id aggregate(spv::Op op, std::initializer_list<std::uint32_t> operands);

    Id variable(spv::StorageClass storage, Id pointee);
    // A storage buffer of numbers, each of so many bytes.
    Id buffer(Id number, std::uint32_t bytes, std::uint32_t binding);
    void decorate(Id target, spv::Decoration decoration,
                  std::initializer_list<std::uint32_t> values = {});
    void decorateMember(Id type, std::uint32_t member, spv::Decoration decoration,
                        std::initializer_list<std::uint32_t> values = {});

    // The variable of a built-in, if the module has one of its own.
    std::optional<Id> builtIn(spv::BuiltIn builtIn) const;
    // The variables of one storage class that have locations, by location.
    std::map<std::uint32_t, Id> locations(spv::StorageClass storage) const;
    Id pointee(Id variable) const; // its type
    // The number of a specialisation constant, and the constant of a number.
    std::optional<std::uint32_t> specialisation(Id constant) const;
    std::optional<Id> specialised(std::uint32_t number) const;
    void undecorate(Id target);
    // Makes an input or output a variable of the module's own, which other code fills or reads.
    void makePrivate(Id variable) { move(variable, spv::StorageClass::Private); }
    // Gives it another storage class, and no decorations.
    void move(Id variable, spv::StorageClass storage);
    std::vector<Id> variables(spv::StorageClass storage) const;

    // The entry point's function. renameMain gives the one that is there a new id, by which another
    // one of main()'s id can call it.
    Id main() const { return main_; }
    Id renameMain();
    Words finish(spv::ExecutionModel model) const;

    // Sections as they stand.
    std::vector<spv::Capability> capabilities;
    Words modes;        // OpExecutionMode and OpExecutionModeId
    Words annotations;  // decorations
    Words declarations; // types, constants, global variables
    Words functions;
    Words extensions; // OpExtension
    std::vector<Id> interface;

  private:
    using Key = std::vector<std::uint32_t>; // opcode and operands without the result

    Id known(spv::Op op, Id type, Operands parts);
    static Key keyOf(const Instruction& declaration);
    void take(const Instruction& instruction);
    void remember(const Instruction& instruction);

    Id bound_ = 2;
    Id main_ = 1;
    Id extended_ = 0;
    std::map<Key, Id> known_;                                     // types and constants
    std::map<Id, std::pair<Id, spv::StorageClass>> variables_;    // pointer type and class
    std::map<Id, std::pair<spv::StorageClass, Id>> pointerTypes_; // class and pointee
};

} // namespace tarnwick::gpu
