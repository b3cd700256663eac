// Unrolling makes the counter of a loop a constant in each round, and LLVM then computes all that
// depends on constants alone: the known values. The estimate marks them without computing any.
#include "TarnwickMSL/Translation/Passes/Optimising/Weights.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/DenseSet.h>
#include <llvm/Analysis/ConstantFolding.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/CFG.h>
#include <llvm/IR/IntrinsicInst.h>

#include <algorithm>
#include <limits>

namespace tarnwick::msl {

using namespace llvm;

bool isTranscendental(const Function& callee) {
    switch (callee.getIntrinsicID()) {
    case Intrinsic::sin:
    case Intrinsic::cos:
    case Intrinsic::exp:
    case Intrinsic::exp2:
    case Intrinsic::log:
    case Intrinsic::log2:
    case Intrinsic::pow:
        return true;
    default:
        return false;
    }
}

// What an instruction costs the packaged CPU driver to compile. It divides vectors into lanes, and
// writes polynomials for transcendental functions.
static unsigned weight(const Instruction& instruction) {
    unsigned lanes = 1;
    if (auto* vector = dyn_cast<FixedVectorType>(instruction.getType()))
        lanes = vector->getNumElements();
    auto* call = dyn_cast<CallBase>(&instruction);
    const Function* callee = call ? call->getCalledFunction() : nullptr;
    return callee && isTranscendental(*callee) ? 8 * lanes : lanes;
}

static double weightOf(const BasicBlock& block) {
    double sum = 0;
    for (const Instruction& instruction : block)
        sum += weight(instruction);
    return sum;
}

double weightOf(const Function& function) {
    double sum = 0;
    for (const BasicBlock& block : function)
        sum += weightOf(block);
    return sum;
}

double weightOf(const Loop& loop) {
    double sum = 0;
    for (const BasicBlock* block : loop.blocks())
        sum += weightOf(*block);
    return sum;
}

namespace {

class Estimate {
  public:
    explicit Estimate(const Loop& loop) : loop_(loop) {
        visit(loop.getHeader());
        std::ranges::reverse(order_);
        for (const BasicBlock* block : order_)
            if (isHeader(*block))
                for (const PHINode& phi : block->phis())
                    counters_.insert(&phi);
        while (markKnown()) {
        }
        findShares();
    }

    double left(ScalarEvolution& evolution) const {
        double sum = 0;
        for (const BasicBlock* block : order_) {
            const Loop& around = innerLoop(*block);
            const unsigned rounds =
                &around == &loop_ ? 1 : evolution.getSmallConstantTripCount(&around);
            if (rounds == 0 || !(&around == &loop_ || around.isInnermost()))
                return std::numeric_limits<double>::infinity();
            sum += shares_.lookup(block) * rounds * left(*block);
        }
        return sum;
    }

  private:
    double left(const BasicBlock& block) const {
        double sum = 0;
        for (const Instruction& instruction : block)
            if (!isFree(instruction))
                sum += weight(instruction);
        return sum;
    }

    void visit(const BasicBlock* block) { // pushes blocks after their successors
        if (!loop_.contains(block) || !seen_.insert(block).second)
            return;
        for (const BasicBlock* next : successors(block))
            visit(next);
        order_.push_back(block);
    }

    // The loop in this one that contains the block, else this one.
    const Loop& innerLoop(const BasicBlock& block) const {
        for (const Loop* inner : loop_.getSubLoops())
            if (inner->contains(&block))
                return *inner;
        return loop_;
    }

    bool isHeader(const BasicBlock& block) const { return innerLoop(block).getHeader() == &block; }

    bool isKnown(const Value* value) const {
        return isa<Constant>(value) || known_.contains(value);
    }

    bool isKnownBranch(const BasicBlock& block) const {
        const auto* branch = dyn_cast<BranchInst>(block.getTerminator());
        if (branch)
            return branch->isUnconditional() || isKnown(branch->getCondition());
        const auto* choice = dyn_cast<SwitchInst>(block.getTerminator());
        return choice && isKnown(choice->getCondition());
    }

