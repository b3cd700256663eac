// The steps between the front end and the writer, in their order.
#include "TarnwickMSL/Translation/Passes.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/ArrayLoops.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopBudget.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Phis.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/Structure.h"
#include "TarnwickMSL/Translation/Passes/Dump.h"
#include "TarnwickMSL/Translation/Passes/Entry/Bindings.h"
#include "TarnwickMSL/Translation/Passes/Entry/Cut.h"
#include "TarnwickMSL/Translation/Passes/Entry/Wrapper.h"
#include "TarnwickMSL/Translation/Passes/Form.h"
#include "TarnwickMSL/Translation/Passes/Memory/Atomics.h"
#include "TarnwickMSL/Translation/Passes/Memory/Handles.h"
#include "TarnwickMSL/Translation/Passes/Memory/MemoryCalls.h"
#include "TarnwickMSL/Translation/Passes/Memory/NarrowAccess.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointerArrays.h"
#include "TarnwickMSL/Translation/Passes/Memory/Pointers.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"
#include "TarnwickMSL/Translation/Passes/Values/Comparisons.h"
#include "TarnwickMSL/Translation/Passes/Values/Fractions.h"
#include "TarnwickMSL/Translation/Passes/Values/Legalise.h"
#include "TarnwickMSL/Translation/Passes/Values/TwoValuedTables.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#ifndef NDEBUG
#include "TarnwickBase/Precondition.h"
#endif

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/Demangle/Demangle.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

// Native widths keep the combining of instructions from inventing others.
static constexpr StringLiteral nativeWidths = "-n8:16:32:64";

// A loop that does nothing and never ends is the user's to find, not the optimiser's to delete.
static void describe(Function& function) {
    function.removeFnAttr(Attribute::MustProgress);
    function.removeFnAttr(Attribute::NoInline);
    function.removeFnAttr(Attribute::OptimizeNone);
    for (llvm::Argument& argument : function.args())
        argument.removeAttr(Attribute::NoAlias);
    for (BasicBlock& block : function)
        block.getTerminator()->setMetadata(LLVMContext::MD_loop, nullptr);
    fixComparisonLanes(function);
}

// What runs before a program to give its constants their values.
static std::vector<Function*> initialisers(Module& module) {
    std::vector<Function*> found;
    const GlobalVariable* all = module.getNamedGlobal("llvm.global_ctors");
    auto* list = all ? dyn_cast<ConstantArray>(all->getInitializer()) : nullptr;
    for (unsigned i = 0; list && i < list->getNumOperands(); i++)
        if (auto* function = dyn_cast<Function>(list->getOperand(i)->getOperand(1)))
            found.push_back(function);
    return found;
}

// Nothing runs before a shader, so a value that did not fold would be zero without a word.
static void refuseInitialisers(Module& module) {
    for (const Function* initialiser : initialisers(module))
        for (const Instruction& instruction : instructions(*initialiser))
            if (auto* store = dyn_cast<StoreInst>(&instruction))
                if (auto* constant =
                        dyn_cast<GlobalVariable>(getUnderlyingObject(store->getPointerOperand())))
                    throw TranslationError("The value of the constant '" +
                                           demangle(constant->getName()) +
                                           "' cannot be computed at compile time.");
}

void prepare(Module& module, const std::vector<EntrySignature>& entries) {
    dump(module, "program", "0-front");
    if (module.getDataLayoutStr().find("-n8") == std::string::npos)
        module.setDataLayout(module.getDataLayoutStr() + nativeWidths.str());
    describeBuiltIns(module);
    for (Function& function : module)
        if (!function.isDeclaration())
            describe(function);
    std::vector<Function*> roots;
    for (const EntrySignature& entry : entries)
        if (Function* function = module.getFunction(entry.symbol))
            roots.push_back(function);
    Optimiser optimiser(module);
    if (module.getNamedGlobal("llvm.global_ctors")) {
        // The evaluation of initialisers knows no intrinsics: `sin(0.5)` must have folded before.
        for (Function* initialiser : initialisers(module)) {
            inlineInto(*initialiser, optimiser);
            if (optimiser.hasShortLoops(*initialiser))
                optimiser.unrollLoops(*initialiser);
        }
        optimiser.foldInitialisers(module);
        refuseInitialisers(module);
    }
    inlineEverything(module, roots, optimiser);
    dump(module, "program", "1-prepared");
}

static void optimise(ShaderModule& shader, Optimiser& optimiser) {
    Function& main = *shader.main;
    optimiser.clean(main);
    if (expandMemoryCalls(main)) { // local records whose copies were all that kept them in memory
        optimiser.forget(main);
        optimiser.cleanLightly(main);
    }
    bool isChanged = trimFractions(main);
    if (boundArrayLoops(main, optimiser.analyses()) || isChanged)
        optimiser.forget(main);
    if (optimiser.hasShortLoops(main))
        optimiser.unrollLoops(main);
    optimiser.finish(main);
    isChanged = narrowAccess(main, optimiser.analyses());
    if (replaceTwoValuedTables(main) || isChanged)
        optimiser.forget(main);
    dump(shader, "2-optimised");
}

// From what LLVM's optimiser leaves to what shader code may hold.
static void restrictCode(ShaderModule& shader, const Target& target, Optimiser& optimiser) {
    Function& main = *shader.main;
    expandMemoryCalls(main);
    if (splitPointerArrays(main)) {
        optimiser.forget(main);
        optimiser.cleanLightly(main);
    }
    bool hasPointers = resolvePointers(main);
    bool hasHandles = resolveHandles(shader);
    bool hasAtomics = expandAtomics(main, target);
    if (hasPointers || hasHandles || hasAtomics)
        optimiser.tidy(main);
}

static void structureCode(ShaderModule& shader, Optimiser& optimiser) {
    normaliseFlow(*shader.main, optimiser);
    legalise(*shader.main);
    keepPointersNear(*shader.main);
    budgetLoops(shader, optimiser);
    shader.structure = structureFlow(*shader.main, optimiser);
    mergePhis(*shader.main);
    dump(shader, "3-structured");
}

ShaderModule lower(const Module& module, const EntrySignature& entry,
                   const std::vector<EntrySignature>& allEntries, const Target& target) {
    const Function* function = module.getFunction(entry.symbol);
    if (!function || function->isDeclaration())
        throw TranslationError("The function '" + entry.name + "' is declared but not defined.");
    ShaderModule shader;
    shader.module = cut(*function);
    shader.name = entry.name;
    shader.stage = entry.stage;
    shader.earlyFragmentTests = entry.earlyFragmentTests;
    shader.mostThreads = entry.mostThreads;
    Function& body = *shader.module->getFunction(function->getName());
    inlineCall(*wrap(shader, body, entry, Varyings(allEntries)));
    body.eraseFromParent();
    Optimiser optimiser(*shader.module);
    optimise(shader, optimiser);
    restrictCode(shader, target, optimiser);
    structureCode(shader, optimiser);
    assignBindings(shader);
#ifndef NDEBUG
    const std::string fault = checkForm(shader);
    precondition(fault.empty(), "lowered code has the form that the writer takes", "fault", fault);
#endif
    return shader;
}

} // namespace tarnwick::msl
