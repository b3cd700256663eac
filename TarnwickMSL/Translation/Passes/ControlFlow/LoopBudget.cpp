// Loops without a known end count their rounds and end the invocation past a budget.
//
// In: flow as normaliseFlow leaves it. LLVM's ScalarEvolution can still see the number of rounds:
// after the flow is structured, the tests are phis of booleans and it cannot.
//
// Out: either nothing changed, because all loops together stay below `mostInAll` rounds; or the
// loops that may not have a counter in memory. A counting loop adds to it in each round, and ends
// past the built-in `msl.loop_budget`. The block `spent` stores zeros to the outputs and 1 to
// msl.loop_report. docs/compiler.md, "The loop budget", has the rules for users.
//
// What follows a loop that has spent the budget:
// - In a function without effects but its outputs, the code after the loop. Every other counting
//   loop then ends in its first round, and the end of the function goes through `spent`. So no loop
//   gets an exit that it does not have, and the code between the loops stays as it is.
// - In a kernel whose threads outside the grid run as well (gridMark), the same: all its threads
//   must reach each barrier. A mark after each counting loop tells the writer that the thread
//   changes no memory from then on (budgetMark). All threads go through a loop with a barrier
//   together, so these loops have a counter of their own, which no other loop makes differ. Such a
//   kernel may run twice the budget.
// - In other functions, `spent` at once, since the code after the loop must have no effect.
//
// The packaged CPU driver ends an invocation without notice after 65,535 rounds, summed over its
// loops; a GPU hangs. A counter in every loop would cost time in each round of loops that cannot
// run long. So:
// - rounds(loop) is the maximum number of rounds in one execution of a loop, its inner loops
//   included: (own + 1) * (1 + inside). The extra round is the run of the header in which a
//   structured loop leaves. `unknown` is large enough to survive sums and is the cap of all sums.
// - choose(loop, most) takes a loop that may exceed `most`, and within it the inner loops that may
//   exceed `mostInside`. Inner loops below that do not count; the weight of a round of the counting
//   loop includes their maximum. Where the code after a loop runs on, a loop of few rounds need not
//   count if the inner loops that may be long do (uncounted).
//
// Invariant: the rounds that ran are at most the counter plus `mostUncounted`, and one for each
// counting nest, whose header runs once more to leave. Nests that do not count share
// `mostUncounted` between them, so the default budget is reached before the driver's limit.
//
// How a loop counts:
// - countAhead: a loop with a number of rounds that can be computed before it pays for all rounds
//   at once, and is not entered if it cannot pay. The number is clamped to `mostAhead`, so that
//   number times weight does not overflow 32 bits, and the product to the budget and one, so that
//   the sum of all loops that cannot pay does not. If `spent` follows, only a loop alone does this.
// - count: else the header's or latch's own test also tests the budget, because another exit costs
//   the structured loop a phi and a test. After the loop the counter decides again between `spent`
//   and the way on. An outer loop does this for an inner one where the rest of its round has no
//   effect (endsForIt).
// - A loop with no such test gets an exit in its latch.
//
// The counter is a local with the metadata `counterMark`, not a phi: Regions.cpp moves tests while
// it works, and a phi would have to follow them. promoteCounters makes values of it afterwards. A
// store to it is no effect for the question whether a loop may leave from its header.
#include "TarnwickMSL/Translation/Passes/ControlFlow/LoopBudget.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/Rounds.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Optimiser.h"

#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ScalarEvolution.h>
#include <llvm/Analysis/ScalarEvolutionExpressions.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>
#include <llvm/Transforms/Utils/LoopUtils.h>
#include <llvm/Transforms/Utils/PromoteMemToReg.h>
#include <llvm/Transforms/Utils/ScalarEvolutionExpander.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr std::uint64_t mostInAll = 60'000;    // rounds, where every loop's end is known
constexpr std::uint64_t mostUncounted = 4'096; // rounds beside a counter; with the default budget
                                               // of 60,000 that stays below the driver's limit
constexpr std::uint64_t mostInside = 64;       // rounds of a known loop inside a counting one
constexpr std::uint64_t unknown = 1ull << 40;
constexpr std::uint32_t mostAhead = 1u << 20; // rounds counted ahead of a loop; past every budget
constexpr unsigned largestAhead = 24;         // terms of the sum that gives them

static constexpr StringLiteral counterMark = "msl.rounds"; // metadata: names may be discarded

