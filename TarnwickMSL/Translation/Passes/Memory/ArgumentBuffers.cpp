#include "TarnwickMSL/Translation/Passes/Memory/ArgumentBuffers.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Passes/Memory/ArgumentRecords.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/Instructions.h>
#include <llvm/IR/Operator.h>

#include <numeric>

namespace tarnwick::msl {

using namespace llvm;

namespace {

// Constant bytes, and indices of run time with their scales.
struct Step {
    std::int64_t offset = 0;
    MapVector<Value*, APInt> scales;
};

Step stepTo(Value* pointer, const DataLayout& layout) {
    Step step;
    APInt offset(32, 0);
    while (auto* operation = dyn_cast<GEPOperator>(pointer)) {
        if (!operation->collectOffset(layout, 32, step.scales, offset))
            throw CompilerFault("A step into an argument buffer has no constant scale.");
        pointer = operation->getPointerOperand();
    }
    step.offset = offset.getSExtValue();
    return step;
}

// Of pointers in an array. A longer array is read as one of addresses where the target follows
// them: a choice among its buffers would repeat each access for each of them.
constexpr std::size_t mostChoices = 8;

// Of an array, whose textures and samplers are a choice of all of them. The packaged CPU driver
// binds 128 textures and 32 samplers for a function.
constexpr std::uint64_t mostRecords = 32;

class ArgumentBuffer {
  public:
    ArgumentBuffer(ShaderModule& shader, std::uint32_t index, bool followsAddresses)
        : shader_(shader), index_(index), followsAddresses_(followsAddresses),
          records_(shader, index), layout_(shader.module->getDataLayout()) {}

    bool resolve();

  private:
    void collect(Value* pointer);
    SmallVector<const ArgumentMember*, 8> candidates(const Step& step);
    bool choosesRecord(const Step& step) const;
    SmallVector<Step, 4> recordsOf(const Step& step) const;
    Constant* valueOf(const ArgumentMember& member, Type* type) const;
    bool resolve(LoadInst& load);
    void note(const StoreInst& store);

