// A machine that runs many invocations in step executes both sides of a branch that they do not
// agree on. The packaged CPU driver always does, and a branch costs it a mask, a masked write for
// each phi, and often a phi of booleans that the nesting of regions needs. So short sides are worth
// more as straight code: their values are computed in any case, and selected.
//
// Two forms, until none is left:
//
//   region               the blocks between a branch and the block where all its ways meet, each
//                        short: their code; selects for their phis and those of the end
//   common destination   a ? end : next; next: b ? end : other      a or b ? end : other
//
// Triangles and diamonds go first, from the inside out, because the branch's condition is all that
// their selects need. The other regions have blocks that several ways share, as the cases of a
// switch do. They need the condition of each way, but cost the nesting most.
//
// The second undoes what LLVM's threading of jumps makes of conditions such as `a || b(x)`, which
// otherwise becomes nested regions with a guard for each. In a loop it joins two exits into one.
//
// A loop that may end before its last block runs that block in any case:
//
//   last block           a ? end : next; next: header           next's code; a ? end : header
//
// A condition that is the same for all invocations stays a branch, because a GPU skips the code.
#include "TarnwickMSL/Translation/Passes/ControlFlow/Flatten.h"

#include "TarnwickMSL/Translation/Passes/ControlFlow/LeavingValues.h"
#include "TarnwickMSL/Translation/Passes/ControlFlow/WaysOut.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Weights.h"

#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;
using namespace llvm::PatternMatch;

constexpr unsigned longestBlock = 60;    // scalar operations
constexpr unsigned longestRegion = 120;  // scalar operations
constexpr std::size_t fewBlocks = 2;     // in a triangle or a diamond
constexpr std::size_t mostBlocks = 16;   // in a region
constexpr unsigned deepestCondition = 6; // instructions from a condition to its uniforms

namespace {

class Flattening {
  public:
    explicit Flattening(ShaderModule& shader) : shader_(shader) {}
    bool run();

  private:
    bool flattenSmall();
    bool flatten(BasicBlock& block, std::size_t mostBlocks);
    bool flattenRegion(BasicBlock& block, BranchInst& branch, std::size_t mostBlocks);
    bool canJoin(const BasicBlock& block, unsigned& costs) const;
    bool joinTests(BasicBlock& block, BranchInst& branch, unsigned side);
    bool isUniform(const Value& value, unsigned depth = 0) const;
    bool isUniformBuffer(const Value& pointer) const;

    ShaderModule& shader_;
};

} // namespace

static unsigned lanesOf(const Type& type) {
    auto* vector = dyn_cast<FixedVectorType>(&type);
    return vector ? vector->getNumElements() : 1;
}

// In scalar operations; the functions are polynomials on CPU drivers.
static unsigned cost(const Instruction& instruction) {
    const unsigned lanes = lanesOf(*instruction.getType());
    auto* call = dyn_cast<IntrinsicInst>(&instruction);
    return call && isTranscendental(*call->getCalledFunction()) ? 12 * lanes : lanes;
}

// The cost of code that may run where the program does not run it; phis are free.
static std::optional<unsigned> costToRun(const BasicBlock& block) {
    unsigned sum = 0;
    for (const Instruction& instruction : block) {
        if (isa<PHINode>(instruction))
            continue;
        if (instruction.isTerminator())
            return sum;
        sum += cost(instruction);
        if (sum > longestBlock || !isSafeToSpeculativelyExecute(&instruction))
            return std::nullopt;
    }
    return sum;
}

static bool canSelect(const BasicBlock& end) {
    return all_of(end.phis(), [](const PHINode& phi) {
        Type* type = phi.getType();
        return type->isIntOrIntVectorTy() || type->isFPOrFPVectorTy();
    });
}

static void moveCode(BasicBlock& from, BasicBlock& to) {
    for (Instruction& instruction : from)
        instruction.dropUBImplyingAttrsAndMetadata();
    to.splice(to.getTerminator()->getIterator(), &from, from.begin(),
              from.getTerminator()->getIterator());
}

