// Copies and fills of memory become loads and stores.
//
// In: code with llvm.memcpy, memmove and memset of constant lengths, which Clang makes of
// assignments of records and inlining makes of records that are passed by value. SPIR-V copies
// whole variables of one type, which fits few of them.
//
// Out: no such call. A copy is loads and stores of parts; a part is a scalar or vector of the type
// of the memory on one side. All loads are before all stores, since source and target may overlap.
//
// The parts matter: an access that does not fall on a member of its variable's declared type makes
// the writer show the memory as integers (docs/compiler.md, "Memory in the writer"), and
// the optimiser can turn a local record into values only if its accesses fall on its members.
// - rootOf follows the steps of a pointer down to its local or global; it gives a constant offset
//   and the strides of the indices that are not constant.
// - placeOf goes from the root's type into the element or member that contains the place, until no
//   stride is left. It then knows a type and a constant offset in it. An index that is not constant
//   is dropped when its stride is a multiple of the element size, because every element looks the
//   same from inside.
// - partsAt lists the scalars and vectors of that type within the copied bytes. It fails if one is
//   cut by the range. Runs of four bytes become one word (byWords).
// - partsOfBoth asks both sides and takes the one with fewer parts: the optimiser leaves arrays of
//   bytes where records were.
//
// Invariant: the parts cover exactly the bytes of the copy, but for padding of the chosen type.
// Padding has no value, so it need not be copied.
//
// Before, LLVM removes long copies that are not needed, such as those of a record that is copied
// from a buffer, changed in one member and copied back: the packaged CPU driver fills a local array
// with zeros by one instruction for each number, which it takes half a minute to compile for 64
// KiB.
//
// A copy of many words is a loop: over the elements of an array on one side if they are records or
// vectors, else over words. If no side gives parts, the copy is of words.
//
// The pass runs twice: before loops are unrolled, so that copied records become values, and after
// LLVM's passes, so that `pointers` meets no call whatever those passes do.
#include "TarnwickMSL/Translation/Passes/Memory/MemoryCalls.h"

#include "TarnwickMSL/Translation/Passes/Memory/ByteSteps.h"
#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/Reading/Access.h"

#include <llvm/ADT/MapVector.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/IR/Module.h>
#include <llvm/IR/Operator.h>
#include <llvm/Transforms/Utils/BasicBlockUtils.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;

constexpr std::size_t mostParts = 256;
constexpr std::size_t mostWords = 64; // beyond it, a loop

// A vector or scalar at a byte offset.
struct Part {
    std::uint64_t offset = 0;
    Type* type = nullptr;
    std::uint64_t array = 0; // where the array of the part starts; the part itself if it is in none
};

static void collectParts(Type* type, std::uint64_t offset, const DataLayout& layout,
                         SmallVectorImpl<Part>& parts,
                         std::optional<std::uint64_t> around = std::nullopt) {
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
            collectParts(array->getElementType(), offset + n * stride, layout, parts, offset);
    } else {
        parts.push_back({offset, type, around.value_or(offset)});
    }
}

// A type, and a place in it.
struct Place {
    Type* type = nullptr;
    std::int64_t offset = 0;
    SmallVector<std::int64_t, 4> scales; // of what is added at run time
};

static std::optional<Place> rootOf(Value* pointer, const DataLayout& layout) {
    Place place;
    MapVector<Value*, APInt> scales;
    APInt offset(layout.getIndexTypeSizeInBits(pointer->getType()), 0);
    while (auto* step = dyn_cast<GEPOperator>(pointer)) {
        if (!step->collectOffset(layout, offset.getBitWidth(), scales, offset))
            return std::nullopt;
        pointer = step->getPointerOperand();
    }
    if (auto* local = dyn_cast<AllocaInst>(pointer))
        place.type = local->getAllocatedType();
    else if (auto* global =
                 dyn_cast<GlobalVariable>(pointer)) // an element of many, or all there is
        place.type = ArrayType::get(global->getValueType(), 0);
    else
        return std::nullopt;
    place.offset = offset.getSExtValue();
    for (const auto& [index, scale] : scales) {
        const Counter counter = counterOf(index).value_or(Counter{.step = 1});
        place.offset += counter.first * scale.getSExtValue();
        place.scales.push_back(counter.step * scale.getSExtValue());
    }
    return place;
}

// Goes from an array to the element with the place. All elements are alike.
static void intoElement(Place& place, const DataLayout& layout) {
    place.type = place.type->getArrayElementType();
    auto stride = static_cast<std::int64_t>(layout.getTypeAllocSize(place.type));
    if (stride == 0)
        return;
    erase_if(place.scales, [stride](std::int64_t scale) { return scale % stride == 0; });
    place.offset = (place.offset % stride + stride) % stride;
}

