#include "TarnwickGPU/Points/SpirvBody.h"

namespace tarnwick::gpu {

SpirvBody::SpirvBody(SpirvCode& module)
    : code(module), nothing(code.type(spv::Op::OpTypeVoid, {})),
      boolean(code.type(spv::Op::OpTypeBool, {})), word(code.scalar(spv::Op::OpTypeInt)),
      number(code.scalar(spv::Op::OpTypeFloat)), words2(code.vector(word, 2)),
      numbers2(code.vector(number, 2)), numbers4(code.vector(number, 4)) {}

Id SpirvBody::make(spv::Op op, Id type, std::initializer_list<std::uint32_t> operands) {
    Words all{type, code.newId()};
    all.insert(all.end(), operands.begin(), operands.end());
    append(words_, op, all);
    return all[1];
}

void SpirvBody::act(spv::Op op, std::initializer_list<std::uint32_t> operands) {
    append(words_, op, operands);
}

Id SpirvBody::extended(GLSLstd450 operation, Id type,
                       std::initializer_list<std::uint32_t> operands) {
    Words all{type, code.newId(), code.extendedInstructions(),
              static_cast<std::uint32_t>(operation)};
    all.insert(all.end(), operands.begin(), operands.end());
    append(words_, spv::Op::OpExtInst, all);
    return all[1];
}

Id SpirvBody::load(Id variable) {
    return make(spv::Op::OpLoad, code.pointee(variable), {variable});
}

Id SpirvBody::load(spv::StorageClass storage, Id type, Id variable,
                   std::initializer_list<Id> path) {
    Words all{code.pointer(storage, type), code.newId(), variable};
    all.insert(all.end(), path.begin(), path.end());
    append(words_, spv::Op::OpAccessChain, all);
    return make(spv::Op::OpLoad, type, {all[1]});
}

Id SpirvBody::placeIn(Id buffer, Id number, Id index) {
    return make(spv::Op::OpAccessChain, code.pointer(spv::StorageClass::StorageBuffer, number),
                {buffer, code.constant(word, 0u), index});
}

void SpirvBody::call(Id function) {
    make(spv::Op::OpFunctionCall, nothing, {function});
}

Id SpirvBody::local(Id type) {
    const Id id = code.newId();
    append(locals_, spv::Op::OpVariable,
           {code.pointer(spv::StorageClass::Function, type), id,
            static_cast<std::uint32_t>(spv::StorageClass::Function), code.null(type)});
    return id;
}

void SpirvBody::branchIf(Id condition, Id then, Id merge) {
    act(spv::Op::OpSelectionMerge, {merge, 0});
    act(spv::Op::OpBranchConditional, {condition, then, merge});
}

void SpirvBody::finish(Id function) {
    const Id type = code.type(spv::Op::OpTypeFunction, {nothing});
    append(code.functions, spv::Op::OpFunction, {nothing, function, 0, type});
    append(code.functions, spv::Op::OpLabel, {code.newId()});
    code.functions.insert(code.functions.end(), locals_.begin(), locals_.end());
    code.functions.insert(code.functions.end(), words_.begin(), words_.end());
    append(code.functions, spv::Op::OpReturn, {});
    append(code.functions, spv::Op::OpFunctionEnd, {});
}

} // namespace tarnwick::gpu
