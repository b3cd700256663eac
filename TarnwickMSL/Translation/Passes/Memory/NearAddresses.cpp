#include "TarnwickMSL/Translation/Passes/Memory/NearAddresses.h"

#include "TarnwickMSL/Translation/Passes/Memory/ByteSteps.h"
#include "TarnwickMSL/Translation/Passes/Memory/MixedMembers.h"
#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>
#include <llvm/Transforms/Utils/Local.h>

#include <numeric>
#include <optional>
#include <tuple>

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

namespace {

// Replaces the accesses through a step to one of a few members by accesses to each of them, one of
// which counts.
class MemberChoice {
  public:
    MemberChoice(GetElementPtrInst& step, Value* index, const ChosenStep& chosen)
        : step_(step), index_(index), chosen_(chosen) {}

    void split() {
        collect(step_);
        for (Instruction* access : accesses_) {
            if (auto* load = dyn_cast<LoadInst>(access))
                split(*load);
            else
                split(*cast<StoreInst>(access));
        }
    }

  private:
    void collect(GetElementPtrInst& pointer);
    Value* at(Value* pointer, std::int64_t index, Instruction& before) const;
    Value* is(std::int64_t index, IRBuilder<>& builder) const {
        return builder.CreateICmpEQ(index_, ConstantInt::getSigned(index_->getType(), index));
    }
    void split(LoadInst& load) const;
    void split(StoreInst& store) const;

    GetElementPtrInst& step_;
    Value* index_;
    const ChosenStep& chosen_;
    SmallVector<Instruction*, 8> accesses_;
};

void MemberChoice::collect(GetElementPtrInst& pointer) {
    for (User* user : pointer.users()) {
        auto* store = dyn_cast<StoreInst>(user);
        if (auto* further = dyn_cast<GetElementPtrInst>(user))
            collect(*further);
        else if (isa<LoadInst>(user) || (store && store->getPointerOperand() == &pointer))
            accesses_.push_back(cast<Instruction>(user));
        else
            throw TranslationError("A pointer to one of several members of a variable is not "
                                   "supported as an argument of this function.");
    }
}

// The steps to `pointer` with a constant index.
Value* MemberChoice::at(Value* pointer, std::int64_t index, Instruction& before) const {
    auto* copy = cast<Instruction>(pointer)->clone();
    if (pointer == &step_)
        copy->setOperand(1, ConstantInt::getSigned(index_->getType(), index));
    else
        copy->setOperand(0, at(copy->getOperand(0), index, before));
    copy->insertBefore(before.getIterator());
    return copy;
}

void MemberChoice::split(LoadInst& load) const {
    IRBuilder<> builder(&load);
    Value* chosen = nullptr;
    for (std::int64_t index : chosen_.indices) {
        auto* one = cast<LoadInst>(builder.Insert(load.clone()));
        one->setOperand(0, at(load.getPointerOperand(), index, *one));
        chosen = chosen ? builder.CreateSelect(is(index, builder), one, chosen) : one;
    }
    load.replaceAllUsesWith(chosen);
    load.eraseFromParent();
}

void MemberChoice::split(StoreInst& store) const {
    IRBuilder<> builder(&store);
    Value* value = store.getValueOperand();
    for (std::int64_t index : chosen_.indices) {
        Value* place = at(store.getPointerOperand(), index, store);
        Value* old = builder.CreateAlignedLoad(value->getType(), place, store.getAlign());
        Value* stored = builder.CreateSelect(is(index, builder), value, old);
        builder.CreateAlignedStore(stored, place, store.getAlign());
    }
    store.eraseFromParent();
}

} // namespace

// A choice of offsets is of members of different types: nothing that the writer could index.
static void splitMemberChoices(Function& main) {
    SmallVector<std::tuple<WeakTrackingVH, Value*, ChosenStep>, 8> found;
    const DataLayout& layout = main.getParent()->getDataLayout();
    for (Instruction& instruction : instructions(main)) {
        auto* step = dyn_cast<GetElementPtrInst>(&instruction);
        auto* index = step ? dyn_cast<Instruction>(step->getOperand(1)) : nullptr;
        auto* local = index ? dyn_cast<AllocaInst>(getUnderlyingObject(step)) : nullptr;
        const auto chosen = local ? chosenStep(*step, index) : std::nullopt;
        if (chosen && (chosen->others != 0 || !countsElements(*chosen, *local, layout)))
            found.push_back({step, index, *chosen});
    }
    for (auto& [step, index, chosen] : reverse(found)) // those behind others first
        if (step)
            at(cast<Instruction>(*step),
               [&] { MemberChoice(*cast<GetElementPtrInst>(step), index, chosen).split(); });
}