static bool isLocal(const Value* pointer) {
    return isa<AllocaInst>(getUnderlyingObject(pointer));
}

// Whether the function has effects other than to store its outputs.
static bool hasEffects(const ShaderModule& shader) {
    const auto isOutput = [&](const Value* pointer) {
        auto* global = dyn_cast<GlobalVariable>(getUnderlyingObject(pointer));
        return global && any_of(shader.interface, [&](const InterfaceVariable& variable) {
                   return variable.kind == InterfaceKind::output &&
                          variable.global == global->getName();
               });
    };
    return any_of(instructions(*shader.main), [&](const Instruction& instruction) {
        auto* store = dyn_cast<StoreInst>(&instruction);
        return instruction.mayHaveSideEffects() &&
               !(store &&
                 (isLocal(store->getPointerOperand()) || isOutput(store->getPointerOperand())));
    });
}

class Counting {
  public:
    Counting(ShaderModule& shader, LoopInfo& loops, DominatorTree& tree, ScalarEvolution& evolution)
        : shader_(shader), loops_(loops), tree_(tree), evolution_(evolution),
          marks_(shader.module->getFunction(gridMark) != nullptr),
          runsOn_(marks_ || !hasEffects(shader)) {}

    bool isNeeded();
    void run();

  private:
    std::uint64_t rounds(Loop* loop);
    std::uint64_t inside(Loop* loop);
    std::uint64_t uncounted(Loop* loop);
    std::uint64_t uncountedInside(Loop* loop);
    void choose(Loop* loop, std::uint64_t most);
    void count(Loop* loop);
    bool countAhead(Loop* loop);
    BasicBlock* testingBlock(const Loop& loop) const;
    bool endsForIt(const Loop& loop) const;
    AllocaInst* counterOf(const Loop& loop) const;
    Value* isSpent(IRBuilder<>& builder, AllocaInst* counter);
    Value* isSpent(IRBuilder<>& builder);
    void mark(IRBuilder<>& builder, Value* isSpent);
    AllocaInst* makeCounter(IRBuilder<>& builder);
    void makeGlobals();
    void makeSpent();

    ShaderModule& shader_;
    LoopInfo& loops_;
    DominatorTree& tree_;
    ScalarEvolution& evolution_;
    bool marks_;  // where the thread changes no memory any more
    bool runsOn_; // after a loop that has spent the budget
    DenseMap<Loop*, std::uint64_t> rounds_;
    SmallVector<Loop*, 8> counted_;
    DenseMap<const Loop*, std::uint64_t> weights_;              // of one round of a counting loop
    AllocaInst *counter_ = nullptr, *countsTogether_ = nullptr; // the second: with a barrier
    Value* budget_ = nullptr;
    GlobalVariable* report_ = nullptr;
    BasicBlock* spent_ = nullptr;
};

std::uint64_t Counting::inside(Loop* loop) {
    std::uint64_t sum = 0;
    for (Loop* inner : loop->getSubLoops())
        sum += rounds(inner);
    return std::min(sum, unknown);
}

// The most that all executions of the loop's body come to, once it is entered. The shape that the
// driver needs runs a loop's header once more than its body.
std::uint64_t Counting::rounds(Loop* loop) {
    auto [entry, isNew] = rounds_.try_emplace(loop, unknown);
    if (!isNew)
        return entry->second;
    const std::uint64_t own = mostRounds(*loop, evolution_, tree_);
    std::uint64_t all = own == 0 ? unknown : std::min(unknown, (own + 1) * (1 + inside(loop)));
    return rounds_[loop] = all;
}

bool Counting::isNeeded() {
    std::uint64_t sum = 0;
    for (Loop* loop : loops_)
        sum += rounds(loop);
    return sum > mostInAll;
}

// The most rounds of the loop that no counter counts, if the inner loops that may be long do and
// the loop itself does not.
std::uint64_t Counting::uncounted(Loop* loop) {
    const std::uint64_t all = rounds(loop);
    const std::uint64_t own = mostRounds(*loop, evolution_, tree_);
    if (!runsOn_ || all <= mostInside || own == 0)
        return all;
    return std::min(all, (own + 1) * uncountedInside(loop));
}

// The same in one round of the loop, with the round itself.
std::uint64_t Counting::uncountedInside(Loop* loop) {
    std::uint64_t sum = 1;
    for (Loop* inner : loop->getSubLoops()) {
        const std::uint64_t most = uncounted(inner);
        sum += most <= mostInside ? most : 1;
    }
    return sum;
}

