// Pointers become numbers where SPIR-V's logical addressing has no form for them.
//
// In: `main` with everything inlined and no copies of memory. A pointer is a root (a local or a
// global), a step into memory (getelementptr), or a choice of pointers (phi, select). The optimiser
// makes choices freely: it joins the stores of two branches into one store to a selected address.
// SPIR-V cannot select or compare pointers of logical addressing, and the writer must know the
// variable of every access.
//
// Out: every access is to a root with steps into it. Choices of pointers have no uses left but each
// other; the step `tidy` deletes them.
//
// A choice becomes numbers (struct Chosen): `which`, the number of its root, and for each root that
// it can be, an offset into it. A phi of pointers becomes a phi of `which` and one phi for each
// root's offset; a select becomes selects. For a root that an operand cannot be, the phi takes an
// undefined offset and the select the other operand's: `which` does not name that root then.
//
// Invariant: where `which` is the number of a root, offset[root] units from the root is the address
// that the pointer had. Other offsets may have any value, so an access to a root that is not meant
// must be harmless:
// - A load reads all candidates and selects the value by `which`. Reads out of range are safe
//   (docs/compiler.md, "Memory out of range"), and no branch is needed.
// - A store, and an atomic change, happens in a branch of its own for each candidate, since other
//   invocations may see the memory.
// - null and undefined pointers are the number `nowhere`, which no access compares with.
//
// Offsets count in units: the greatest common divisor of all distances that the pointers concerned
// can move. A walk over an array of 12-byte records then counts records, and the writer finds an
// array's index again instead of a division. The unit depends on the set of pointers, so `workOn`
// forgets all Chosen when the set changes, while the roots keep their numbers.
//
// A comparison compares the offsets, and for equality `which`. Order between different variables is
// undefined (Metal Shading Language 3.1, which has C++'s rules), so the offsets alone decide it. A
// conversion to an integer gives (root number + 1) * 2^24 + bytes: distinct for distinct places,
// with byte differences within one variable. Conversions back are refused.
//
// Why not memory of 32-bit words with real addresses: buffers, locals and threadgroup memory have
// different storage classes in SPIR-V, and every access would go through a switch over all of them.
// Most choices have two candidates.
//
// `keepPointersNear` is a step of its own, `near-addresses`: it repeats the steps to an address
// before each access. The structuring of the control flow inserts phis for values that cross
// blocks; an address that is made in the block of its access crosses none.
#include "TarnwickMSL/Translation/Passes/Memory/Pointers.h"

#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/ADT/SetVector.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/GetElementPtrTypeIterator.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>
#include <llvm/Transforms/Utils/Local.h>

#include <numeric>

namespace tarnwick::msl {

using namespace llvm;

// What a phi or select of pointers has become: the number of its root, and for each root that it
// may be how far into it, in units.
struct Chosen {
    Value* which = nullptr;
    MapVector<Value*, Value*> offsets;
};

// The number of the root of null, which has no memory.
static constexpr std::uint32_t nowhere = UINT32_MAX;
// A root's bytes, for pointers that become numbers; more than any variable of a thread has.
static constexpr unsigned rootBits = 24;

class Resolver {
  public:
    explicit Resolver(Function& main)
        : main_(main), layout_(main.getParent()->getDataLayout()),
          word_(Type::getInt32Ty(main.getContext())) {}

    bool run();

  private:
    using Roots = SmallSetVector<Value*, 4>;

    void collectRoots(Value* pointer, Roots& roots, SmallPtrSetImpl<Value*>& seen);
    void collectUnit(Value* pointer, SmallPtrSetImpl<Value*>& seen);
    Chosen chosen(Value* pointer);
    Chosen alongGep(GEPOperator& step);
    Chosen atRoot(Value* root, Value* offset);
    Chosen merged(PHINode& phi);
    Chosen merged(SelectInst& select);
    Value* constant(std::uint64_t value) { return ConstantInt::get(word_, value); }
    Value* rebuilt(Value* pointer, Value* base, Value* root, IRBuilder<>& builder);
    Value* inUnits(Value* index, std::uint64_t scale, IRBuilder<>& builder);
    void workOn(ArrayRef<Value*> pointers);
    Value* meant(const Chosen& at, IRBuilder<>& builder);
    void compare(ICmpInst& compare);
    void number(PtrToIntInst& conversion);
    void access(Instruction& user);
    void resolve(Instruction& user);
    void load(LoadInst& load, Value* base, const Chosen& from);
    void store(StoreInst& store, Value* base, const Chosen& to);
    void change(Instruction& call, Value* base, const Chosen& at);

