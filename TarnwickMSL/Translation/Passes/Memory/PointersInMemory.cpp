#include "TarnwickMSL/Translation/Passes/Memory/PointersInMemory.h"

#include "TarnwickMSL/Translation/Passes/Calls/MemoryTypes.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>

namespace tarnwick::msl {

using namespace llvm;

const char* const unresolvedPointer =
    "A pointer in an array or a record is not supported where the compiler cannot tell which "
    "variable it points to.";
static constexpr const char* noAddresses =
    "A pointer kept in a buffer is not available to this program, because nothing would bound its "
    "accesses.";

const Value* baseOf(const Value* pointer) {
    while (auto* step = dyn_cast<GEPOperator>(pointer))
        pointer = step->getPointerOperand();
    return pointer;
}

namespace {

// Whether a base of the pointer, through all choices, is one of the wanted.
template <class Wanted>
bool hasBase(const Value* pointer, SmallPtrSetImpl<const Value*>& seen, Wanted isWanted) {
    pointer = baseOf(pointer);
    if (!seen.insert(pointer).second)
        return false;
    if (auto* choice = dyn_cast<User>(pointer); choice && isa<PHINode, SelectInst>(choice))
        return any_of(choice->operands(), [&](const Use& operand) {
            return operand->getType()->isPointerTy() && hasBase(operand, seen, isWanted);
        });
    return isWanted(pointer);
}

// Whether the memory at the pointer is a buffer, or may be: a pointer from memory points to one.
bool isInBuffer(const Value* pointer) {
    SmallPtrSet<const Value*, 8> seen;
    return hasBase(pointer, seen, [](const Value* base) {
        if (auto* global = dyn_cast<GlobalVariable>(base))
            return global->isDeclaration() && !global->getName().starts_with("msl.threadgroup.");
        return isa<LoadInst, IntToPtrInst>(base);
    });
}

// Whether the number serves only for a distance or a comparison of pointers into one variable.
bool isDistance(const PtrToIntInst& number) {
    return all_of(number.users(), [](const User* user) {
        if (isa<TruncInst>(user))
            return true;
        bool isDifference =
            isa<ICmpInst>(user) || cast<Instruction>(user)->getOpcode() == Instruction::Sub;
        return isDifference && isa<PtrToIntOperator>(user->getOperand(0)) &&
               isa<PtrToIntOperator>(user->getOperand(1));
    });
}

class Numbering {
  public:
    Numbering(Function& main, bool mayUseAddresses)
        : main_(main), mayUseAddresses_(mayUseAddresses),
          number_(Type::getInt64Ty(main.getContext())) {}

    PointersInMemory run();

  private:
    void noteConversion(Instruction& conversion);
    void useAddresses();
    void replace(LoadInst& load);
    void replace(StoreInst& store);
    void retypeMemory();
    bool storesAddress() const;