// Goes from the root of the pointer down to the innermost type with `bytes` bytes at a constant
// offset.
static std::optional<Place> placeOf(Value* pointer, std::uint64_t bytes, const DataLayout& layout) {
    std::optional<Place> place = rootOf(pointer, layout);
    if (place && isa<GlobalVariable>(getUnderlyingObject(pointer, 0)))
        intoElement(*place, layout);
    while (place && !place->scales.empty()) {
        auto* record = dyn_cast<StructType>(place->type);
        auto size = static_cast<std::int64_t>(layout.getTypeAllocSize(place->type));
        if (place->type->isArrayTy()) {
            intoElement(*place, layout);
        } else if (record && place->offset >= 0 && place->offset < size) {
            const StructLayout& members = *layout.getStructLayout(record);
            unsigned member =
                members.getElementContainingOffset(static_cast<std::uint64_t>(place->offset));
            place->offset -= static_cast<std::int64_t>(members.getElementOffset(member));
            place->type = record->getElementType(member);
        } else {
            return std::nullopt;
        }
    }
    while (place && place->type->isArrayTy()) { // no more parts than need be
        Place inner = *place;
        intoElement(inner, layout);
        if (inner.offset + static_cast<std::int64_t>(bytes) >
            static_cast<std::int64_t>(layout.getTypeAllocSize(inner.type)))
            break;
        place = inner;
    }
    return place;
}

// Bytes of one array (characters, padding) move by fours, from whole words of the record on.
static SmallVector<Part, 8> byWords(ArrayRef<Part> parts, std::uint64_t start) {
    SmallVector<Part, 8> merged;
    for (std::size_t n = 0; n < parts.size(); ++n) {
        bool isWord = n + 4 <= parts.size() && (start + parts[n].offset) % 4 == 0;
        for (std::size_t k = 0; isWord && k < 4; ++k)
            isWord = parts[n + k].type->isIntegerTy(8) && parts[n + k].array == parts[n].array &&
                     parts[n + k].offset == parts[n].offset + k;
        if (!isWord) {
            merged.push_back(parts[n]);
            continue;
        }
        merged.push_back({parts[n].offset, Type::getInt32Ty(parts[n].type->getContext())});
        n += 3;
    }
    return merged;
}

// Returns the parts of `bytes` bytes from the pointer on, as its root's type has them. Returns no
// list if the bytes are not whole parts.
static std::optional<SmallVector<Part, 8>> partsAt(Value* pointer, std::uint64_t bytes,
                                                   const DataLayout& layout) {
    std::optional<Place> place = placeOf(pointer, bytes, layout);
    if (!place || place->offset < 0)
        return std::nullopt;
    SmallVector<Part, 8> all, within;
    collectParts(place->type, 0, layout, all);
    auto start = static_cast<std::uint64_t>(place->offset);
    if (all.size() > mostParts || start + bytes > layout.getTypeAllocSize(place->type))
        return std::nullopt;
    for (const Part& part : all) {
        std::uint64_t end = part.offset + layout.getTypeStoreSize(part.type);
        if (end <= start || part.offset >= start + bytes)
            continue;
        if (part.offset < start || end > start + bytes)
            return std::nullopt;
        within.push_back({part.offset - start, part.type, part.array});
    }
    return byWords(within, start);
}

// The parts of the source or of the target, the fewer of the two: the optimiser leaves arrays of
// bytes in place of records.
static std::optional<SmallVector<Part, 8>> partsOfBoth(Value* to, Value* from, std::uint64_t bytes,
                                                       const DataLayout& layout) {
    auto there = partsAt(to, bytes, layout), here = partsAt(from, bytes, layout);
    return !there || (here && here->size() < there->size()) ? here : there;
}

static SmallVector<Part, 8> words(std::uint64_t bytes, LLVMContext& context) {
    SmallVector<Part, 8> parts;
    std::uint64_t at = 0;
    for (unsigned size : {4u, 1u})
        for (; at + size <= bytes; at += size)
            parts.push_back({at, Type::getIntNTy(context, size * 8)});
    return parts;
}

static bool isLoop(const std::optional<SmallVector<Part, 8>>& parts, std::uint64_t bytes,
                   const DataLayout& layout) {
    return bytes > 4 * mostWords && bytes % 4 == 0 &&
           (!parts || all_of(*parts, [&](const Part& part) {
               return layout.getTypeStoreSize(part.type) == 4;
           }));
}

namespace {

// Whole elements of an array.
struct Elements {
    Type* type = nullptr;
    std::uint64_t count = 0;
    SmallVector<Part, 8> parts; // of one
};

} // namespace

// Absent if the bytes are not several elements of more than a word each.
static std::optional<Elements> elementsAt(Value* pointer, std::uint64_t bytes,
                                          const DataLayout& layout) {
    const std::optional<Place> place = placeOf(pointer, bytes, layout);
    if (!place || place->offset < 0 || !place->type->isArrayTy())
        return std::nullopt;
    Elements found{.type = place->type->getArrayElementType()};
    const std::uint64_t size = layout.getTypeAllocSize(found.type);
    if (size <= 4 || static_cast<std::uint64_t>(place->offset) % size != 0 || bytes % size != 0)
        return std::nullopt;
    found.count = bytes / size;
    SmallVector<Part, 8> parts;
    collectParts(found.type, 0, layout, parts);
    found.parts = byWords(parts, 0);
    return parts.size() <= mostParts ? std::optional(found) : std::nullopt;
}

