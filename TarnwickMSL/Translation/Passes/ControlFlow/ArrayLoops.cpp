// Drivers estimate the rounds of such loops from the size of the array and unroll them. They no
// longer do if the index is clamped to the array (docs/compiler.md).
#include "TarnwickMSL/Translation/Passes/ControlFlow/ArrayLoops.h"

#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/Analysis/ScalarEvolutionExpressions.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>

namespace tarnwick::msl {

using namespace llvm;

namespace {

class ArrayLoop {
  public:
    ArrayLoop(Loop& loop, ScalarEvolution& evolution, const DominatorTree& tree)
        : loop_(loop), evolution_(evolution), tree_(tree),
          layout_(loop.getHeader()->getDataLayout()) {}

    bool bound();

  private:
    unsigned rounds(Instruction& access) const;
    bool mustRun(const BasicBlock& block, const BasicBlock& test) const;
    unsigned rounds(const BasicBlock& test) const;
    void endAfter(unsigned rounds, BasicBlock& test);

    Loop& loop_;
    ScalarEvolution& evolution_;
    const DominatorTree& tree_;
    const DataLayout& layout_;
};

} // namespace

// Bytes of a local array or a table, 0 for other memory.
static std::uint64_t bytes(const Value* base, const DataLayout& layout) {
    if (auto* local = dyn_cast<AllocaInst>(base)) {
        auto size = local->getAllocationSize(layout);
        return size ? size->getFixedValue() : 0;
    }
    auto* table = dyn_cast<GlobalVariable>(base);
    bool isTable = table && table->isConstant() && table->hasDefinitiveInitializer();
    return isTable ? layout.getTypeAllocSize(table->getValueType()).getFixedValue() : 0;
}

// How many rounds find the place that the instruction accesses inside its array; 0 where that says
// nothing. Only the first round outside matters, so a place that comes round again does no harm.
unsigned ArrayLoop::rounds(Instruction& access) const {
    Value* pointer = getLoadStorePointerOperand(&access);
    if (!pointer || loop_.isLoopInvariant(pointer))
        return 0;
    auto* places = dyn_cast<SCEVAddRecExpr>(evolution_.getSCEV(pointer));
    if (!places || places->getLoop() != &loop_ || !places->isAffine())
        return 0;
    auto* base = dyn_cast<SCEVUnknown>(evolution_.getPointerBase(places));
    auto* step = dyn_cast<SCEVConstant>(places->getStepRecurrence(evolution_));
    if (!base || !step || !step->getAPInt().isStrictlyPositive())
        return 0;
    auto* first = dyn_cast<SCEVConstant>(evolution_.getMinusSCEV(places->getStart(), base));
    if (!first || first->getAPInt().isNegative())
        return 0;
    std::uint64_t size = bytes(base->getValue(), layout_);
    std::uint64_t end = first->getAPInt().getZExtValue() +
                        layout_.getTypeStoreSize(getLoadStoreType(&access)).getFixedValue();
    if (end > size)
        return 0;
    std::uint64_t found = (size - end) / step->getAPInt().getZExtValue() + 1;
    return found <= mostArrayRounds ? static_cast<unsigned>(found) : 0;
}

// Whether a round that the test lets pass comes to the block before it can leave the loop.
bool ArrayLoop::mustRun(const BasicBlock& block, const BasicBlock& test) const {
    if (!tree_.dominates(&block, loop_.getLoopLatch()))
        return false;
    if (&test != loop_.getLoopLatch() && &block == &test)
        return false;
    SmallVector<BasicBlock*, 4> exiting;
    loop_.getExitingBlocks(exiting);
    return all_of(exiting,
                  [&](BasicBlock* exit) { return exit == &test || tree_.dominates(&block, exit); });
}

unsigned ArrayLoop::rounds(const BasicBlock& test) const {
    unsigned fewest = 0;
    for (BasicBlock* block : loop_.blocks())
        if (mustRun(*block, test))
            for (Instruction& instruction : *block)
                if (unsigned found = rounds(instruction); found && (!fewest || found < fewest))
                    fewest = found;
    return fewest;
}

void ArrayLoop::endAfter(unsigned rounds, BasicBlock& test) {
    BasicBlock* header = loop_.getHeader();
    BasicBlock* latch = loop_.getLoopLatch();
    IRBuilder<> builder(header, header->begin());
    PHINode* round = builder.CreatePHI(builder.getInt32Ty(), 2, "round");
    builder.SetInsertPoint(latch->getTerminator());
    Value* next = builder.CreateNUWAdd(round, builder.getInt32(1));
    for (BasicBlock* before : predecessors(header))
        round->addIncoming(before == latch ? next : builder.getInt32(0), before);
    auto* branch = cast<BranchInst>(test.getTerminator());
    builder.SetInsertPoint(branch);
    bool isLast = loop_.contains(branch->getSuccessor(1));
    Value* counted = &test == latch ? next : round;
    Value* most = builder.getInt32(rounds);
    branch->setCondition(
        isLast ? builder.CreateOr(branch->getCondition(), builder.CreateICmpUGE(counted, most))
               : builder.CreateAnd(branch->getCondition(), builder.CreateICmpULT(counted, most)));
    evolution_.forgetLoop(&loop_);
}

bool ArrayLoop::bound() {
    BasicBlock* latch = loop_.getLoopLatch();
    if (!latch)
        return false;
    unsigned known = evolution_.getSmallConstantMaxTripCount(&loop_);
    for (BasicBlock* test : {latch, loop_.getHeader()}) {
        auto* branch = dyn_cast<BranchInst>(test->getTerminator());
        if (!branch || !branch->isConditional() || !loop_.isLoopExiting(test))
            continue;
        unsigned found = rounds(*test);
        if (found == 0 || (known != 0 && known <= mostArrayRounds + 1))
            continue;
        endAfter(found, *test);
        return true;
    }
    return false;
}

bool boundArrayLoops(Function& function, FunctionAnalysisManager& analyses) {
    auto& loops = analyses.getResult<LoopAnalysis>(function);
    if (loops.empty())
        return false;
    auto& evolution = analyses.getResult<ScalarEvolutionAnalysis>(function);
    const auto& tree = analyses.getResult<DominatorTreeAnalysis>(function);
    bool isChanged = false;
    for (Loop* loop : loops.getLoopsInPreorder())
        isChanged |= ArrayLoop(*loop, evolution, tree).bound();
    return isChanged;
}

} // namespace tarnwick::msl
