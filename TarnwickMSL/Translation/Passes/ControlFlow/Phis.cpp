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
