// Pointers become numbers where SPIR-V's logical addressing has no form for them.
//
// In: `main` with everything inlined and no copies of memory. A pointer is a root (a local or a
// global), a step into memory (getelementptr), a choice of pointers (phi, select) or read from
// memory. The optimiser makes choices freely: it joins the stores of two branches into one store to
// a selected address. SPIR-V cannot select or compare pointers of logical addressing, and the
// writer must know the variable of every access.
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
// A variable of which a choice may be several members, not elements of one array, is an array of
// numbers first (MixedMembers.h): the writer finds an array by the size of a step, and an index
// into one member is clamped to its end.
//
// A comparison compares the offsets, and for equality `which`. Order between different variables is
// undefined (Metal Shading Language 3.1, which has C++'s rules), so the offsets alone decide it. A
// conversion to an integer gives (root number + 1) * 2^24 + bytes: distinct for distinct places,
// with byte differences within one variable.
//
// Pointers in memory are integers of 64 bits (PointersInMemory.h), in one of two forms:
// - Own memory: if the program keeps pointers in locals or threadgroup memory only, the integer has
//   the number of the root above 32 bits and the offset, in units that all stored pointers share,
//   below. A pointer that is read may have any root that is stored; its accesses keep the bounds of
//   that root.
// - Addresses: if pointers are in buffers, or integers become pointers, the integer is the address
//   of the device (Vulkan 1.3, vkGetBufferDeviceAddress). `everywhere` is then one more root: the
//   memory of the whole device, with offsets of 64 bits in bytes. A choice that may be an address
//   is one, so that it needs no `which`; the host gives the addresses of the buffers that the
//   program binds (msl.addresses). Null is address 0: a load by it gives zero, a store and an
//   atomic change do nothing. No other bound is known.
//
// Why not real addresses for all: buffers, locals and threadgroup memory have different storage
// classes in SPIR-V, and every access would go through a switch over all of them. Most choices have
// two candidates, and accesses of a bound buffer are safe at every offset.
#include "TarnwickMSL/Translation/Passes/Memory/Pointers.h"

#include "TarnwickMSL/Translation/Passes/Memory/MixedMembers.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointerNumbers.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointerRoots.h"
#include "TarnwickMSL/Translation/Passes/Memory/PointersInMemory.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

namespace tarnwick::msl {

using namespace llvm;

// A root's bytes, for pointers that become numbers; more than any variable of a thread has.
static constexpr unsigned rootBits = 24;

namespace {

class Resolver {
  public:
    Resolver(ShaderModule& shader, PointersInMemory memory)
        : main_(*shader.main), memory_(std::move(memory)), numbers_(shader, memory_) {}

    bool run();

  private:
    bool isAddress(const Chosen& at) const { return at.offsets.contains(numbers_.everywhere()); }
    Value* isThere(Instruction& user, const Chosen& at, IRBuilder<>& builder);
    Value* isMeant(Instruction& user, const Chosen& at, Value* root, IRBuilder<>& builder);
    void compare(ICmpInst& compare);
    void number(PtrToIntInst& conversion);
    void access(Instruction& user);
    void resolve(Instruction& user);
    void load(LoadInst& load, Value* base, const Chosen& from);
    void store(StoreInst& store, Value* base, const Chosen& to);
    void change(Instruction& call, Value* base, const Chosen& at);

