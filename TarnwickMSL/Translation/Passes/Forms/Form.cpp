// `rules` has one row for each rule. Rules about single instructions are checked in one walk over
// the code. Rules about control flow share one set of LLVM's analyses.
#include "TarnwickMSL/Translation/Passes/Forms/Form.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Widths/Stands.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/CFG.h>
#include <llvm/Analysis/LoopInfo.h>
#include <llvm/Analysis/PostDominators.h>
#include <llvm/IR/Dominators.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Operator.h>
#include <llvm/IR/Verifier.h>
#include <llvm/Support/raw_ostream.h>

#include <array>

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

// Rules about single instructions.

static std::string checkCall(const Instruction& instruction) {
    auto* call = dyn_cast<CallBase>(&instruction);
    const Function* callee = call ? call->getCalledFunction() : nullptr;
    return call && (!callee || !callee->isDeclaration())
               ? about("A function is called that has a body", instruction)
               : "";
}

static std::string checkCopy(const Instruction& instruction) {
    return isa<MemIntrinsic>(instruction)
               ? about("Memory is copied or filled by a call", instruction)
               : "";
}

static const Value* addressOf(const Instruction& instruction) {
    if (const Value* pointer = getLoadStorePointerOperand(&instruction))
        return pointer;
    if (isa<AtomicRMWInst, AtomicCmpXchgInst>(instruction))
        return instruction.getOperand(0);
    auto* call = dyn_cast<CallBase>(&instruction);
    return call && call->arg_size() > 0 && call->getArgOperand(0)->getType()->isPointerTy()
               ? call->getArgOperand(0)
               : nullptr;
}

static bool isRoot(const Value* pointer) {
    while (auto* step = dyn_cast<GEPOperator>(pointer))
        pointer = step->getPointerOperand();
    return isa<AllocaInst, GlobalVariable, IntToPtrInst>(pointer) ||
           Operator::getOpcode(pointer) == Instruction::IntToPtr;
}

static std::string checkPointer(const Instruction& instruction) {
    if (isa<PtrToIntInst>(instruction))
        return about("A pointer is converted", instruction);
    if (isa<ICmpInst>(instruction) && instruction.getOperand(0)->getType()->isPointerTy())
        return about("Pointers are compared", instruction);
    const Value* address = addressOf(instruction);
    return address && !isRoot(address)
               ? about("A pointer does not come from a local, a global or an address", instruction)
               : "";
}

static std::string checkChoice(const Instruction& instruction) {
    return instruction.getType()->isPointerTy() &&
                   !isa<GetElementPtrInst, AllocaInst, IntToPtrInst>(instruction)
               ? about("A pointer is made at run time", instruction)
               : "";
}

static std::string checkHandle(const Instruction& instruction) {
    auto* call = dyn_cast<CallBase>(&instruction);
    StringRef name = call ? builtInName(*call) : StringRef();
    if (takesTexture(name) && !isa<ConstantInt>(call->getArgOperand(0)))
        return about("A texture's handle is not constant", instruction);
    if (takesSampler(name) && !isa<ConstantInt>(call->getArgOperand(1)))
        return about("A sampler's bits are not constant", instruction);
    return {};
}

template <class Test> static bool anyType(const Instruction& instruction, Test test) {
    return test(instruction.getType()) || any_of(instruction.operands(), [&](const Use& operand) {
               return test(operand->getType());
           });
}

static std::string checkLanes(const Instruction& instruction) {
    bool isWide = anyType(instruction, [](const Type* type) {
        auto* vector = dyn_cast<FixedVectorType>(type);
        return vector && (vector->getNumElements() < 2 || vector->getNumElements() > 4);
    });
    return isWide ? about("A vector has not 2 to 4 lanes", instruction) : "";
}

static bool isScalar(const Type* type) {
    if (auto* integer = dyn_cast<IntegerType>(type))
        return is_contained({1u, 8u, 16u, 32u, 64u}, integer->getBitWidth());
    return type->isFloatTy() || type->isHalfTy();
}

static bool isMemory(const Type* type) {
    if (auto* array = dyn_cast<ArrayType>(type))
        return isMemory(array->getElementType());
    if (auto* record = dyn_cast<StructType>(type))
        return all_of(record->elements(), isMemory);
    return isScalar(type->getScalarType());
}

static std::string checkWidth(const Instruction& instruction) {
    if (auto* local = dyn_cast<AllocaInst>(&instruction)) {
        if (!local->getParent()->isEntryBlock())
            return about("A local is outside the entry block", instruction);
        return isMemory(local->getAllocatedType()) ? "" : about("A local's type", instruction);
    }
    bool isOdd = anyType(instruction, [](const Type* type) {
        return type->isIntOrIntVectorTy() && !isScalar(type->getScalarType());
    });
    return isOdd ? about("An integer's width", instruction) : "";
}