    Function& main_;
    const DataLayout& layout_;
    Type* word_;
    DenseMap<Value*, Chosen> known_;
    MapVector<Value*, std::uint64_t> numbers_; // of the roots
    SmallVector<Value*, 2> last_;              // the pointers that known_ and unit_ are for
    std::uint64_t unit_ = 0;                   // bytes
};

// Past the steps on top of it.
static Value* baseOf(Value* pointer) {
    while (auto* step = dyn_cast<GEPOperator>(pointer))
        pointer = step->getPointerOperand();
    return pointer;
}

static bool isChoice(const Value* pointer) {
    return isa<PHINode, SelectInst>(pointer);
}

void Resolver::collectRoots(Value* pointer, Roots& roots, SmallPtrSetImpl<Value*>& seen) {
    Value* base = baseOf(pointer);
    if (!seen.insert(base).second || isa<UndefValue, ConstantPointerNull>(base))
        return;
    if (auto* phi = dyn_cast<PHINode>(base)) {
        for (Value* incoming : phi->incoming_values())
            collectRoots(incoming, roots, seen);
    } else if (auto* select = dyn_cast<SelectInst>(base)) {
        collectRoots(select->getTrueValue(), roots, seen);
        collectRoots(select->getFalseValue(), roots, seen);
    } else if (isa<AllocaInst, GlobalVariable>(base)) {
        roots.insert(base);
    } else {
        throw CompilerFault(
            "A pointer comes neither from a variable nor from a choice of pointers.");
    }
}

// All distances must be whole units, so that the index of an array remains an index.
void Resolver::collectUnit(Value* pointer, SmallPtrSetImpl<Value*>& seen) {
    if (!seen.insert(pointer).second)
        return;
    if (auto* step = dyn_cast<GEPOperator>(pointer)) {
        MapVector<Value*, APInt> scales;
        APInt offset(32, 0);
        if (!step->collectOffset(layout_, 32, scales, offset))
            throw CompilerFault("A pointer's step has no constant scale.");
        unit_ = std::gcd(unit_, offset.abs().getZExtValue());
        for (auto& [index, scale] : scales)
            unit_ = std::gcd(unit_, scale.abs().getZExtValue());
        return collectUnit(step->getPointerOperand(), seen);
    }
    if (auto* phi = dyn_cast<PHINode>(pointer))
        for (Value* incoming : phi->incoming_values())
            collectUnit(incoming, seen);
    if (auto* select = dyn_cast<SelectInst>(pointer)) {
        collectUnit(select->getTrueValue(), seen);
        collectUnit(select->getFalseValue(), seen);
    }
}

Chosen Resolver::atRoot(Value* root, Value* offset) {
    auto [entry, isNew] = numbers_.insert({root, numbers_.size()});
    Chosen result{.which = constant(entry->second), .offsets = {}};
    result.offsets[root] = offset;
    return result;
}

Value* Resolver::inUnits(Value* index, std::uint64_t scale, IRBuilder<>& builder) {
    Value* wide = builder.CreateSExtOrTrunc(index, word_);
    return builder.CreateMul(wide, constant(scale / unit_));
}

Chosen Resolver::alongGep(GEPOperator& step) {
    Chosen from = chosen(step.getPointerOperand());
    MapVector<Value*, APInt> scales;
    APInt offset(32, 0);
    step.collectOffset(layout_, 32, scales, offset);
    auto* instruction = dyn_cast<Instruction>(&step);
    IRBuilder<> builder(instruction ? instruction : main_.getEntryBlock().getTerminator());
    auto unit = static_cast<std::int64_t>(unit_);
    Value* moved = constant(static_cast<std::uint64_t>(offset.getSExtValue() / unit));
    for (auto& [index, scale] : scales)
        moved = builder.CreateAdd(
            moved, inUnits(index, static_cast<std::uint64_t>(scale.getSExtValue()), builder));
    for (auto& [root, before] : from.offsets)
        before = builder.CreateAdd(before, moved);
    return from;
}

// The value where all agree that are not undefined.
static Value* simplified(PHINode* phi) {
    Value* same = nullptr;
    for (Value* incoming : phi->incoming_values()) {
        if (isa<UndefValue>(incoming) || incoming == phi)
            continue;
        if (!isa<Constant>(incoming) || (same && same != incoming))
            return phi;
        same = incoming;
    }
    return same ? same : phi;
}

Chosen Resolver::merged(PHINode& phi) {
    Roots roots;
    SmallPtrSet<Value*, 8> seen;
    collectRoots(&phi, roots, seen);
    IRBuilder<> builder(&phi);
    Chosen result{.which = builder.CreatePHI(word_, phi.getNumIncomingValues()), .offsets = {}};
    for (Value* root : roots)
        result.offsets[root] = builder.CreatePHI(word_, phi.getNumIncomingValues());
    known_[&phi] = result;
    for (unsigned n = 0; n < phi.getNumIncomingValues(); ++n) {
        Chosen from = chosen(phi.getIncomingValue(n));
        cast<PHINode>(result.which)->addIncoming(from.which, phi.getIncomingBlock(n));
        for (auto& [root, offset] : result.offsets) {
            Value* there = from.offsets.lookup(root);
            cast<PHINode>(offset)->addIncoming(there ? there : UndefValue::get(word_),
                                               phi.getIncomingBlock(n));
        }
    }
    result.which = simplified(cast<PHINode>(result.which));
    for (auto& [root, offset] : result.offsets)
        offset = simplified(cast<PHINode>(offset));
    return result;
}

Chosen Resolver::merged(SelectInst& select) {
    Chosen yes = chosen(select.getTrueValue()), no = chosen(select.getFalseValue());
    IRBuilder<> builder(&select);
    Chosen result{.which = builder.CreateSelect(select.getCondition(), yes.which, no.which),
                  .offsets = {}};
    result.offsets = no.offsets;
    for (auto& [root, offset] : yes.offsets) {
        Value*& there = result.offsets[root];
        there = there ? builder.CreateSelect(select.getCondition(), offset, there) : offset;
    }
    return result;
}

Chosen Resolver::chosen(Value* pointer) {
    if (auto found = known_.find(pointer); found != known_.end())
        return found->second;
    Chosen result;
    if (auto* phi = dyn_cast<PHINode>(pointer))
        result = merged(*phi);
    else if (auto* select = dyn_cast<SelectInst>(pointer))
        result = merged(*select);
    else if (auto* step = dyn_cast<GEPOperator>(pointer))
        result = alongGep(*step);
    else if (isa<UndefValue, ConstantPointerNull>(pointer))
        result.which = constant(nowhere);
    else
        result = atRoot(pointer, constant(0));
    return known_[pointer] = result;
}

// The steps from `base` to `pointer` again, from one root.
Value* Resolver::rebuilt(Value* pointer, Value* base, Value* root, IRBuilder<>& builder) {
    if (pointer == base) {
        Value* offset = chosen(base).offsets[root];
        if (auto* number = dyn_cast<ConstantInt>(offset); number && number->isZero())
            return root;
        auto bits = static_cast<unsigned>(unit_) * 8;
        Type* unit = unit_ <= 4 && std::has_single_bit(unit_)
                         ? static_cast<Type*>(builder.getIntNTy(bits))
                         : ArrayType::get(builder.getInt8Ty(), unit_);
        return builder.CreateGEP(unit, root, offset);
    }
    auto* step = cast<GetElementPtrInst>(pointer);
    Value* inner = rebuilt(step->getPointerOperand(), base, root, builder);
    auto* copy = cast<GetElementPtrInst>(builder.Insert(step->clone()));
    copy->setOperand(0, inner);
    return copy;
}

void Resolver::load(LoadInst& load, Value* base, const Chosen& from) {
    IRBuilder<> builder(&load);
    Value* result = nullptr;
    for (auto& [root, offset] : from.offsets) {
        Value* pointer = rebuilt(load.getPointerOperand(), base, root, builder);
        Value* one = builder.CreateAlignedLoad(load.getType(), pointer, load.getAlign());
        Value* isIt = builder.CreateICmpEQ(from.which, constant(numbers_.lookup(root)));
        result = result ? builder.CreateSelect(isIt, one, result) : one;
    }
    load.replaceAllUsesWith(result ? result : UndefValue::get(load.getType()));
}

// Another invocation may see a buffer, so a store that is not meant must not happen there.
void Resolver::store(StoreInst& store, Value* base, const Chosen& to) {
    for (auto& [root, offset] : to.offsets) {
        IRBuilder<> builder(&store);
        if (to.offsets.size() > 1) {
            Value* isIt = builder.CreateICmpEQ(to.which, constant(numbers_.lookup(root)));
            builder.SetInsertPoint(SplitBlockAndInsertIfThen(isIt, &store, false));
        }
        Value* pointer = rebuilt(store.getPointerOperand(), base, root, builder);
        builder.CreateAlignedStore(store.getValueOperand(), pointer, store.getAlign());
    }
}

// An atomic change happens at the one root that is meant.
void Resolver::change(Instruction& call, Value* base, const Chosen& at) {
    Value* result = nullptr;
    for (auto& [root, offset] : at.offsets) {
        IRBuilder<> builder(&call);
        BasicBlock* before = call.getParent();
        if (at.offsets.size() > 1) {
            Value* isIt = builder.CreateICmpEQ(at.which, constant(numbers_.lookup(root)));
            builder.SetInsertPoint(SplitBlockAndInsertIfThen(isIt, &call, false));
        }
        Value* pointer = rebuilt(call.getOperand(0), base, root, builder);
        Instruction* one = builder.Insert(call.clone());
        one->setOperand(0, pointer);
        if (at.offsets.size() == 1 || call.getType()->isVoidTy()) {
            result = one;
            continue;
        }
        builder.SetInsertPoint(call.getParent(), call.getParent()->begin());
        PHINode* merged = builder.CreatePHI(call.getType(), 2);
        merged->addIncoming(result ? result : UndefValue::get(call.getType()), before);
        merged->addIncoming(one, one->getParent());
        result = merged;
    }
    if (!call.getType()->isVoidTy())
        call.replaceAllUsesWith(result ? result : UndefValue::get(call.getType()));
}

// Offsets are in units that all of these pointers share.
void Resolver::workOn(ArrayRef<Value*> pointers) {
    if (pointers == ArrayRef(last_))
        return;
    last_.assign(pointers.begin(), pointers.end());
    unit_ = 0;
    SmallPtrSet<Value*, 8> seen;
    for (Value* pointer : pointers)
        collectUnit(pointer, seen);
    unit_ = std::max<std::uint64_t>(1, unit_);
    known_.clear();
}

// The offset into the root that it is.
Value* Resolver::meant(const Chosen& at, IRBuilder<>& builder) {
    Value* result = nullptr;
    for (auto& [root, offset] : at.offsets) {
        Value* isIt = builder.CreateICmpEQ(at.which, constant(numbers_.lookup(root)));
        result = result ? builder.CreateSelect(isIt, offset, result) : offset;
    }
    return result ? result : constant(0);
}

// Order is defined within one variable only (Metal Shading Language 3.1, which has C++'s
// rules for it); equality asks for the variable as well.
void Resolver::compare(ICmpInst& compare) {
    workOn({compare.getOperand(0), compare.getOperand(1)});
    Chosen a = chosen(compare.getOperand(0)), b = chosen(compare.getOperand(1));
    IRBuilder<> builder(&compare);
    Value* result =
        builder.CreateICmp(compare.getSignedPredicate(), meant(a, builder), meant(b, builder));
    if (compare.getPredicate() == CmpInst::ICMP_EQ)
        result = builder.CreateAnd(result, builder.CreateICmpEQ(a.which, b.which));
    else if (compare.getPredicate() == CmpInst::ICMP_NE)
        result = builder.CreateOr(result, builder.CreateICmpNE(a.which, b.which));
    compare.replaceAllUsesWith(result);
}

// Each root has its own range of numbers, so that pointers differ and differences are in bytes.
void Resolver::number(PtrToIntInst& conversion) {
    workOn({conversion.getPointerOperand()});
    Chosen at = chosen(conversion.getPointerOperand());
    IRBuilder<> builder(&conversion);
    Value* first = builder.CreateShl(builder.CreateAdd(at.which, constant(1)), rootBits);
    Value* bytes = builder.CreateMul(meant(at, builder), constant(unit_));
    conversion.replaceAllUsesWith(
        builder.CreateZExtOrTrunc(builder.CreateAdd(first, bytes), conversion.getType()));
}

static bool comparesPointers(const Instruction& instruction) {
    return isa<ICmpInst>(instruction) && instruction.getOperand(0)->getType()->isPointerTy();
}

void Resolver::resolve(Instruction& user) {
    if (auto* comparison = dyn_cast<ICmpInst>(&user))
        compare(*comparison);
    else if (auto* conversion = dyn_cast<PtrToIntInst>(&user))
        number(*conversion);
    else
        access(user);
    user.eraseFromParent();
}

void Resolver::access(Instruction& user) {
    Value* pointer = getLoadStorePointerOperand(&user);
    if (auto* call = dyn_cast<CallBase>(&user))
        pointer = call->getArgOperand(0);
    Value* base = baseOf(pointer);
    Roots roots;
    SmallPtrSet<Value*, 8> seen;
    collectRoots(base, roots, seen);
    workOn({base});
    Chosen to = chosen(base);
    if (auto* reading = dyn_cast<LoadInst>(&user)) {
        load(*reading, base, to);
    } else if (auto* writing = dyn_cast<StoreInst>(&user)) {
        store(*writing, base, to);
    } else {
        change(user, base, to);
    }
}

// Global variables' numbers as instructions of their own.
static void separateNumbers(Function& main) {
    for (Instruction& instruction : make_early_inc_range(instructions(main)))
        for (Use& operand : instruction.operands()) {
            auto* constant = dyn_cast<ConstantExpr>(operand);
            if (!constant || constant->getOpcode() != Instruction::PtrToInt)
                continue;
            auto* phi = dyn_cast<PHINode>(&instruction);
            Instruction* before =
                phi ? phi->getIncomingBlock(operand)->getTerminator() : &instruction;
            Instruction* number = constant->getAsInstruction();
            number->insertBefore(before->getIterator());
            if (phi)
                phi->setIncomingValueForBlock(phi->getIncomingBlock(operand), number);
            else
                operand.set(number);
        }
}

bool Resolver::run() {
    separateNumbers(main_);
    SmallVector<Instruction*, 8> users;
    for (Instruction& instruction : instructions(main_)) {
        Value* pointer = getLoadStorePointerOperand(&instruction);
        if (auto* call = dyn_cast<CallBase>(&instruction))
            if (call->arg_size() > 0 && call->getArgOperand(0)->getType()->isPointerTy())
                pointer = call->getArgOperand(0);
        bool isAccess = pointer && isChoice(baseOf(pointer));
        if (isAccess || comparesPointers(instruction) || isa<PtrToIntInst>(instruction))
            users.push_back(&instruction);
    }
    for (Instruction* user : users)
        at(*user, [&] { resolve(*user); });
    return !users.empty();
}

// The index of the address operand of an instruction; -1 if it does not access memory.
static int pointerOperand(const Instruction& instruction) {
    if (isa<LoadInst>(instruction))
        return LoadInst::getPointerOperandIndex();
    if (isa<StoreInst>(instruction))
        return StoreInst::getPointerOperandIndex();
    if (isa<AtomicRMWInst, AtomicCmpXchgInst>(instruction))
        return 0;
    auto* call = dyn_cast<CallBase>(&instruction);
    return call && call->arg_size() > 0 && call->getArgOperand(0)->getType()->isPointerTy() ? 0
                                                                                            : -1;
}

static Value* copiedSteps(Value* pointer, Instruction& before) {
    auto* step = dyn_cast<GetElementPtrInst>(pointer);
    if (!step)
        return pointer;
    Value* inner = copiedSteps(step->getPointerOperand(), before);
    Instruction* copy = step->clone();
    copy->setOperand(0, inner);
    copy->insertBefore(before.getIterator());
    return copy;
}

void keepPointersNear(Function& main) {
    SmallVector<WeakTrackingVH, 16> old;
    for (Instruction& instruction : make_early_inc_range(instructions(main))) {
        int operand = pointerOperand(instruction);
        if (operand < 0)
            continue;
        auto index = static_cast<unsigned>(operand);
        auto* step = dyn_cast<GetElementPtrInst>(instruction.getOperand(index));
        if (!step || (step->getParent() == instruction.getParent() &&
                      !isa<GetElementPtrInst>(step->getPointerOperand())))
            continue;
        instruction.setOperand(index, copiedSteps(step, instruction));
        old.push_back(step);
    }
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
}

// A pointer that the optimiser leaves in memory cannot be resolved.
static void refusePointersInMemory(Function& main) {
    for (const Instruction& instruction : instructions(main)) {
        bool isLoad = isa<LoadInst>(instruction) && instruction.getType()->isPointerTy();
        auto* store = dyn_cast<StoreInst>(&instruction);
        if (isLoad || (store && store->getValueOperand()->getType()->isPointerTy()))
            throw TranslationError("A pointer in an array or a record is not supported where the "
                                   "compiler cannot tell which variable it points to.",
                                   programPlace(instruction));
        if (isa<IntToPtrInst>(instruction))
            throw TranslationError("Converting an integer to a pointer is not supported.",
                                   programPlace(instruction));
    }
}

bool resolvePointers(Function& main) {
    refusePointersInMemory(main);
    return Resolver(main).run();
}

} // namespace tarnwick::msl
