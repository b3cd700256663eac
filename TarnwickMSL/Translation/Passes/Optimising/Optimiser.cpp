#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"

#include "TarnwickMSL/Translation/Passes/Optimising/CommonValues.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"
#include "TarnwickMSL/Translation/Passes/Optimising/UnrollHints.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/Analysis/TargetLibraryInfo.h>
#include <llvm/IR/Module.h>
#include <llvm/Passes/PassBuilder.h>
#include <llvm/TargetParser/Triple.h>
#include <llvm/Transforms/IPO/GlobalOpt.h>
#include <llvm/Transforms/InstCombine/InstCombine.h>
#include <llvm/Transforms/Scalar/ADCE.h>
#include <llvm/Transforms/Scalar/DCE.h>
#include <llvm/Transforms/Scalar/DeadStoreElimination.h>
#include <llvm/Transforms/Scalar/DivRemPairs.h>
#include <llvm/Transforms/Scalar/IndVarSimplify.h>
#include <llvm/Transforms/Scalar/LICM.h>
#include <llvm/Transforms/Scalar/LoopPassManager.h>
#include <llvm/Transforms/Scalar/LoopRotation.h>
#include <llvm/Transforms/Scalar/LoopUnrollPass.h>
#include <llvm/Transforms/Scalar/MemCpyOptimizer.h>
#include <llvm/Transforms/Scalar/SROA.h>
#include <llvm/Transforms/Scalar/SimplifyCFG.h>
#include <llvm/Transforms/Utils/Mem2Reg.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned longestUnrolled = 128;  // rounds
constexpr unsigned largestUnrolled = 2400; // instructions, rounds times body, before they fold

struct Optimiser::Managers {
    LoopAnalysisManager loops;
    FunctionAnalysisManager functions;
    CGSCCAnalysisManager components;
    ModuleAnalysisManager modules;
    FunctionPassManager light, combine, full, unroll, finish, copies, tidy;
};

// No lookup tables (they would be arrays in memory), no sinking (it merges calls that differ in
// their texture only, and texture handles must stay constants).
static SimplifyCFGPass simplifyBranches() {
    return SimplifyCFGPass(SimplifyCFGOptions()
                               .convertSwitchToLookupTable(false)
                               .sinkCommonInsts(false)
                               .hoistCommonInsts(false)
                               .convertSwitchRangeToICmp(true));
}

static void addLightly(FunctionPassManager& passes) {
    passes.addPass(PromotePass()); // most variables; SROA looks at each far longer
    passes.addPass(SROAPass(SROAOptions::ModifyCFG));
    passes.addPass(CommonValues());
    passes.addPass(simplifyBranches());
}

static void addCombining(FunctionPassManager& passes) {
    passes.addPass(InstCombinePass(InstCombineOptions().setMaxIterations(1)));
}

static void addFully(FunctionPassManager& passes) {
    addLightly(passes);
    addCombining(passes);
}

static void addUnrolling(FunctionPassManager& passes) {
    LoopPassManager loops;
    // For speed only: loops that test at their end draw up to a fifth faster on the CPU driver.
    loops.addPass(LoopRotatePass(true));
    loops.addPass(IndVarSimplifyPass());
    passes.addPass(createFunctionToLoopPassAdaptor(std::move(loops)));
    // Unlike LoopFullUnrollPass, this one accepts a maximum of rounds, and does not copy first
    // rounds in which comparisons with the counter are known.
    passes.addPass(
        LoopUnrollPass(LoopUnrollOptions().setPartial(false).setPeeling(false).setRuntime(false)));
}

static void addFinish(FunctionPassManager& passes) {
    LoopPassManager loops;
    loops.addPass(LICMPass(LICMOptions()));
    passes.addPass(createFunctionToLoopPassAdaptor(std::move(loops), true));
    passes.addPass(CommonValues(CommonValues::Memory::bySSA));
    passes.addPass(DSEPass());
    passes.addPass(DivRemPairsPass()); // x % y from x / y, where both are wanted
    passes.addPass(ADCEPass());
    passes.addPass(simplifyBranches());
}

Optimiser::Optimiser(Module& module) : managers_(std::make_unique<Managers>()) {
    Managers& all = *managers_;
    TargetLibraryInfoImpl library{Triple(module.getTargetTriple())};
    library.disableAllFunctions();
    all.functions.registerPass([library] { return TargetLibraryAnalysis(library); });
    all.functions.registerPass([] { return shaderCosts(); });
    PassBuilder builder;
    builder.registerModuleAnalyses(all.modules);
    builder.registerCGSCCAnalyses(all.components);
    builder.registerFunctionAnalyses(all.functions);
    builder.registerLoopAnalyses(all.loops);
    builder.crossRegisterProxies(all.loops, all.functions, all.components, all.modules);
    addLightly(all.light);
    addCombining(all.combine);
    addFully(all.full);
    addUnrolling(all.unroll);
    addFinish(all.finish);
    all.copies.addPass(MemCpyOptPass());
    all.copies.addPass(DSEPass());
    all.tidy.addPass(CommonValues());
    all.tidy.addPass(ADCEPass());
    all.tidy.addPass(simplifyBranches());
}

Optimiser::~Optimiser() = default;

void Optimiser::cleanLightly(Function& function) {
    managers_->light.run(function, managers_->functions);
}

void Optimiser::clean(Function& function) {
    managers_->full.run(function, managers_->functions);
}

void Optimiser::combine(Function& function) {
    managers_->combine.run(function, managers_->functions);
}

void Optimiser::unrollLoops(Function& function) {
    managers_->unroll.run(function, managers_->functions);
}

void Optimiser::finish(Function& function) {
    managers_->finish.run(function, managers_->functions);
}

void Optimiser::dropCopies(Function& function) {
    managers_->copies.run(function, managers_->functions);
}

void Optimiser::tidy(Function& function) {
    forget(function);
    managers_->tidy.run(function, managers_->functions);
}

void Optimiser::dropDeadCode(Function& function) {
    DCEPass().run(function, managers_->functions);
}

void Optimiser::foldInitialisers(Module& module) {
    GlobalOptPass().run(module, managers_->modules);
    managers_->functions.clear();
}

bool Optimiser::hasShortLoops(Function& function) {
    auto& loops = managers_->functions.getResult<LoopAnalysis>(function);
    if (loops.empty())
        return false;
    auto& evolution = managers_->functions.getResult<ScalarEvolutionAnalysis>(function);
    return limitUnrollHints(loops, evolution) ||
           any_of(loops.getLoopsInPreorder(), [&](Loop* loop) {
               unsigned rounds = evolution.getSmallConstantMaxTripCount(loop);
               if (rounds == 0 || rounds > longestUnrolled)
                   return false;
               std::size_t size = 0;
               for (BasicBlock* block : loop->blocks())
                   size += block->size();
               return size * rounds <= largestUnrolled;
           });
}

void Optimiser::forget(Function& function) {
    managers_->functions.invalidate(function, PreservedAnalyses::none());
}

FunctionAnalysisManager& Optimiser::analyses() {
    return managers_->functions;
}

} // namespace tarnwick::msl
