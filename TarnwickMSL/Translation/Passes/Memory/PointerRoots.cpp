#include "TarnwickMSL/Translation/Passes/Memory/PointerRoots.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/IR/Operator.h>

#include <numeric>

namespace tarnwick::msl {

using namespace llvm;

bool isChoice(const Value* pointer) {
    return isa<PHINode, SelectInst, IntToPtrInst>(pointer);
}

Value* everywhere(LLVMContext& context) {
    return ConstantPointerNull::get(PointerType::get(context, 0));
}

static void collectRoots(Value* pointer, const PointersInMemory& memory, Roots& roots,
                         SmallPtrSetImpl<Value*>& seen) {
    Value* base = baseOf(pointer);
    if (!seen.insert(base).second || isa<UndefValue>(base))
        return;
    if (isa<ConstantPointerNull>(base)) {
        if (memory.usesAddresses)
            roots.insert(base);
        return;
    }
    if (auto* phi = dyn_cast<PHINode>(base)) {
        for (Value* incoming : phi->incoming_values())
            collectRoots(incoming, memory, roots, seen);
    } else if (auto* select = dyn_cast<SelectInst>(base)) {
        collectRoots(select->getTrueValue(), memory, roots, seen);
        collectRoots(select->getFalseValue(), memory, roots, seen);
    } else if (isa<AllocaInst, GlobalVariable>(base)) {
        roots.insert(base);
    } else if (auto* conversion = dyn_cast<IntToPtrInst>(base)) {
        if (memory.isAddress(conversion))
            roots.insert(everywhere(base->getContext()));
        else
            for (Value* stored : memory.stored)
                collectRoots(stored, memory, roots, seen);
    } else {
        throw CompilerFault(
            "A pointer comes neither from a variable nor from a choice of pointers.");
    }
}

Roots rootsOf(Value* pointer, const PointersInMemory& memory) {
    Roots roots;
    SmallPtrSet<Value*, 8> seen;
    collectRoots(pointer, memory, roots, seen);
    return roots;
}

namespace {

class UnitFinder {
  public:
    UnitFinder(const PointersInMemory& memory, const DataLayout& layout)
        : memory_(memory), layout_(layout) {}

    void collect(Value* pointer);
    std::uint64_t unit = 0;

  private:
    const PointersInMemory& memory_;
    const DataLayout& layout_;
    SmallPtrSet<Value*, 8> seen_;
};

void UnitFinder::collect(Value* pointer) {
    if (!seen_.insert(pointer).second)
        return;
    if (auto* step = dyn_cast<GEPOperator>(pointer)) {
        MapVector<Value*, APInt> scales;
        APInt offset(32, 0);
        if (!step->collectOffset(layout_, 32, scales, offset))
            throw CompilerFault("A pointer's step has no constant scale.");
        unit = std::gcd(unit, offset.abs().getZExtValue());
        for (auto& [index, scale] : scales)
            unit = std::gcd(unit, scale.abs().getZExtValue());
        return collect(step->getPointerOperand());
    }
    if (auto* phi = dyn_cast<PHINode>(pointer))
        for (Value* incoming : phi->incoming_values())
            collect(incoming);
    if (auto* select = dyn_cast<SelectInst>(pointer)) {
        collect(select->getTrueValue());
        collect(select->getFalseValue());
    }
    if (auto* conversion = dyn_cast<IntToPtrInst>(pointer);
        conversion && !memory_.isAddress(conversion))
        for (Value* stored : memory_.stored)
            collect(stored);
}

} // namespace

std::uint64_t unitOf(ArrayRef<Value*> pointers, const PointersInMemory& memory,
                     const DataLayout& layout) {
    UnitFinder finder(memory, layout);
    for (Value* pointer : pointers)
        finder.collect(pointer);
    return finder.unit;
}

} // namespace tarnwick::msl