// The strides in bytes, outer ones first, of the arrays of arrays at an offset in a type, down to
// the elements of `size` bytes; `offset` becomes the one in the outermost array. None if there is
// one array only, or something else than arrays between them.
static SmallVector<std::int64_t, 4> nestedStrides(Type* type, std::int64_t& offset,
                                                  std::int64_t size, const DataLayout& layout) {
    SmallVector<std::int64_t, 4> strides;
    for (std::int64_t inner = offset; !type->isVectorTy() && !type->isSingleValueType();) {
        if (auto* record = dyn_cast<StructType>(type)) {
            const bool isAlone = record->getNumElements() == 1;
            const StructLayout& members = *layout.getStructLayout(record);
            if ((!isAlone && !strides.empty()) || inner < 0 ||
                inner >= static_cast<std::int64_t>(members.getSizeInBytes()))
                return {};
            const unsigned member =
                members.getElementContainingOffset(static_cast<std::uint64_t>(inner));
            inner -= static_cast<std::int64_t>(members.getElementOffset(member));
            type = record->getElementType(member);
            continue;
        }
        type = type->getArrayElementType();
        if (strides.empty())
            offset = inner;
        strides.push_back(static_cast<std::int64_t>(layout.getTypeAllocSize(type)));
        if (strides.back() == size)
            break;
        if (strides.back() < size || strides.back() % size != 0)
            return {};
        inner %= strides.back();
    }
    if (strides.size() < 2 || strides.back() != size || offset < 0 || offset % size != 0)
        return {};
    return strides;
}

// LLVM turns `i * 3 + (x ? 2 : 1)` into a choice of two sums, which counts the elements of all
// arrays in an array. Each array gets its own index again.
static void showArrays(GetElementPtrInst& step, IRBuilder<>& builder) {
    Value* index = step.getOperand(1);
    const DataLayout& layout = step.getDataLayout();
    if (step.getNumIndices() != 1 || !isa<SelectInst, PHINode>(index))
        return;
    APInt before(layout.getIndexTypeSizeInBits(step.getType()), 0);
    auto* variable = dyn_cast<AllocaInst>(
        step.getPointerOperand()->stripAndAccumulateConstantOffsets(layout, before, true));
    if (!variable)
        return;
    const auto size =
        static_cast<std::int64_t>(layout.getTypeAllocSize(step.getSourceElementType()));
    std::int64_t offset = before.getSExtValue();
    const auto strides = nestedStrides(variable->getAllocatedType(), offset, size, layout);
    if (strides.empty())
        return;
    const auto constant = [&](std::int64_t value) {
        return ConstantInt::getSigned(index->getType(), value);
    };
    Type* byte = builder.getInt8Ty();
    Value* pointer = builder.CreateGEP(byte, variable, constant(before.getSExtValue() - offset));
    Value* rest = builder.CreateAdd(index, constant(offset / size));
    for (std::int64_t stride : ArrayRef(strides).drop_back()) {
        Constant* count = constant(stride / size);
        pointer = builder.CreateGEP(ArrayType::get(byte, static_cast<std::uint64_t>(stride)),
                                    pointer, builder.CreateUDiv(rest, count));
        rest = builder.CreateURem(rest, count);
    }
    step.setOperand(0, pointer);
    step.setOperand(1, rest);
}

// LLVM's passes write an index of a local array as a masked number of bytes, or as a choice of
// offsets. Without the size of a step, the writer would make the array one of bytes, with many
// accesses for one, or would find another member. The time of the packaged CPU driver grows with
// the square of the accesses in kernels (docs/measurements.md, "Time of the driver").
static void showSteps(Function& main, SmallVectorImpl<WeakTrackingVH>& old) {
    for (Instruction& instruction : instructions(main)) {
        auto* step = dyn_cast<GetElementPtrInst>(&instruction);
        auto* index = step ? dyn_cast<Instruction>(step->getOperand(1)) : nullptr;
        if (!index || !isa<AllocaInst>(getUnderlyingObject(step)))
            continue;
        showProducts(*step);
        showChoice(*step);
        IRBuilder<> builder(step);
        showArrays(*step, builder);
        old.push_back(index);
    }
}

// Adds the steps that lost a use to `old`.
static void repeatSteps(Function& main, SmallVectorImpl<WeakTrackingVH>& old) {
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
}

void keepPointersNear(Function& main) {
    SmallVector<WeakTrackingVH, 16> old;
    splitMemberChoices(main);
    showSteps(main, old);
    repeatSteps(main, old);
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
}

void bringPointersBack(Function& main) {
    SmallVector<WeakTrackingVH, 16> old;
    repeatSteps(main, old);
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
}

} // namespace tarnwick::msl
