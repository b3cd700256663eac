#include "TarnwickMSL/Translation/Passes/Widths/PartMap.h"

#include "TarnwickMSL/Translation/Passes/Widths/SmallIntegers.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ConstantFolding.h>
#include <llvm/IR/Constants.h>

namespace tarnwick::msl {

using namespace llvm;

SmallVector<Type*, 2> PartMap::types(Type* type) const {
    LLVMContext& context = type->getContext();
    switch (stands_.of(type)) {
    case Stand::word:
        return {type->getWithNewType(Type::getInt32Ty(context))};
    case Stand::pair:
        return SmallVector<Type*, 2>(2, type->getWithNewType(Type::getInt32Ty(context)));
    case Stand::real:
        return {type->getWithNewType(Type::getFloatTy(context))};
    case Stand::itself:
        break;
    }
    return {type};
}

// A constant scalar as one of the given type: a part of an integer from a bit on, or a half as a
// float.
static Constant* scalarPart(Constant* scalar, Type* type, unsigned firstBit) {
    if (auto* number = dyn_cast_or_null<ConstantInt>(scalar))
        return ConstantInt::get(type, number->getValue().lshr(firstBit).zextOrTrunc(32));
    auto* real = dyn_cast_or_null<ConstantFP>(scalar);
    if (!real)
        return Constant::getNullValue(type); // undefined
    bool isInexact = false;
    APFloat value = real->getValueAPF();
    value.convert(APFloat::IEEEsingle(), APFloat::rmNearestTiesToEven, &isInexact);
    return ConstantFP::get(type->getContext(), value);
}

static Constant* constantPart(Constant* constant, Type* type, unsigned firstBit) {
    auto* vector = dyn_cast<FixedVectorType>(type);
    if (!vector)
        return scalarPart(constant, type, firstBit);
    SmallVector<Constant*, 4> lanes;
    for (unsigned lane = 0; lane < vector->getNumElements(); ++lane)
        lanes.push_back(
            scalarPart(constant->getAggregateElement(lane), vector->getElementType(), firstBit));
    return ConstantVector::get(lanes);
}

Parts PartMap::of(Value* value, FoldingBuilder& builder) const {
    if (standOf(value) == Stand::itself)
        return {value};
    if (auto found = parts_.find(value); found != parts_.end())
        return found->second;
    auto* constant = dyn_cast<Constant>(value);
    if (!constant)
        throw CompilerFault("A value of a type that the target lacks is not known.");
    if (Constant* folded =
            ConstantFoldConstant(constant, builder.GetInsertBlock()->getDataLayout()))
        constant = folded;
    Parts parts;
    for (Type* type : types(value->getType()))
        parts.push_back(constantPart(constant, type, parts.empty() ? 0 : 32));
    return parts;
}

Pair PartMap::pair(Value* value, FoldingBuilder& builder) const {
    const Parts parts = of(value, builder);
    return {parts[0], parts[1]};
}

Value* PartMap::word(Value* value, Sign sign, FoldingBuilder& builder) const {
    Value* low = one(value, builder);
    if (standOf(value) == Stand::word)
        return SmallIntegers(builder, value->getType()->getScalarSizeInBits()).extended(low, sign);
    Type* type = value->getType()->getWithNewType(builder.getInt32Ty());
    return builder.CreateIntCast(low, type, sign == Sign::signed_);
}

} // namespace tarnwick::msl