void Counting::choose(Loop* loop, std::uint64_t most) {
    if (rounds(loop) <= most)
        return;
    if (uncounted(loop) > most) {
        counted_.push_back(loop);
        weights_[loop] = uncountedInside(loop);
    }
    for (Loop* inner : loop->getSubLoops())
        choose(inner, mostInside);
}

// The outputs of a mesh belong to all invocations of the threadgroup; without primitives it has
// none.
static bool isZeroAtEnd(const InterfaceVariable& variable, Stage stage) {
    if (stage == Stage::object || stage == Stage::mesh)
        return variable.global == meshGrid || variable.global == meshCount;
    return variable.kind == InterfaceKind::output;
}

AllocaInst* Counting::makeCounter(IRBuilder<>& builder) {
    AllocaInst* made = builder.CreateAlloca(builder.getInt32Ty(), nullptr, "rounds");
    made->setMetadata(counterMark, MDNode::get(builder.getContext(), {}));
    builder.CreateStore(builder.getInt32(0), made);
    return made;
}

void Counting::makeGlobals() {
    LLVMContext& context = shader_.module->getContext();
    auto* word = Type::getInt32Ty(context);
    FunctionCallee budget = shader_.module->getOrInsertFunction("msl.loop_budget", word);
    auto* report =
        new GlobalVariable(*shader_.module, word, false, GlobalValue::ExternalLinkage, nullptr,
                           "msl.loop_report", nullptr, GlobalValue::NotThreadLocal, 0u);
    shader_.interface.push_back({.kind = InterfaceKind::loopReport,
                                 .global = report->getName().str(),
                                 .builtIn = {},
                                 .scalar = Scalar::uint32,
                                 .elementBytes = 4,
                                 .isReference = true});
    BasicBlock& entry = shader_.main->getEntryBlock();
    IRBuilder<> builder(&entry, entry.getFirstNonPHIOrDbgOrAlloca());
    counter_ = makeCounter(builder);
    if (marks_)
        countsTogether_ = makeCounter(builder);
    budget_ = builder.CreateCall(budget, {}, "budget");
    report_ = report;
}

// The block that a function past the budget runs through, before its end or instead of the code
// after a loop.
void Counting::makeSpent() {
    BasicBlock* end = nullptr;
    for (BasicBlock& block : *shader_.main)
        if (isa_and_nonnull<ReturnInst>(block.getTerminator()))
            end = &block;
    spent_ = BasicBlock::Create(end->getContext(), "spent", shader_.main);
    IRBuilder<> builder(spent_);
    for (const InterfaceVariable& variable : shader_.interface)
        if (auto* output = shader_.module->getNamedGlobal(variable.global);
            output && isZeroAtEnd(variable, shader_.stage))
            builder.CreateStore(Constant::getNullValue(output->getValueType()), output);
    builder.CreateStore(builder.getInt32(1), report_);
    if (!runsOn_) {
        builder.CreateBr(end);
        return;
    }
    BasicBlock* last = SplitBlock(end, end->getTerminator());
    builder.CreateBr(last);
    builder.SetInsertPoint(end->getTerminator());
    builder.CreateCondBr(isSpent(builder), spent_, last);
    end->getTerminator()->eraseFromParent();
}

static bool hasBarrier(const Loop& loop) {
    return any_of(loop.blocks(), [](const BasicBlock* block) {
        return any_of(*block, [](const Instruction& instruction) {
            auto* call = dyn_cast<CallBase>(&instruction);
            const Function* callee = call ? call->getCalledFunction() : nullptr;
            return callee && callee->getName().starts_with("msl.barrier.");
        });
    });
}

AllocaInst* Counting::counterOf(const Loop& loop) const {
    return marks_ && hasBarrier(loop) ? countsTogether_ : counter_;
}

Value* Counting::isSpent(IRBuilder<>& builder, AllocaInst* counter) {
    return builder.CreateICmpUGT(builder.CreateLoad(builder.getInt32Ty(), counter), budget_);
}

Value* Counting::isSpent(IRBuilder<>& builder) {
    Value* spent = isSpent(builder, counter_);
    return marks_ ? builder.CreateOr(spent, isSpent(builder, countsTogether_)) : spent;
}