static Value* choice(IRBuilder<>& builder, Value* condition, Value* one, Value* other) {
    Value *inner = nullptr, *value = nullptr;
    if (match(one, m_Select(m_Value(inner), m_Specific(other), m_Value(value))))
        return builder.CreateSelect(builder.CreateLogicalAnd(condition, builder.CreateNot(inner)),
                                    value, other);
    return one == other ? one : builder.CreateSelect(condition, one, other);
}

static void dropBlock(BasicBlock& block) {
    block.dropAllReferences();
    block.eraseFromParent();
}

bool Flattening::isUniformBuffer(const Value& pointer) const {
    auto* global = dyn_cast<GlobalVariable>(getUnderlyingObject(&pointer));
    return global && any_of(shader_.interface, [&](const InterfaceVariable& variable) {
               return variable.kind == InterfaceKind::uniformBuffer &&
                      variable.global == global->getName();
           });
}

bool Flattening::isUniform(const Value& value, unsigned depth) const {
    if (isa<Constant>(value))
        return true;
    auto* instruction = dyn_cast<Instruction>(&value);
    if (!instruction || depth > deepestCondition || isa<PHINode>(instruction))
        return false;
    if (auto* load = dyn_cast<LoadInst>(instruction)) {
        auto* step = dyn_cast<GetElementPtrInst>(load->getPointerOperand());
        return (!step || step->hasAllConstantIndices()) &&
               isUniformBuffer(*load->getPointerOperand());
    }
    if (auto* call = dyn_cast<CallInst>(instruction); call && !isa<IntrinsicInst>(call)) {
        const Function* called = call->getCalledFunction();
        return called && called->getName().starts_with("msl.function_constant");
    }
    return all_of(instruction->operands(), [&](const Use& operand) {
        return isa<Function>(operand.get()) || isUniform(*operand.get(), depth + 1);
    });
}

namespace {

// The blocks of a region in order, and the conditions under which control takes their branches.
class Ways {
  public:
    explicit Ways(BranchInst& entry) : builder_(&entry), entry_(*entry.getParent()) {}
    bool contains(const BasicBlock* block) const {
        return block == &entry_ || is_contained(blocks_, block);
    }
    void add(BasicBlock& block) { blocks_.push_back(&block); }
    ArrayRef<BasicBlock*> blocks() const { return blocks_; }

    // The phi's value for the ways of the region; the entry must have the operands already.
    Value* choose(PHINode& phi);

  private:
    Value* reaches(BasicBlock& block);
    Value* takes(BasicBlock& from, BasicBlock& to);

    IRBuilder<> builder_;
    BasicBlock& entry_;
    SmallVector<BasicBlock*, 8> blocks_;
    DenseMap<BasicBlock*, Value*> reaches_;
    DenseMap<std::pair<BasicBlock*, BasicBlock*>, Value*> takes_;
};

} // namespace

// Null for the entry, which control always reaches.
Value* Ways::reaches(BasicBlock& block) {
    if (&block == &entry_)
        return nullptr;
    if (Value* known = reaches_.lookup(&block))
        return known;
    Value* any = nullptr;
    SmallVector<BasicBlock*, 8> sources{&entry_};
    append_range(sources, blocks_);
    for (BasicBlock* from : sources) {
        if (!is_contained(successors(from), &block))
            continue;
        Value *one = takes(*from, block), *rest = nullptr;
        if (any && match(one, m_LogicalAnd(m_Not(m_Specific(any)), m_Value(rest))))
            one = rest;
        any = any ? builder_.CreateLogicalOr(any, one) : one;
    }
    return reaches_[&block] = any;
}

Value* Ways::takes(BasicBlock& from, BasicBlock& to) {
    if (Value* known = takes_.lookup({&from, &to}))
        return known;
    auto* branch = cast<BranchInst>(from.getTerminator());
    Value* all = reaches(from);
    if (branch->isConditional()) {
        Value* condition = branch->getCondition();
        if (branch->getSuccessor(0) != &to)
            condition = builder_.CreateNot(condition);
        all = all ? builder_.CreateLogicalAnd(all, condition) : condition;
    }
    return takes_[{&from, &to}] = all;
}

