#include "TarnwickMSL/Translation/Spirv/Body.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Support/raw_ostream.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

static std::string textOf(const Value& value) {
    std::string text;
    raw_string_ostream(text) << value;
    return text;
}

Id Body::id(const Value* value) {
    if (Id known = ids_.lookup(value))
        return known;
    if (auto* constant = dyn_cast<Constant>(value))
        return constants.of(constant);
    auto* instruction = dyn_cast<Instruction>(value);
    Id written = instruction && onDemand ? onDemand(*instruction) : 0;
    if (!written)
        throw CompilerFault("A value is used before it is written:" + textOf(*value));
    return written;
}

SmallVector<Id, 4> Body::operands(const User& user, unsigned first, unsigned last) {
    SmallVector<Id, 4> list;
    for (unsigned operand = first; operand < last; ++operand)
        list.push_back(id(user.getOperand(operand)));
    return list;
}

Id Body::label(const BasicBlock* block) {
    Id& known = labels_[block];
    if (!known)
        known = module.newId();
    return known;
}

Id Body::bitcast(Type* to, Type* from, Id value) {
    return to == from ? value : emit(spv::Op::OpBitcast, to, {value});
}

Id Body::resized(Type* to, Type* from, Id value, bool isSigned) {
    if (to == from)
        return value;
    if (to->isFPOrFPVectorTy())
        return emit(spv::Op::OpFConvert, to, {value});
    if (to->getScalarSizeInBits() == from->getScalarSizeInBits())
        return value;
    if (from->isIntOrIntVectorTy(1)) // a bool has no bits (SPIR-V 1.6, 2.2.1)
        return emit(spv::Op::OpSelect, to,
                    {value, id(ConstantInt::getSigned(to, isSigned ? -1 : 1)), constants.null(to)});
    return emit(isSigned ? spv::Op::OpSConvert : spv::Op::OpUConvert, to, {value});
}

Id Body::splat(Type* vector, Id scalar) {
    if (!vector->isVectorTy())
        return scalar;
    SmallVector<std::uint32_t, 4> lanes(laneCount(vector), scalar);
    return emit(spv::Op::OpCompositeConstruct, vector, lanes);
}

} // namespace tarnwick::msl::spirv
