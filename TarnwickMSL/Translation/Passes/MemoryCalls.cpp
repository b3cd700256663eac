#include "TarnwickMSL/Translation/Passes/Legalise.h"
#include "TarnwickMSL/Translation/Places.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;

constexpr std::size_t mostParts = 64; // beyond it, a loop

// A vector or scalar at a byte offset.
struct Part {
    std::uint64_t offset = 0;
    Type* type = nullptr;
};

static void collectParts(Type* type, std::uint64_t offset, const DataLayout& layout,
                         SmallVectorImpl<Part>& parts) {
    if (parts.size() > mostParts)
        return;
    if (auto* record = dyn_cast<StructType>(type)) {
        for (unsigned n = 0; n < record->getNumElements(); ++n)
            collectParts(record->getElementType(n),
                         offset + layout.getStructLayout(record)->getElementOffset(n), layout,
                         parts);
    } else if (auto* array = dyn_cast<ArrayType>(type)) {
        std::uint64_t stride = layout.getTypeAllocSize(array->getElementType());
        for (std::uint64_t n = 0; n < array->getNumElements() && parts.size() <= mostParts; ++n)
            collectParts(array->getElementType(), offset + n * stride, layout, parts);
    } else {
        parts.push_back({offset, type});
    }
}

// The type of a pointer's root, where the pointer is a whole number of it into it.
static Type* rootType(Value* pointer) {
    pointer = pointer->stripInBoundsConstantOffsets();
    if (auto* local = dyn_cast<AllocaInst>(pointer))
        return local->getAllocatedType();
    if (auto* global = dyn_cast<GlobalVariable>(pointer))
        return global->getValueType();
    return nullptr;
}

static std::uint64_t offsetOf(Value* pointer, const DataLayout& layout) {
    APInt offset(layout.getIndexTypeSizeInBits(pointer->getType()), 0);
    pointer->stripAndAccumulateConstantOffsets(layout, offset, true);
    return offset.getZExtValue();
}

// The parts of `bytes` bytes from the pointer on, as its root's type has them; nothing where they
// do not fall on whole parts.
static std::optional<SmallVector<Part, 8>> partsAt(Value* pointer, std::uint64_t bytes,
                                                   const DataLayout& layout) {
    Type* type = rootType(pointer);
    if (!type)
        return std::nullopt;
    SmallVector<Part, 8> all, within;
    collectParts(type, 0, layout, all);
    std::uint64_t start = offsetOf(pointer, layout);
    if (all.size() > mostParts || start + bytes > layout.getTypeAllocSize(type))
        return std::nullopt;
    for (const Part& part : all) {
        std::uint64_t end = part.offset + layout.getTypeStoreSize(part.type);
        if (end <= start || part.offset >= start + bytes)
            continue;
        if (part.offset < start || end > start + bytes)
            return std::nullopt;
        within.push_back({part.offset - start, part.type});
    }
    return within;
}

static SmallVector<Part, 8> words(std::uint64_t bytes, LLVMContext& context) {
    SmallVector<Part, 8> parts;
    std::uint64_t at = 0;
    for (unsigned size : {4u, 1u})
        for (; at + size <= bytes; at += size)
            parts.push_back({at, Type::getIntNTy(context, size * 8)});
    return parts;
}

static Value* step(IRBuilder<>& builder, Value* pointer, std::uint64_t offset) {
    return offset == 0 ? pointer
                       : builder.CreateConstInBoundsGEP1_64(builder.getInt8Ty(), pointer, offset);
}

// Calls `each` with a builder and the index of a word, in a loop before `at`.
template <class Each> static void forWords(Instruction& at, std::uint64_t count, Each each) {
    auto [body, index] = SplitBlockAndInsertSimpleForLoop(
        ConstantInt::get(Type::getInt32Ty(at.getContext()), count), &at);
    IRBuilder<> builder(body);
    each(builder, index);
}

static void copy(MemTransferInst& call, std::uint64_t bytes, const DataLayout& layout) {
    IRBuilder<> builder(&call);
    Value *to = call.getRawDest(), *from = call.getRawSource();
    auto parts = partsAt(to, bytes, layout);
    if (!parts)
        parts = partsAt(from, bytes, layout);
    if (!parts && bytes > 4 * mostParts && bytes % 4 == 0)
        return forWords(call, bytes / 4, [&](IRBuilder<>& inside, Value* index) {
            Type* word = inside.getInt32Ty();
            Value* read = inside.CreateLoad(word, inside.CreateGEP(word, from, index));
            inside.CreateStore(read, inside.CreateGEP(word, to, index));
        });
    if (!parts)
        parts = words(bytes, call.getContext());
    SmallVector<Value*, 8> read; // all of it first: the two may overlap
    for (const Part& part : *parts)
        read.push_back(
            builder.CreateAlignedLoad(part.type, step(builder, from, part.offset), Align(1)));
    for (auto [part, value] : zip(*parts, read))
        builder.CreateAlignedStore(value, step(builder, to, part.offset), Align(1));
}

static Constant* filled(Type* type, std::uint8_t byte, const DataLayout& layout) {
    if (byte == 0)
        return Constant::getNullValue(type);
    auto* scalar = type->getScalarType();
    unsigned bits = static_cast<unsigned>(layout.getTypeSizeInBits(scalar));
    auto* pattern = ConstantInt::get(type->getContext(), APInt::getSplat(bits, APInt(8, byte)));
    auto* value = ConstantExpr::getBitCast(pattern, scalar);
    auto* vector = dyn_cast<FixedVectorType>(type);
    return vector ? ConstantVector::getSplat(vector->getElementCount(), value) : value;
}

static void fill(MemSetInst& call, std::uint64_t bytes, const DataLayout& layout) {
    auto* value = dyn_cast<ConstantInt>(call.getValue());
    if (!value)
        throw TranslationError("Memory is filled with a value that is not constant.");
    auto byte = static_cast<std::uint8_t>(value->getZExtValue());
    auto parts = partsAt(call.getRawDest(), bytes, layout);
    if (!parts && bytes > 4 * mostParts && bytes % 4 == 0)
        return forWords(call, bytes / 4, [&](IRBuilder<>& inside, Value* index) {
            Type* word = inside.getInt32Ty();
            inside.CreateStore(filled(word, byte, layout),
                               inside.CreateGEP(word, call.getRawDest(), index));
        });
    if (!parts)
        parts = words(bytes, call.getContext());
    IRBuilder<> builder(&call);
    for (const Part& part : *parts)
        builder.CreateAlignedStore(filled(part.type, byte, layout),
                                   step(builder, call.getRawDest(), part.offset), Align(1));
}

static void expand(MemIntrinsic& call, const DataLayout& layout) {
    auto* bytes = dyn_cast<ConstantInt>(call.getLength());
    if (!bytes)
        throw TranslationError("Memory of a length that is not constant is copied.");
    if (auto* transfer = dyn_cast<MemTransferInst>(&call))
        copy(*transfer, bytes->getZExtValue(), layout);
    else
        fill(cast<MemSetInst>(call), bytes->getZExtValue(), layout);
    call.eraseFromParent();
}

bool expandMemoryCalls(Function& main) {
    const DataLayout& layout = main.getParent()->getDataLayout();
    SmallVector<MemIntrinsic*, 8> calls;
    for (Instruction& instruction : instructions(main))
        if (auto* call = dyn_cast<MemIntrinsic>(&instruction))
            calls.push_back(call);
    for (MemIntrinsic* call : calls)
        at(*call, [&] { expand(*call, layout); });
    return !calls.empty();
}

} // namespace tarnwick::msl
