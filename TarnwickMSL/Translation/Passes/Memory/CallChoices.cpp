#include "TarnwickMSL/Translation/Passes/Memory/CallChoices.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

void splitByValue(CallBase& call, unsigned operand, ArrayRef<Constant*> choices) {
    BasicBlock* before = call.getParent();
    BasicBlock* after = SplitBlock(before, &call);
    IRBuilder<> builder(after, after->begin());
    PHINode* result = nullptr;
    if (!call.getType()->isVoidTy()) {
        result = builder.CreatePHI(call.getType(), static_cast<unsigned>(choices.size() + 1));
        result->addIncoming(Constant::getNullValue(call.getType()), before);
    }
    before->getTerminator()->eraseFromParent();
    builder.SetInsertPoint(before);
    SwitchInst* chosen = builder.CreateSwitch(call.getArgOperand(operand), after,
                                              static_cast<unsigned>(choices.size()));
    for (Constant* choice : choices) {
        auto* block = BasicBlock::Create(call.getContext(), "choice", before->getParent(), after);
        builder.SetInsertPoint(block);
        auto* one = cast<CallBase>(builder.Insert(call.clone()));
        one->setArgOperand(operand, choice);
        builder.CreateBr(after);
        chosen->addCase(cast<ConstantInt>(choice), block);
        if (result)
            result->addIncoming(one, block);
    }
    if (result)
        call.replaceAllUsesWith(result);
    call.eraseFromParent();
}

} // namespace tarnwick::msl