Value* Ways::choose(PHINode& phi) {
    const auto incoming = [&](BasicBlock* from) { return phi.getBasicBlockIndex(from) >= 0; };
    Value* chosen = nullptr; // from the last block on
    for (BasicBlock* from : reverse(blocks_))
        if (incoming(from)) {
            Value* value = phi.getIncomingValueForBlock(from);
            chosen = !chosen || chosen == value
                         ? value
                         : builder_.CreateSelect(takes(*from, *phi.getParent()), value, chosen);
        }
    if (!incoming(&entry_))
        return chosen;
    return choice(builder_, takes(entry_, *phi.getParent()), phi.getIncomingValueForBlock(&entry_),
                  chosen);
}

// Whether a block may be part of a region, which then costs `costs`.
bool Flattening::canJoin(const BasicBlock& block, unsigned& costs) const {
    auto* branch = dyn_cast<BranchInst>(block.getTerminator());
    const auto own = costToRun(block);
    if (!branch || !own || costs + *own > longestRegion || !canSelect(block) ||
        (branch->isConditional() && (branch->getSuccessor(0) == branch->getSuccessor(1) ||
                                     isUniform(*branch->getCondition()))))
        return false;
    costs += *own;
    return true;
}

bool Flattening::flattenRegion(BasicBlock& block, BranchInst& branch, std::size_t mostBlocks) {
    Ways ways(branch);
    SmallSetVector<BasicBlock*, 8> ahead;
    ahead.insert(succ_begin(&block), succ_end(&block));
    unsigned costs = 0;
    while (ahead.size() > 1) {
        auto* next = find_if(ahead, [&](BasicBlock* candidate) {
            return all_of(predecessors(candidate),
                          [&](BasicBlock* from) { return ways.contains(from); });
        });
        if (next == ahead.end() || ways.blocks().size() == mostBlocks || !canJoin(**next, costs))
            return false;
        BasicBlock* joined = *next;
        ahead.remove(joined);
        ways.add(*joined);
        ahead.insert(succ_begin(joined), succ_end(joined));
    }
    BasicBlock* end = ahead.empty() ? nullptr : ahead.front();
    if (!end || end == &block || ways.blocks().empty() || !canSelect(*end))
        return false;
    for (BasicBlock* inside : ways.blocks()) {
        for (PHINode& phi : make_early_inc_range(inside->phis())) {
            phi.replaceAllUsesWith(ways.choose(phi));
            phi.eraseFromParent();
        }
        moveCode(*inside, block);
    }
    for (PHINode& phi : end->phis()) {
        Value* chosen = ways.choose(phi);
        for (BasicBlock* inside : ways.blocks())
            if (phi.getBasicBlockIndex(inside) >= 0)
                phi.removeIncomingValue(inside, false);
        if (phi.getBasicBlockIndex(&block) >= 0)
            phi.setIncomingValueForBlock(&block, chosen);
        else
            phi.addIncoming(chosen, &block);
    }
    BranchInst::Create(end, branch.getIterator());
    branch.eraseFromParent();
    for (BasicBlock* inside : ways.blocks())
        inside->dropAllReferences();
    for (BasicBlock* inside : ways.blocks())
        inside->eraseFromParent();
    MergeBlockIntoPredecessor(end);
    return true;
}

// `side` is the number of the successor that tests again.
bool Flattening::joinTests(BasicBlock& block, BranchInst& branch, unsigned side) {
    BasicBlock *next = branch.getSuccessor(side), *common = branch.getSuccessor(1 - side);
    auto* second = dyn_cast<BranchInst>(next->getTerminator());
    if (next == common || next->getSinglePredecessor() != &block || !second ||
        !second->isConditional() || second->getSuccessor(0) == second->getSuccessor(1) ||
        !costToRun(*next) || isa<PHINode>(next->front()) || !canSelect(*common) ||
        isUniform(*second->getCondition()))
        return false;
    if (second->getSuccessor(0) != common && second->getSuccessor(1) != common)
        return false;
    BasicBlock* other = second->getSuccessor(second->getSuccessor(0) == common ? 1 : 0);
    if (other == next)
        return false;
    moveCode(*next, block);
    IRBuilder<> builder(&branch);
    Value* atOnce = branch.getCondition(); // to the common destination
    if (side == 0)
        atOnce = builder.CreateNot(atOnce);
    Value* later = second->getCondition();
    if (second->getSuccessor(0) != common)
        later = builder.CreateNot(later);
    for (PHINode& phi : common->phis()) {
        Value* chosen = choice(builder, atOnce, phi.getIncomingValueForBlock(&block),
                               phi.getIncomingValueForBlock(next));
        phi.removeIncomingValue(next, false);
        phi.setIncomingValueForBlock(&block, chosen);
    }
    other->replacePhiUsesWith(next, &block);
    builder.CreateCondBr(builder.CreateLogicalOr(atOnce, later), common, other);
    branch.eraseFromParent();
    dropBlock(*next);
    for (BasicBlock* after : {common, other})
        if (after->getSinglePredecessor())
            FoldSingleEntryPHINodes(after);
    return true;
}

