#include "TarnwickMSL/Translation/Passes/Memory/Atomics.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Module.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

static FunctionCallee wordCall(Module& module, StringRef name, ArrayRef<Type*> arguments) {
    auto* type = FunctionType::get(Type::getInt32Ty(module.getContext()), arguments, false);
    FunctionCallee call = module.getOrInsertFunction(name, type);
    auto* function = cast<Function>(call.getCallee());
    function->setDoesNotThrow();
    function->setWillReturn();
    return call;
}

// before: word = load
// again:  word = [word, seen]; seen = compare_exchange(word, bits(float(word) + value));
//         go on where seen is not word
static void expandSum(CallInst& call) {
    Module& module = *call.getModule();
    IRBuilder<> builder(&call);
    Type* word = builder.getInt32Ty();
    Value *pointer = call.getArgOperand(0), *value = call.getArgOperand(1);
    FunctionCallee load = wordCall(module, "msl.atomic_load.u32", {builder.getPtrTy()});
    FunctionCallee exchange =
        wordCall(module, "msl.atomic_compare_exchange.u32", {builder.getPtrTy(), word, word});
    Value* first = builder.CreateCall(load, {pointer});
    BasicBlock* before = call.getParent();
    BasicBlock* after = SplitBlock(before, &call);
    BasicBlock* again = BasicBlock::Create(call.getContext(), "again", call.getFunction(), after);
    before->getTerminator()->setSuccessor(0, again);
    builder.SetInsertPoint(again);
    PHINode* expected = builder.CreatePHI(word, 2);
    Value* old = builder.CreateBitCast(expected, call.getType());
    Value* sum = builder.CreateBitCast(builder.CreateFAdd(old, value), word);
    Value* seen = builder.CreateCall(exchange, {pointer, expected, sum});
    expected->addIncoming(first, before);
    expected->addIncoming(seen, again);
    builder.CreateCondBr(builder.CreateICmpEQ(seen, expected), after, again);
    call.replaceAllUsesWith(old);
    call.eraseFromParent();
}

static bool isInBuffer(const Value* pointer) {
    auto* root = dyn_cast<GlobalVariable>(getUnderlyingObject(pointer, 0));
    return root && root->getName().starts_with("msl.buffer.");
}

bool expandAtomics(Function& main, const Target& target) {
    SmallVector<CallInst*, 8> sums;
    for (Instruction& instruction : instructions(main)) {
        auto* call = dyn_cast<CallInst>(&instruction);
        if (call && builtInName(*call) == "atomic_fetch_add" && call->getType()->isFloatTy() &&
            !(target.addsFloatsInBuffers && isInBuffer(call->getArgOperand(0))))
            sums.push_back(call);
    }
    for (CallInst* sum : sums)
        expandSum(*sum);
    return !sums.empty();
}

} // namespace tarnwick::msl