    Function& main_;
    bool mayUseAddresses_;
    Type* number_;
    PointersInMemory found_;
    SmallVector<PtrToIntInst*, 8> ownNumbers_;
};

void Numbering::useAddresses() {
    if (!mayUseAddresses_)
        throw TranslationError(noAddresses);
    found_.usesAddresses = true;
}

void Numbering::noteConversion(Instruction& conversion) {
    if (isa<IntToPtrInst>(conversion))
        useAddresses();
    auto* number = dyn_cast<PtrToIntInst>(&conversion);
    if (number && mayUseAddresses_ && isInBuffer(number->getPointerOperand()) &&
        !isDistance(*number))
        useAddresses();
}

void Numbering::replace(LoadInst& load) {
    bool isOwn = !isInBuffer(load.getPointerOperand());
    if (!isOwn)
        useAddresses();
    auto* number = new LoadInst(number_, load.getPointerOperand(), "", load.isVolatile(),
                                load.getAlign(), load.getIterator());
    auto* pointer = new IntToPtrInst(number, load.getType(), "", load.getIterator());
    number->setDebugLoc(load.getDebugLoc());
    pointer->setDebugLoc(load.getDebugLoc());
    if (isOwn)
        found_.own.insert(pointer);
    load.replaceAllUsesWith(pointer);
    load.eraseFromParent();
}

void Numbering::replace(StoreInst& store) {
    bool isOwn = !isInBuffer(store.getPointerOperand());
    if (!isOwn)
        useAddresses();
    auto* number = new PtrToIntInst(store.getValueOperand(), number_, "", store.getIterator());
    auto* stored = new StoreInst(number, store.getPointerOperand(), store.isVolatile(),
                                 store.getAlign(), store.getIterator());
    number->setDebugLoc(store.getDebugLoc());
    stored->setDebugLoc(store.getDebugLoc());
    if (isOwn) {
        found_.own.insert(number);
        ownNumbers_.push_back(number);
    }
    store.eraseFromParent();
}

// The offsets of the members stay, so that steps through the old types still lead to them.
void Numbering::retypeMemory() {
    for (Instruction& instruction : make_early_inc_range(instructions(main_))) {
        auto* local = dyn_cast<AllocaInst>(&instruction);
        Type* type = local ? withoutPointers(local->getAllocatedType()) : nullptr;
        if (local && type != local->getAllocatedType())
            local->setAllocatedType(type);
    }
    Module& module = *main_.getParent();
    for (GlobalVariable& global : make_early_inc_range(module.globals())) {
        Type* type = withoutPointers(global.getValueType());
        if (type == global.getValueType())
            continue;
        if (global.hasInitializer() && !isa<UndefValue>(global.getInitializer()))
            continue; // a table of pointers, of which no load is left
        auto* made = new GlobalVariable(module, type, global.isConstant(), global.getLinkage(),
                                        global.hasInitializer() ? UndefValue::get(type) : nullptr,
                                        "", &global, GlobalValue::NotThreadLocal, 0u);
        made->setAlignment(global.getAlign());
        made->takeName(&global);
        global.replaceAllUsesWith(made);
        global.eraseFromParent();
    }
}

// A record that is copied as an integer may be a pointer.
bool copiesNumbers(const Instruction& instruction) {
    auto* store = dyn_cast<StoreInst>(&instruction);
    return store && store->getValueOperand()->getType()->isIntegerTy(64);
}

bool readsTable(const LoadInst& load) {
    auto* global = dyn_cast<GlobalVariable>(baseOf(load.getPointerOperand()));
    return global && global->hasInitializer() && !isa<UndefValue>(global->getInitializer());
}

// Whether a pointer that is stored in own memory may be an address. Null is one where there are
// others.
bool Numbering::storesAddress() const {
    SmallPtrSet<const Value*, 8> seen;
    return any_of(found_.stored, [&](const Value* stored) {
        return hasBase(stored, seen, [&](const Value* base) {
            auto* conversion = dyn_cast<IntToPtrInst>(base);
            return isa<ConstantPointerNull>(base) ||
                   (conversion && !found_.own.contains(conversion));
        });
    });
}

PointersInMemory Numbering::run() {
    SmallVector<Instruction*, 8> accesses;
    bool copies = false;
    for (Instruction& instruction : instructions(main_)) {
        auto* store = dyn_cast<StoreInst>(&instruction);
        bool isLoad = isa<LoadInst>(instruction) && instruction.getType()->isPointerTy();
        if (isLoad || (store && store->getValueOperand()->getType()->isPointerTy()))
            accesses.push_back(&instruction);
        copies = copies || copiesNumbers(instruction);
        at(instruction, [&] { noteConversion(instruction); });
    }
    for (Instruction* access : accesses)
        at(*access, [&] {
            if (auto* load = dyn_cast<LoadInst>(access); load && readsTable(*load))
                throw TranslationError(unresolvedPointer);
            else if (load)
                replace(*load);
            else
                replace(*cast<StoreInst>(access));
        });
    retypeMemory();
    for (PtrToIntInst* number : ownNumbers_)
        found_.stored.push_back(number->getPointerOperand());
    found_.ownAreAddresses = found_.usesAddresses && (copies || storesAddress());
    return std::move(found_);
}

// Whether the constant is made of a conversion between a pointer and a number.
bool hasConversion(const Value* value) {
    auto* constant = dyn_cast<ConstantExpr>(value);
    if (!constant)
        return false;
    return constant->getOpcode() == Instruction::PtrToInt ||
           constant->getOpcode() == Instruction::IntToPtr ||
           any_of(constant->operands(), [](const Use& each) { return hasConversion(each); });
}

Instruction* separated(ConstantExpr& constant, Instruction& before) {
    Instruction* made = constant.getAsInstruction();
    made->insertBefore(before.getIterator());
    for (Use& operand : made->operands())
        if (hasConversion(operand))
            operand.set(separated(*cast<ConstantExpr>(operand), *made));
    return made;
}

// Conversions of constants as instructions of their own.
void separateNumbers(Function& main) {
    for (Instruction& instruction : make_early_inc_range(instructions(main)))
        for (Use& operand : instruction.operands()) {
            if (!hasConversion(operand))
                continue;
            auto* phi = dyn_cast<PHINode>(&instruction);
            Instruction* before =
                phi ? phi->getIncomingBlock(operand)->getTerminator() : &instruction;
            Instruction* number = separated(*cast<ConstantExpr>(operand), *before);
            if (phi)
                phi->setIncomingValueForBlock(phi->getIncomingBlock(operand), number);
            else
                operand.set(number);
        }
}

} // namespace

PointersInMemory numberPointersInMemory(Function& main, bool mayUseAddresses) {
    separateNumbers(main);
    return Numbering(main, mayUseAddresses).run();
}

} // namespace tarnwick::msl
