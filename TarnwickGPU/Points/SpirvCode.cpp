#include "TarnwickGPU/Points/SpirvCode.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <bit>

namespace tarnwick::gpu {

namespace {

constexpr std::uint32_t version = 0x00010600;
constexpr std::size_t headerWords = 5, boundWord = 3;

// "GLSL.std.450" and "main" as literal strings.
constexpr std::uint32_t extendedName[] = {0x4c534c47, 0x6474732e, 0x3035342e, 0};
constexpr std::uint32_t mainName[] = {0x6e69616d, 0};

bool isDeclaration(spv::Op op) {
    return (op >= spv::Op::OpTypeVoid && op <= spv::Op::OpTypeFunction) ||
           (op >= spv::Op::OpConstantTrue && op <= spv::Op::OpSpecConstantOp) ||
           op == spv::Op::OpVariable || op == spv::Op::OpUndef;
}

bool isAnnotation(spv::Op op) {
    return op == spv::Op::OpDecorate || op == spv::Op::OpMemberDecorate ||
           op == spv::Op::OpDecorateId;
}

// OpName and the like say nothing to a driver.
bool isDebug(spv::Op op) {
    return (op >= spv::Op::OpSourceContinued && op <= spv::Op::OpLine) ||
           op == spv::Op::OpModuleProcessed || op == spv::Op::OpNoLine;
}

bool isDecorationOf(const Instruction& instruction, spv::Decoration decoration) {
    return instruction.op == spv::Op::OpDecorate && instruction.operands.size() >= 3 &&
           instruction.operands[1] == static_cast<std::uint32_t>(decoration);
}

// Where a declaration's own id stands: types have no type.
std::size_t resultOf(spv::Op op) {
    return op >= spv::Op::OpTypeVoid && op <= spv::Op::OpTypeFunction ? 0 : 1;
}

// SPIR-V 1.6, 2.8: only aggregates, which carry decorations, may be declared twice. Specialisation
// constants carry them as well, and variables are each their own.
bool isSharable(spv::Op op) {
    const bool isSpecial = op >= spv::Op::OpSpecConstantTrue && op <= spv::Op::OpSpecConstantOp;
    const bool isAggregate = op == spv::Op::OpTypeStruct || op == spv::Op::OpTypeArray ||
                             op == spv::Op::OpTypeRuntimeArray;
    return !isSpecial && !isAggregate && op != spv::Op::OpVariable;
}

} // namespace

void append(Words& words, spv::Op op, Operands operands) {
    words.push_back(static_cast<std::uint32_t>(operands.size() + 1) << spv::WordCountShift |
                    static_cast<std::uint32_t>(op));
    words.insert(words.end(), operands.begin(), operands.end());
}

void append(Words& words, spv::Op op, std::initializer_list<std::uint32_t> operands) {
    append(words, op, Operands(operands.begin(), operands.size()));
}

SpirvCode::SpirvCode() {
    require(spv::Capability::Shader);
}

SpirvCode::SpirvCode(Operands module) {
    precondition(module.size() >= headerWords, "A SPIR-V module has a header.");
    bound_ = module[boundWord];
    bool inFunctions = false;
    eachInstruction(module.subspan(headerWords), [&](const Instruction& instruction) {
        inFunctions = inFunctions || instruction.op == spv::Op::OpFunction;
        if (inFunctions)
            append(functions, instruction.op, instruction.operands);
        else
            take(instruction);
    });
}

void SpirvCode::take(const Instruction& instruction) {
    const auto [op, operands] = instruction;
    if (op == spv::Op::OpCapability) {
        require(static_cast<spv::Capability>(operands[0]));
    } else if (op == spv::Op::OpExtension) {
        append(extensions, op, operands);
    } else if (op == spv::Op::OpExtInstImport) {
        extended_ = operands[0]; // the only set that shaders of Vulkan use
    } else if (op == spv::Op::OpEntryPoint) {
        main_ = operands[1];
        const auto isEnd = [](std::uint32_t word) { return word >> 24 == 0; };
        const auto nameEnd = std::find_if(operands.begin() + 2, operands.end(), isEnd);
        interface.assign(nameEnd + 1, operands.end());
    } else if (op == spv::Op::OpExecutionMode || op == spv::Op::OpExecutionModeId) {
        append(modes, op, operands);
    } else if (isAnnotation(op)) {
        append(annotations, op, operands);
    } else if (isDeclaration(op)) {
        append(declarations, op, operands);
        remember(instruction);
    } else {
        precondition(isDebug(op) || op == spv::Op::OpMemoryModel, "A module's sections are known.");
    }
}

void SpirvCode::remember(const Instruction& instruction) {
    const auto [op, operands] = instruction;
    if (op == spv::Op::OpVariable) {
        variables_[operands[1]] = {operands[0], static_cast<spv::StorageClass>(operands[2])};
        return;
    }
    if (!isSharable(op))
        return;
    known_.emplace(keyOf(instruction), operands[resultOf(op)]);
    if (op == spv::Op::OpTypePointer)
        pointerTypes_[operands[0]] = {static_cast<spv::StorageClass>(operands[1]), operands[2]};
}

SpirvCode::Key SpirvCode::keyOf(const Instruction& declaration) {
    Key key{static_cast<std::uint32_t>(declaration.op)};
    for (std::size_t at = 0; at < declaration.operands.size(); ++at)
        if (at != resultOf(declaration.op))
            key.push_back(declaration.operands[at]);
    return key;
}

std::optional<Id> SpirvCode::find(const Instruction& declaration) const {
    const auto found = isSharable(declaration.op) ? known_.find(keyOf(declaration)) : known_.end();
    return found == known_.end() ? std::nullopt : std::optional(found->second);
}

void SpirvCode::add(const Instruction& declaration) {
    append(declarations, declaration.op, declaration.operands);
    remember(declaration);
}

void SpirvCode::require(spv::Capability capability) {
    if (std::find(capabilities.begin(), capabilities.end(), capability) == capabilities.end())
        capabilities.push_back(capability);
}

Id SpirvCode::extendedInstructions() {
    if (!extended_)
        extended_ = newId();
    return extended_;
}

std::optional<Id> SpirvCode::importedInstructions() const {
    return extended_ ? std::optional(extended_) : std::nullopt;
}

Id SpirvCode::type(spv::Op op, Operands operands) {
    Words all{0};
    all.insert(all.end(), operands.begin(), operands.end());
    if (const auto found = find({op, all}))
        return *found;
    all[0] = newId();
    add({op, all});
    return all[0];
}

Id SpirvCode::type(spv::Op op, std::initializer_list<std::uint32_t> operands) {
    return type(op, Operands(operands.begin(), operands.size()));
}

Id SpirvCode::scalar(spv::Op op, std::uint32_t bits) {
    return op == spv::Op::OpTypeFloat ? type(op, {bits}) : type(op, {bits, 0});
}

Id SpirvCode::vector(Id scalar, std::uint32_t lanes) {
    return type(spv::Op::OpTypeVector, {scalar, lanes});
}

Id SpirvCode::pointer(spv::StorageClass storage, Id pointee) {
    return type(spv::Op::OpTypePointer, {static_cast<std::uint32_t>(storage), pointee});
}

Id SpirvCode::constant(Id type, std::uint32_t bits) {
    return known(spv::Op::OpConstant, type, Operands(&bits, 1));
}

Id SpirvCode::constant(float value) {
    return constant(scalar(spv::Op::OpTypeFloat), std::bit_cast<std::uint32_t>(value));
}

Id SpirvCode::null(Id type) {
    return known(spv::Op::OpConstantNull, type, {});
}

Id SpirvCode::truth() {
    return known(spv::Op::OpConstantTrue, type(spv::Op::OpTypeBool, {}), {});
}

Id SpirvCode::composite(Id type, std::initializer_list<std::uint32_t> parts) {
    return known(spv::Op::OpConstantComposite, type, Operands(parts.begin(), parts.size()));
}

Id SpirvCode::known(spv::Op op, Id type, Operands parts) {
    Words all{type, 0};
    all.insert(all.end(), parts.begin(), parts.end());
    if (const auto found = find({op, all}))
        return *found;
    all[1] = newId();
    add({op, all});
    return all[1];
}

Id SpirvCode::aggregate(spv::Op op, std::initializer_list<std::uint32_t> operands) {
    Words all{newId()};
    all.insert(all.end(), operands.begin(), operands.end());
    append(declarations, op, all);
    return all[0];
}

Id SpirvCode::variable(spv::StorageClass storage, Id pointee) {
    const Id type = pointer(storage, pointee);
    const Id id = newId();
    append(declarations, spv::Op::OpVariable, {type, id, static_cast<std::uint32_t>(storage)});
    variables_[id] = {type, storage};
    interface.push_back(id);
    return id;
}

Id SpirvCode::buffer(Id number, std::uint32_t bytes, std::uint32_t binding) {
    const Id array = aggregate(spv::Op::OpTypeRuntimeArray, {number});
    decorate(array, spv::Decoration::ArrayStride, {bytes});
    const Id block = aggregate(spv::Op::OpTypeStruct, {array});
    decorate(block, spv::Decoration::Block);
    decorateMember(block, 0, spv::Decoration::Offset, {0});
    const Id made = variable(spv::StorageClass::StorageBuffer, block);
    decorate(made, spv::Decoration::DescriptorSet, {0});
    decorate(made, spv::Decoration::Binding, {binding});
    return made;
}

void SpirvCode::decorate(Id target, spv::Decoration decoration,
                         std::initializer_list<std::uint32_t> values) {
    Words all{target, static_cast<std::uint32_t>(decoration)};
    all.insert(all.end(), values.begin(), values.end());
    append(annotations, spv::Op::OpDecorate, all);
}

void SpirvCode::decorateMember(Id type, std::uint32_t member, spv::Decoration decoration,
                               std::initializer_list<std::uint32_t> values) {
    Words all{type, member, static_cast<std::uint32_t>(decoration)};
    all.insert(all.end(), values.begin(), values.end());
    append(annotations, spv::Op::OpMemberDecorate, all);
}

std::optional<Id> SpirvCode::builtIn(spv::BuiltIn builtIn) const {
    std::optional<Id> found;
    eachInstruction(annotations, [&](const Instruction& each) {
        if (isDecorationOf(each, spv::Decoration::BuiltIn) &&
            each.operands[2] == static_cast<std::uint32_t>(builtIn) &&
            variables_.contains(each.operands[0]))
            found = each.operands[0];
    });
    return found;
}

std::map<std::uint32_t, Id> SpirvCode::locations(spv::StorageClass storage) const {
    std::map<std::uint32_t, Id> found;
    eachInstruction(annotations, [&](const Instruction& each) {
        const bool hasLocation = isDecorationOf(each, spv::Decoration::Location);
        const auto variable = hasLocation ? variables_.find(each.operands[0]) : variables_.end();
        if (variable != variables_.end() && variable->second.second == storage)
            found[each.operands[2]] = each.operands[0];
    });
    return found;
}

std::vector<Id> SpirvCode::variables(spv::StorageClass storage) const {
    std::vector<Id> found;
    for (const auto& [variable, kind] : variables_)
        if (kind.second == storage)
            found.push_back(variable);
    return found;
}

Id SpirvCode::pointee(Id variable) const {
    return pointerTypes_.at(variables_.at(variable).first).second;
}

std::optional<std::uint32_t> SpirvCode::specialisation(Id constant) const {
    std::optional<std::uint32_t> number;
    eachInstruction(annotations, [&](const Instruction& each) {
        if (isDecorationOf(each, spv::Decoration::SpecId) && each.operands[0] == constant)
            number = each.operands[2];
    });
    return number;
}

std::optional<Id> SpirvCode::specialised(std::uint32_t number) const {
    std::optional<Id> constant;
    eachInstruction(annotations, [&](const Instruction& each) {
        if (isDecorationOf(each, spv::Decoration::SpecId) && each.operands[2] == number)
            constant = each.operands[0];
    });
    return constant;
}

void SpirvCode::undecorate(Id target) {
    Words kept;
    eachInstruction(annotations, [&](const Instruction& each) {
        if (each.operands[0] != target)
            append(kept, each.op, each.operands);
    });
    annotations = std::move(kept);
}

void SpirvCode::move(Id variable, spv::StorageClass storage) {
    undecorate(variable);
    const Id type = pointer(storage, pointee(variable));
    Words kept;
    eachInstruction(declarations, [&](const Instruction& each) {
        if (each.op != spv::Op::OpVariable || each.operands[1] != variable)
            append(kept, each.op, each.operands);
    });
    append(kept, spv::Op::OpVariable, {type, variable, static_cast<std::uint32_t>(storage)});
    declarations = std::move(kept);
    variables_[variable] = {type, storage};
    Words changed; // pointers into it are of another type now
    eachInstruction(functions, [&](const Instruction& each) {
        Words operands(each.operands.begin(), each.operands.end());
        const bool isInto =
            (each.op == spv::Op::OpAccessChain || each.op == spv::Op::OpInBoundsAccessChain) &&
            operands[2] == variable;
        if (isInto)
            operands[0] = pointer(storage, pointerTypes_.at(operands[0]).second);
        append(changed, each.op, operands);
    });
    functions = std::move(changed);
}

Id SpirvCode::renameMain() {
    const Id inner = newId();
    Words changed;
    eachInstruction(functions, [&](const Instruction& each) {
        Words operands(each.operands.begin(), each.operands.end());
        if (each.op == spv::Op::OpFunction && operands[1] == main_)
            operands[1] = inner;
        append(changed, each.op, operands);
    });
    functions = std::move(changed);
    return inner;
}

Words SpirvCode::finish(spv::ExecutionModel model) const {
    Words words{spv::MagicNumber, version, 0, bound_, 0};
    for (const spv::Capability capability : capabilities)
        append(words, spv::Op::OpCapability, {static_cast<std::uint32_t>(capability)});
    words.insert(words.end(), extensions.begin(), extensions.end());
    if (extended_) {
        Words import{extended_};
        import.insert(import.end(), std::begin(extendedName), std::end(extendedName));
        append(words, spv::Op::OpExtInstImport, import);
    }
    append(words, spv::Op::OpMemoryModel,
           {static_cast<std::uint32_t>(spv::AddressingModel::Logical),
            static_cast<std::uint32_t>(spv::MemoryModel::GLSL450)});
    Words entry{static_cast<std::uint32_t>(model), main_};
    entry.insert(entry.end(), std::begin(mainName), std::end(mainName));
    entry.insert(entry.end(), interface.begin(), interface.end());
    append(words, spv::Op::OpEntryPoint, entry);
    for (const Words* section : {&modes, &annotations, &declarations, &functions})
        words.insert(words.end(), section->begin(), section->end());
    return words;
}

} // namespace tarnwick::gpu
