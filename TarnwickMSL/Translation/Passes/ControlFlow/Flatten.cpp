// A machine that runs many invocations in step executes both sides of a branch that they do not
// agree on. The packaged CPU driver always does, and a branch costs it a mask, a masked write for
// each phi, and often a phi of booleans that the nesting of regions needs. So short sides are worth
// more as straight code: their values are computed in any case, and selected.
//
// Three forms, from the inside out, until none is left:
//
//   triangle             a ? side -> end : end           code of the side; selects for the phis of
//   the end diamond              a ? one -> end : other -> end   the same with both sides common
//   destination   a ? end : next; next: b ? end : other      a or b ? end : other
//
// The third undoes what LLVM's threading of jumps makes of conditions such as `a || b(x)`, which
// otherwise becomes nested regions with a guard for each. In a loop it joins two exits into one.
//
// A condition that is the same for all invocations stays a branch: a GPU skips the code, and the
// packaged CPU driver, which compiles again for the values of uniforms, removes it.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Flatten.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned longestSide = 60;     // scalar operations
constexpr unsigned deepestCondition = 6; // instructions from a condition to its uniforms

namespace {

class Flattening {
  public:
    explicit Flattening(ShaderModule& shader) : shader_(shader) {}
    bool run();

  private:
    bool flatten(BasicBlock& block);
    bool flattenSides(BasicBlock& block, BranchInst& branch);
    bool joinTests(BasicBlock& block, BranchInst& branch, unsigned side);
    bool isUniform(const Value& value, unsigned depth = 0) const;
    bool isUniformBuffer(const Value& pointer) const;

    ShaderModule& shader_;
};

} // namespace

static unsigned lanesOf(const Type& type) {
    auto* vector = dyn_cast<FixedVectorType>(&type);
    return vector ? vector->getNumElements() : 1;
}

// In scalar operations; the functions are polynomials on CPU drivers.
static unsigned cost(const Instruction& instruction) {
    const unsigned lanes = lanesOf(*instruction.getType());
    auto* call = dyn_cast<IntrinsicInst>(&instruction);
    switch (call ? call->getIntrinsicID() : Intrinsic::not_intrinsic) {
    case Intrinsic::sin:
    case Intrinsic::cos:
    case Intrinsic::exp:
    case Intrinsic::exp2:
    case Intrinsic::log:
    case Intrinsic::log2:
    case Intrinsic::pow:
        return 12 * lanes;
    default:
        return lanes;
    }
}

// Whether the code of the block may run where the program does not run it, at a small cost.
static bool isShort(const BasicBlock& block) {
    unsigned sum = 0;
    for (const Instruction& instruction : block) {
        if (instruction.isTerminator())
            return true;
        sum += cost(instruction);
        if (sum > longestSide || isa<PHINode>(instruction) ||
            !isSafeToSpeculativelyExecute(&instruction))
            return false;
    }
    return true;
}

static bool isSide(const BasicBlock& side, const BasicBlock& from) {
    auto* end = dyn_cast<BranchInst>(side.getTerminator());
    return side.getSinglePredecessor() == &from && end && end->isUnconditional() &&
           end->getSuccessor(0) != &side && isShort(side);
}

static bool canSelect(const BasicBlock& end) {
    return all_of(end.phis(), [](const PHINode& phi) {
        Type* type = phi.getType();
        return type->isIntOrIntVectorTy() || type->isFPOrFPVectorTy();
    });
}

static void moveCode(BasicBlock& from, BasicBlock& to) {
    for (Instruction& instruction : from)
        instruction.dropUBImplyingAttrsAndMetadata();
    to.splice(to.getTerminator()->getIterator(), &from, from.begin(),
              from.getTerminator()->getIterator());
}

static Value* choice(IRBuilder<>& builder, Value* condition, Value* one, Value* other) {
    return one == other ? one : builder.CreateSelect(condition, one, other);
}

static void dropBlock(BasicBlock& block) {
    block.dropAllReferences();
    block.eraseFromParent();
}

bool Flattening::isUniformBuffer(const Value& pointer) const {
    auto* global = dyn_cast<GlobalVariable>(getUnderlyingObject(&pointer));
    return global && any_of(shader_.interface, [&](const InterfaceVariable& variable) {
               return variable.kind == InterfaceKind::uniformBuffer &&
                      variable.global == global->getName();
           });
}

bool Flattening::isUniform(const Value& value, unsigned depth) const {
    if (isa<Constant>(value))
        return true;
    auto* instruction = dyn_cast<Instruction>(&value);
    if (!instruction || depth > deepestCondition || isa<PHINode>(instruction))
        return false;
    if (auto* load = dyn_cast<LoadInst>(instruction)) {
        auto* step = dyn_cast<GetElementPtrInst>(load->getPointerOperand());
        return (!step || step->hasAllConstantIndices()) &&
               isUniformBuffer(*load->getPointerOperand());
    }
    if (auto* call = dyn_cast<CallInst>(instruction); call && !isa<IntrinsicInst>(call)) {
        const Function* called = call->getCalledFunction();
        return called && called->getName().starts_with("msl.function_constant");
    }
    return all_of(instruction->operands(), [&](const Use& operand) {
        return isa<Function>(operand.get()) || isUniform(*operand.get(), depth + 1);
    });
}