static bool isKnownIntrinsic(const IntrinsicInst& call) {
    switch (call.getIntrinsicID()) {
    case Intrinsic::assume:
    case Intrinsic::lifetime_start:
    case Intrinsic::lifetime_end:
    case Intrinsic::is_fpclass:
    case Intrinsic::expect:
    case Intrinsic::experimental_noalias_scope_decl:
        return false;
    default:
        return !call.getCalledFunction()->getName().starts_with("llvm.vector.reduce.");
    }
}

// The writer has arrays as values, for clip distances, but no records.
static bool isValue(const Type* type) {
    const Type* element = type->isArrayTy() ? type->getArrayElementType() : type;
    return type->isVoidTy() || type->isPointerTy() || isScalar(element->getScalarType());
}

static std::string checkOperation(const Instruction& instruction) {
    auto* intrinsic = dyn_cast<IntrinsicInst>(&instruction);
    if (isa<FreezeInst>(instruction) || (intrinsic && !isKnownIntrinsic(*intrinsic)))
        return about("An operation is left that the writer does not have", instruction);
    return anyType(instruction, [](const Type* type) { return type->isStructTy(); }) ||
                   !isValue(instruction.getType())
               ? about("A value's type", instruction)
               : "";
}

static std::string checkAddress(const Instruction& instruction) {
    for (const Value* at = addressOf(instruction); at;) {
        auto* step = isa<GetElementPtrInst, IntToPtrInst>(at) ? cast<Instruction>(at) : nullptr;
        if (step && step->getParent() != instruction.getParent())
            return about("An address is made in another block", instruction);
        at = step && isa<GetElementPtrInst>(step) ? step->getOperand(0) : nullptr;
    }
    return {};
}

static std::string checkPhi(const Instruction& instruction) {
    return isa<PHINode>(instruction) && instruction.getType()->isVectorTy()
               ? about("A phi is a vector", instruction)
               : "";
}

// Rules about the whole of main.

namespace {

struct Subject {
    explicit Subject(const ShaderModule& shader)
        : shader(shader), main(*shader.main), tree(main), loops(tree) {}

    const ShaderModule& shader;
    Function& main;
    DominatorTree tree;
    LoopInfo loops;
};

} // namespace

static std::string checkFlow(const Subject& subject) {
    unsigned returns = 0;
    for (const BasicBlock& block : subject.main) {
        const Instruction& end = *block.getTerminator();
        auto* branch = dyn_cast<BranchInst>(&end);
        if (!isa<ReturnInst>(end) && !branch)
            return about("A block ends neither in a branch nor in the return", end);
        if (branch && branch->isConditional() && isa<UndefValue>(branch->getCondition()))
            return about("A branch depends on nothing", end);
        if (!subject.tree.isReachableFromEntry(&block))
            return about("A block is never reached", block);
        returns += isa<ReturnInst>(end);
    }
    if (returns != 1)
        return "The code has not one return.";
    for (const Loop* loop : subject.loops.getLoopsInPreorder())
        if (!loop->getLoopLatch() || loop->hasNoExitBlocks())
            return about("A loop has not one latch, or no exit", *loop->getHeader());
    ReversePostOrderTraversal<const Function*> order(&subject.main);
    return containsIrreducibleCFG<const BasicBlock*>(order, subject.loops)
               ? "A loop has two entries."
               : "";
}

static std::string checkExits(const Subject& subject) {
    for (const Loop* loop : subject.loops.getLoopsInPreorder()) {
        const BasicBlock* latch = loop->getLoopLatch();
        const std::array<const BasicBlock*, 3> ends{loop->getHeader(), latch,
                                                    latch->getSinglePredecessor()};
        SmallVector<BasicBlock*, 2> exiting;
        loop->getExitingBlocks(exiting);
        if (exiting.empty() || !loop->getUniqueExitBlock() ||
            !all_of(exiting, [&](const BasicBlock* block) { return is_contained(ends, block); }))
            return about("A loop is not left from its header or the end of its round",
                         *loop->getHeader());
    }
    return {};
}

// SPIR-V 1.6, 2.11: a construct's header dominates its blocks, and only its merge leaves it.
// The blocks that the header dominates and its merge does not may only go to each other and to the
// merge (a selection's also to the merge and continue target of the loop around it; the passes
// make no such branches).
static std::string checkConstruct(const Subject& subject, BasicBlock& header, const Merge& merge) {
    if (!subject.tree.properlyDominates(&header, merge.merge))
        return about("A header does not come before its merge", header);
    for (BasicBlock& block : subject.main) {
        if (!subject.tree.dominates(&header, &block) || subject.tree.dominates(merge.merge, &block))
            continue;
        for (BasicBlock* next : successors(&block))
            if (next != merge.merge && !subject.tree.dominates(&header, next))
                return about("A construct is left past its merge", block);
    }
    return {};
}

