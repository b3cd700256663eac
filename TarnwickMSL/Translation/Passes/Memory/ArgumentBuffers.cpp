#include "TarnwickMSL/Translation/Passes/Memory/ArgumentBuffers.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/ADT/MapVector.h>
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

class ArgumentBuffer {
  public:
    ArgumentBuffer(ShaderModule& shader, std::uint32_t index)
        : shader_(shader), index_(index), layout_(shader.module->getDataLayout()) {}

    bool resolve();

  private:
    void collect(Value* pointer);
    const ArgumentMember* memberAt(std::int64_t offset) const;
    SmallVector<const ArgumentMember*, 8> candidates(const Step& step) const;
    bool isFirstRecord(const Step& step) const;
    Constant* valueOf(const ArgumentMember& member, Type* type) const;
    bool resolve(LoadInst& load);
    void refuse(const StoreInst& store) const;

    ShaderModule& shader_;
    std::uint32_t index_;
    const DataLayout& layout_;
    SmallVector<LoadInst*, 16> loads_;
    SmallVector<StoreInst*, 4> stores_;
};

std::string globalName(std::uint32_t index) {
    return "msl.buffer." + std::to_string(index);
}

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

const ArgumentMember* ArgumentBuffer::memberAt(std::int64_t offset) const {
    auto found = find_if(shader_.members, [&](const ArgumentMember& member) {
        return member.buffer == index_ && member.offset == offset;
    });
    return found == shader_.members.end() ? nullptr : &*found;
}

// Indices move within arrays of the first record; those of records are longer than a record.
bool ArgumentBuffer::isFirstRecord(const Step& step) const {
    auto variable = find_if(shader_.interface, [&](const InterfaceVariable& each) {
        return each.global == globalName(index_);
    });
    return all_of(step.scales, [&](const auto& scale) {
        return scale.second.abs().getZExtValue() < variable->elementBytes;
    });
}

// The member at the place and those that the smallest of the steps leads to from there, both ways.
SmallVector<const ArgumentMember*, 8> ArgumentBuffer::candidates(const Step& step) const {
    SmallVector<const ArgumentMember*, 8> found;
    const ArgumentMember* first = memberAt(step.offset);
    if (!first)
        return found;
    found.push_back(first);
    std::int64_t stride = 0;
    for (const auto& [index, scale] : step.scales)
        stride = std::gcd(stride, scale.getSExtValue());
    for (std::int64_t way : {-stride, stride}) {
        std::int64_t offset = step.offset;
        while (const ArgumentMember* next = way ? memberAt(offset += way) : nullptr) {
            if (next->kind != first->kind)
                break;
            found.push_back(next);
        }
    }
    return found;
}

Constant* ArgumentBuffer::valueOf(const ArgumentMember& member, Type* type) const {
    if (member.kind == MemberKind::buffer)
        return shader_.module->getNamedGlobal(globalName(member.index));
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
    auto found = candidates(step);
    MemberKind kind = kindOf(load.getType());
    if (found.empty() || kind == MemberKind::constants || found.front()->kind != kind)
        return false;
    if (!isFirstRecord(step)) {
        if (kind == MemberKind::buffer)
            return false; // an address
        throw TranslationError("Only the first record of an argument buffer can have textures and "
                               "samplers.");
    }
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

// The host has read the record when the function runs.
void ArgumentBuffer::refuse(const StoreInst& store) const {
    Step step = stepTo(const_cast<Value*>(store.getPointerOperand()), layout_);
    const ArgumentMember* member = memberAt(step.offset);
    if (member && member->kind != MemberKind::constants)
        throw TranslationError("A shader cannot write a texture, a sampler or a pointer into an "
                               "argument buffer.");
}

bool ArgumentBuffer::resolve() {
    GlobalVariable* record = shader_.module->getNamedGlobal(globalName(index_));
    if (!record)
        return false;
    collect(record);
    for (StoreInst* store : stores_)
        at(*store, [&] { refuse(*store); });
    bool isChanged = false;
    for (LoadInst* load : loads_)
        isChanged |= at(*load, [&] { return resolve(*load); });
    return isChanged;
}

} // namespace

bool resolveArgumentBuffers(ShaderModule& shader) {
    bool isChanged = false;
    SmallVector<std::uint32_t, 4> buffers;
    for (const ArgumentMember& member : shader.members)
        if (!is_contained(buffers, member.buffer))
            buffers.push_back(member.buffer);
    for (std::uint32_t buffer : buffers)
        isChanged |= ArgumentBuffer(shader, buffer).resolve();
    return isChanged;
}

} // namespace tarnwick::msl