// A triangle or a diamond.
bool Flattening::flattenSides(BasicBlock& block, BranchInst& branch) {
    BasicBlock *first = branch.getSuccessor(0), *second = branch.getSuccessor(1);
    BasicBlock* firstSide = isSide(*first, block) ? first : nullptr;
    BasicBlock* secondSide = isSide(*second, block) ? second : nullptr;
    BasicBlock* firstEnd = firstSide ? first->getSingleSuccessor() : nullptr;
    BasicBlock* secondEnd = secondSide ? second->getSingleSuccessor() : nullptr;
    if (firstEnd && firstEnd == second)
        secondSide = nullptr;
    else if (secondEnd && secondEnd == first)
        firstSide = nullptr;
    else if (!firstEnd || firstEnd != secondEnd)
        return false;
    BasicBlock* end = firstSide ? firstEnd : secondEnd;
    if (end == &block || !canSelect(*end))
        return false;
    BasicBlock *fromFirst = firstSide ? firstSide : &block,
               *fromSecond = secondSide ? secondSide : &block;
    Value* condition = branch.getCondition();
    for (BasicBlock* side : {firstSide, secondSide})
        if (side)
            moveCode(*side, block);
    IRBuilder<> builder(&branch);
    for (PHINode& phi : end->phis()) {
        Value* chosen = choice(builder, condition, phi.getIncomingValueForBlock(fromFirst),
                               phi.getIncomingValueForBlock(fromSecond));
        phi.removeIncomingValue(fromFirst, false);
        phi.removeIncomingValue(fromSecond, false);
        phi.addIncoming(chosen, &block);
    }
    BranchInst::Create(end, branch.getIterator());
    branch.eraseFromParent();
    for (BasicBlock* side : {firstSide, secondSide})
        if (side)
            dropBlock(*side);
    MergeBlockIntoPredecessor(end);
    return true;
}

// `side` is the number of the successor that tests again.
bool Flattening::joinTests(BasicBlock& block, BranchInst& branch, unsigned side) {
    BasicBlock *next = branch.getSuccessor(side), *common = branch.getSuccessor(1 - side);
    auto* second = dyn_cast<BranchInst>(next->getTerminator());
    if (next == common || next->getSinglePredecessor() != &block || !second ||
        !second->isConditional() || second->getSuccessor(0) == second->getSuccessor(1) ||
        !isShort(*next) || !canSelect(*common) || isUniform(*second->getCondition()))
        return false;
    if (second->getSuccessor(0) != common && second->getSuccessor(1) != common)
        return false;
    BasicBlock* other = second->getSuccessor(second->getSuccessor(0) == common ? 1 : 0);
    if (other == next)
        return false;
    moveCode(*next, block);
    IRBuilder<> builder(&branch);
    Value* atOnce = branch.getCondition(); // to the common destination
    if (side == 0)
        atOnce = builder.CreateNot(atOnce);
    Value* later = second->getCondition();
    if (second->getSuccessor(0) != common)
        later = builder.CreateNot(later);
    for (PHINode& phi : common->phis()) {
        Value* chosen = choice(builder, atOnce, phi.getIncomingValueForBlock(&block),
                               phi.getIncomingValueForBlock(next));
        phi.removeIncomingValue(next, false);
        phi.setIncomingValueForBlock(&block, chosen);
    }
    other->replacePhiUsesWith(next, &block);
    builder.CreateCondBr(builder.CreateLogicalOr(atOnce, later), common, other);
    branch.eraseFromParent();
    dropBlock(*next);
    for (BasicBlock* after : {common, other})
        if (after->getSinglePredecessor())
            FoldSingleEntryPHINodes(after);
    return true;
}

bool Flattening::flatten(BasicBlock& block) {
    auto* branch = dyn_cast<BranchInst>(block.getTerminator());
    if (!branch || !branch->isConditional() || branch->getSuccessor(0) == branch->getSuccessor(1) ||
        isUniform(*branch->getCondition()))
        return false;
    return flattenSides(block, *branch) || joinTests(block, *branch, 0) ||
           joinTests(block, *branch, 1);
}

bool Flattening::run() {
    bool isChanged = false;
    for (bool again = true; again; isChanged |= again) {
        again = false;
        for (BasicBlock& block : *shader_.main)
            while (flatten(block))
                again = true;
    }
    return isChanged;
}

bool flattenBranches(ShaderModule& shader) {
    return Flattening(shader).run();
}

} // namespace tarnwick::msl
