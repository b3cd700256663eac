#include "TarnwickMSL/Translation/Passes/Optimising/CommonValues.h"

#include "TarnwickMSL/Translation/Passes/Optimising/KnownValues.h"

#include <llvm/ADT/STLExtras.h>
#include <llvm/Analysis/AssumptionCache.h>
#include <llvm/Analysis/InstructionSimplify.h>
#include <llvm/Analysis/MemorySSA.h>
#include <llvm/Analysis/MemorySSAUpdater.h>
#include <llvm/Analysis/TargetLibraryInfo.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/PatternMatch.h>
#include <llvm/Transforms/Utils/Local.h>

#include <cmath>
#include <optional>

namespace tarnwick::msl {

using namespace llvm;

namespace {

// Questions to MemorySSA about one function; each walks over writes.
constexpr unsigned mostQuestions = 500;

// Whether the value depends on the operands alone.
bool isPure(const Instruction& instruction) {
    if (const auto* call = dyn_cast<CallInst>(&instruction))
        return call->doesNotAccessMemory() && !call->getType()->isVoidTy();
    return isa<CastInst, UnaryOperator, BinaryOperator, GetElementPtrInst, CmpInst, SelectInst,
               ExtractElementInst, InsertElementInst, ShuffleVectorInst, ExtractValueInst,
               InsertValueInst, FreezeInst>(instruction);
}

// Whether the value depends on the operands and on memory.
bool isRead(const Instruction& instruction) {
    if (const auto* load = dyn_cast<LoadInst>(&instruction))
        return load->isSimple();
    const auto* call = dyn_cast<CallInst>(&instruction);
    return call && call->onlyReadsMemory() && !call->getType()->isVoidTy();
}

// Whether it writes only in name: LLVM keeps the order of such instructions in this way.
bool isMark(const Instruction& instruction) {
    const auto* intrinsic = dyn_cast<IntrinsicInst>(&instruction);
    return intrinsic && (intrinsic->getIntrinsicID() == Intrinsic::assume ||
                         intrinsic->getIntrinsicID() == Intrinsic::experimental_noalias_scope_decl);
}

// Whether it is a number that no rule of a sum asks for, or of a product.
bool isPlain(const APFloat& number, bool isOfSum) {
    return number.isFiniteNonZero() && (isOfSum || number.getExactLog2Abs() != 0);
}

bool isPlain(float number, bool isOfSum) {
    return std::isfinite(number) && number != 0 && (isOfSum || std::fabs(number) != 1);
}

// The same for a vector: a rule asks whether all of its numbers are a certain one.
bool isPlain(const Value& value, bool isOfSum) {
    if (const auto* number = dyn_cast<ConstantFP>(&value))
        return isPlain(number->getValueAPF(), isOfSum);
    const auto* vector = dyn_cast<ConstantDataVector>(&value);
    if (!vector || !vector->getElementType()->isFloatTy())
        return false;
    for (unsigned i = 0; i < vector->getNumElements(); ++i)
        if (isPlain(vector->getElementAsFloat(i), isOfSum))
            return true;
    return false;
}

// Whether LLVM may know a simpler value of a sum, difference, product or quotient. It asks each of
// its rules whether the operands are a certain number, and to answer it makes elements of vectors
// constants, a twentieth of all time. The rules about two unknown operands need flags that the
// library's and the program's code do not have.
bool maySimplifyArithmetic(const Instruction& instruction, bool isSum) {
    const Value &left = *instruction.getOperand(0), &right = *instruction.getOperand(1);
    if (instruction.hasNoNaNs() || instruction.hasAllowReassoc() ||
        (isa<Constant>(left) && isa<Constant>(right)))
        return true;
    return (isa<Constant>(left) && !isPlain(left, isSum)) ||
           (isa<Constant>(right) && !isPlain(right, isSum));
}

// Whether it is worth to ask LLVM for a simpler value. Instructions are combined later, and then it
// is asked in any case.
bool maySimplify(const Instruction& instruction) {
    switch (instruction.getOpcode()) {
    case Instruction::FAdd:
    case Instruction::FSub:
        return maySimplifyArithmetic(instruction, true);
    case Instruction::FMul:
    case Instruction::FDiv:
        return maySimplifyArithmetic(instruction, false);
    case Instruction::Call: { // the sign of an operand depends on all that is below
        const auto* call = dyn_cast<IntrinsicInst>(&instruction);
        return !call || call->getIntrinsicID() != Intrinsic::fabs ||
               isa<Constant, CallInst>(call->getArgOperand(0));
    }
    default:
        return true;
    }
}

class Walk {
  public:
    Walk(Function& function, FunctionAnalysisManager& analyses, MemorySSA* memory)
        : tree_(analyses.getResult<DominatorTreeAnalysis>(function)), memory_(memory),
          query_(function.getDataLayout(), &analyses.getResult<TargetLibraryAnalysis>(function),
                 &tree_, &analyses.getResult<AssumptionAnalysis>(function)),
          known_(function.getInstructionCount()) {
        if (memory)
            updater_.emplace(memory);
    }

