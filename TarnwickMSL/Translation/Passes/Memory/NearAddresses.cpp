#include "TarnwickMSL/Translation/Passes/Memory/NearAddresses.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

// The index of the address operand of an instruction; -1 if it does not access memory.
static int pointerOperand(const Instruction& instruction) {
    if (isa<LoadInst>(instruction))
        return LoadInst::getPointerOperandIndex();
    if (isa<StoreInst>(instruction))
        return StoreInst::getPointerOperandIndex();
    if (isa<AtomicRMWInst, AtomicCmpXchgInst>(instruction))
        return 0;
    auto* call = dyn_cast<CallBase>(&instruction);
    return call && call->arg_size() > 0 && call->getArgOperand(0)->getType()->isPointerTy() ? 0
                                                                                            : -1;
}

// A step into memory, or the conversion of an address.
static bool isStep(const Value* pointer) {
    return isa<GetElementPtrInst, IntToPtrInst>(pointer);
}

static Value* copiedSteps(Value* pointer, Instruction& before) {
    if (!isStep(pointer))
        return pointer;
    auto* step = cast<Instruction>(pointer);
    bool isConversion = isa<IntToPtrInst>(step);
    Value* inner = isConversion ? step->getOperand(0) : copiedSteps(step->getOperand(0), before);
    Instruction* copy = step->clone();
    copy->setOperand(0, inner);
    copy->insertBefore(before.getIterator());
    return copy;
}

// Writes `x & 8` in a sum of bytes as `((x & 8) >> 3) << 3`, not exact: LLVM would fold it.
static Value* asProduct(Value* bytes, IRBuilder<>& builder) {
    Value *left = nullptr, *right = nullptr;
    const APInt* mask = nullptr;
    if (match(bytes, m_Add(m_Value(left), m_Value(right)))) {
        Value *first = asProduct(left, builder), *second = asProduct(right, builder);
        return first == left && second == right ? bytes : builder.CreateAdd(first, second);
    }
    if (!match(bytes, m_And(m_Value(), m_APInt(mask))) || mask->countr_zero() == 0)
        return bytes;
    const unsigned zeros = mask->countr_zero();
    return builder.CreateShl(builder.CreateAShr(bytes, zeros), zeros);
}

// LLVM's passes write an index of a local array as a masked number of bytes. Without the size of a
// step, the writer would make the array one of bytes, with many accesses for one. The time of the
// packaged CPU driver grows with their square in kernels (docs/measurements.md, "Time of the
// driver").
static void showSteps(Function& main, SmallVectorImpl<WeakTrackingVH>& old) {
    for (Instruction& instruction : instructions(main)) {
        auto* step = dyn_cast<GetElementPtrInst>(&instruction);
        if (!step || !step->getSourceElementType()->isIntegerTy(8) ||
            !isa<AllocaInst>(getUnderlyingObject(step)))
            continue;
        auto* bytes = dyn_cast<Instruction>(step->getOperand(1));
        if (!bytes)
            continue;
        IRBuilder<> builder(step);
        step->setOperand(1, asProduct(bytes, builder));
        old.push_back(bytes);
    }
}

void keepPointersNear(Function& main) {
    SmallVector<WeakTrackingVH, 16> old;
    showSteps(main, old);
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        int operand = pointerOperand(instruction);
        if (operand < 0)
            continue;
        auto index = static_cast<unsigned>(operand);
        Value* pointer = instruction.getOperand(index);
        auto* step = isStep(pointer) ? cast<Instruction>(pointer) : nullptr;
        if (!step || (step->getParent() == instruction.getParent() && !isStep(step->getOperand(0))))
            continue;
        instruction.setOperand(index, copiedSteps(step, instruction));
        old.push_back(step);
    }
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
}

} // namespace tarnwick::msl
