#include "TarnwickMSL/Translation/Passes/ControlFlow/LeavingValues.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/CFG.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/Instructions.h>

namespace tarnwick::msl {

using namespace llvm;

bool isOutside(const Loop& loop, const Use& use) {
    auto* user = cast<Instruction>(use.getUser());
    auto* phi = dyn_cast<PHINode>(user);
    return !loop.contains(phi ? phi->getIncomingBlock(use) : user->getParent());
}

SmallVector<Instruction*, 8> leavingValues(const Loop& loop) {
    SmallVector<Instruction*, 8> leaving;
    for (BasicBlock* block : loop.blocks())
        for (Instruction& value : *block)
            if (any_of(value.uses(), [&](const Use& use) { return isOutside(loop, use); }))
                leaving.push_back(&value);
    return leaving;
}

PHINode* headerPhi(BasicBlock& header, BasicBlock& last, Value* first, Value* next) {
    auto* phi = PHINode::Create(next->getType(), pred_size(&header));
    phi->insertBefore(header.begin());
    for (BasicBlock* from : predecessors(&header))
        phi->addIncoming(from == &last ? next : first, from);
    return phi;
}

// A header phi that has the value already when the header runs once more, or a new one.
static Value* carried(BasicBlock& header, BasicBlock& last, Instruction* value) {
    for (PHINode& phi : header.phis())
        if (phi.getIncomingValueForBlock(&last) == value)
            return &phi;
    return headerPhi(header, last, PoisonValue::get(value->getType()), value);
}

void leaveThroughPhis(const Loop& loop, BasicBlock& header, BasicBlock& last) {
    leaveThroughPhis(loop, header, last, leavingValues(loop));
}

void leaveThroughPhis(const Loop& loop, BasicBlock& header, BasicBlock& last,
                      ArrayRef<Instruction*> values) {
    // All uses first: the carrier of one value may be another value that leaves.
    SmallVector<std::pair<Use*, Value*>, 8> redirected;
    for (Instruction* value : values) {
        Value* carrier = carried(header, last, value);
        for (Use& use : value->uses())
            if (isOutside(loop, use))
                redirected.emplace_back(&use, carrier);
    }
    for (auto [use, carrier] : redirected)
        use->set(carrier);
}

} // namespace tarnwick::msl