    // Gives whether the function changed.
    bool run() {
        enter(*tree_.getRootNode(), 0);
        while (!path_.empty()) {
            Place& here = path_.back();
            if (here.next != here.node->end()) {
                enter(**here.next++, here.writes);
                continue;
            }
            known_.forgetTo(here.mark);
            path_.pop_back();
        }
        return isChanged_;
    }

  private:
    struct Place {
        DomTreeNode* node;
        DomTreeNode::iterator next; // child
        std::size_t mark;           // of the values known before the block
        unsigned writes;            // counted at the end of the block
    };

    void enter(DomTreeNode& node, unsigned writes) {
        BasicBlock& block = *node.getBlock();
        const std::size_t mark = known_.mark();
        if (const BasicBlock* from = block.getSinglePredecessor())
            noteCondition(*from, block);
        else
            ++writes; // there may be some on other ways to the block
        writes_ = writes;
        unread_ = nullptr;
        for (Instruction& instruction : make_early_inc_range(block))
            visit(instruction);
        path_.push_back({&node, node.begin(), mark, writes_});
    }

    // The condition of the only branch to a block is known there, and so are the parts of which all
    // must be true, or all false.
    void noteCondition(const BasicBlock& from, const BasicBlock& block) {
        const auto* branch = dyn_cast<BranchInst>(from.getTerminator());
        if (!branch || !branch->isConditional() ||
            branch->getSuccessor(0) == branch->getSuccessor(1))
            return;
        const bool isTrue = branch->getSuccessor(0) == &block;
        Constant* value = ConstantInt::getBool(block.getContext(), isTrue);
        SmallVector<Value*, 4> open{branch->getCondition()};
        SmallPtrSet<const Value*, 4> seen;
        while (!open.empty()) {
            auto* condition = dyn_cast<Instruction>(open.pop_back_val());
            if (!condition || !isPure(*condition) || !seen.insert(condition).second)
                continue;
            known_.add(*condition, value, 0);
            isChanged_ |= replaceDominatedUsesWith(condition, value, tree_,
                                                   BasicBlockEdge(&from, &block)) > 0;
            Value *left = nullptr, *right = nullptr;
            using namespace PatternMatch;
            if (isTrue ? match(condition, m_LogicalAnd(m_Value(left), m_Value(right)))
                       : match(condition, m_LogicalOr(m_Value(left), m_Value(right))))
                open.append({left, right});
        }
    }

    void visit(Instruction& instruction) {
        if (isInstructionTriviallyDead(&instruction, query_.TLI)) {
            erase(instruction);
            return;
        }
        if (isMark(instruction) || simplify(instruction))
            return;
        if (isPure(instruction))
            reuse(instruction, known_.find(instruction));
        else if (isRead(instruction))
            visitRead(instruction);
        else if (auto* store = dyn_cast<StoreInst>(&instruction); store && store->isSimple())
            visitStore(*store);
        else
            visitOther(instruction);
    }

    void visitOther(const Instruction& instruction) {
        if (instruction.mayReadFromMemory() || instruction.mayThrow())
            unread_ = nullptr;
        if (!instruction.mayWriteToMemory())
            return;
        ++writes_;
        unread_ = nullptr;
    }

