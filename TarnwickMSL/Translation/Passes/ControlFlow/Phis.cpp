// Two phis of one block that carry the same value become one.
//
// In: structured code without phis of vectors. Structured loops carry a value twice if it goes on
// into the next round and leaves the loop as well: the phi of the program (its first operand is
// the value at entry) and the carrier of Loops.cpp (its first operand is poison).
//
// Out: one phi. The packaged CPU driver pays for each phi of a loop with a masked store in each
// round.
//
// Two phis are one if for each predecessor their operands agree: equal, or one is undefined, or
// both are one of the two phis themselves. At least one operand that is not a constant must be
// equal in both: phis that agree only where one is undefined, or only in constants, are not a pair
// that carries one value, and stay.
//
// The joined phi takes the defined operand of each pair. That refines the program: where the second
// phi was undefined, it now has the value of the first. Poison-generating flags are intersected.
//
// Joining can make operands of other phis equal, so the whole function is repeated until nothing
// changes. Each join removes a phi, which bounds the repetition.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Phis.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/Function.h>
#include <llvm/IR/Instructions.h>

namespace tarnwick::msl {

using namespace llvm;

// What a phi in place of both takes from the block, null where they disagree.
static Value* agreed(const PHINode& first, const PHINode& second, const BasicBlock* from) {
    Value* a = first.getIncomingValueForBlock(from);
    Value* b = second.getIncomingValueForBlock(from);
    auto isEither = [&](const Value* value) { return value == &first || value == &second; };
    if (a == b || isa<UndefValue>(b) || (isEither(a) && isEither(b)))
        return a;
    return isa<UndefValue>(a) ? b : nullptr;
}

static bool areOne(const PHINode& first, const PHINode& second) {
    if (first.getType() != second.getType())
        return false;
    bool meet = any_of(first.blocks(), [&](const BasicBlock* from) {
        Value* value = first.getIncomingValueForBlock(from);
        return value == second.getIncomingValueForBlock(from) && !isa<Constant>(value);
    });
    return meet && all_of(first.blocks(), [&](const BasicBlock* from) {
               return agreed(first, second, from) != nullptr;
           });
}

static void merge(PHINode& first, PHINode& second) {
    for (BasicBlock* from : first.blocks())
        first.setIncomingValueForBlock(from, agreed(first, second, from));
    first.andIRFlags(&second);
    first.copyMetadata(second); // a hint for the driver (LoopControl.h)
    second.replaceAllUsesWith(&first);
    second.eraseFromParent();
}

static bool mergePhis(BasicBlock& block) {
    for (PHINode& first : block.phis())
        for (PHINode& second : block.phis())
            if (&first != &second && areOne(first, second)) {
                merge(first, second);
                return true;
            }
    return false;
}

void mergePhis(Function& main) {
    // A pair at a loop's end may make one of a pair at its start.
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        for (BasicBlock& block : main)
            while (mergePhis(block))
                isChanged = true;
    }
}

} // namespace tarnwick::msl
