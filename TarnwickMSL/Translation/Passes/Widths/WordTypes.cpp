#include "TarnwickMSL/Translation/Passes/Widths/WordTypes.h"

#include <llvm/Analysis/ConstantFolding.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/DerivedTypes.h>

namespace tarnwick::msl {

using namespace llvm;

static constexpr std::uint64_t wordBytes = 4;

static Type* words(LLVMContext& context, std::uint64_t bytes) {
    Type* word = Type::getInt32Ty(context);
    const std::uint64_t count = (bytes + wordBytes - 1) / wordBytes;
    return count == 1 ? word : ArrayType::get(word, count);
}

namespace {

// Collects the members of a packed record, so that each is where it was.
class RecordBuilder {
  public:
    explicit RecordBuilder(LLVMContext& context) : context_(context) {}

    void add(Type* member, std::uint64_t offset, std::uint64_t bytes) {
        fillUpTo(offset);
        members_.push_back(member);
        end_ = offset + bytes;
    }
    StructType* finish(std::uint64_t bytes) {
        fillUpTo(bytes);
        return StructType::get(context_, members_, true);
    }

  private:
    void fillUpTo(std::uint64_t offset) {
        if (offset > end_)
            members_.push_back(words(context_, offset - end_));
    }

    LLVMContext& context_;
    SmallVector<Type*, 8> members_;
    std::uint64_t end_ = 0;
};

} // namespace

static Type* wordRecord(StructType& record, const Stands& stands, const DataLayout& layout) {
    const StructLayout& places = *layout.getStructLayout(&record);
    const std::uint64_t bytes = places.getSizeInBytes();
    RecordBuilder made(record.getContext());
    for (unsigned index = 0; index < record.getNumElements(); ++index) {
        Type* member = record.getElementType(index);
        const std::uint64_t offset = places.getElementOffset(index).getFixedValue();
        const std::uint64_t size = layout.getTypeAllocSize(member).getFixedValue();
        const bool isWhole = offset % wordBytes == 0 && size % wordBytes == 0;
        if (isWhole && size > 0)
            made.add(wordType(member, stands, layout), offset, size);
        else if (!stands.areInMemoryOf(member))
            return words(record.getContext(), bytes); // a word that is not at a word's place
    }
    return made.finish((bytes + wordBytes - 1) / wordBytes * wordBytes);
}

Type* wordType(Type* type, const Stands& stands, const DataLayout& layout) {
    if (!stands.areInMemoryOf(type))
        return type;
    const std::uint64_t bytes = layout.getTypeAllocSize(type).getFixedValue();
    if (auto* record = dyn_cast<StructType>(type))
        return wordRecord(*record, stands, layout);
    if (type->isArrayTy() && layout.getTypeAllocSize(type->getArrayElementType()) % wordBytes == 0)
        return ArrayType::get(wordType(type->getArrayElementType(), stands, layout),
                              type->getArrayNumElements());
    return words(type->getContext(), bytes);
}

static Constant* wordAt(Constant& value, std::uint64_t offset, const DataLayout& layout) {
    LLVMContext& context = value.getContext();
    const std::uint64_t end = layout.getTypeAllocSize(value.getType()).getFixedValue();
    std::uint32_t word = 0;
    for (std::uint64_t byte = 0; byte < wordBytes && offset + byte < end; ++byte) {
        auto* found = dyn_cast_or_null<ConstantInt>(ConstantFoldLoadFromConst(
            &value, Type::getInt8Ty(context), APInt(32, offset + byte), layout));
        if (found) // else it is undefined
            word |= static_cast<std::uint32_t>(found->getZExtValue()) << byte * 8;
    }
    return ConstantInt::get(Type::getInt32Ty(context), word);
}

static Constant* partAt(Constant& value, std::uint64_t offset, Type* type,
                        const DataLayout& layout) {
    if (type->isIntegerTy(32))
        return wordAt(value, offset, layout);
    SmallVector<Constant*, 16> parts;
    if (auto* record = dyn_cast<StructType>(type)) {
        const StructLayout& places = *layout.getStructLayout(record);
        for (unsigned index = 0; index < record->getNumElements(); ++index)
            parts.push_back(partAt(value, offset + places.getElementOffset(index).getFixedValue(),
                                   record->getElementType(index), layout));
        return ConstantStruct::get(record, parts);
    }
    if (auto* array = dyn_cast<ArrayType>(type)) {
        const std::uint64_t stride =
            layout.getTypeAllocSize(array->getElementType()).getFixedValue();
        for (std::uint64_t index = 0; index < array->getNumElements(); ++index)
            parts.push_back(
                partAt(value, offset + index * stride, array->getElementType(), layout));
        return ConstantArray::get(array, parts);
    }
    Constant* found = ConstantFoldLoadFromConst(&value, type, APInt(32, offset), layout);
    return found ? found : Constant::getNullValue(type);
}

Constant* wordConstant(Constant& value, Type* wordType, const DataLayout& layout) {
    return value.isNullValue() ? Constant::getNullValue(wordType)
                               : partAt(value, 0, wordType, layout);
}

} // namespace tarnwick::msl
