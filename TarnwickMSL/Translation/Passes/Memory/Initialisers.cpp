#include "TarnwickMSL/Translation/Passes/Memory/Initialisers.h"

#include "TarnwickMSL/Translation/Passes/Calls/FunctionConstants.h"
#include "TarnwickMSL/Translation/Passes/Calls/GlobalConstructors.h"
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"
#include "TarnwickMSL/Translation/Passes/Memory/MemoryCalls.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/Demangle/Demangle.h>
#include <llvm/IR/DebugInfoMetadata.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>

#include <vector>

namespace tarnwick::msl {

using namespace llvm;

static void refuseInitialisers(Module& program) {
    for (const Function* initialiser : constructors(program))
        for (const Instruction& instruction : instructions(*initialiser))
            if (auto* store = dyn_cast<StoreInst>(&instruction))
                if (auto* constant =
                        dyn_cast<GlobalVariable>(getUnderlyingObject(store->getPointerOperand())))
                    throw TranslationError("The value of the constant '" +
                                           demangle(constant->getName()) +
                                           "' cannot be computed at compile time.");
}

// The calls of a function that does nothing else.
static std::vector<Function*> onlyCalls(Function& function) {
    std::vector<Function*> called;
    for (Instruction& instruction : instructions(function)) {
        if (isa<ReturnInst>(instruction))
            continue;
        auto* call = dyn_cast<CallInst>(&instruction);
        if (!call || call->arg_size() > 0 || !call->getCalledFunction())
            return {};
        called.push_back(call->getCalledFunction());
    }
    return called;
}

// Clang calls the initialisers of all constants from one function. Each becomes one of its own, so
// that those of late constants can be told from the others.
static void separate(Module& program) {
    std::vector<Function*> all;
    for (Function* function : constructors(program)) {
        const std::vector<Function*> called = onlyCalls(*function);
        all.insert(all.end(), called.begin(), called.end());
        if (called.empty())
            all.push_back(function);
    }
    setConstructors(program, all);
}

static bool usesLateConstant(const Value& value) {
    if (auto* variable = dyn_cast<GlobalVariable>(&value))
        return isLateConstant(*variable);
    if (auto* function = dyn_cast<Function>(&value))
        return function->getName().starts_with("msl.function_constant.");
    auto* expression = dyn_cast<ConstantExpr>(&value);
    return expression &&
           any_of(expression->operands(), [](const Use& use) { return usesLateConstant(*use); });
}

static const Value* destination(const Instruction& instruction) {
    if (auto* store = dyn_cast<StoreInst>(&instruction))
        return store->getPointerOperand();
    auto* fill = dyn_cast<MemIntrinsic>(&instruction);
    return fill ? fill->getRawDest() : nullptr;
}

// Makes the variables that the initialiser sets late, if it reads late ones.
static bool makeLate(Function& initialiser) {
    const bool isLate = any_of(instructions(initialiser), [](const Instruction& instruction) {
        return any_of(instruction.operands(),
                      [](const Use& use) { return usesLateConstant(*use); });
    });
    if (!isLate)
        return false;
    for (Instruction& instruction : make_early_inc_range(instructions(initialiser))) {
        auto* call = dyn_cast<IntrinsicInst>(&instruction);
        if (call && call->getIntrinsicID() == Intrinsic::invariant_start)
            call->eraseFromParent(); // Clang's word that the constant is set
        else if (const Value* set = destination(instruction))
            if (auto* variable = dyn_cast<GlobalVariable>(getUnderlyingObject(set)))
                makeLateConstant(*const_cast<GlobalVariable*>(variable));
    }
    return true;
}

// An initialiser may read constants that an earlier one sets.
static void runAtStart(Module& program, ArrayRef<Function*> roots) {
    std::vector<Function*> early, late;
    for (Function* initialiser : constructors(program))
        (makeLate(*initialiser) ? late : early).push_back(initialiser);
    setConstructors(program, early);
    for (Function* root : roots) {
        BasicBlock& entry = root->getEntryBlock();
        IRBuilder<> builder(&entry, entry.getFirstNonPHIOrDbgOrAlloca());
        if (DISubprogram* place = root->getSubprogram()) // inlining requires one
            builder.SetCurrentDebugLocation(
                DILocation::get(program.getContext(), place->getLine(), 0, place));
        for (Function* initialiser : late)
            builder.CreateCall(initialiser)->setCallingConv(initialiser->getCallingConv());
    }
}

void foldInitialisers(Module& program, ArrayRef<Function*> roots, Optimiser& optimiser) {
    if (!program.getNamedGlobal("llvm.global_ctors"))
        return;
    const bool hasLateConstants = any_of(program.globals(), isLateConstant);
    if (hasLateConstants)
        separate(program);
    // LLVM's evaluation knows no intrinsics: `sin(0.5)` must fold before it, and copies of parts of
    // constants become loads and stores.
    for (Function* initialiser : constructors(program)) {
        inlineInto(*initialiser, optimiser);
        if (expandMemoryCalls(*initialiser))
            optimiser.forget(*initialiser);
        if (optimiser.hasShortLoops(*initialiser)) {
            optimiser.unrollLoops(*initialiser);
            optimiser.clean(*initialiser);
        }
    }
    if (hasLateConstants)
        runAtStart(program, roots);
    optimiser.foldInitialisers(program);
    refuseInitialisers(program);
}

} // namespace tarnwick::msl
