#include "TarnwickMSL/Translation/Passes/Form.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"

#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/PostDominators.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/Verifier.h>
#include <llvm/Support/raw_ostream.h>

namespace tarnwick::msl {

using namespace llvm;

static std::string about(StringRef rule, const Value& value) {
    std::string text = rule.str();
    raw_string_ostream stream(text);
    stream << ": ";
    if (isa<BasicBlock>(value))
        value.printAsOperand(stream, false);
    else
        stream << value;
    return text + ".";
}

static bool isScalar(const Type* type) {
    if (auto* integer = dyn_cast<IntegerType>(type))
        return is_contained({1u, 8u, 16u, 32u, 64u}, integer->getBitWidth());
    return type->isFloatTy() || type->isHalfTy();
}

static bool isRegister(const Type* type) {
    if (auto* vector = dyn_cast<FixedVectorType>(type))
        return vector->getNumElements() >= 2 && vector->getNumElements() <= 4 &&
               isScalar(vector->getElementType());
    return isScalar(type);
}

static bool isMemory(const Type* type) {
    if (auto* array = dyn_cast<ArrayType>(type))
        return isMemory(array->getElementType());
    if (auto* record = dyn_cast<StructType>(type))
        return all_of(record->elements(), isMemory);
    return isRegister(type);
}

static bool isRoot(const Value* pointer) {
    while (auto* step = dyn_cast<GEPOperator>(pointer))
        pointer = step->getPointerOperand();
    return isa<AllocaInst, GlobalVariable>(pointer);
}

static bool isKnownIntrinsic(Intrinsic::ID id) {
    switch (id) {
    case Intrinsic::assume:
    case Intrinsic::lifetime_start:
    case Intrinsic::lifetime_end:
    case Intrinsic::memcpy:
    case Intrinsic::memmove:
    case Intrinsic::memset:
    case Intrinsic::is_fpclass:
    case Intrinsic::expect:
    case Intrinsic::experimental_noalias_scope_decl:
        return false;
    default:
        return true;
    }
}

static std::string checkCall(const CallBase& call) {
    if (auto* intrinsic = dyn_cast<IntrinsicInst>(&call)) {
        if (!isKnownIntrinsic(intrinsic->getIntrinsicID()) ||
            intrinsic->getCalledFunction()->getName().starts_with("llvm.vector.reduce."))
            return about("An intrinsic is left that shaders do not have", call);
        return {};
    }
    StringRef name = builtInName(call);
    if (name.empty())
        return about("A function is called that is not built in", call);
    if (takesTexture(name) && !isa<ConstantInt>(call.getArgOperand(0)))
        return about("A texture's handle is not constant", call);
    return {};
}

static std::string checkInstruction(const Instruction& instruction) {
    if (auto* local = dyn_cast<AllocaInst>(&instruction)) {
        if (local->getParent() != &local->getFunction()->getEntryBlock())
            return about("A local stands outside the entry block", instruction);
        return isMemory(local->getAllocatedType()) ? "" : about("A local's type", instruction);
    }
    if (isa<SwitchInst, UnreachableInst, FreezeInst, IntToPtrInst, PtrToIntInst, ExtractValueInst,
            InsertValueInst, IndirectBrInst, InvokeInst>(instruction))
        return about("An instruction is left that shaders do not have", instruction);
    if (auto* pointer = getLoadStorePointerOperand(&instruction); pointer && !isRoot(pointer))
        return about("A pointer does not come from a local or global", instruction);
    if (auto* branch = dyn_cast<BranchInst>(&instruction);
        branch && branch->isConditional() && isa<UndefValue>(branch->getCondition()))
        return about("A branch depends on nothing", instruction);
    Type* type = instruction.getType();
    if (type->isPointerTy() && !isa<GetElementPtrInst>(instruction))
        return about("A pointer is made at run time", instruction);
    if (!type->isVoidTy() && !type->isPointerTy() && !isRegister(type))
        return about("A value's type", instruction);
    for (const Use& operand : instruction.operands())
        if (operand->getType()->isIntOrIntVectorTy() && !isRegister(operand->getType()))
            return about("An operand's type", instruction);
    if (auto* call = dyn_cast<CallBase>(&instruction))
        return checkCall(*call);
    return {};
}

// SPIR-V 1.6, 2.11: what a construct is, and that nothing but its merge leaves it.
class StructureCheck {
  public:
    explicit StructureCheck(const ShaderModule& shader)
        : shader_(shader), tree_(*shader.main), postTree_(*shader.main) {}

