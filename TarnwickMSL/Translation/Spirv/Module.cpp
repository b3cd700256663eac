#include "TarnwickMSL/Translation/Spirv/Module.h"

#include <llvm/ADT/STLExtras.h>

#include <cstring>

namespace tarnwick::msl::spirv {

static constexpr std::uint32_t version = 0x00010600;
static constexpr std::uint32_t generator = 0; // none registered

llvm::SmallVector<std::uint32_t, 4> literal(const char* text) {
    std::size_t bytes = std::strlen(text) + 1;
    llvm::SmallVector<std::uint32_t, 4> words((bytes + 3) / 4, 0u);
    std::memcpy(words.data(), text, bytes);
    return words;
}

void append(Words& words, spv::Op op, Operands first, Operands second) {
    auto count = static_cast<std::uint32_t>(1 + first.size() + second.size());
    words.push_back(count << spv::WordCountShift | static_cast<std::uint32_t>(op));
    words.insert(words.end(), first.begin(), first.end());
    words.insert(words.end(), second.begin(), second.end());
}

void Module::require(spv::Capability capability) {
    if (!llvm::is_contained(capabilities_, capability))
        capabilities_.push_back(capability);
}

void Module::extension(const char* name) {
    if (!llvm::is_contained(extensions_, llvm::StringRef(name)))
        extensions_.push_back(name);
}

Id Module::extendedInstructions() {
    if (!extended_)
        extended_ = newId();
    return extended_;
}

void Module::decorate(Id target, spv::Decoration decoration, Operands operands) {
    append(decorations_, spv::Op::OpDecorate, {target, static_cast<std::uint32_t>(decoration)},
           operands);
}

void Module::decorateMember(Id type, std::uint32_t member, spv::Decoration decoration,
                            Operands operands) {
    append(decorations_, spv::Op::OpMemberDecorate,
           {type, member, static_cast<std::uint32_t>(decoration)}, operands);
}

void Module::executionMode(spv::ExecutionMode mode, Operands operands) {
    bool takesIds = mode == spv::ExecutionMode::LocalSizeId;
    append(modes_, takesIds ? spv::Op::OpExecutionModeId : spv::Op::OpExecutionMode,
           {main_, static_cast<std::uint32_t>(mode)}, operands);
}

// SPIR-V 1.6, 2.8: only aggregates, which carry decorations, may be declared twice.
static bool isAggregate(spv::Op op) {
    return op == spv::Op::OpTypeStruct || op == spv::Op::OpTypeArray ||
           op == spv::Op::OpTypeRuntimeArray;
}

Id Module::declareType(spv::Op op, Operands operands) {
    if (isAggregate(op)) {
        Id id = newId();
        append(declarations_, op, {id}, operands);
        return id;
    }
    std::vector<std::uint32_t> key{static_cast<std::uint32_t>(op)};
    key.insert(key.end(), operands.begin(), operands.end());
    Id& known = types_[key];
    if (!known) {
        known = newId();
        append(declarations_, op, {known}, operands);
    }
    return known;
}

Id Module::declare(spv::Op op, Id type, Operands operands) {
    Id id = newId();
    append(declarations_, op, {type, id}, operands);
    return id;
}

Id Module::variable(Id pointerType, spv::StorageClass storage, Id initialiser) {
    auto word = static_cast<std::uint32_t>(storage);
    Id id = initialiser ? declare(spv::Op::OpVariable, pointerType, {word, initialiser})
                        : declare(spv::Op::OpVariable, pointerType, {word});
    interface_.push_back(id);
    return id;
}

Words Module::finish(spv::ExecutionModel model, const Words& function) {
    Words words;
    words.reserve(64 + modes_.size() + decorations_.size() + declarations_.size() +
                  function.size());
    words.assign({spv::MagicNumber, version, generator, bound_, 0});
    for (spv::Capability capability : capabilities_)
        append(words, spv::Op::OpCapability, static_cast<std::uint32_t>(capability));
    for (llvm::StringRef name : extensions_)
        append(words, spv::Op::OpExtension, literal(name.data()));
    if (extended_)
        append(words, spv::Op::OpExtInstImport, {extended_}, literal("GLSL.std.450"));
    append(words, spv::Op::OpMemoryModel,
           {static_cast<std::uint32_t>(spv::AddressingModel::Logical),
            static_cast<std::uint32_t>(spv::MemoryModel::GLSL450)});
    llvm::SmallVector<std::uint32_t, 20> entry = literal("main");
    entry.append(interface_.begin(), interface_.end());
    append(words, spv::Op::OpEntryPoint, {static_cast<std::uint32_t>(model), main_}, entry);
    for (Operands section :
         {Operands(modes_), Operands(decorations_), Operands(declarations_), Operands(function)})
        words.insert(words.end(), section.begin(), section.end());
    return words;
}

} // namespace tarnwick::msl::spirv
