#include "TarnwickMSL/Translation/Passes/Optimising/KnownValues.h"

#include <llvm/IR/DataLayout.h>
#include <llvm/IR/InstrTypes.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/Support/MathExtras.h>

#include <functional>
#include <optional>
#include <utility>

namespace tarnwick::msl {

using namespace llvm;

namespace {

std::uint64_t mixed(std::uint64_t hash, std::uint64_t value) {
    hash = (hash ^ value) * 0x9e3779b97f4a7c15u;
    return hash ^ (hash >> 29);
}
std::uint64_t mixed(std::uint64_t hash, const void* address) {
    return mixed(hash, reinterpret_cast<std::uintptr_t>(address) >> 3);
}

// The two operands that may change places.
bool hasEqualSides(const Instruction& instruction) {
    if (const auto* intrinsic = dyn_cast<IntrinsicInst>(&instruction))
        return intrinsic->isCommutative() && intrinsic->arg_size() == 2;
    return isa<CmpInst>(instruction) ||
           (isa<BinaryOperator>(instruction) && instruction.isCommutative());
}

bool isAscending(const Value* left, const Value* right) {
    return std::less<const Value*>()(left, right);
}

CmpInst::Predicate predicateOf(const CmpInst& comparison, bool isSwapped) {
    return isSwapped ? comparison.getSwappedPredicate() : comparison.getPredicate();
}

std::uint64_t hashOfSides(const Instruction& instruction, std::uint64_t hash) {
    const Value *left = instruction.getOperand(0), *right = instruction.getOperand(1);
    const bool isSwapped = isAscending(right, left);
    if (isSwapped)
        std::swap(left, right);
    if (const auto* comparison = dyn_cast<CmpInst>(&instruction))
        hash = mixed(hash, std::uint64_t{predicateOf(*comparison, isSwapped)});
    if (const auto* intrinsic = dyn_cast<IntrinsicInst>(&instruction))
        hash = mixed(hash, std::uint64_t{intrinsic->getIntrinsicID()});
    return mixed(mixed(hash, left), right);
}

// The bytes that a pointer is moved by, if they are known.
std::optional<std::uint64_t> knownOffset(const Instruction& instruction) {
    const auto* step = dyn_cast<GetElementPtrInst>(&instruction);
    if (!step || !step->getType()->isPointerTy())
        return std::nullopt;
    const DataLayout& layout = instruction.getDataLayout();
    APInt offset(layout.getIndexTypeSizeInBits(step->getType()), 0);
    if (!step->accumulateConstantOffset(layout, offset))
        return std::nullopt;
    return offset.getZExtValue();
}

std::uint64_t fullHash(const Instruction& instruction) {
    if (const Value* address = getLoadStorePointerOperand(&instruction))
        return mixed(std::uint64_t{Instruction::Load}, address);
    if (const auto offset = knownOffset(instruction))
        return mixed(mixed(std::uint64_t{Instruction::GetElementPtr}, instruction.getOperand(0)),
                     *offset);
    const std::uint64_t start =
        mixed(std::uint64_t{instruction.getOpcode()}, instruction.getType());
    if (hasEqualSides(instruction))
        return hashOfSides(instruction, start);
    std::uint64_t hash = start;
    for (const Value* operand : instruction.operand_values())
        hash = mixed(hash, operand);
    if (const auto* shuffle = dyn_cast<ShuffleVectorInst>(&instruction))
        for (const int lane : shuffle->getShuffleMask())
            hash = mixed(hash, static_cast<std::uint64_t>(lane));
    if (const auto* member = dyn_cast<ExtractValueInst>(&instruction))
        for (const unsigned index : member->indices())
            hash = mixed(hash, std::uint64_t{index});
    return hash;
}

std::uint32_t hashOf(const Instruction& instruction) {
    return static_cast<std::uint32_t>(fullHash(instruction) >> 16);
}

bool areSwapped(const Instruction& a, const Instruction& b) {
    if (!hasEqualSides(a) || a.getOpcode() != b.getOpcode() || a.getType() != b.getType() ||
        a.getOperand(0) != b.getOperand(1) || a.getOperand(1) != b.getOperand(0))
        return false;
    if (const auto* comparison = dyn_cast<CmpInst>(&a))
        return comparison->getPredicate() == cast<CmpInst>(b).getSwappedPredicate();
    const auto *first = dyn_cast<IntrinsicInst>(&a), *second = dyn_cast<IntrinsicInst>(&b);
    return !first || (second && first->getIntrinsicID() == second->getIntrinsicID());
}

const Type* accessedType(const Instruction& access) {
    const auto* store = dyn_cast<StoreInst>(&access);
    return store ? store->getValueOperand()->getType() : access.getType();
}

bool areEqual(const Instruction& a, const Instruction& b) {
    const Value *address = getLoadStorePointerOperand(&a), *other = getLoadStorePointerOperand(&b);
    if (address || other)
        return address == other && accessedType(a) == accessedType(b);
    // A convergent call depends on the invocations that make it.
    if (const auto* call = dyn_cast<CallInst>(&a);
        call && call->isConvergent() && a.getParent() != b.getParent())
        return false;
    if (a.getOpcode() != b.getOpcode())
        return false;
    if (const auto offset = knownOffset(a))
        return a.getOperand(0) == b.getOperand(0) && offset == knownOffset(b);
    return a.isIdenticalToWhenDefined(&b) || areSwapped(a, b);
}

} // namespace

KnownValues::KnownValues(std::size_t instructions)
    : slots_(NextPowerOf2(instructions + instructions / 2 + 32)) {
    log_.reserve(instructions);
}

// The slot of the entry, or the empty one in which it would be.
std::size_t KnownValues::slotOf(const Instruction& instruction, std::uint32_t hash) const {
    const std::size_t last = slots_.size() - 1;
    std::size_t slot = hash & last;
    while (slots_[slot].key &&
           (slots_[slot].hash != hash || !areEqual(*slots_[slot].key, instruction)))
        slot = (slot + 1) & last;
    return slot;
}

const KnownValues::Entry* KnownValues::find(const Instruction& instruction) const {
    const Entry& entry = slots_[slotOf(instruction, hashOf(instruction))];
    return entry.key ? &entry : nullptr;
}

void KnownValues::add(const Instruction& instruction, Value* value, unsigned writes) {
    const std::uint32_t hash = hashOf(instruction);
    const std::size_t slot = slotOf(instruction, hash);
    log_.push_back({slot, slots_[slot]});
    slots_[slot] = {&instruction, value, hash, writes};
}

void KnownValues::forgetTo(std::size_t mark) {
    while (log_.size() > mark) {
        slots_[log_.back().slot] = log_.back().before;
        log_.pop_back();
    }
}

} // namespace tarnwick::msl
