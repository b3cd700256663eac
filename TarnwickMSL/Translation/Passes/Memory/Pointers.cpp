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

#include "TarnwickMSL/Translation/Passes/Memory/PointersInMemory.h"
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
// The upper word of the numbers of variables among addresses.
static constexpr std::uint64_t ownAddresses = 0xffff0000;

class Resolver {
  public:
    Resolver(ShaderModule& shader, PointersInMemory memory)
        : shader_(shader), main_(*shader.main), memory_(std::move(memory)),
          layout_(main_.getParent()->getDataLayout()), word_(Type::getInt32Ty(main_.getContext())),
          wide_(Type::getInt64Ty(main_.getContext())),
          everywhere_(ConstantPointerNull::get(PointerType::get(main_.getContext(), 0))) {}

    bool run();

  private:
    using Roots = SmallSetVector<Value*, 4>;

    void collectRoots(Value* pointer, Roots& roots, SmallPtrSetImpl<Value*>& seen);
    void collectUnit(Value* pointer, SmallPtrSetImpl<Value*>& seen);
    Chosen chosen(Value* pointer);
    Chosen alongGep(GEPOperator& step);
    Chosen atRoot(Value* root, Value* offset);
    Chosen merged(PHINode& phi);
    Chosen mergedAddress(PHINode& phi);
    Chosen merged(SelectInst& select);
    Chosen converted(IntToPtrInst& conversion);
    Value* bytesAlong(GEPOperator& step, IRBuilder<>& builder);
    Value* addressOf(const Chosen& at, IRBuilder<>& builder);
    Value* baseAddress(Value* root);
    Chosen asAddress(const Chosen& at, IRBuilder<>& builder);
    Value* packed(const Chosen& at, IRBuilder<>& builder);
    std::uint64_t ownUnit();
    Value* isThere(Instruction& user, const Chosen& at, IRBuilder<>& builder);
    Value* isMeant(Instruction& user, const Chosen& at, Value* root, IRBuilder<>& builder);
    bool isBuffer(const Value* root) const;
    std::uint64_t tableSize() const;
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

    ShaderModule& shader_;
    Function& main_;
    PointersInMemory memory_;
    const DataLayout& layout_;
    Type* word_;
    Type* wide_;
    Value* everywhere_; // the root of addresses, which is null as well
    DenseMap<Value*, Chosen> known_;
    DenseMap<Value*, Value*> bases_;         // the addresses of buffers
    SmallPtrSet<Instruction*, 8> neverNull_; // accesses whose pointer was compared with null
    std::optional<std::uint64_t> ownUnit_;   // of the pointers in own memory; 0: all offsets are 0
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
    return isa<PHINode, SelectInst, IntToPtrInst>(pointer);
}