    // Marks values in order, phis of headers in the hope that their next values are known too.
    // Gives whether hopes were disappointed; those are given up, and the marks are to be made
    // again.
    bool markKnown() {
        known_.clear();
        decided_.clear();
        for (const BasicBlock* block : order_) {
            if (isDecided(*block))
                decided_.insert(block);
            for (const Instruction& instruction : *block)
                if (isComputable(instruction))
                    known_.insert(&instruction);
        }
        SmallVector<const PHINode*, 4> unknown;
        for (const PHINode* phi : counters_)
            if (!all_of(phi->incoming_values(), [&](const Use& use) { return isKnown(use); }))
                unknown.push_back(phi);
        for (const PHINode* phi : unknown)
            counters_.erase(phi);
        return !unknown.empty();
    }

    // Whether known branches alone lead from the start of the round to the block.
    bool isDecided(const BasicBlock& block) const {
        return isHeader(block) || all_of(predecessors(&block), [&](const BasicBlock* from) {
                   return decided_.contains(from) && isKnownBranch(*from);
               });
    }

    bool isComputable(const Instruction& instruction) const {
        if (const auto* phi = dyn_cast<PHINode>(&instruction); phi && isHeader(*phi->getParent()))
            return counters_.contains(phi);
        const auto areKnown = all_of(instruction.operands(), [&](const Use& use) {
            return isa<BasicBlock>(use) || isKnown(use) || isLocal(use);
        });
        if (!areKnown)
            return false;
        if (isa<PHINode>(instruction))
            return decided_.contains(instruction.getParent());
        if (const auto* load = dyn_cast<LoadInst>(&instruction))
            return isTable(*load->getPointerOperand());
        if (const auto* call = dyn_cast<CallBase>(&instruction))
            return call->getCalledFunction() &&
                   canConstantFoldCallTo(call, call->getCalledFunction());
        return isa<BinaryOperator, UnaryOperator, CastInst, CmpInst, SelectInst, GetElementPtrInst,
                   InsertElementInst, ExtractElementInst, ShuffleVectorInst>(instruction);
    }

    static bool isLocal(const Value* value) { return isa<AllocaInst>(value); }

    static bool isTable(const Value& pointer) {
        const auto* table = dyn_cast<GlobalVariable>(getUnderlyingObject(&pointer));
        return table && table->isConstant() && table->hasInitializer();
    }

    // Of no weight once it is straight code, which the driver divides into scalars.
    bool isFree(const Instruction& instruction) const {
        if (isKnown(&instruction) || instruction.isDebugOrPseudoInst() ||
            isa<PHINode, InsertElementInst, ExtractElementInst, ShuffleVectorInst>(instruction))
            return true;
        if (instruction.isTerminator())
            return isKnownBranch(*instruction.getParent());
        const Value* pointer = getLoadStorePointerOperand(&instruction);
        return pointer && (isKnown(pointer) || isLocal(pointer)) &&
               isLocal(getUnderlyingObject(pointer));
    }

    // The part of the rounds that run each block, if each way of a known branch is as likely.
    void findShares() {
        for (const BasicBlock* block : order_) {
            double share = block == loop_.getHeader() ? 1 : 0;
            for (const BasicBlock* from : predecessors(block))
                share += shares_.lookup(from) / ways(*from);
            shares_[block] = std::min(share, 1.0);
        }
    }

    unsigned ways(const BasicBlock& from) const {
        const Loop& around = innerLoop(from);
        const bool mayLeave =
            any_of(successors(&from), [&](const BasicBlock* to) { return !around.contains(to); });
        return mayLeave || !isKnownBranch(from) ? 1 : from.getTerminator()->getNumSuccessors();
    }

    const Loop& loop_;
    SmallVector<const BasicBlock*, 16> order_; // after their predecessors, except along back edges
    DenseSet<const BasicBlock*> seen_;
    DenseSet<const PHINode*> counters_;
    DenseSet<const Value*> known_;
    DenseSet<const BasicBlock*> decided_;
    DenseMap<const BasicBlock*, double> shares_;
};

} // namespace

double weightLeft(const Loop& loop, ScalarEvolution& evolution) {
    return Estimate(loop).left(evolution);
}

} // namespace tarnwick::msl
