#include "TarnwickSpirv/Module.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace tarnwick::spirv {

namespace {

using enum spv::Op;

constexpr std::uint32_t version = 0x00010600, generator = 0; // none registered
constexpr std::size_t headerWords = 5, boundWord = 3;

bool isType(spv::Op op) {
    return (op >= OpTypeVoid && op <= OpTypeFunction) || op == OpTypeRayQueryKHR ||
           op == OpTypeAccelerationStructureKHR;
}

bool isDeclaration(spv::Op op) {
    return isType(op) || (op >= OpConstantTrue && op <= OpSpecConstantOp) || op == OpVariable ||
           op == OpUndef;
}

bool isAnnotation(spv::Op op) {
    return op == OpDecorate || op == OpMemberDecorate || op == OpDecorateId;
}

constexpr std::string_view debugPrintfSet = "NonSemantic.DebugPrintf";

// Drivers ignore OpName and the like.
bool isDebug(spv::Op op) {
    return (op >= OpSourceContinued && op <= OpLine && op != OpString) || op == OpModuleProcessed ||
           op == OpNoLine;
}

// The place of the result among a declaration's operands: types have no type before it.
std::size_t resultOf(spv::Op op) {
    return isType(op) ? 0 : 1;
}

// SPIR-V 1.6, 2.8: only aggregates, which have decorations, may be declared twice. Specialisation
// constants have decorations too, and each variable is its own.
bool isSharable(spv::Op op) {
    const bool isSpecial = op >= OpSpecConstantTrue && op <= OpSpecConstantOp;
    const bool isAggregate = op == OpTypeStruct || op == OpTypeArray || op == OpTypeRuntimeArray;
    return !isSpecial && !isAggregate && op != OpVariable;
}

} // namespace

Module::Module() {
    require(spv::Capability::Shader);
}

Module::Module(Operands words) {
    precondition(words.size() >= headerWords, "a SPIR-V module has a header", "words",
                 words.size());
    bound_ = words[boundWord];
    bool inFunctions = false;
    eachInstruction(words.subspan(headerWords), [&](const Instruction& instruction) {
        inFunctions = inFunctions || instruction.op == OpFunction;
        if (inFunctions)
            append(functions, instruction.op, instruction.operands);
        else
            take(instruction);
    });
}

void Module::take(const Instruction& instruction) {
    const auto& [op, operands] = instruction;
    if (op == OpCapability) {
        require(static_cast<spv::Capability>(operands[0]));
    } else if (op == OpExtension) {
        append(extensions, op, operands);
    } else if (op == OpExtInstImport) {
        const bool prints = std::ranges::equal(operands.subspan(1), literal(debugPrintfSet));
        (prints ? debugPrintf_ : extended_) = operands[0];
    } else if (op == OpString) {
        append(strings, op, operands);
    } else if (op == OpEntryPoint) {
        main_ = operands[1];
        const auto isLastOfName = [](std::uint32_t word) { return word >> 24 == 0; };
        const auto last = std::find_if(operands.begin() + 2, operands.end(), isLastOfName);
        interface.assign(last + 1, operands.end());
    } else if (op == OpExecutionMode || op == OpExecutionModeId) {
        append(modes, op, operands);
    } else if (isAnnotation(op)) {
        append(annotations, op, operands);
    } else if (isDeclaration(op)) {
        add(instruction);
    } else {
        precondition(isDebug(op) || op == OpMemoryModel,
                     "the instructions before the functions are known", "opcode",
                     static_cast<std::uint32_t>(op));
    }
}

void Module::require(spv::Capability capability) {
    if (std::ranges::find(capabilities, capability) == capabilities.end())
        capabilities.push_back(capability);
}

void Module::extension(std::string_view name) {
    const Words wanted = literal(name);
    bool isThere = false;
    eachInstruction(extensions, [&](const Instruction& each) {
        isThere = isThere || std::ranges::equal(each.operands, wanted);
    });
    if (!isThere)
        append(extensions, OpExtension, wanted);
}

Id Module::extendedInstructions() {
    if (!extended_)
        extended_ = newId();
    return extended_;
}

Id Module::debugPrintf() {
    extension("SPV_KHR_non_semantic_info");
    if (!debugPrintf_)
        debugPrintf_ = newId();
    return debugPrintf_;
}

Id Module::text(std::string_view characters) {
    const Id id = newId();
    append(strings, OpString, {id}, literal(characters));
    return id;
}

std::optional<Id> Module::importedInstructions() const {
    return extended_ ? std::optional(extended_) : std::nullopt;
}

void Module::decorate(Id target, spv::Decoration decoration, Operands operands) {
    append(annotations, OpDecorate, {target, static_cast<std::uint32_t>(decoration)}, operands);
}

void Module::decorateMember(Id type, std::uint32_t member, spv::Decoration decoration,
                            Operands operands) {
    append(annotations, OpMemberDecorate, {type, member, static_cast<std::uint32_t>(decoration)},
           operands);
}

void Module::executionMode(spv::ExecutionMode mode, Operands operands) {
    const bool takesIds = mode == spv::ExecutionMode::LocalSizeId;
    append(modes, takesIds ? OpExecutionModeId : OpExecutionMode,
           {main_, static_cast<std::uint32_t>(mode)}, operands);
}

Module::Key Module::keyOf(const Instruction& declaration) {
    Key key{static_cast<std::uint32_t>(declaration.op)};
    for (std::size_t at = 0; at < declaration.operands.size(); ++at)
        if (at != resultOf(declaration.op))
            key.push_back(declaration.operands[at]);
    return key;
}

