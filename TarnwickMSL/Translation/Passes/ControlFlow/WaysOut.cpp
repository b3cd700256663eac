// In `if (x) { found = i; break; }` the block after the test assigns the value and leaves, and
// other exits of the loop come to the same place with other values. With such a block between, each
// exit is one of its own: the regions get a guard for each, and a masked write for each value. The
// block costs less in every round if it is a few operations.
#include "TarnwickMSL/Translation/Passes/ControlFlow/WaysOut.h"

#include <llvm/ADT/SmallPtrSet.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/CFG.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/Instructions.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned mostOnWay = 4; // scalar operations that then run in each round

// Putting vectors together costs the driver nothing.
static unsigned cost(const Instruction& instruction) {
    if (isa<PHINode, InsertElementInst, ExtractElementInst, ShuffleVectorInst>(instruction) ||
        instruction.isTerminator())
        return 0;
    auto* vector = dyn_cast<FixedVectorType>(instruction.getType());
    return isa<CallInst>(instruction) ? mostOnWay + 1 : vector ? vector->getNumElements() : 1;
}

// The values of a phi of an empty way out go on to phis of the block behind it only.
static bool goesOn(const PHINode& phi, const BasicBlock& end) {
    return all_of(phi.users(), [&](const User* user) {
        auto* next = dyn_cast<PHINode>(user);
        return next && next->getParent() == &end;
    });
}

// The block behind a short way out of the loop; null for other blocks.
static BasicBlock* endOf(BasicBlock& way, const Loop& loop) {
    BasicBlock* end = way.getSingleSuccessor();
    if (loop.contains(&way) || !end || loop.contains(end))
        return nullptr;
    unsigned costs = 0;
    bool isEmpty = true;
    for (const Instruction& instruction : way) {
        if (auto* phi = dyn_cast<PHINode>(&instruction)) {
            if (!goesOn(*phi, *end))
                return nullptr;
        } else if (!instruction.isTerminator()) {
            isEmpty = false;
            costs += cost(instruction);
            if (!isSafeToSpeculativelyExecute(&instruction))
                return nullptr;
        }
    }
    const bool isPrivate = all_of(predecessors(&way), [&](const BasicBlock* from) {
        return loop.contains(from) && !is_contained(successors(from), end);
    });
    return isPrivate && costs <= mostOnWay && (isEmpty || way.getSinglePredecessor()) ? end
                                                                                      : nullptr;
}

// Whether each exit's test follows the one before: between them is nothing that another branch
// skips.
static bool areInOneRow(ArrayRef<BasicBlock*> exits) {
    return count_if(exits, [&](const BasicBlock* exit) {
               const BasicBlock* before = exit->getSinglePredecessor();
               return !before || !is_contained(exits, before);
           }) == 1;
}

static void dissolve(BasicBlock& way, BasicBlock& end) {
    const SmallVector<BasicBlock*, 4> sources(predecessors(&way));
    for (PHINode& phi : end.phis()) {
        Value* value = phi.getIncomingValueForBlock(&way);
        auto* own = dyn_cast<PHINode>(value);
        const bool isOwn = own && own->getParent() == &way;
        for (BasicBlock* from : sources)
            phi.addIncoming(isOwn ? own->getIncomingValueForBlock(from) : value, from);
        phi.removeIncomingValue(&way, false);
    }
    for (BasicBlock* from : sources)
        from->getTerminator()->replaceSuccessorWith(&way, &end);
    BasicBlock* first = sources.front();
    for (Instruction& instruction : make_early_inc_range(way))
        if (!isa<PHINode>(instruction) && !instruction.isTerminator()) {
            instruction.dropUBImplyingAttrsAndMetadata();
            instruction.moveBefore(first->getTerminator());
        }
    way.dropAllReferences();
    way.eraseFromParent();
}

static bool shorten(const Loop& loop) {
    SmallVector<BasicBlock*, 4> exits;
    loop.getExitingBlocks(exits);
    SmallVector<std::pair<BasicBlock*, BasicBlock*>, 4> ways; // with their ends
    SmallPtrSet<BasicBlock*, 4> ends;
    for (BasicBlock* exit : exits)
        for (BasicBlock* next : successors(exit))
            if (!loop.contains(next)) {
                BasicBlock* end = endOf(*next, loop);
                ends.insert(end ? end : next);
                if (end && !is_contained(ways, std::pair(next, end)))
                    ways.emplace_back(next, end);
            }
    if (exits.size() < 2 || ways.empty() || ends.size() != 1 || !areInOneRow(exits))
        return false;
    for (auto [way, end] : ways)
        dissolve(*way, *end);
    return true;
}

bool shortenWaysOut(Function& main) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    bool isChanged = false;
    for (Loop* loop : loops.getLoopsInPreorder())
        isChanged |= shorten(*loop);
    return isChanged;
}

} // namespace tarnwick::msl
