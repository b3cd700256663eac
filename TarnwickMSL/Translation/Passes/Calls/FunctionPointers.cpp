// All functions of a program are known, so a pointer can point only to a function whose address is
// taken. A number has 64 bits in memory, as pointers do: a table of numbers has the layout of the
// table of pointers.
#include "TarnwickMSL/Translation/Passes/Calls/FunctionPointers.h"

#include "TarnwickMSL/Translation/Passes/Calls/GlobalConstructors.h"
#include "TarnwickMSL/Translation/Passes/Calls/MemoryTypes.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

namespace {

// The functions by the number that stands for their address.
using Numbers = MapVector<Function*, std::uint32_t>;

// The number of a function whose address the value is.
Constant* numberOf(Value* value) {
    auto* address = dyn_cast<ConstantExpr>(value);
    return address && address->getOpcode() == Instruction::IntToPtr ? address->getOperand(0)
                                                                    : nullptr;
}

// A table with numbers in place of the addresses of functions; the same without any.
Constant* withNumbers(Constant* from) {
    if (Constant* number = numberOf(from))
        return number;
    if (from->isNullValue() || isa<UndefValue>(from))
        return from->isNullValue() ? Constant::getNullValue(withoutPointers(from->getType()))
                                   : UndefValue::get(withoutPointers(from->getType()));
    if (!isa<ConstantArray, ConstantStruct>(from))
        return from;
    SmallVector<Constant*, 16> parts;
    for (Use& part : from->operands())
        parts.push_back(withNumbers(cast<Constant>(part)));
    if (auto* array = dyn_cast<ArrayType>(withoutPointers(from->getType())))
        return ConstantArray::get(array, parts);
    return ConstantStruct::get(cast<StructType>(withoutPointers(from->getType())), parts);
}

bool holdsNumber(Constant* table) {
    return numberOf(table) ||
           (isa<ConstantArray, ConstantStruct>(table) &&
            any_of(table->operands(), [](Use& part) { return holdsNumber(cast<Constant>(part)); }));
}

} // namespace

static bool isAddress(const Use& use) {
    auto* call = dyn_cast<CallBase>(use.getUser());
    return !call || !call->isCallee(&use);
}

static Numbers takenFunctions(Module& program) {
    Numbers numbers;
    for (Function& function : program)
        if (!function.isIntrinsic() && !function.getName().starts_with("msl.") &&
            (function.hasFnAttribute("visible") || any_of(function.uses(), isAddress)))
            numbers[&function] = static_cast<std::uint32_t>(numbers.size() + 1);
    return numbers;
}

static void replaceAddresses(Module& program, const Numbers& numbers) {
    LLVMContext& context = program.getContext();
    for (const auto& [function, number] : numbers)
        function->replaceUsesWithIf(
            ConstantExpr::getIntToPtr(ConstantInt::get(Type::getInt64Ty(context), number),
                                      function->getType()),
            [](Use& use) { return isAddress(use); });
}

static void replaceTables(Module& program) {
    for (GlobalVariable& variable : make_early_inc_range(program.globals())) {
        if (!variable.hasInitializer() || !holdsNumber(variable.getInitializer()))
            continue;
        Constant* value = withNumbers(variable.getInitializer());
        auto* made = new GlobalVariable(program, value->getType(), variable.isConstant(),
                                        variable.getLinkage(), value, "", &variable,
                                        GlobalValue::NotThreadLocal, 0u);
        made->copyAttributesFrom(&variable);
        made->takeName(&variable);
        variable.replaceAllUsesWith(made);
        variable.eraseFromParent();
    }
}

static void storeNumbers(Function& function) {
    for (Instruction& instruction : instructions(function))
        if (auto* store = dyn_cast<StoreInst>(&instruction))
            if (Constant* number = numberOf(store->getValueOperand()))
                store->setOperand(0, number);
}

namespace {

// The functions that branch on a number, one for each type that is called.
class Branches {
  public:
    Branches(Module& program, const Numbers& numbers) : program_(program), numbers_(numbers) {}

    void replace(CallBase& call);

  private:
    Function* branch(CallBase& call);
    void fill(Function& branch, const CallBase& call);

