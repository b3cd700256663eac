#include "TarnwickMSL/Translation/Passes/Memory/AtomicPlaces.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;

// Returns the type of the value of an atomic operation, or null for another instruction.
static Type* atomicType(const Instruction& instruction) {
    auto* call = dyn_cast<CallInst>(&instruction);
    if (call ? !builtInName(*call).starts_with("atomic_") : !instruction.isAtomic())
        return nullptr;
    if (auto* load = dyn_cast<LoadInst>(&instruction))
        return load->getType();
    if (auto* store = dyn_cast<StoreInst>(&instruction))
        return store->getValueOperand()->getType();
    if (auto* exchange = dyn_cast<AtomicCmpXchgInst>(&instruction))
        return exchange->getNewValOperand()->getType();
    return call && call->arg_size() > 1 ? call->getArgOperand(1)->getType() : instruction.getType();
}

static unsigned pointerIndex(const Instruction& instruction) {
    return isa<StoreInst>(instruction) ? StoreInst::getPointerOperandIndex() : 0;
}

namespace {

// A pointer as a root and a sum of bytes.
struct Bytes {
    Value* root;
    MapVector<Value*, APInt> terms;
    APInt constant;

    bool countsWhole(std::uint64_t size) const {
        auto isWhole = [&](const APInt& bytes) { return bytes.urem(size) == 0; };
        return isWhole(constant) &&
               all_of(terms, [&](const auto& term) { return isWhole(term.second); });
    }
};

} // namespace

static Bytes bytesOf(Value* pointer, const DataLayout& layout) {
    const unsigned width = layout.getIndexTypeSizeInBits(pointer->getType());
    Bytes sum{.root = pointer, .terms = {}, .constant = APInt(width, 0)};
    while (auto* step = dyn_cast<GEPOperator>(sum.root)) {
        if (!step->collectOffset(layout, width, sum.terms, sum.constant))
            break;
        sum.root = step->getPointerOperand();
    }
    return sum;
}

static Value* index(IRBuilder<>& builder, const Bytes& sum, std::uint64_t size) {
    Value* bytes = builder.getInt32(static_cast<std::uint32_t>(sum.constant.getZExtValue()));
    for (const auto& [term, scale] : sum.terms) {
        Value* part = builder.CreateSExtOrTrunc(term, builder.getInt32Ty());
        if (!scale.isOne())
            part = builder.CreateMul(
                part, builder.getInt32(static_cast<std::uint32_t>(scale.getZExtValue())));
        bytes = builder.CreateAdd(bytes, part);
    }
    return builder.CreateLShr(bytes, Log2_64(size), "", true);
}

void indexAtomics(Function& main) {
    const DataLayout& layout = main.getParent()->getDataLayout();
    SmallVector<WeakTrackingVH, 8> old;
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        Type* type = atomicType(instruction);
        if (!type || !type->isSingleValueType())
            continue;
        const std::uint64_t size = layout.getTypeAllocSize(type).getFixedValue();
        Value* pointer = instruction.getOperand(pointerIndex(instruction));
        if (!pointer->getType()->isPointerTy() || !isPowerOf2_64(size))
            continue;
        const Bytes sum = bytesOf(pointer, layout);
        if (sum.countsWhole(size) || isa<GEPOperator, IntToPtrInst>(sum.root))
            continue;
        IRBuilder<> builder(&instruction);
        instruction.setOperand(pointerIndex(instruction),
                               builder.CreateGEP(type, sum.root, index(builder, sum, size)));
        old.push_back(pointer);
    }
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
}

} // namespace tarnwick::msl