void Counting::mark(IRBuilder<>& builder, Value* isSpent) {
    if (!marks_)
        return;
    FunctionCallee mark =
        shader_.module->getOrInsertFunction(budgetMark, builder.getVoidTy(), builder.getInt1Ty());
    cast<Function>(mark.getCallee())->setDoesNotThrow();
    builder.CreateCall(mark, {isSpent});
}

// Whether the loop has effects outside it before it ends.
static bool hasEffects(const Loop& loop) {
    return any_of(loop.blocks(), [](const BasicBlock* block) {
        return any_of(*block, [](const Instruction& instruction) {
            auto* store = dyn_cast<StoreInst>(&instruction);
            return instruction.mayHaveSideEffects() &&
                   !(store && isLocal(store->getPointerOperand()));
        });
    });
}

// The block whose test for the end of the loop can test for the budget as well, so that the loop
// gets no further exit.
BasicBlock* Counting::testingBlock(const Loop& loop) const {
    const auto tests = [&](const BasicBlock* block) {
        auto* branch = dyn_cast<BranchInst>(block->getTerminator());
        return branch && branch->isConditional() && loop.isLoopExiting(block);
    };
    for (BasicBlock* block : {loop.getHeader(), loop.getLoopLatch()})
        if (tests(block))
            return block;
    for (BasicBlock* block : loop.blocks())
        if (runsOn_ && tests(block) && loops_.getLoopFor(block) == &loop &&
            tree_.dominates(block, loop.getLoopLatch()))
            return block;
    return nullptr;
}

// Whether a loop inside may leave it to this one to end the invocation: it counts as well, nothing
// leaves it but the test, and the rest of its round has no effect.
bool Counting::endsForIt(const Loop& loop) const {
    BasicBlock* testing = testingBlock(loop);
    return weights_.contains(&loop) && testing && loop.getExitingBlock() == testing &&
           !hasEffects(loop);
}

// What follows the test looks at the counter again and ends the invocation, unless the code after
// the loop runs on or the loop around will end.
void Counting::count(Loop* loop) {
    BasicBlock* testing = testingBlock(*loop);
    Instruction* end = (testing ? testing : loop->getLoopLatch())->getTerminator();
    IRBuilder<> builder(end);
    AllocaInst* counter = counterOf(*loop);
    Value* before = builder.CreateLoad(builder.getInt32Ty(), counter);
    auto weight = static_cast<std::uint32_t>(weights_[loop]);
    builder.CreateStore(builder.CreateAdd(before, builder.getInt32(weight)), counter);
    Value* isOver = isSpent(builder, counter);
    if (!testing) {
        builder.CreateCondBr(isOver, spent_, loop->getHeader());
        end->eraseFromParent();
        return;
    }
    auto* branch = cast<BranchInst>(end);
    unsigned out = loop->contains(branch->getSuccessor(0)) ? 1 : 0;
    Value* condition = branch->getCondition();
    branch->setCondition(out == 0 ? builder.CreateOr(condition, isOver)
                                  : builder.CreateAnd(condition, builder.CreateNot(isOver)));
    Loop* around = loop->getParentLoop();
    if (!marks_ && (runsOn_ || (around && endsForIt(*around))))
        return;
    Loop* outside = loops_.getLoopFor(branch->getSuccessor(out));
    BasicBlock* after = SplitEdge(testing, branch->getSuccessor(out));
    Instruction* onward = after->getTerminator();
    builder.SetInsertPoint(onward);
    if (marks_) {
        mark(builder, isSpent(builder, counter));
        if (outside)
            outside->addBasicBlockToLoop(after, loops_);
        return tree_.recalculate(*after->getParent());
    }
    builder.CreateCondBr(isSpent(builder), spent_, onward->getSuccessor(0));
    onward->eraseFromParent();
}

// Lets the block before the loop go to its exit if it cannot pay. Only for a loop with one exit.
static void skip(Loop& loop, BasicBlock& before, Value* isOver, DominatorTree& tree,
                 LoopInfo& loops, ScalarEvolution& evolution) {
    formLCSSA(loop, tree, &loops, &evolution);
    BasicBlock *header = loop.getHeader(), *exit = loop.getExitBlock();
    BasicBlock* entry = SplitEdge(&before, header, &tree, &loops);
    before.getTerminator()->eraseFromParent();
    BranchInst::Create(exit, entry, isOver, &before);
    for (PHINode& phi : exit->phis())
        phi.addIncoming(Constant::getNullValue(phi.getType()), &before);
    tree.recalculate(*header->getParent());
}

