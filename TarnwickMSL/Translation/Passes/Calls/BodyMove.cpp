#include "TarnwickMSL/Translation/Passes/Calls/BodyMove.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned followed = 5; // instructions, as LLVM does

bool mayMoveBody(const CallBase& call) {
    const Function* callee = call.getCalledFunction();
    return isa<CallInst>(call) && callee && callee->hasLocalLinkage() && callee->hasOneUse() &&
           !callee->isDeclaration() && !callee->getSubprogram();
}

// The function has its own copy of an argument that is passed by value.
static Value* copied(CallBase& call, Argument& parameter) {
    Function& caller = *call.getFunction();
    Function& callee = *parameter.getParent();
    const DataLayout& layout = caller.getDataLayout();
    Type* type = parameter.getParamByValType();
    auto* copy = new AllocaInst(type, layout.getAllocaAddrSpace(), parameter.getName(),
                                caller.getEntryBlock().begin());
    copy->setAlignment(
        std::max(layout.getPrefTypeAlign(type), parameter.getParamAlign().valueOrOne()));
    IRBuilder<> builder(&callee.getEntryBlock(), callee.getEntryBlock().begin());
    builder.CreateMemCpy(copy, Align(1), call.getArgOperand(parameter.getArgNo()), Align(1),
                         layout.getTypeStoreSize(type));
    return copy;
}

static void passArguments(CallBase& call) {
    for (Argument& parameter : call.getCalledFunction()->args())
        parameter.replaceAllUsesWith(parameter.hasByValAttr()
                                         ? copied(call, parameter)
                                         : call.getArgOperand(parameter.getArgNo()));
}

// Locals are in the first block of a function.
static void moveLocals(Function& from, Function& to) {
    const BasicBlock::iterator place = to.getEntryBlock().begin();
    for (Instruction& instruction : make_early_inc_range(from.getEntryBlock()))
        if (auto* local = dyn_cast<AllocaInst>(&instruction); local && local->isStaticAlloca())
            local->moveBefore(to.getEntryBlock(), place);
}

static SmallVector<ReturnInst*, 4> returnsOf(Function& function) {
    SmallVector<ReturnInst*, 4> found;
    for (BasicBlock& block : function)
        if (auto* end = dyn_cast<ReturnInst>(block.getTerminator()))
            found.push_back(end);
    return found;
}

static void replaceCall(CallBase& call, Value* result) {
    if (!call.use_empty())
        call.replaceAllUsesWith(result && result != &call ? result
                                                          : PoisonValue::get(call.getType()));
    call.eraseFromParent();
}

// A body that ends in its first block becomes a part of the block of the call.
static void moveBlock(CallBase& call, ReturnInst& end) {
    BasicBlock& from = *end.getParent();
    Value* result = end.getReturnValue();
    end.eraseFromParent();
    call.getParent()->splice(call.getIterator(), &from);
    from.eraseFromParent();
    replaceCall(call, result);
}

static Value* joined(ArrayRef<ReturnInst*> ends, BasicBlock& after) {
    Type* type = ends.front()->getReturnValue()->getType();
    auto* phi = PHINode::Create(type, static_cast<unsigned>(ends.size()), "", after.begin());
    for (ReturnInst* end : ends)
        phi->addIncoming(end->getReturnValue(), end->getParent());
    Value* only = phi->hasConstantValue();
    if (!only)
        return phi;
    phi->eraseFromParent();
    return only;
}

static void moveBlocks(CallBase& call, ArrayRef<ReturnInst*> ends) {
    Function& callee = *call.getCalledFunction();
    BasicBlock& before = *call.getParent();
    BasicBlock& after = *before.splitBasicBlock(call.getIterator(), callee.getName() + ".exit");
    BasicBlock& first = callee.getEntryBlock();
    call.getFunction()->splice(after.getIterator(), &callee);
    if (ends.size() == 1) { // its block goes on with the code after the call
        ReturnInst& end = *ends.front();
        BasicBlock& last = *end.getParent();
        Value* result = end.getReturnValue();
        end.eraseFromParent();
        replaceCall(call, result);
        last.replaceAllUsesWith(&after);
        after.splice(after.begin(), &last);
        last.eraseFromParent();
    } else {
        replaceCall(call, ends.empty() || call.use_empty() ? nullptr : joined(ends, after));
        for (ReturnInst* end : ends) {
            BranchInst::Create(&after, end->getIterator());
            end->eraseFromParent();
        }
    }
    before.getTerminator()->eraseFromParent();
    first.replaceAllUsesWith(&before);
    before.splice(before.end(), &first);
    first.eraseFromParent();
}

// The result of the call is never undefined; so neither is the result of a call that gives it, if
// the return always follows. Otherwise that call would differ from an equal one, and remain.
static bool isDescribedBy(const CallBase& call, const CallBase& given, const ReturnInst& end) {
    return call.hasRetAttr(Attribute::NoUndef) && given.getParent() == end.getParent() &&
           isGuaranteedToTransferExecutionToSuccessor(std::next(given.getIterator()),
                                                      end.getIterator(), followed);
}

static void describeResult(const CallBase& call, ArrayRef<ReturnInst*> ends) {
    for (ReturnInst* end : ends)
        if (auto* given = dyn_cast_or_null<CallBase>(end->getReturnValue());
            given && isDescribedBy(call, *given, *end))
            given->addRetAttr(Attribute::NoUndef);
}

bool mayCopyBlock(const CallBase& call) {
    const Function* callee = call.getCalledFunction();
    return isa<CallInst>(call) && callee && callee->size() == 1 && !callee->getSubprogram() &&
           none_of(callee->args(),
                   [](const llvm::Argument& parameter) { return parameter.hasByValAttr(); }) &&
           isa<ReturnInst>(callee->getEntryBlock().getTerminator()) &&
           none_of(callee->getEntryBlock(),
                   [](const Instruction& instruction) { return isa<AllocaInst>(instruction); });
}

void copyBlock(CallBase& call) {
    const BasicBlock& from = call.getCalledFunction()->getEntryBlock();
    DenseMap<const Value*, Value*> copies;
    for (const llvm::Argument& parameter : call.getCalledFunction()->args())
        copies[&parameter] = call.getArgOperand(parameter.getArgNo());
    for (const Instruction& instruction : make_range(from.begin(), std::prev(from.end()))) {
        Instruction* copy = instruction.clone();
        for (Use& use : copy->operands())
            if (const auto found = copies.find(use.get()); found != copies.end())
                use.set(found->second);
        copy->insertInto(call.getParent(), call.getIterator());
        if (instruction.hasName())
            copy->setName(instruction.getName() + ".i"); // as LLVM names it
        copies[&instruction] = copy;
    }
    auto* end = cast<ReturnInst>(from.getTerminator());
    Value* result = end->getReturnValue();
    const auto* given = dyn_cast_or_null<CallBase>(result);
    if (const auto found = copies.find(result); found != copies.end())
        result = found->second;
    if (given && isDescribedBy(call, *given, *end))
        cast<CallBase>(result)->addRetAttr(Attribute::NoUndef);
    replaceCall(call, result);
}

void moveBody(CallBase& call) {
    Function& callee = *call.getCalledFunction();
    const SmallVector<ReturnInst*, 4> ends = returnsOf(callee);
    describeResult(call, ends);
    passArguments(call);
    moveLocals(callee, *call.getFunction());
    if (ends.size() == 1 && ends.front()->getParent() == &callee.getEntryBlock())
        moveBlock(call, *ends.front());
    else
        moveBlocks(call, ends);
    callee.deleteBody(); // blocks that nothing reaches
}

} // namespace tarnwick::msl