    std::string run();

  private:
    std::string checkLoop(BasicBlock& header, const Merge& merge);
    std::string checkSelection(BasicBlock& header, const Merge& merge);
    std::string checkExits(BasicBlock& header, const Merge& merge);

    const ShaderModule& shader_;
    DominatorTree tree_;
    PostDominatorTree postTree_;
};

// The blocks that the header dominates and its merge does not may only go to each other and to the
// merge (a selection's also to the merge and continue target of the loop around it; the passes
// make no such branches).
std::string StructureCheck::checkExits(BasicBlock& header, const Merge& merge) {
    for (BasicBlock& block : *shader_.main) {
        if (!tree_.dominates(&header, &block) || tree_.dominates(merge.merge, &block))
            continue;
        for (BasicBlock* next : successors(&block))
            if (next != merge.merge && !tree_.dominates(&header, next))
                return about("A construct is left past its merge", block);
    }
    return {};
}

std::string StructureCheck::checkLoop(BasicBlock& header, const Merge& merge) {
    BasicBlock* back = merge.continueTarget;
    if (!is_contained(successors(back), &header))
        return about("A continue target does not go back", *back);
    if (!tree_.dominates(&header, back))
        return about("A loop's header does not come before its continue target", header);
    for (BasicBlock* from : predecessors(&header))
        if (from != back && tree_.dominates(&header, from))
            return about("A loop has two ways back", header);
    for (Instruction& instruction : header)
        if (instruction.mayHaveSideEffects())
            return about("A loop's header has effects", instruction);
    return {};
}

std::string StructureCheck::checkSelection(BasicBlock& header, const Merge& merge) {
    if (!postTree_.dominates(merge.merge, &header))
        return about("A selection's merge does not follow all its ways", header);
    return {};
}

std::string StructureCheck::run() {
    SmallPtrSet<BasicBlock*, 16> merges, continues;
    for (auto& [header, merge] : shader_.structure) {
        if (!merges.insert(merge.merge).second)
            return about("A block is the merge of two constructs", *merge.merge);
        if (merge.continueTarget)
            continues.insert(merge.continueTarget);
        if (!tree_.properlyDominates(header, merge.merge))
            return about("A header does not come before its merge", *header);
        std::string found =
            merge.continueTarget ? checkLoop(*header, merge) : checkSelection(*header, merge);
        if (found.empty())
            found = checkExits(*header, merge);
        if (!found.empty())
            return found;
    }
    for (BasicBlock& block : *shader_.main) {
        if (!tree_.isReachableFromEntry(&block))
            return about("A block is never reached", block);
        if (succ_size(&block) > 1 && !shader_.structure.contains(&block) &&
            !continues.contains(&block))
            return about("A branch has no merge", block);
        if (merges.contains(&block) && continues.contains(&block))
            return about("A block is both a merge and a continue target", block);
    }
    return {};
}

static std::string checkModule(const ShaderModule& shader) {
    std::string text;
    raw_string_ostream stream(text);
    if (verifyModule(*shader.module, &stream))
        return text;
    unsigned returns = 0;
    for (const BasicBlock& block : *shader.main)
        returns += isa<ReturnInst>(block.getTerminator());
    if (returns != 1 || shader.main->getName() != "main" || shader.main->arg_size() != 0)
        return "The module has no 'main' with one return.";
    for (const Function& function : *shader.module)
        if (&function != shader.main && !function.isDeclaration())
            return about("A function is left beside main", function);
    for (const GlobalVariable& global : shader.module->globals())
        if (!isMemory(global.getValueType()) || global.getAddressSpace() != 0)
            return about("A global's type", global);
    return {};
}

std::string checkForm(const ShaderModule& shader) {
    std::string found = checkModule(shader);
    if (found.empty())
        for (const Instruction& instruction : instructions(*shader.main))
            if (found = checkInstruction(instruction); !found.empty())
                return found;
    return found.empty() ? StructureCheck(shader).run() : found;
}

} // namespace tarnwick::msl
