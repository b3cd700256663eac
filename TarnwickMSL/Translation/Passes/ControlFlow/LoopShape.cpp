#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopShape.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

LoopShape splitLoop(Loop& loop, BasicBlock::iterator split, DominatorTree& tree, LoopInfo& loops) {
    LoopShape shape;
    shape.header = loop.getHeader();
    BasicBlock* latch = loop.getLoopLatch();
    BasicBlock* exit = loop.getExitBlock();
    if (!latch || !exit || loop.getExitingBlock() != latch)
        throw CompilerFault("A loop is not left from its latch alone.");
    shape.body = SplitBlock(shape.header, split, &tree, &loops);
    shape.latch = latch == shape.header ? shape.body : latch;
    shape.continue_ = SplitBlock(shape.latch, shape.latch->getTerminator(), &tree, &loops);
    shape.merge = SplitEdge(shape.continue_, exit, &tree, &loops);
    shape.continue_->setName("continue");
    shape.merge->setName("merge");
    return shape;
}

Value* alwaysTrue(BasicBlock& header, BasicBlock& last, Instruction& end) {
    IRBuilder<> builder(&header, header.begin());
    PHINode* parity = builder.CreatePHI(builder.getInt32Ty(), 2, "parity");
    builder.SetInsertPoint(&end);
    Value* next = builder.CreateXor(parity, builder.getInt32(1));
    for (BasicBlock* from : predecessors(&header))
        parity->addIncoming(from == &last ? next : builder.getInt32(0), from);
    builder.SetInsertPoint(header.getTerminator());
    return builder.CreateICmpNE(parity, builder.getInt32(2));
}

} // namespace tarnwick::msl
