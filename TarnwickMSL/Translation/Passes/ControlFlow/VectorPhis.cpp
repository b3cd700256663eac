// lavapipe 22.3 gets vectors wrong that a loop's phis hand round among their lanes, `v = v.yzwx`,
// where a further phi carries `v` out of the loop: the same code on scalars is right.
#include "TarnwickMSL/Translation/Passes/ControlFlow/VectorPhis.h"

#include <llvm/Analysis/ConstantFolding.h>
#include <llvm/Analysis/VectorUtils.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;

using Lanes = SmallVector<Value*, 4>;

class PhiSplitting {
  public:
    PhiSplitting(Function& main, const Structure& structure)
        : structure_(structure), layout_(main.getParent()->getDataLayout()), tree_(main) {}
    void run(Function& main);

  private:
    void makeLanes(PHINode& phi);
    void connect(PHINode& phi);
    void redirect(PHINode& phi);
    Value* lane(Value& vector, unsigned index);
    BasicBlock* placeFor(const PHINode& phi, const Instruction& user) const;
    Value* together(PHINode& phi, BasicBlock* place);

    const Structure& structure_;
    const DataLayout& layout_;
    DominatorTree tree_;
    DenseMap<const Value*, Lanes> lanes_; // of phis
    DenseMap<std::pair<const Value*, unsigned>, Value*> extracted_;
    DenseMap<std::pair<const Value*, const BasicBlock*>, Value*> together_;
};

static unsigned width(const Value& vector) {
    return cast<FixedVectorType>(vector.getType())->getNumElements();
}

void PhiSplitting::makeLanes(PHINode& phi) {
    Lanes& lanes = lanes_[&phi];
    for (unsigned i = 0; i < width(phi); i++)
        lanes.push_back(PHINode::Create(phi.getType()->getScalarType(), phi.getNumIncomingValues(),
                                        "", phi.getIterator()));
}

// After the definition of the vector, so that the lane leaves no loop that the vector does not
// leave.
Value* PhiSplitting::lane(Value& vector, unsigned index) {
    if (auto found = lanes_.find(&vector); found != lanes_.end())
        return found->second[index];
    Value*& value = extracted_[{&vector, index}];
    if (value)
        return value;
    // Constants of 64-bit lanes as lanes of 32 bits are casts before they are folded.
    if (auto* constant = dyn_cast<Constant>(&vector))
        return value = ConstantFoldConstant(constant, layout_)->getAggregateElement(index);
    value = findScalarElement(&vector, index);
    if (!value) {
        auto& instruction = cast<Instruction>(vector);
        IRBuilder<> builder(instruction.getParent(), *instruction.getInsertionPointAfterDef());
        value = builder.CreateExtractElement(&vector, index);
    }
    return value;
}

void PhiSplitting::connect(PHINode& phi) {
    for (unsigned i = 0; i < width(phi); i++)
        for (unsigned from = 0; from < phi.getNumIncomingValues(); from++)
            cast<PHINode>(lanes_[&phi][i])
                ->addIncoming(lane(*phi.getIncomingValue(from), i), phi.getIncomingBlock(from));
}

// The header of a loop gets no instructions: a vector that is used in the loop is assembled in its
// body, a vector that is used after the loop in the merge block.
BasicBlock* PhiSplitting::placeFor(const PHINode& phi, const Instruction& user) const {
    auto* block = const_cast<BasicBlock*>(phi.getParent());
    const Merge found = structure_.lookup(block);
    if (!found.continueTarget || user.getParent() == block)
        return block;
    if (tree_.dominates(found.merge, user.getParent()))
        return found.merge;
    for (BasicBlock* next : successors(block))
        if (next != found.merge)
            return next;
    return block;
}

Value* PhiSplitting::together(PHINode& phi, BasicBlock* place) {
    Value*& whole = together_[{&phi, place}];
    if (whole)
        return whole;
    IRBuilder<> builder(place, place->getFirstInsertionPt());
    whole = PoisonValue::get(phi.getType());
    for (unsigned i = 0; i < width(phi); i++)
        whole = builder.CreateInsertElement(whole, lanes_[&phi][i], i);
    return whole;
}

void PhiSplitting::redirect(PHINode& phi) {
    for (Use& use : make_early_inc_range(phi.uses())) {
        auto* user = cast<Instruction>(use.getUser());
        if (isa<PHINode>(user))
            continue;
        auto* extract = dyn_cast<ExtractElementInst>(user);
        auto* index = extract ? dyn_cast<ConstantInt>(extract->getIndexOperand()) : nullptr;
        if (index && index->getValue().ult(width(phi)))
            extract->replaceAllUsesWith(lanes_[&phi][index->getZExtValue()]);
        else
            use.set(together(phi, placeFor(phi, *user)));
    }
}

void PhiSplitting::run(Function& main) {
    SmallVector<PHINode*, 16> phis;
    for (Instruction& instruction : instructions(main))
        if (auto* phi = dyn_cast<PHINode>(&instruction); phi && phi->getType()->isVectorTy())
            phis.push_back(phi);
    for (PHINode* phi : phis)
        makeLanes(*phi);
    for (PHINode* phi : phis)
        redirect(*phi);
    for (PHINode* phi : phis)
        connect(*phi);
    for (PHINode* phi : phis) {
        for (User* user : make_early_inc_range(phi->users())) // extracts without a use by now
            if (!isa<PHINode>(user))
                cast<Instruction>(user)->eraseFromParent();
        phi->replaceAllUsesWith(PoisonValue::get(phi->getType()));
        phi->eraseFromParent();
    }
}

void splitVectorPhis(Function& main, const Structure& structure) {
    PhiSplitting(main, structure).run(main);
}

} // namespace tarnwick::msl
