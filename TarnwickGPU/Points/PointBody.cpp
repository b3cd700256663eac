#include "TarnwickGPU/Points/PointBody.h"

#include "TarnwickSpirv/Interface.h"

namespace tarnwick::gpu {

PointBody::PointBody(spirv::Module& module)
    : FunctionBody(module), nothing(module.type(spv::Op::OpTypeVoid, {})),
      boolean(module.type(spv::Op::OpTypeBool, {})), word(module.integer()), number(module.real()),
      words2(module.vector(word, 2)), numbers2(module.vector(number, 2)),
      numbers4(module.vector(number, 4)) {}

Id PointBody::load(Id variable) {
    return emit(spv::Op::OpLoad, pointee(module, variable), {variable});
}

Id PointBody::load(spv::StorageClass storage, Id type, Id variable, spirv::Operands path) {
    const Id place = emit(spv::Op::OpAccessChain, module.pointer(storage, type), {variable}, path);
    return emit(spv::Op::OpLoad, type, {place});
}

Id PointBody::placeIn(Id buffer, Id number, Id index) {
    return emit(spv::Op::OpAccessChain, module.pointer(spv::StorageClass::StorageBuffer, number),
                {buffer, module.constant(word, 0u), index});
}

void PointBody::call(Id function) {
    emit(spv::Op::OpFunctionCall, nothing, {function});
}

void PointBody::branchIf(Id condition, Id then, Id merge) {
    act(spv::Op::OpSelectionMerge, {merge, 0});
    act(spv::Op::OpBranchConditional, {condition, then, merge});
}

void PointBody::finish(Id function) {
    act(spv::Op::OpReturn, {});
    FunctionBody::finish(function);
}

Id numbersBuffer(spirv::Module& module, Id number, std::uint32_t bytes, std::uint32_t binding) {
    const Id array = module.type(spv::Op::OpTypeRuntimeArray, {number});
    module.decorate(array, spv::Decoration::ArrayStride, {bytes});
    const Id made = module.variable(spv::StorageClass::StorageBuffer, module.block(array));
    module.bind(made, binding);
    return made;
}

} // namespace tarnwick::gpu
