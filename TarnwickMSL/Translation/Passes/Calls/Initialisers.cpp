#include "TarnwickMSL/Translation/Passes/Calls/Initialisers.h"

#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/Demangle/Demangle.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

#include <vector>

namespace tarnwick::msl {

using namespace llvm;

static std::vector<Function*> initialisers(Module& program) {
    std::vector<Function*> found;
    const GlobalVariable* all = program.getNamedGlobal("llvm.global_ctors");
    auto* list = all ? dyn_cast<ConstantArray>(all->getInitializer()) : nullptr;
    for (unsigned i = 0; list && i < list->getNumOperands(); i++)
        if (auto* function = dyn_cast<Function>(list->getOperand(i)->getOperand(1)))
            found.push_back(function);
    return found;
}

static void refuseInitialisers(Module& program) {
    for (const Function* initialiser : initialisers(program))
        for (const Instruction& instruction : instructions(*initialiser))
            if (auto* store = dyn_cast<StoreInst>(&instruction))
                if (auto* constant =
                        dyn_cast<GlobalVariable>(getUnderlyingObject(store->getPointerOperand())))
                    throw TranslationError("The value of the constant '" +
                                           demangle(constant->getName()) +
                                           "' cannot be computed at compile time.");
}

void foldInitialisers(Module& program, Optimiser& optimiser) {
    if (!program.getNamedGlobal("llvm.global_ctors"))
        return;
    // LLVM's evaluation knows no intrinsics: `sin(0.5)` must fold before it.
    for (Function* initialiser : initialisers(program)) {
        inlineInto(*initialiser, optimiser);
        if (optimiser.hasShortLoops(*initialiser))
            optimiser.unrollLoops(*initialiser);
    }
    optimiser.foldInitialisers(program);
    refuseInitialisers(program);
}

} // namespace tarnwick::msl