    // Gives whether the instruction is gone.
    bool simplify(Instruction& instruction) {
        Value* simple =
            maySimplify(instruction) ? simplifyInstruction(&instruction, query_) : nullptr;
        if (!simple)
            return false;
        isChanged_ |= !instruction.use_empty();
        instruction.replaceAllUsesWith(simple);
        if (!isInstructionTriviallyDead(&instruction, query_.TLI))
            return false;
        erase(instruction);
        return true;
    }

    void reuse(Instruction& instruction, const KnownValues::Entry* equal) {
        if (!equal) {
            known_.add(instruction, &instruction, writes_);
            return;
        }
        auto* before = dyn_cast<Instruction>(equal->value);
        if (before && before->getOpcode() == instruction.getOpcode())
            combine(*before, instruction);
        instruction.replaceAllUsesWith(equal->value);
        erase(instruction);
    }

    // Lets `before` promise only what both promise.
    static void combine(Instruction& before, const Instruction& instruction) {
        if (isa<LoadInst>(before))
            combineMetadataForCSE(&before, &instruction, false);
        else if (before.getRawSubclassOptionalData() != instruction.getRawSubclassOptionalData() &&
                 !programUndefinedIfPoison(&before)) // else its flags hold in any case
            before.andIRFlags(&instruction);
    }

    const KnownValues::Entry* knownRead(const Instruction& instruction) {
        const KnownValues::Entry* equal = known_.find(instruction);
        return equal && isUnwritten(*equal, instruction) ? equal : nullptr;
    }

    // Whether nothing writes the memory between the access that is known and this one.
    bool isUnwritten(const KnownValues::Entry& known, const Instruction& now) {
        if (known.writes == writes_)
            return true;
        if (!memory_ || questions_ == mostQuestions)
            return false;
        ++questions_;
        const MemoryUseOrDef* first = memory_->getMemoryAccess(known.key);
        MemoryUseOrDef* second = memory_->getMemoryAccess(&now);
        return first && second &&
               memory_->dominates(memory_->getWalker()->getClobberingMemoryAccess(second), first);
    }

    void visitRead(Instruction& read) {
        const KnownValues::Entry* equal = knownRead(read);
        if (!equal)
            unread_ = nullptr;
        reuse(read, equal);
    }

    void visitStore(StoreInst& store) {
        // Storing what was just loaded from there changes nothing.
        const KnownValues::Entry* equal = known_.find(store);
        if (equal && equal->value == store.getValueOperand() && isUnwritten(*equal, store)) {
            erase(store);
            return;
        }
        known_.add(store, store.getValueOperand(), ++writes_); // instead of the one before
        if (unread_ && unread_->getPointerOperand() == store.getPointerOperand() &&
            unread_->getValueOperand()->getType() == store.getValueOperand()->getType())
            erase(*unread_);
        unread_ = &store;
    }

    void erase(Instruction& instruction) {
        if (updater_)
            updater_->removeMemoryAccess(&instruction, true);
        instruction.eraseFromParent();
        isChanged_ = true;
    }

    DominatorTree& tree_;
    MemorySSA* memory_;
    std::optional<MemorySSAUpdater> updater_;
    SimplifyQuery query_;
    KnownValues known_;
    SmallVector<Place, 32> path_; // from the entry block to the current one
    unsigned writes_ = 0;         // before the current instruction; equal numbers, equal memory
    unsigned questions_ = 0;
    StoreInst* unread_ = nullptr; // the last one of the block, if nothing was read or written since
    bool isChanged_ = false;
};

} // namespace

PreservedAnalyses CommonValues::run(Function& function, FunctionAnalysisManager& analyses) {
    MemorySSA* memory = memory_ == Memory::bySSA
                            ? &analyses.getResult<MemorySSAAnalysis>(function).getMSSA()
                            : nullptr;
    if (!Walk(function, analyses, memory).run())
        return PreservedAnalyses::all();
    PreservedAnalyses preserved;
    preserved.preserveSet<CFGAnalyses>();
    if (memory)
        preserved.preserve<MemorySSAAnalysis>();
    return preserved;
}

} // namespace tarnwick::msl