void Resolver::collectRoots(Value* pointer, Roots& roots, SmallPtrSetImpl<Value*>& seen) {
    Value* base = baseOf(pointer);
    if (!seen.insert(base).second || isa<UndefValue>(base))
        return;
    if (isa<ConstantPointerNull>(base)) {
        if (memory_.usesAddresses)
            roots.insert(everywhere_);
        return;
    }
    if (auto* phi = dyn_cast<PHINode>(base)) {
        for (Value* incoming : phi->incoming_values())
            collectRoots(incoming, roots, seen);
    } else if (auto* select = dyn_cast<SelectInst>(base)) {
        collectRoots(select->getTrueValue(), roots, seen);
        collectRoots(select->getFalseValue(), roots, seen);
    } else if (isa<AllocaInst, GlobalVariable>(base)) {
        roots.insert(base);
    } else if (auto* conversion = dyn_cast<IntToPtrInst>(base)) {
        if (memory_.isAddress(conversion))
            roots.insert(everywhere_);
        else
            for (Value* stored : memory_.stored)
                collectRoots(stored, roots, seen);
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
    if (auto* conversion = dyn_cast<IntToPtrInst>(pointer);
        conversion && !memory_.isAddress(conversion))
        for (Value* stored : memory_.stored)
            collectUnit(stored, seen);
}

// The unit of all pointers in own memory.
std::uint64_t Resolver::ownUnit() {
    if (!ownUnit_) {
        std::uint64_t before = std::exchange(unit_, 0);
        SmallPtrSet<Value*, 8> seen;
        for (Value* stored : memory_.stored)
            collectUnit(stored, seen);
        ownUnit_ = std::exchange(unit_, before);
    }
    return *ownUnit_;
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
        before = builder.CreateAdd(before, root == everywhere_ ? bytesAlong(step, builder) : moved);
    return from;
}

Value* Resolver::bytesAlong(GEPOperator& step, IRBuilder<>& builder) {
    MapVector<Value*, APInt> scales;
    APInt offset(32, 0);
    step.collectOffset(layout_, 32, scales, offset);
    Value* bytes = ConstantInt::getSigned(wide_, offset.getSExtValue());
    for (auto& [index, scale] : scales) {
        Value* wide = builder.CreateSExtOrTrunc(index, wide_);
        bytes = builder.CreateAdd(
            bytes, builder.CreateMul(wide, ConstantInt::getSigned(wide_, scale.getSExtValue())));
    }
    return bytes;
}

// Of the host's buffers.
bool Resolver::isBuffer(const Value* root) const {
    auto* global = dyn_cast<GlobalVariable>(root);
    return global && any_of(shader_.interface, [&](const InterfaceVariable& variable) {
               return variable.global == global->getName() &&
                      (variable.kind == InterfaceKind::storageBuffer ||
                       variable.kind == InterfaceKind::uniformBuffer);
           });
}

// The entries of the host's table of addresses: the indices of buffers.
std::uint64_t Resolver::tableSize() const {
    std::uint64_t count = mostBuffers;
    for (const ArgumentMember& member : shader_.members)
        if (member.kind == MemberKind::buffer)
            count = std::max<std::uint64_t>(count, member.index + 1);
    return count;
}

// From the table, once at the start.
Value* Resolver::baseAddress(Value* root) {
    Value*& known = bases_[root];
    if (known)
        return known;
    Module& module = *main_.getParent();
    Type* table = ArrayType::get(wide_, tableSize());
    auto* addresses = module.getNamedGlobal("msl.addresses");
    if (!addresses) {
        addresses = new GlobalVariable(module, table, false, GlobalValue::ExternalLinkage, nullptr,
                                       "msl.addresses", nullptr, GlobalValue::NotThreadLocal, 0u);
        shader_.interface.push_back({.kind = InterfaceKind::bufferAddresses,
                                     .global = "msl.addresses",
                                     .builtIn = {},
                                     .elementBytes = layout_.getTypeAllocSize(table),
                                     .isReference = true});
    }
    auto variable = find_if(shader_.interface, [&](const InterfaceVariable& each) {
        return each.global == root->getName();
    });
    IRBuilder<> atStart(&main_.getEntryBlock(),
                        main_.getEntryBlock().getFirstNonPHIOrDbgOrAlloca());
    Value* place = atStart.CreateConstInBoundsGEP2_32(table, addresses, 0, variable->index);
    known = atStart.CreateLoad(wide_, place);
    return known;
}

// As 64 bits: 0 for null, and numbers beyond all addresses for the thread's own variables.
Value* Resolver::addressOf(const Chosen& at, IRBuilder<>& builder) {
    Value* result = nullptr;
    for (auto& [root, offset] : at.offsets) {
        Value* address = offset;
        if (root != everywhere_) {
            Value* bytes = builder.CreateSExt(builder.CreateMul(offset, constant(unit_)), wide_);
            Value* base =
                isBuffer(root)
                    ? baseAddress(root)
                    : ConstantInt::get(wide_, (numbers_.lookup(root) | ownAddresses) << 32);
            address = builder.CreateAdd(base, bytes);
        }
        Value* isIt = builder.CreateICmpEQ(at.which, constant(numbers_.lookup(root)));
        result = result ? builder.CreateSelect(isIt, address, result) : address;
    }
    return result ? result : ConstantInt::get(wide_, 0);
}

Chosen Resolver::asAddress(const Chosen& at, IRBuilder<>& builder) {
    for (auto& [root, offset] : at.offsets)
        if (root != everywhere_ && !isBuffer(root))
            throw TranslationError(unresolvedPointer);
    return atRoot(everywhere_, addressOf(at, builder));
}

// A number in own memory: the root's above 32 bits, the offset in ownUnit() below.
Value* Resolver::packed(const Chosen& at, IRBuilder<>& builder) {
    std::uint64_t units = ownUnit() ? unit_ / ownUnit() : 0;
    Value* offset = builder.CreateMul(meant(at, builder), constant(units));
    Value* which = builder.CreateShl(builder.CreateZExt(at.which, wide_), 32);
    return builder.CreateOr(which, builder.CreateZExt(offset, wide_));
}

Chosen Resolver::converted(IntToPtrInst& conversion) {
    IRBuilder<> builder(conversion.getNextNode());
    Value* number = builder.CreateZExtOrTrunc(conversion.getOperand(0), wide_);
    if (memory_.isAddress(&conversion))
        return atRoot(everywhere_, number);
    Roots roots;
    SmallPtrSet<Value*, 8> seen;
    collectRoots(&conversion, roots, seen);
    Chosen result{.which = builder.CreateTrunc(builder.CreateLShr(number, 32), word_),
                  .offsets = {}};
    Value* offset = builder.CreateMul(builder.CreateTrunc(number, word_),
                                      constant(ownUnit() ? ownUnit() / unit_ : 0));
    for (Value* root : roots) {
        numbers_.insert({root, numbers_.size()});
        result.offsets[root] = offset;
    }
    return result;
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
    if (roots.contains(everywhere_))
        return mergedAddress(phi);
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

Chosen Resolver::mergedAddress(PHINode& phi) {
    auto* address = IRBuilder<>(&phi).CreatePHI(wide_, phi.getNumIncomingValues());
    Chosen result = atRoot(everywhere_, address);
    known_[&phi] = result;
    for (unsigned n = 0; n < phi.getNumIncomingValues(); ++n) {
        Chosen from = chosen(phi.getIncomingValue(n));
        IRBuilder<> builder(phi.getIncomingBlock(n)->getTerminator());
        address->addIncoming(asAddress(from, builder).offsets[everywhere_],
                             phi.getIncomingBlock(n));
    }
    return result;
}

Chosen Resolver::merged(SelectInst& select) {
    Chosen yes = chosen(select.getTrueValue()), no = chosen(select.getFalseValue());
    IRBuilder<> builder(&select);
    if (yes.offsets.contains(everywhere_) || no.offsets.contains(everywhere_)) {
        yes = asAddress(yes, builder);
        no = asAddress(no, builder);
    }
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
    else if (auto* conversion = dyn_cast<IntToPtrInst>(pointer))
        result = converted(*conversion);
    else if (isa<ConstantPointerNull>(pointer) && memory_.usesAddresses)
        result = atRoot(everywhere_, ConstantInt::get(wide_, 0));
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
        if (root == everywhere_) // not a constant, which would have no instruction
            return builder.Insert(new IntToPtrInst(offset, root->getType()));
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

// Whether the access is to happen: not by null. Null itself if that is known.
Value* Resolver::isThere(Instruction& user, const Chosen& at, IRBuilder<>& builder) {
    auto address = at.offsets.find(everywhere_);
    if (address == at.offsets.end() || neverNull_.contains(&user))
        return nullptr;
    return builder.CreateICmpNE(address->second, ConstantInt::get(wide_, 0));
}

void Resolver::load(LoadInst& load, Value* base, const Chosen& from) {
    IRBuilder<> builder(&load);
    if (Value* condition = isThere(load, from, builder)) {
        BasicBlock* before = load.getParent();
        builder.SetInsertPoint(SplitBlockAndInsertIfThen(condition, &load, false));
        Value* pointer = rebuilt(load.getPointerOperand(), base, everywhere_, builder);
        Instruction* one = builder.CreateAlignedLoad(load.getType(), pointer, load.getAlign());
        builder.SetInsertPoint(load.getParent(), load.getParent()->begin());
        PHINode* result = builder.CreatePHI(load.getType(), 2);
        result->addIncoming(Constant::getNullValue(load.getType()), before);
        result->addIncoming(one, one->getParent());
        return load.replaceAllUsesWith(result);
    }
    Value* result = nullptr;
    for (auto& [root, offset] : from.offsets) {
        Value* pointer = rebuilt(load.getPointerOperand(), base, root, builder);
        Value* one = builder.CreateAlignedLoad(load.getType(), pointer, load.getAlign());
        Value* isIt = builder.CreateICmpEQ(from.which, constant(numbers_.lookup(root)));
        result = result ? builder.CreateSelect(isIt, one, result) : one;
    }
    load.replaceAllUsesWith(result ? result : UndefValue::get(load.getType()));
}

// The condition of an access to one of the roots; null if there is none.
Value* Resolver::isMeant(Instruction& user, const Chosen& at, Value* root, IRBuilder<>& builder) {
    if (at.offsets.size() > 1)
        return builder.CreateICmpEQ(at.which, constant(numbers_.lookup(root)));
    return isThere(user, at, builder);
}

// Another invocation may see a buffer, so a store that is not meant must not happen there.
void Resolver::store(StoreInst& store, Value* base, const Chosen& to) {
    for (auto& [root, offset] : to.offsets) {
        IRBuilder<> builder(&store);
        if (Value* isIt = isMeant(store, to, root, builder))
            builder.SetInsertPoint(SplitBlockAndInsertIfThen(isIt, &store, false));
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
        Value* isIt = isMeant(call, at, root, builder);
        if (isIt)
            builder.SetInsertPoint(SplitBlockAndInsertIfThen(isIt, &call, false));
        Value* pointer = rebuilt(call.getOperand(0), base, root, builder);
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
    if (a.offsets.contains(everywhere_) || b.offsets.contains(everywhere_))
        return compare.replaceAllUsesWith(builder.CreateICmp(
            compare.getPredicate(), addressOf(a, builder), addressOf(b, builder)));
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
    if (!memory_.isAddress(&conversion))
        return conversion.replaceAllUsesWith(packed(at, builder));
    if (memory_.usesAddresses) {
        bool isStored = all_of(conversion.users(), [](User* user) { return isa<StoreInst>(user); });
        Value* address =
            isStored ? asAddress(at, builder).offsets[everywhere_] : addressOf(at, builder);
        return conversion.replaceAllUsesWith(
            builder.CreateZExtOrTrunc(address, conversion.getType()));
    }
    Value* first = builder.CreateShl(builder.CreateAdd(at.which, constant(1)), rootBits);
    Value* bytes = builder.CreateMul(meant(at, builder), constant(unit_));
    Value* number = builder.CreateAdd(first, bytes);
    for (User* user : make_early_inc_range(conversion.users()))
        if (auto* cut = dyn_cast<TruncInst>(user); cut && cut->getType() == word_)
            cut->replaceAllUsesWith(number);
    conversion.replaceAllUsesWith(builder.CreateZExtOrTrunc(number, conversion.getType()));
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

// Whether the constant is made of a conversion between a pointer and a number.
static bool hasConversion(const Value* value) {
    auto* constant = dyn_cast<ConstantExpr>(value);
    if (!constant)
        return false;
    return constant->getOpcode() == Instruction::PtrToInt ||
           constant->getOpcode() == Instruction::IntToPtr ||
           any_of(constant->operands(), [](const Use& each) { return hasConversion(each); });
}

static Instruction* separated(ConstantExpr& constant, Instruction& before) {
    Instruction* made = constant.getAsInstruction();
    made->insertBefore(before.getIterator());
    for (Use& operand : made->operands())
        if (hasConversion(operand))
            operand.set(separated(*cast<ConstantExpr>(operand), *made));
    return made;
}

// Conversions of constants as instructions of their own.
static void separateNumbers(Function& main) {
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

// Whether a branch on the way to the block has compared the pointer with null.
static bool isComparedWithNull(const Value* pointer, const BasicBlock* block) {
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

bool Resolver::run() {
    SmallVector<Instruction*, 8> users;
    for (Instruction& instruction : instructions(main_)) {
        Value* pointer = getLoadStorePointerOperand(&instruction);
        if (auto* call = dyn_cast<CallBase>(&instruction))
            if (call->arg_size() > 0 && call->getArgOperand(0)->getType()->isPointerTy())
                pointer = call->getArgOperand(0);
        bool isAccess = pointer && isChoice(baseOf(pointer));
        if (isAccess && isComparedWithNull(baseOf(pointer), instruction.getParent()))
            neverNull_.insert(&instruction);
        if (isAccess || comparesPointers(instruction) || isa<PtrToIntInst>(instruction))
            users.push_back(&instruction);
    }
    for (Instruction* user : users)
        at(*user, [&] { resolve(*user); });
    return !users.empty();
}

bool resolvePointers(ShaderModule& shader, const Target& target) {
    separateNumbers(*shader.main);
    PointersInMemory memory = numberPointersInMemory(*shader.main, target.followsAddresses);
    return Resolver(shader, std::move(memory)).run();
}

} // namespace tarnwick::msl
