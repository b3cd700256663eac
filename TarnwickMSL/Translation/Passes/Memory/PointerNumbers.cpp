#include "TarnwickMSL/Translation/Passes/Memory/PointerNumbers.h"

#include "TarnwickMSL/Translation/Passes/Memory/PointerRoots.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/GetElementPtrTypeIterator.h>

#include <algorithm>
#include <bit>

namespace tarnwick::msl {

using namespace llvm;

// The number of the root of null, which has no memory.
static constexpr std::uint32_t nowhere = UINT32_MAX;
// The upper word of the numbers of variables among addresses.
static constexpr std::uint64_t ownAddresses = 0xffff0000;

PointerNumbers::PointerNumbers(ShaderModule& shader, const PointersInMemory& memory)
    : main_(*shader.main), memory_(memory), layout_(main_.getParent()->getDataLayout()),
      word_(Type::getInt32Ty(main_.getContext())), wide_(Type::getInt64Ty(main_.getContext())),
      everywhere_(msl::everywhere(main_.getContext())), addresses_(shader) {}

// The unit of all pointers in own memory.
std::uint64_t PointerNumbers::ownUnit() {
    if (!ownUnit_)
        ownUnit_ = unitOf(memory_.stored, memory_, layout_);
    return *ownUnit_;
}

void PointerNumbers::workOn(ArrayRef<Value*> pointers) {
    if (pointers == ArrayRef(last_))
        return;
    last_.assign(pointers.begin(), pointers.end());
    unit_ = std::max<std::uint64_t>(1, unitOf(pointers, memory_, layout_));
    known_.clear();
}

Chosen PointerNumbers::atRoot(Value* root, Value* offset) {
    auto [entry, isNew] = numbers_.insert({root, numbers_.size()});
    Chosen result{.which = constant(entry->second), .offsets = {}};
    result.offsets[root] = offset;
    return result;
}

Value* PointerNumbers::inUnits(Value* index, std::uint64_t scale, IRBuilder<>& builder) {
    Value* wide = builder.CreateSExtOrTrunc(index, word_);
    return builder.CreateMul(wide, constant(scale / unit_));
}

Chosen PointerNumbers::alongGep(GEPOperator& step) {
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

Value* PointerNumbers::bytesAlong(GEPOperator& step, IRBuilder<>& builder) {
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

Value* PointerNumbers::isRoot(const Chosen& at, Value* root, IRBuilder<>& builder) {
    return builder.CreateICmpEQ(at.which, constant(numbers_.lookup(root)));
}

Value* PointerNumbers::offset(const Chosen& at, IRBuilder<>& builder) {
    Value* result = nullptr;
    for (auto& [root, there] : at.offsets) {
        Value* isIt = isRoot(at, root, builder);
        result = result ? builder.CreateSelect(isIt, there, result) : there;
    }
    return result ? result : constant(0);
}

Value* PointerNumbers::addressOf(const Chosen& at, IRBuilder<>& builder) {
    Value* result = nullptr;
    for (auto& [root, offset] : at.offsets) {
        Value* address = offset;
        if (root != everywhere_) {
            Value* bytes = builder.CreateSExt(builder.CreateMul(offset, constant(unit_)), wide_);
            Value* base =
                addresses_.has(root)
                    ? addresses_.of(root)
                    : ConstantInt::get(wide_, (numbers_.lookup(root) | ownAddresses) << 32);
            address = builder.CreateAdd(base, bytes);
        }
        result =
            result ? builder.CreateSelect(isRoot(at, root, builder), address, result) : address;
    }
    return result ? result : ConstantInt::get(wide_, 0);
}

Chosen PointerNumbers::asAddress(const Chosen& at, IRBuilder<>& builder) {
    for (auto& [root, offset] : at.offsets)
        if (root != everywhere_ && !addresses_.has(root))
            throw TranslationError(unresolvedPointer);
    return atRoot(everywhere_, addressOf(at, builder));
}

Value* PointerNumbers::packed(const Chosen& at, IRBuilder<>& builder) {
    std::uint64_t units = ownUnit() ? unit_ / ownUnit() : 0;
    Value* low = builder.CreateMul(offset(at, builder), constant(units));
    Value* which = builder.CreateShl(builder.CreateZExt(at.which, wide_), 32);
    return builder.CreateOr(which, builder.CreateZExt(low, wide_));
}

Chosen PointerNumbers::converted(IntToPtrInst& conversion) {
    IRBuilder<> builder(conversion.getNextNode());
    Value* number = builder.CreateZExtOrTrunc(conversion.getOperand(0), wide_);
    if (memory_.isAddress(&conversion))
        return atRoot(everywhere_, number);
    Chosen result{.which = builder.CreateTrunc(builder.CreateLShr(number, 32), word_),
                  .offsets = {}};
    Value* offset = builder.CreateMul(builder.CreateTrunc(number, word_),
                                      constant(ownUnit() ? ownUnit() / unit_ : 0));
    for (Value* root : rootsOf(&conversion, memory_)) {
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

Chosen PointerNumbers::merged(PHINode& phi) {
    const Roots roots = rootsOf(&phi, memory_);
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

Chosen PointerNumbers::mergedAddress(PHINode& phi) {
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

Chosen PointerNumbers::merged(SelectInst& select) {
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

Chosen PointerNumbers::chosen(Value* pointer) {
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

Value* PointerNumbers::rebuilt(Value* pointer, Value* base, Value* root, IRBuilder<>& builder) {
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
    auto* step = cast<GEPOperator>(pointer);
    Value* inner = rebuilt(step->getPointerOperand(), base, root, builder);
    auto* constant = dyn_cast<ConstantExpr>(pointer); // a step from null
    Instruction* copy = builder.Insert(constant ? constant->getAsInstruction()
                                                : cast<Instruction>(pointer)->clone());
    copy->setOperand(0, inner);
    return copy;
}

} // namespace tarnwick::msl
