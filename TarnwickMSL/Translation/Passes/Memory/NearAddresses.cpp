#include "TarnwickMSL/Translation/Passes/Memory/NearAddresses.h"

#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;

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

void keepPointersNear(Function& main) {
    SmallVector<WeakTrackingVH, 16> old;
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
