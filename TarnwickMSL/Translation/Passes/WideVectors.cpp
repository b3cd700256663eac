#include "TarnwickMSL/Translation/Passes/WideVectors.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned mostLanes = 4;

static bool isWide(const Value* value) {
    auto* type = dyn_cast<FixedVectorType>(value->getType());
    return type && type->getNumElements() > mostLanes;
}

// A lane as part of a lane of `whole`, whose lanes are wider.
static Value* partOfLane(IRBuilder<>& builder, Value* whole, FixedVectorType& type,
                         std::uint64_t lane) {
    auto* from = cast<FixedVectorType>(whole->getType());
    unsigned bits = type.getScalarSizeInBits(), wideBits = from->getScalarSizeInBits();
    std::uint64_t parts = wideBits / bits;
    Value* wide = builder.CreateExtractElement(whole, lane / parts);
    Value* word = builder.CreateBitCast(wide, builder.getIntNTy(wideBits));
    return builder.CreateTrunc(builder.CreateLShr(word, lane % parts * bits),
                               type.getElementType());
}

static bool hasParts(Type* whole, FixedVectorType& type) {
    auto* from = dyn_cast<FixedVectorType>(whole);
    return from && type.getElementType()->isIntegerTy() &&
           from->getScalarSizeInBits() > type.getScalarSizeInBits();
}

static Value* loadedLane(LoadInst& load, FixedVectorType& type, std::uint64_t lane) {
    IRBuilder<> builder(&load);
    auto* input = dyn_cast<GlobalVariable>(load.getPointerOperand());
    if (input && hasParts(input->getValueType(), type)) // built-ins are read whole
        return partOfLane(builder, builder.CreateLoad(input->getValueType(), input), type, lane);
    std::uint64_t bytes = type.getScalarSizeInBits() / 8;
    Value* place =
        builder.CreateConstGEP1_64(builder.getInt8Ty(), load.getPointerOperand(), lane * bytes);
    return builder.CreateAlignedLoad(type.getElementType(), place, Align(bytes));
}

// The one lane that is read of a vector too wide for a shader; null where it is another's.
static Value* readLane(ExtractElementInst& extract) {
    auto* type = dyn_cast<FixedVectorType>(extract.getVectorOperandType());
    auto* index = dyn_cast<ConstantInt>(extract.getIndexOperand());
    if (!index || !isWide(extract.getVectorOperand()))
        return nullptr;
    Value* source = extract.getVectorOperand();
    while (isWide(source) && isa<BitCastInst>(source) &&
           isWide(cast<BitCastInst>(source)->getOperand(0)))
        source = cast<BitCastInst>(source)->getOperand(0);
    if (auto* load = dyn_cast<LoadInst>(source))
        return loadedLane(*load, *type, index->getZExtValue());
    auto* cast = dyn_cast<BitCastInst>(source);
    IRBuilder<> builder(&extract);
    return cast && hasParts(cast->getSrcTy(), *type)
               ? partOfLane(builder, cast->getOperand(0), *type, index->getZExtValue())
               : nullptr;
}

void splitWideVectors(Function& main) {
    SmallVector<WeakTrackingVH, 8> old;
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        auto* extract = dyn_cast<ExtractElementInst>(&instruction);
        Value* found = extract ? readLane(*extract) : nullptr;
        if (!found)
            continue;
        extract->replaceAllUsesWith(found);
        old.push_back(extract->getVectorOperand());
        extract->eraseFromParent();
    }
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
}

} // namespace tarnwick::msl