bool Flattening::flatten(BasicBlock& block, std::size_t mostBlocks) {
    auto* branch = dyn_cast<BranchInst>(block.getTerminator());
    if (!branch || !branch->isConditional() || branch->getSuccessor(0) == branch->getSuccessor(1) ||
        isUniform(*branch->getCondition()))
        return false;
    return flattenRegion(block, *branch, mostBlocks) || joinTests(block, *branch, 0) ||
           joinTests(block, *branch, 1);
}

bool Flattening::flattenSmall() {
    bool isChanged = false;
    for (BasicBlock& block : *shader_.main)
        while (flatten(block, fewBlocks))
            isChanged = true;
    return isChanged;
}

bool Flattening::run() {
    bool isChanged = false;
    for (bool again = true; again; isChanged |= again)
        again = flattenSmall() || any_of(*shader_.main, [&](BasicBlock& block) {
                    return flatten(block, mostBlocks);
                });
    return isChanged;
}

// Whether the loop ends by a test before its last block, which runs in vain in the last round then.
// A loop that ends in its header stays as it is, unless values of the header leave it.
static bool mayRunLastBlock(const Loop& loop, const LoopInfo& loops) {
    const BasicBlock* last = loop.getLoopLatch();
    const BasicBlock* test = last ? last->getSinglePredecessor() : nullptr;
    auto* branch = test ? dyn_cast<BranchInst>(test->getTerminator()) : nullptr;
    if (!branch || !branch->isConditional() || loops.getLoopFor(test) != &loop ||
        !loop.isLoopExiting(test) || succ_size(last) != 1 || isa<PHINode>(last->front()) ||
        !costToRun(*last))
        return false;
    return test != loop.getHeader() || any_of(leavingValues(loop), [](const Instruction* value) {
               return !isa<PHINode>(value);
           });
}

static bool runLastBlocks(Function& main) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    bool isChanged = false;
    for (Loop* loop : loops.getLoopsInPreorder()) {
        if (!mayRunLastBlock(*loop, loops))
            continue;
        BasicBlock *last = loop->getLoopLatch(), *test = last->getSinglePredecessor();
        moveCode(*last, *test);
        loop->getHeader()->replacePhiUsesWith(last, test);
        test->getTerminator()->replaceSuccessorWith(last, loop->getHeader());
        dropBlock(*last);
        isChanged = true;
    }
    return isChanged;
}

// The block where the exits of a loop met may have been the end of the round of the loop around it,
// which has several ends now. One block for them all, because each loop has one latch.
static void joinLatches(Function& main) {
    DominatorTree tree(main);
    LoopInfo loops(tree);
    for (Loop* loop : loops.getLoopsInPreorder()) {
        SmallVector<BasicBlock*, 4> latches;
        loop->getLoopLatches(latches);
        if (latches.size() > 1)
            SplitBlockPredecessors(loop->getHeader(), latches, ".again", &tree, &loops);
    }
}

bool flattenBranches(ShaderModule& shader) {
    bool isChanged = Flattening(shader).run();
    if (shortenWaysOut(*shader.main)) {
        Flattening(shader).run();
        joinLatches(*shader.main);
        isChanged = true;
    }
    return runLastBlocks(*shader.main) || isChanged;
}

} // namespace tarnwick::msl