static Value* step(IRBuilder<>& builder, Value* pointer, std::uint64_t offset) {
    return offset == 0 ? pointer
                       : builder.CreateConstInBoundsGEP1_64(builder.getInt8Ty(), pointer, offset);
}

// Calls `each` with a builder and an index below `count`, in a loop before `at`.
template <class Each> static void forEach(Instruction& at, std::uint64_t count, Each each) {
    auto [body, index] = SplitBlockAndInsertSimpleForLoop(
        ConstantInt::get(Type::getInt32Ty(at.getContext()), count), &at);
    IRBuilder<> builder(body);
    each(builder, index);
}

// The step is marked, because its index counts words of all members together.
static Value* wordAt(IRBuilder<>& builder, Value* pointer, Value* index) {
    Value* place = builder.CreateGEP(builder.getInt32Ty(), pointer, index);
    if (auto* step = dyn_cast<Instruction>(place))
        step->setMetadata(reading::wordStep, MDNode::get(builder.getContext(), {}));
    return place;
}

static void copyParts(IRBuilder<>& builder, Value* to, Value* from, ArrayRef<Part> parts) {
    SmallVector<Value*, 8> read; // all of it first: the two may overlap
    for (const Part& part : parts)
        read.push_back(
            builder.CreateAlignedLoad(part.type, step(builder, from, part.offset), Align(1)));
    for (auto [part, value] : zip(parts, read))
        builder.CreateAlignedStore(value, step(builder, to, part.offset), Align(1));
}

static void copyElements(Instruction& call, Value* to, Value* from, const Elements& elements) {
    forEach(call, elements.count, [&](IRBuilder<>& inside, Value* index) {
        Value* target = inside.CreateGEP(elements.type, to, index);
        copyParts(inside, target, inside.CreateGEP(elements.type, from, index), elements.parts);
    });
}

static void copy(MemTransferInst& call, std::uint64_t bytes, const DataLayout& layout) {
    IRBuilder<> builder(&call);
    Value *to = call.getRawDest(), *from = call.getRawSource();
    auto parts = partsOfBoth(to, from, bytes, layout);
    if (isLoop(parts, bytes, layout)) {
        if (auto elements = elementsAt(to, bytes, layout))
            return copyElements(call, to, from, *elements);
        if (auto elements = elementsAt(from, bytes, layout))
            return copyElements(call, to, from, *elements);
        return forEach(call, bytes / 4, [&](IRBuilder<>& inside, Value* index) {
            Type* word = inside.getInt32Ty();
            Value* read = inside.CreateLoad(word, wordAt(inside, from, index));
            inside.CreateStore(read, wordAt(inside, to, index));
        });
    }
    copyParts(builder, to, from, parts ? *parts : words(bytes, call.getContext()));
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

static void fillParts(IRBuilder<>& builder, Value* to, std::uint8_t byte, ArrayRef<Part> parts,
                      const DataLayout& layout) {
    for (const Part& part : parts)
        builder.CreateAlignedStore(filled(part.type, byte, layout), step(builder, to, part.offset),
                                   Align(1));
}

static void fill(MemSetInst& call, std::uint64_t bytes, const DataLayout& layout) {
    auto* value = dyn_cast<ConstantInt>(call.getValue());
    if (!value)
        throw CompilerFault("Memory is filled with a value that is not constant.");
    auto byte = static_cast<std::uint8_t>(value->getZExtValue());
    auto parts = partsAt(call.getRawDest(), bytes, layout);
    if (isLoop(parts, bytes, layout)) {
        if (auto elements = elementsAt(call.getRawDest(), bytes, layout))
            return forEach(call, elements->count, [&](IRBuilder<>& inside, Value* index) {
                Value* target = inside.CreateGEP(elements->type, call.getRawDest(), index);
                fillParts(inside, target, byte, elements->parts, layout);
            });
        return forEach(call, bytes / 4, [&](IRBuilder<>& inside, Value* index) {
            Type* word = inside.getInt32Ty();
            inside.CreateStore(filled(word, byte, layout),
                               wordAt(inside, call.getRawDest(), index));
        });
    }
    IRBuilder<> builder(&call);
    fillParts(builder, call.getRawDest(), byte, parts ? *parts : words(bytes, call.getContext()),
              layout);
}

static void expand(MemIntrinsic& call, const DataLayout& layout) {
    auto* bytes = dyn_cast<ConstantInt>(call.getLength());
    if (!bytes)
        throw CompilerFault("Memory of a length that is not constant is copied.");
    if (auto* transfer = dyn_cast<MemTransferInst>(&call))
        copy(*transfer, bytes->getZExtValue(), layout);
    else
        fill(cast<MemSetInst>(call), bytes->getZExtValue(), layout);
    call.eraseFromParent();
}

bool hasLongCopies(const Function& main) {
    return any_of(instructions(main), [](const Instruction& instruction) {
        const auto* call = dyn_cast<MemTransferInst>(&instruction);
        const auto* length = call ? dyn_cast<ConstantInt>(call->getLength()) : nullptr;
        return length && length->getZExtValue() > 4 * mostWords;
    });
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