std::optional<Id> Module::find(const Instruction& declaration) const {
    const auto found = isSharable(declaration.op) ? known_.find(keyOf(declaration)) : known_.end();
    return found == known_.end() ? std::nullopt : std::optional(found->second);
}

void Module::add(const Instruction& declaration) {
    append(declarations_, declaration.op, declaration.operands);
    remember(declaration);
}

void Module::remember(const Instruction& instruction) {
    const auto& [op, operands] = instruction;
    if (op == OpVariable)
        variables_[operands[1]] = operands[0];
    if (!isSharable(op))
        return;
    known_.emplace(keyOf(instruction), operands[resultOf(op)]);
    if (op == OpTypePointer)
        pointerTypes_[operands[0]] = {static_cast<spv::StorageClass>(operands[1]), operands[2]};
}

Id Module::type(spv::Op op, Operands operands) {
    Words all{0};
    all.insert(all.end(), operands.begin(), operands.end());
    if (const auto found = find({op, all}))
        return *found;
    all[0] = newId();
    add({op, all});
    return all[0];
}

Id Module::integer(std::uint32_t bits) {
    return type(OpTypeInt, {bits, 0});
}

Id Module::real(std::uint32_t bits) {
    return type(OpTypeFloat, {bits});
}

Id Module::vector(Id scalar, std::uint32_t lanes) {
    return type(OpTypeVector, {scalar, lanes});
}

Id Module::pointer(spv::StorageClass storage, Id pointee) {
    return type(OpTypePointer, {static_cast<std::uint32_t>(storage), pointee});
}

Id Module::block(Id content) {
    const Id made = type(OpTypeStruct, {content});
    decorate(made, spv::Decoration::Block);
    decorateMember(made, 0, spv::Decoration::Offset, {0});
    return made;
}

Id Module::constantOf(spv::Op op, Id type, Operands operands) {
    Words all{type, 0};
    all.insert(all.end(), operands.begin(), operands.end());
    if (const auto found = find({op, all}))
        return *found;
    all[1] = newId();
    add({op, all});
    return all[1];
}

Id Module::constant(Id type, std::uint32_t bits) {
    return constantOf(OpConstant, type, {bits});
}

Id Module::constant(float value) {
    return constant(real(), std::bit_cast<std::uint32_t>(value));
}

Id Module::null(Id type) {
    return constantOf(OpConstantNull, type, {});
}

Id Module::truth() {
    return constantOf(OpConstantTrue, type(OpTypeBool, {}), {});
}

Id Module::composite(Id type, Operands parts) {
    return constantOf(OpConstantComposite, type, parts);
}

Id Module::declare(spv::Op op, Id type, Operands operands) {
    const Id id = newId();
    append(declarations_, op, {type, id}, operands);
    return id;
}

Id Module::variable(spv::StorageClass storage, Id pointee, Id initialiser) {
    const Id type = pointer(storage, pointee);
    const Id id = newId();
    Words all{type, id, static_cast<std::uint32_t>(storage)};
    if (initialiser)
        all.push_back(initialiser);
    add({OpVariable, all});
    interface.push_back(id);
    return id;
}

Id Module::builtIn(spv::BuiltIn builtIn, spv::StorageClass storage, Id type) {
    const Id made = variable(storage, type);
    decorate(made, spv::Decoration::BuiltIn, {static_cast<std::uint32_t>(builtIn)});
    return made;
}

void Module::bind(Id variable, std::uint32_t binding) {
    decorate(variable, spv::Decoration::DescriptorSet, {0});
    decorate(variable, spv::Decoration::Binding, {binding});
}

void Module::redeclare(Id variable, spv::StorageClass storage) {
    const Id type = pointer(storage, pointerType(variables_.at(variable)).pointee);
    const Words before = std::exchange(declarations_, {});
    eachInstruction(before, [&](const Instruction& each) {
        if (each.op != OpVariable || each.operands[1] != variable)
            append(declarations_, each.op, each.operands);
    });
    add({OpVariable, {type, variable, static_cast<std::uint32_t>(storage)}});
}

Words Module::finish(spv::ExecutionModel model) const {
    Words words{spv::MagicNumber, version, generator, bound_, 0};
    words.reserve(64 + modes.size() + annotations.size() + declarations_.size() + functions.size());
    for (const spv::Capability capability : capabilities)
        append(words, OpCapability, {static_cast<std::uint32_t>(capability)});
    words.insert(words.end(), extensions.begin(), extensions.end());
    if (extended_)
        append(words, OpExtInstImport, {extended_}, literal("GLSL.std.450"));
    if (debugPrintf_)
        append(words, OpExtInstImport, {debugPrintf_}, literal(debugPrintfSet));
    const bool hasAddresses =
        std::ranges::count(capabilities, spv::Capability::PhysicalStorageBufferAddresses) > 0;
    append(words, OpMemoryModel,
           {static_cast<std::uint32_t>(hasAddresses ? spv::AddressingModel::PhysicalStorageBuffer64
                                                    : spv::AddressingModel::Logical),
            static_cast<std::uint32_t>(spv::MemoryModel::GLSL450)});
    Words named = literal("main");
    named.insert(named.end(), interface.begin(), interface.end());
    append(words, OpEntryPoint, {static_cast<std::uint32_t>(model), main_}, named);
    for (const Words* section : {&modes, &strings, &annotations, &declarations_, &functions})
        words.insert(words.end(), section->begin(), section->end());
    return words;
}

} // namespace tarnwick::spirv