static std::string checkLoop(const Subject& subject, BasicBlock& header, const Merge& merge) {
    BasicBlock* back = merge.continueTarget;
    if (!is_contained(successors(back), &header))
        return about("A continue target does not go back", *back);
    if (!subject.tree.dominates(&header, back))
        return about("A loop's header does not come before its continue target", header);
    for (BasicBlock* from : predecessors(&header))
        if (from != back && subject.tree.dominates(&header, from))
            return about("A loop has two ways back", header);
    for (Instruction& instruction : header)
        if (instruction.mayHaveSideEffects())
            return about("A loop's header has effects", instruction);
    return checkConstruct(subject, header, merge);
}

static std::string checkLoops(const Subject& subject) {
    for (const Loop* loop : subject.loops.getLoopsInPreorder()) {
        const Merge merge = subject.shader.structure.lookup(loop->getHeader());
        if (!merge.continueTarget)
            return about("A loop has no merge", *loop->getHeader());
        if (std::string found = checkLoop(subject, *loop->getHeader(), merge); !found.empty())
            return found;
    }
    return {};
}

static std::string checkSelections(const Subject& subject) {
    PostDominatorTree postTree(subject.main);
    SmallPtrSet<const BasicBlock*, 16> merges, continues, leaving;
    for (auto& [header, merge] : subject.shader.structure) {
        if (!merges.insert(merge.merge).second)
            return about("A block is the merge of two constructs", *merge.merge);
        if (merge.continueTarget) {
            continues.insert(merge.continueTarget);
            for (const BasicBlock* last : predecessors(merge.continueTarget))
                if (is_contained(successors(last), merge.merge))
                    leaving.insert(last);
            continue;
        }
        if (!postTree.dominates(merge.merge, header))
            return about("A selection's merge does not follow all its ways", *header);
        if (std::string found = checkConstruct(subject, *header, merge); !found.empty())
            return found;
    }
    for (const BasicBlock& block : subject.main) {
        if (succ_size(&block) > 1 && !subject.shader.structure.contains(&block) &&
            !continues.contains(&block) && !leaving.contains(&block))
            return about("A branch has no merge", block);
        if (merges.contains(&block) && continues.contains(&block))
            return about("A block is both a merge and a continue target", block);
    }
    return {};
}

static std::string checkMain(const Subject& subject) {
    if (subject.main.getName() != "main" || subject.main.arg_size() != 0)
        return "The module has no function 'main' without arguments.";
    for (const Function& function : *subject.shader.module)
        if (&function != &subject.main && !function.isDeclaration())
            return about("A function is left beside main", function);
    return {};
}

static std::string checkGlobals(const Subject& subject) {
    for (const GlobalVariable& global : subject.shader.module->globals())
        if (!isMemory(global.getValueType()) || global.getAddressSpace() != 0)
            return about("A global's type", global);
    return {};
}

static std::string checkMemoryTypes(const Subject& subject) {
    const Stands stands(subject.shader.lacks);
    for (const GlobalVariable& global : subject.shader.module->globals())
        if (stands.areInMemoryOf(global.getValueType()) && !isFormatOfLog(global))
            return about("A global has a type that the target lacks", global);
    for (const Instruction& instruction : instructions(subject.main)) {
        auto* local = dyn_cast<AllocaInst>(&instruction);
        const Type* type = isa<StoreInst>(instruction)  ? instruction.getOperand(0)->getType()
                           : isa<LoadInst>(instruction) ? instruction.getType()
                           : local                      ? local->getAllocatedType()
                                                        : nullptr;
        if (type && stands.areInMemoryOf(type))
            return about("Memory has a type that the target lacks", instruction);
    }
    return {};
}

static std::string checkTypes(const Subject& subject) {
    const Stands stands(subject.shader.lacks);
    for (const Instruction& instruction : instructions(subject.main))
        if (stands.concern(instruction))
            return about("A value has a type that the target lacks", instruction);
    return {};
}