// A loop whose rounds are known when it is entered pays for them there, all at once, and each round
// costs nothing: one that could not pay is not entered. Where `spent` follows, loops inside another
// stay as they are, since a way out from between them costs the outer one more than counting does.
bool Counting::countAhead(Loop* loop) {
    BasicBlock* before = loop->getLoopPreheader();
    bool isAlone =
        (runsOn_ || !loop->getParentLoop()) &&
        none_of(loop->getSubLoops(), [&](Loop* inner) { return weights_.contains(inner); });
    const SCEV* repeats = evolution_.getBackedgeTakenCount(loop);
    if (!before || !isAlone || isa<SCEVCouldNotCompute>(repeats) ||
        repeats->getExpressionSize() > largestAhead || weights_[loop] >= (1u << 11) ||
        (runsOn_ && !(loop->getExitingBlock() && loop->getExitBlock())))
        return false;
    Instruction* end = before->getTerminator();
    SCEVExpander expander(evolution_, shader_.module->getDataLayout(), "ahead");
    if (!expander.isSafeToExpandAt(repeats, end) || !repeats->getType()->isIntegerTy())
        return false;
    IRBuilder<> builder(end);
    Value* rounds = expander.expandCodeFor(repeats, repeats->getType(), end->getIterator());
    unsigned bits = rounds->getType()->getIntegerBitWidth();
    if (bits > 32) {
        Value* most = ConstantInt::get(rounds->getType(), mostAhead);
        rounds = builder.CreateBinaryIntrinsic(Intrinsic::umin, rounds, most);
    }
    rounds = builder.CreateZExtOrTrunc(rounds, builder.getInt32Ty());
    if (bits >= 32)
        rounds =
            builder.CreateBinaryIntrinsic(Intrinsic::umin, rounds, builder.getInt32(mostAhead));
    auto weight = static_cast<std::uint32_t>(weights_[loop]);
    AllocaInst* counter = counterOf(*loop);
    Value* paid = builder.CreateLoad(builder.getInt32Ty(), counter);
    Value* due = builder.CreateMul(builder.CreateAdd(rounds, builder.getInt32(runsOn_ ? 2 : 0)),
                                   builder.getInt32(weight));
    if (runsOn_)
        due = builder.CreateBinaryIntrinsic(Intrinsic::umin, due,
                                            builder.CreateAdd(budget_, builder.getInt32(1)));
    builder.CreateStore(builder.CreateAdd(paid, due), counter);
    Value* isOver = isSpent(builder, counter);
    if (runsOn_) {
        mark(builder, isOver);
        skip(*loop, *before, isOver, tree_, loops_, evolution_);
        return true;
    }
    SplitEdge(before, loop->getHeader(), &tree_, &loops_);
    builder.SetInsertPoint(before->getTerminator());
    builder.CreateCondBr(isOver, spent_, before->getTerminator()->getSuccessor(0));
    before->getTerminator()->eraseFromParent();
    return true;
}

void Counting::run() {
    for (Loop* loop : loops_)
        choose(loop, mostUncounted / std::max<std::size_t>(1, loops_.getTopLevelLoops().size()));
    if (counted_.empty())
        return;
    makeGlobals();
    makeSpent();
    for (Loop* loop : counted_)
        if (!countAhead(loop))
            count(loop);
    shader_.usesLoopBudget = true;
}

void budgetLoops(ShaderModule& shader, Optimiser& optimiser) {
    Function& main = *shader.main;
    auto& loops = optimiser.analyses().getResult<LoopAnalysis>(main);
    if (loops.empty())
        return;
    Counting counting(shader, loops, optimiser.analyses().getResult<DominatorTreeAnalysis>(main),
                      optimiser.analyses().getResult<ScalarEvolutionAnalysis>(main));
    if (!counting.isNeeded())
        return;
    counting.run();
    optimiser.forget(main);
}

bool isCounter(const Value& pointer) {
    auto* local = dyn_cast<AllocaInst>(&pointer);
    return local && local->getMetadata(counterMark);
}

void promoteCounters(Function& main) {
    SmallVector<AllocaInst*, 2> counters;
    for (Instruction& instruction : main.getEntryBlock())
        if (isCounter(instruction))
            counters.push_back(cast<AllocaInst>(&instruction));
    if (counters.empty())
        return;
    DominatorTree tree(main);
    PromoteMemToReg(counters, tree);
}

} // namespace tarnwick::msl
