#include "TarnwickSpirv/FunctionBody.h"

namespace tarnwick::spirv {

Id FunctionBody::emit(spv::Op op, Id type, Operands first, Operands second) {
    const Id result = module.newId();
    const auto count = static_cast<std::uint32_t>(3 + first.size() + second.size());
    code.insert(code.end(),
                {count << spv::WordCountShift | static_cast<std::uint32_t>(op), type, result});
    code.insert(code.end(), first.begin(), first.end());
    code.insert(code.end(), second.begin(), second.end());
    return result;
}

Id FunctionBody::extended(GLSLstd450 instruction, Id type, Operands operands) {
    return emit(spv::Op::OpExtInst, type,
                {module.extendedInstructions(), static_cast<std::uint32_t>(instruction)}, operands);
}

Id FunctionBody::local(Id pointee, Id initialiser) {
    const Id type = module.pointer(spv::StorageClass::Function, pointee);
    const Id id = module.newId();
    Words operands{type, id, static_cast<std::uint32_t>(spv::StorageClass::Function)};
    if (initialiser)
        operands.push_back(initialiser);
    append(locals, spv::Op::OpVariable, operands);
    return id;
}

Id FunctionBody::parameter(Id type) {
    const Id id = module.newId();
    append(parameters_, spv::Op::OpFunctionParameter, {type, id});
    parameterTypes_.push_back(type);
    return id;
}

Id FunctionBody::type(Id result) {
    Words operands{result ? result : module.type(spv::Op::OpTypeVoid, {})};
    operands.insert(operands.end(), parameterTypes_.begin(), parameterTypes_.end());
    return module.type(spv::Op::OpTypeFunction, operands);
}

void FunctionBody::finish(Id function, Id entry, Id result) {
    const Id given = result ? result : module.type(spv::Op::OpTypeVoid, {});
    const Id whole = type(result);
    Words& functions = module.functions;
    append(functions, spv::Op::OpFunction, {given, function, 0, whole});
    functions.insert(functions.end(), parameters_.begin(), parameters_.end());
    append(functions, spv::Op::OpLabel, {entry ? entry : module.newId()});
    functions.insert(functions.end(), locals.begin(), locals.end());
    functions.insert(functions.end(), code.begin(), code.end());
    append(functions, spv::Op::OpFunctionEnd, {});
}

} // namespace tarnwick::spirv