static std::string checkBindings(const Subject& subject) {
    std::uint32_t next = firstBinding(subject.shader.stage);
    for (const InterfaceVariable& variable : subject.shader.interface) {
        if (!subject.shader.module->getNamedGlobal(variable.global))
            return "The interface lists '" + variable.global + "', which no code uses.";
        if (hasBinding(variable.kind) && variable.binding != next++)
            return "The binding of '" + variable.global + "' leaves a gap.";
    }
    for (const TextureVariable& texture : subject.shader.textures)
        if (texture.binding != next++)
            return "The binding of texture " + std::to_string(texture.index) + " leaves a gap.";
    return {};
}

namespace {

struct RuleRow {
    std::string_view sentence;
    std::string (*instruction)(const Instruction&) = nullptr;
    std::string (*whole)(const Subject&) = nullptr;
};

} // namespace

// clang-format off
// By Form; docs/compiler.md explains them in "The input of the writer".
static constexpr std::array rules{
    RuleRow{""},
    RuleRow{"A call is of a function without a body: a built-in function or an intrinsic.", checkCall},
    RuleRow{"`main` is the only function with a body.", nullptr, checkMain},
    RuleRow{"No call copies or fills memory.", checkCopy},
    RuleRow{"An access is to a local, a global or an address with steps into it; no pointer is compared or becomes a number.", checkPointer},
    RuleRow{"A texture's handle and a sampler's bits are constants.", checkHandle},
    RuleRow{"No pointer is chosen or read from memory.", checkChoice},
    RuleRow{"One return, branches and nothing else between blocks; each loop has one entry, one latch and an exit.", nullptr, checkFlow},
    RuleRow{"A vector has 2 to 4 lanes.", checkLanes},
    RuleRow{"An integer has 1, 8, 16, 32 or 64 bits; locals are in the entry block.", checkWidth, checkGlobals},
    RuleRow{"Every operation is one that the writer has.", checkOperation},
    RuleRow{"Memory has only types that the target has.", nullptr, checkMemoryTypes},
    RuleRow{"A value has a type that the target has.", nullptr, checkTypes},
    RuleRow{"The steps to an address are in the block of the access.", checkAddress},
    RuleRow{"A loop is left from its header or at the end of its round, to one block.", nullptr, checkExits},
    RuleRow{"Each loop has a merge block, a continue target and a header without effects.", nullptr, checkLoops},
    RuleRow{"Each branch has a merge block of its own (SPIR-V 1.6, 2.11).", nullptr, checkSelections},
    RuleRow{"No phi is a vector.", checkPhi},
    RuleRow{"The interface has only used variables, with bindings without gaps.", nullptr, checkBindings},
};
// clang-format on

static_assert(rules.size() == static_cast<std::size_t>(Form::bindings) + 1);

std::string_view sentence(Form form) {
    return rules[static_cast<std::size_t>(form)].sentence;
}

static std::string checkInstructions(const Module& module, ArrayRef<RuleRow> all) {
    SmallVector<RuleRow, 16> asked;
    copy_if(all, std::back_inserter(asked), [](const RuleRow& rule) { return rule.instruction; });
    if (asked.empty())
        return {};
    for (const Function& function : module)
        for (const Instruction& instruction : instructions(function))
            for (const RuleRow& rule : asked)
                if (std::string found = rule.instruction(instruction); !found.empty())
                    return found;
    return {};
}

static std::string checkRules(const Module& module, const ShaderModule* shader,
                              ArrayRef<RuleRow> asked) {
    std::string found = checkInstructions(module, asked);
    if (!found.empty() || none_of(asked, [](const RuleRow& rule) { return rule.whole; }))
        return found;
    const Subject subject(*shader);
    for (const RuleRow& rule : asked)
        if (rule.whole)
            if (found = rule.whole(subject); !found.empty())
                return found;
    return {};
}

std::string checkForm(const Module& module, const ShaderModule* shader, Form form) {
    std::string text;
    raw_string_ostream stream(text);
    if (verifyModule(module, &stream))
        return text;
    return checkRules(module, shader,
                      ArrayRef(rules).take_front(static_cast<std::size_t>(form) + 1));
}

std::string checkRule(const Module& module, const ShaderModule* shader, Form form) {
    return form == Form::any ? ""
                             : checkRules(module, shader, rules[static_cast<std::size_t>(form)]);
}

std::size_t fingerprint(const Module& module) {
    std::size_t sum = 0;
    auto add = [&sum](const void* address) {
        sum = (sum ^ reinterpret_cast<std::size_t>(address)) * 0x9e3779b97f4a7c15u;
    };
    for (const Function& function : module)
        for (const Instruction& instruction : instructions(function)) {
            add(&instruction);
            for (const Use& operand : instruction.operands())
                add(operand.get());
        }
    return sum;
}

std::string checkForm(const ShaderModule& shader) {
    return checkForm(*shader.module, &shader, Form::bindings);
}

} // namespace tarnwick::msl