    Function& main_;
    PointersInMemory memory_;
    PointerNumbers numbers_;
    SmallPtrSet<Instruction*, 8> neverNull_; // accesses whose pointer was compared with null
};

// Whether the access is to happen: not by null. Null itself if that is known.
Value* Resolver::isThere(Instruction& user, const Chosen& at, IRBuilder<>& builder) {
    auto address = at.offsets.find(numbers_.everywhere());
    if (address == at.offsets.end() || neverNull_.contains(&user))
        return nullptr;
    return builder.CreateIsNotNull(address->second);
}

void Resolver::load(LoadInst& load, Value* base, const Chosen& from) {
    IRBuilder<> builder(&load);
    if (Value* condition = isThere(load, from, builder)) {
        BasicBlock* before = load.getParent();
        builder.SetInsertPoint(SplitBlockAndInsertIfThen(condition, &load, false));
        Value* pointer =
            numbers_.rebuilt(load.getPointerOperand(), base, numbers_.everywhere(), builder);
        Instruction* one = builder.CreateAlignedLoad(load.getType(), pointer, load.getAlign());
        builder.SetInsertPoint(load.getParent(), load.getParent()->begin());
        PHINode* result = builder.CreatePHI(load.getType(), 2);
        result->addIncoming(Constant::getNullValue(load.getType()), before);
        result->addIncoming(one, one->getParent());
        return load.replaceAllUsesWith(result);
    }
    Value* result = nullptr;
    for (auto& [root, offset] : from.offsets) {
        Value* pointer = numbers_.rebuilt(load.getPointerOperand(), base, root, builder);
        Value* one = builder.CreateAlignedLoad(load.getType(), pointer, load.getAlign());
        Value* isIt = numbers_.isRoot(from, root, builder);
        result = result ? builder.CreateSelect(isIt, one, result) : one;
    }
    load.replaceAllUsesWith(result ? result : UndefValue::get(load.getType()));
}

// Returns the condition of an access to one of the roots, or null if the access always happens.
Value* Resolver::isMeant(Instruction& user, const Chosen& at, Value* root, IRBuilder<>& builder) {
    if (at.offsets.size() > 1)
        return numbers_.isRoot(at, root, builder);
    return isThere(user, at, builder);
}

// Another invocation may see a buffer, so a store that is not meant must not happen there.
void Resolver::store(StoreInst& store, Value* base, const Chosen& to) {
    for (auto& [root, offset] : to.offsets) {
        IRBuilder<> builder(&store);
        if (Value* isIt = isMeant(store, to, root, builder))
            builder.SetInsertPoint(SplitBlockAndInsertIfThen(isIt, &store, false));
        Value* pointer = numbers_.rebuilt(store.getPointerOperand(), base, root, builder);
        builder.CreateAlignedStore(store.getValueOperand(), pointer, store.getAlign());
    }
}

// An atomic change happens at the one root that is meant.
void Resolver::change(Instruction& call, Value* base, const Chosen& at) {
    Value* result = nullptr;
    for (auto& [root, offset] : at.offsets) {
        IRBuilder<> builder(&call);
        BasicBlock* before = call.getParent();
        Value* isIt = isMeant(call, at, root, builder);
        if (isIt)
            builder.SetInsertPoint(SplitBlockAndInsertIfThen(isIt, &call, false));
        Value* pointer = numbers_.rebuilt(call.getOperand(0), base, root, builder);
        Instruction* one = builder.Insert(call.clone());
        one->setOperand(0, pointer);
        if (!isIt || call.getType()->isVoidTy()) {
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

// Order is defined within one variable only (Metal Shading Language 3.1, which has C++'s
// rules for it); equality asks for the variable as well.
void Resolver::compare(ICmpInst& compare) {
    numbers_.workOn({compare.getOperand(0), compare.getOperand(1)});
    Chosen a = numbers_.chosen(compare.getOperand(0)), b = numbers_.chosen(compare.getOperand(1));
    IRBuilder<> builder(&compare);
    if (isAddress(a) || isAddress(b))
        return compare.replaceAllUsesWith(builder.CreateICmp(compare.getPredicate(),
                                                             numbers_.addressOf(a, builder),
                                                             numbers_.addressOf(b, builder)));
    Value* result = builder.CreateICmp(compare.getSignedPredicate(), numbers_.offset(a, builder),
                                       numbers_.offset(b, builder));
    if (compare.getPredicate() == CmpInst::ICMP_EQ)
        result = builder.CreateAnd(result, builder.CreateICmpEQ(a.which, b.which));
    else if (compare.getPredicate() == CmpInst::ICMP_NE)
        result = builder.CreateOr(result, builder.CreateICmpNE(a.which, b.which));
    compare.replaceAllUsesWith(result);
}

// Each root has its own range of numbers, so that pointers differ and differences are in bytes.
void Resolver::number(PtrToIntInst& conversion) {
    numbers_.workOn({conversion.getPointerOperand()});
    Chosen at = numbers_.chosen(conversion.getPointerOperand());
    IRBuilder<> builder(&conversion);
    if (!memory_.isAddress(&conversion))
        return conversion.replaceAllUsesWith(numbers_.packed(at, builder));
    if (memory_.usesAddresses) {
        bool isStored = all_of(conversion.users(), [](User* user) { return isa<StoreInst>(user); });
        Value* address = isStored ? numbers_.asAddress(at, builder).offsets[numbers_.everywhere()]
                                  : numbers_.addressOf(at, builder);
        return conversion.replaceAllUsesWith(
            builder.CreateZExtOrTrunc(address, conversion.getType()));
    }
    Value* first = builder.CreateShl(builder.CreateAdd(at.which, numbers_.constant(1)), rootBits);
    Value* bytes =
        builder.CreateMul(numbers_.offset(at, builder), numbers_.constant(numbers_.unit()));
    Value* number = builder.CreateAdd(first, bytes);
    for (User* user : make_early_inc_range(conversion.users()))
        if (auto* cut = dyn_cast<TruncInst>(user); cut && cut->getType()->isIntegerTy(32))
            cut->replaceAllUsesWith(number);
    conversion.replaceAllUsesWith(builder.CreateZExtOrTrunc(number, conversion.getType()));
}

bool comparesPointers(const Instruction& instruction) {
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
    rootsOf(base, memory_); // throws where there are others
    numbers_.workOn({base});
    Chosen to = numbers_.chosen(base);
    if (auto* reading = dyn_cast<LoadInst>(&user)) {
        load(*reading, base, to);
    } else if (auto* writing = dyn_cast<StoreInst>(&user)) {
        store(*writing, base, to);
    } else {
        change(user, base, to);
    }
}

// Whether a branch on the way to the block has compared the pointer with null.
bool isComparedWithNull(const Value* pointer, const BasicBlock* block) {
    for (const BasicBlock* from = block->getSinglePredecessor(); from;
         block = from, from = block->getSinglePredecessor()) {
        auto* branch = dyn_cast<BranchInst>(from->getTerminator());
        if (!branch || !branch->isConditional())
            continue;
        auto* compare = dyn_cast<ICmpInst>(branch->getCondition());
        bool isNullTest = compare && compare->isEquality() && compare->getOperand(0) == pointer &&
                          isa<ConstantPointerNull>(compare->getOperand(1));
        bool isEqual = compare && compare->getPredicate() == CmpInst::ICMP_EQ;
        if (isNullTest && branch->getSuccessor(isEqual ? 1 : 0) == block)
            return true;
    }
    return false;
}

// Only code that is never reached accesses such a pointer. Without optimising it remains.
bool isNowhere(const Value* pointer) {
    return isa<UndefValue, ConstantPointerNull>(pointer);
}

bool Resolver::run() {
    SmallVector<Instruction*, 8> users;
    for (Instruction& instruction : instructions(main_)) {
        Value* pointer = getLoadStorePointerOperand(&instruction);
        if (auto* call = dyn_cast<CallBase>(&instruction))
            if (call->arg_size() > 0 && call->getArgOperand(0)->getType()->isPointerTy())
                pointer = call->getArgOperand(0);
        bool isAccess = pointer && (isChoice(baseOf(pointer)) || isNowhere(baseOf(pointer)));
        if (isAccess && isComparedWithNull(baseOf(pointer), instruction.getParent()))
            neverNull_.insert(&instruction);
        if (isAccess || comparesPointers(instruction) || isa<PtrToIntInst>(instruction))
            users.push_back(&instruction);
    }
    for (Instruction* user : users)
        at(*user, [&] { resolve(*user); });
    return !users.empty();
}

} // namespace

bool resolvePointers(ShaderModule& shader, const Target& target) {
    flattenMixedVariables(*shader.main);
    PointersInMemory memory = numberPointersInMemory(*shader.main, target.followsAddresses);
    return Resolver(shader, std::move(memory)).run();
}

} // namespace tarnwick::msl