    Module& program_;
    const Numbers& numbers_;
    DenseMap<FunctionType*, Function*> known_;
};

// Those of the arguments and the result.
AttributeList argumentAttributes(const CallBase& call) {
    return call.getAttributes().removeFnAttributes(call.getContext());
}

void Branches::fill(Function& branch, const CallBase& call) {
    LLVMContext& context = program_.getContext();
    IRBuilder<> builder(BasicBlock::Create(context, "entry", &branch));
    BasicBlock* none = BasicBlock::Create(context, "none", &branch);
    SwitchInst* choice = builder.CreateSwitch(std::prev(branch.arg_end()), none);
    auto end = [&](Value* result) {
        branch.getReturnType()->isVoidTy() ? builder.CreateRetVoid() : builder.CreateRet(result);
    };
    builder.SetInsertPoint(none);
    end(branch.getReturnType()->isVoidTy() ? nullptr
                                           : Constant::getNullValue(branch.getReturnType()));
    SmallVector<Value*, 8> arguments;
    for (llvm::Argument& argument : drop_end(branch.args()))
        arguments.push_back(&argument);
    for (const auto& [function, number] : numbers_) {
        if (function->getFunctionType() != call.getFunctionType())
            continue;
        BasicBlock* block = BasicBlock::Create(context, function->getName(), &branch);
        choice->addCase(builder.getInt32(number), block);
        builder.SetInsertPoint(block);
        CallInst* made = builder.CreateCall(function, arguments);
        made->setCallingConv(function->getCallingConv());
        made->setAttributes(argumentAttributes(call));
        end(made);
    }
}

Function* Branches::branch(CallBase& call) {
    Function*& known = known_[call.getFunctionType()];
    if (known)
        return known;
    SmallVector<Type*, 8> types(call.getFunctionType()->params());
    types.push_back(Type::getInt32Ty(program_.getContext()));
    known = Function::Create(FunctionType::get(call.getType(), types, false),
                             GlobalValue::InternalLinkage, callByNumber, program_);
    known->setAttributes(argumentAttributes(call));
    known->setCallingConv(call.getCallingConv());
    known->setDoesNotThrow();
    fill(*known, call);
    return known;
}

void Branches::replace(CallBase& call) {
    IRBuilder<> builder(&call);
    SmallVector<Value*, 8> arguments(call.args());
    auto* read = dyn_cast<LoadInst>(call.getCalledOperand());
    if (read) // the memory has the number; it may change before the call
        arguments.push_back(IRBuilder<>(read).CreateAlignedLoad(
            builder.getInt64Ty(), read->getPointerOperand(), read->getAlign()));
    else
        arguments.push_back(builder.CreatePtrToInt(call.getCalledOperand(), builder.getInt64Ty()));
    arguments.back() = builder.CreateTrunc(arguments.back(), builder.getInt32Ty());
    CallInst* made = builder.CreateCall(branch(call), arguments);
    made->setCallingConv(call.getCallingConv());
    made->setAttributes(argumentAttributes(call));
    made->setDebugLoc(call.getDebugLoc());
    call.replaceAllUsesWith(made);
    call.eraseFromParent();
    if (read && read->use_empty())
        read->eraseFromParent();
}

} // namespace

static std::vector<CallBase*> callsThroughPointers(Module& program) {
    std::vector<CallBase*> calls;
    for (Function& function : program)
        for (Instruction& instruction : instructions(function))
            if (auto* call = dyn_cast<CallBase>(&instruction);
                call && !call->getCalledFunction() && !call->isInlineAsm())
                calls.push_back(call);
    return calls;
}

void numberFunctions(Module& program) {
    const std::vector<Function*> initialisers = constructors(program);
    setConstructors(program, {}); // their addresses are not the program's
    const Numbers numbers = takenFunctions(program);
    const std::vector<CallBase*> calls = callsThroughPointers(program);
    if (!numbers.empty()) {
        replaceAddresses(program, numbers);
        replaceTables(program);
        for (Function& function : program)
            storeNumbers(function);
    }
    Branches branches(program, numbers);
    for (CallBase* call : calls)
        branches.replace(*call);
    setConstructors(program, initialisers);
}

// A value that holds numbers as pointers: a constant, or a choice of such values.
static bool isChoice(Value* value, SmallPtrSetImpl<Value*>& seen) {
    if (!seen.insert(value).second || numberOf(value) ||
        isa<ConstantPointerNull, UndefValue>(value))
        return true;
    if (auto* select = dyn_cast<SelectInst>(value))
        return isChoice(select->getTrueValue(), seen) && isChoice(select->getFalseValue(), seen);
    auto* phi = dyn_cast<PHINode>(value);
    return phi && all_of(phi->incoming_values(), [&](Use& use) { return isChoice(use, seen); });
}

// The same choice of numbers.
static Value* numberFor(Value* value, DenseMap<Value*, Value*>& known) {
    Type* word = Type::getInt64Ty(value->getContext());
    if (Constant* number = numberOf(value))
        return number;
    if (isa<Constant>(value))
        return Constant::getNullValue(word);
    if (Value* made = known.lookup(value))
        return made;
    if (auto* select = dyn_cast<SelectInst>(value)) {
        Value* yes = numberFor(select->getTrueValue(), known);
        Value* no = numberFor(select->getFalseValue(), known);
        return known[value] = IRBuilder<>(select).CreateSelect(select->getCondition(), yes, no);
    }
    auto* phi = cast<PHINode>(value);
    PHINode* made = IRBuilder<>(phi).CreatePHI(word, phi->getNumIncomingValues());
    known[value] = made;
    for (unsigned n = 0; n < phi->getNumIncomingValues(); ++n)
        made->addIncoming(numberFor(phi->getIncomingValue(n), known), phi->getIncomingBlock(n));
    return made;
}

static bool holdsPointer(Type* type) {
    return type->isPointerTy() ||
           (type->isArrayTy() && holdsPointer(type->getArrayElementType())) ||
           (type->isStructTy() && any_of(cast<StructType>(type)->elements(), holdsPointer));
}

static bool accessesPointers(const Value& memory) {
    return any_of(memory.users(), [](const User* user) {
        if (isa<GetElementPtrInst>(user))
            return accessesPointers(*user);
        auto* store = dyn_cast<StoreInst>(user);
        return store ? store->getValueOperand()->getType()->isPointerTy()
                     : user->getType()->isPointerTy();
    });
}

bool chooseNumbers(Function& main) {
    bool isChanged = false;
    DenseMap<Value*, Value*> known;
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        SmallPtrSet<Value*, 8> seen;
        auto* local = dyn_cast<AllocaInst>(&instruction);
        if (local && holdsPointer(local->getAllocatedType()) && !accessesPointers(*local)) {
            local->setAllocatedType(withoutPointers(local->getAllocatedType()));
            isChanged = true;
        }
        auto* number = dyn_cast<PtrToIntInst>(&instruction);
        if (!number || !number->getType()->isIntegerTy(64) ||
            !isChoice(number->getOperand(0), seen))
            continue;
        number->replaceAllUsesWith(numberFor(number->getOperand(0), known));
        number->eraseFromParent();
        isChanged = true;
    }
    return isChanged;
}

} // namespace tarnwick::msl