    ShaderModule& shader_;
    std::uint32_t index_;
    bool followsAddresses_;
    ArgumentRecords records_;
    bool storesPointers_ = false;
    const DataLayout& layout_;
    SmallVector<LoadInst*, 16> loads_;
    SmallVector<StoreInst*, 4> stores_;
};

void ArgumentBuffer::collect(Value* pointer) {
    for (User* user : pointer->users()) {
        if (isa<GEPOperator>(user))
            collect(user);
        else if (auto* load = dyn_cast<LoadInst>(user))
            loads_.push_back(load);
        else if (auto* store = dyn_cast<StoreInst>(user);
                 store && store->getPointerOperand() == pointer)
            stores_.push_back(store);
    }
}

// Indices of run time move within arrays of one record; those of records are as long as a record.
bool ArgumentBuffer::choosesRecord(const Step& step) const {
    return any_of(step.scales, [&](const auto& scale) {
        return scale.second.abs().getZExtValue() >= records_.stride();
    });
}

// Returns the steps into each record that an index of run time may mean, or no step if these may be
// too many.
SmallVector<Step, 4> ArgumentBuffer::recordsOf(const Step& step) const {
    Step inside = step;
    Value* index = nullptr;
    std::int64_t apart = 0;
    for (const auto& [each, scale] : step.scales) {
        if (scale.abs().getZExtValue() < records_.stride())
            continue;
        if (index || scale.isNegative())
            return {};
        index = each;
        apart = scale.getSExtValue();
    }
    inside.scales.erase(index);
    const std::uint64_t last = computeKnownBits(index, layout_).getMaxValue().getLimitedValue();
    if (last >= mostRecords)
        return {};
    SmallVector<Step, 4> all;
    for (std::uint64_t n = 0; n <= last; ++n) {
        all.push_back(inside);
        all.back().offset += static_cast<std::int64_t>(n) * apart;
    }
    return all;
}

// The member at the place and those that the smallest of the steps leads to from there, both ways.
SmallVector<const ArgumentMember*, 8> ArgumentBuffer::candidates(const Step& step) {
    SmallVector<const ArgumentMember*, 8> found;
    const ArgumentMember* first = records_.memberAt(step.offset);
    if (!first)
        return found;
    found.push_back(first);
    std::int64_t stride = 0;
    for (const auto& [index, scale] : step.scales)
        stride = std::gcd(stride, scale.getSExtValue());
    for (std::int64_t way : {-stride, stride}) {
        std::int64_t offset = step.offset;
        while (const ArgumentMember* next = way ? records_.memberAt(offset += way) : nullptr) {
            if (next->kind != first->kind)
                break;
            found.push_back(next);
        }
    }
    return found;
}

Constant* ArgumentBuffer::valueOf(const ArgumentMember& member, Type* type) const {
    if (member.kind == MemberKind::buffer)
        return shader_.module->getNamedGlobal(argumentGlobal(member.index));
    bool isSampler = member.kind == MemberKind::sampler;
    return ConstantInt::get(type, isSampler ? samplerArgumentBit | member.index : member.index);
}

MemberKind kindOf(const Type* type) {
    if (type->isPointerTy())
        return MemberKind::buffer;
    return type->isIntegerTy(32)   ? MemberKind::texture
           : type->isIntegerTy(64) ? MemberKind::sampler
                                   : MemberKind::constants;
}

bool ArgumentBuffer::resolve(LoadInst& load) {
    Step step = stepTo(load.getPointerOperand(), layout_);
    MemberKind kind = kindOf(load.getType());
    const ArgumentMember* member = records_.memberOfAnyRecord(step.offset);
    if (!member || kind == MemberKind::constants || member->kind != kind)
        return false;
    const bool isChosen = choosesRecord(step);
    if (kind == MemberKind::buffer && (isChosen || storesPointers_))
        return false; // an address
    if (kind == MemberKind::buffer && followsAddresses_ && candidates(step).size() > mostChoices)
        return false;
    const SmallVector<Step, 4> starts = isChosen ? recordsOf(step) : SmallVector<Step, 4>{step};
    if (starts.empty())
        throw TranslationError("The textures and samplers of an array of argument buffers require "
                               "an index that is known to be less than 32, such as min(i, 31u).");
    for (const Step& start : starts)
        records_.holdRecordAt(start.offset);
    SmallVector<const ArgumentMember*, 8> found;
    for (const Step& start : starts)
        found.append(candidates(start));
    if (found.empty())
        return false;
    IRBuilder<> builder(&load);
    Value* place = builder.getInt32(static_cast<std::uint32_t>(step.offset));
    for (auto& [index, scale] : step.scales)
        place = builder.CreateAdd(
            place,
            builder.CreateMul(builder.CreateSExtOrTrunc(index, builder.getInt32Ty()),
                              builder.getInt32(static_cast<std::uint32_t>(scale.getSExtValue()))));
    Value* chosen = valueOf(*found.front(), load.getType());
    for (const ArgumentMember* other : ArrayRef(found).drop_front())
        chosen = builder.CreateSelect(builder.CreateICmpEQ(place, builder.getInt32(other->offset)),
                                      valueOf(*other, load.getType()), chosen);
    load.replaceAllUsesWith(chosen);
    load.eraseFromParent();
    return true;
}

// A pointer in memory is an address, which a shader can write. Textures and samplers have been
// bound when the function runs.
void ArgumentBuffer::note(const StoreInst& store) {
    Step step = stepTo(const_cast<Value*>(store.getPointerOperand()), layout_);
    const ArgumentMember* member = records_.memberOfAnyRecord(step.offset);
    if (!member || member->kind == MemberKind::constants)
        return;
    if (member->kind != MemberKind::buffer)
        throw TranslationError("A shader cannot write a texture or a sampler into an argument "
                               "buffer, because they are bound before it runs.");
    storesPointers_ = true;
}

bool ArgumentBuffer::resolve() {
    GlobalVariable* record = shader_.module->getNamedGlobal(argumentGlobal(index_));
    if (!record)
        return false;
    collect(record);
    for (StoreInst* store : stores_)
        at(*store, [&] { note(*store); });
    bool isChanged = false;
    for (LoadInst* load : loads_)
        isChanged |= at(*load, [&] { return resolve(*load); });
    return isChanged;
}

} // namespace

bool resolveArgumentBuffers(ShaderModule& shader, bool followsAddresses) {
    bool isChanged = false;
    SmallVector<std::uint32_t, 4> buffers;
    for (const ArgumentMember& member : shader.members)
        if (!is_contained(buffers, member.buffer))
            buffers.push_back(member.buffer);
    for (std::uint32_t buffer : buffers)
        isChanged |= ArgumentBuffer(shader, buffer, followsAddresses).resolve();
    return isChanged;
}

} // namespace tarnwick::msl
