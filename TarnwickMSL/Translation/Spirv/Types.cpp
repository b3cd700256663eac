#include "TarnwickMSL/Translation/Spirv/Types.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/Analysis/ConstantFolding.h>

#include <string>

namespace tarnwick::msl::spirv {

using namespace llvm;

Id Types::array(Id element, std::uint32_t count) {
    if (Id known = arrays_.lookup({count, element}))
        return known;
    // The length is a constant of its own, since Constants is made after Types.
    Id length = module_.declare(spv::Op::OpConstant, of(Type::getInt32Ty(context_)), {count});
    Id made = module_.type(spv::Op::OpTypeArray, {element, length});
    arrays_[{count, element}] = made;
    return made;
}

static bool isPadding(Type* type) {
    return type->isArrayTy() && type->getArrayElementType()->isIntegerTy(8);
}

std::optional<std::uint32_t> Types::member(StructType* type, unsigned index, Layout layout) const {
    if (layout == Layout::plain)
        return index;
    if (isPadding(type->getElementType(index)))
        return std::nullopt;
    std::uint32_t place = 0;
    for (unsigned before = 0; before < index; ++before)
        place += !isPadding(type->getElementType(before));
    return place;
}

Id Types::integer(unsigned bits) {
    if (bits == 8)
        module_.require(spv::Capability::Int8);
    else if (bits == 16)
        module_.require(spv::Capability::Int16);
    else if (bits == 64)
        module_.require(spv::Capability::Int64);
    else if (bits != 32)
        throw CompilerFault("An integer has " + std::to_string(bits) + " bits.");
    return module_.integer(bits);
}

Id Types::structure(StructType* type, Layout layout) {
    SmallVector<std::uint32_t, 8> members;
    for (unsigned index = 0; index < type->getNumElements(); ++index)
        if (member(type, index, layout))
            members.push_back(inMemory(type->getElementType(index), layout));
    Id made = module_.type(spv::Op::OpTypeStruct, members);
    if (layout == Layout::plain)
        return made;
    const StructLayout& offsets = *layout_.getStructLayout(type);
    for (unsigned index = 0; index < type->getNumElements(); ++index)
        if (auto place = member(type, index, layout))
            module_.decorateMember(
                made, *place, spv::Decoration::Offset,
                {static_cast<std::uint32_t>(offsets.getElementOffset(index).getFixedValue())});
    return made;
}

Id Types::declare(Type* type, Layout layout) {
    if (auto* wanted = dyn_cast<IntegerType>(type))
        return wanted->getBitWidth() == 1 ? module_.type(spv::Op::OpTypeBool, {})
                                          : integer(wanted->getBitWidth());
    if (type->isFloatTy())
        return module_.real();
    if (type->isHalfTy()) {
        module_.require(spv::Capability::Float16);
        return module_.real(16);
    }
    if (auto* vector = dyn_cast<FixedVectorType>(type); vector && vector->getNumElements() <= 4)
        return module_.vector(of(vector->getElementType()), vector->getNumElements());
    if (auto* record = dyn_cast<StructType>(type))
        return structure(record, layout);
    if (auto* list = dyn_cast<ArrayType>(type)) {
        Id element = inMemory(list->getElementType(), layout);
        // A record may end in an array of 0 elements, a flexible array.
        auto count = static_cast<std::uint32_t>(std::max<std::uint64_t>(1, list->getNumElements()));
        if (layout == Layout::plain)
            return array(element, count);
        Id length = module_.declare(spv::Op::OpConstant, of(Type::getInt32Ty(context_)), {count});
        Id made = module_.type(spv::Op::OpTypeArray, {element, length});
        auto stride = static_cast<std::uint32_t>(layout_.getTypeAllocSize(list->getElementType()));
        module_.decorate(made, spv::Decoration::ArrayStride, {stride});
        return made;
    }
    throw CompilerFault("A value's type is not known.");
}

Id Types::inMemory(Type* type, Layout layout) {
    if (!type->isAggregateType())
        layout = Layout::plain;
    auto& known = types_[static_cast<std::size_t>(layout)];
    if (Id id = known.lookup(type))
        return id;
    Id made = declare(type, layout);
    known[type] = made;
    return made;
}

Id Constants::word(std::uint32_t value) {
    return of(ConstantInt::get(Type::getInt32Ty(types_.context()), value));
}

Id Constants::integer(Type* type, std::uint64_t value) {
    return of(ConstantInt::get(type, value));
}
Id Constants::real(Type* type, double value) {
    return of(ConstantFP::get(type, value));
}
Id Constants::null(Type* type) {
    return of(Constant::getNullValue(type));
}

Id Constants::nullOf(Id type) {
    return module_.declare(spv::Op::OpConstantNull, type, {});
}

Id Constants::composite(Id type, Operands parts) {
    return module_.declare(spv::Op::OpConstantComposite, type, parts);
}

Id Constants::specialisation(std::uint32_t number, std::uint32_t value) {
    Id& known = specialisations_[number];
    if (!known) {
        known = module_.declare(spv::Op::OpSpecConstant,
                                types_.of(Type::getInt32Ty(types_.context())), {value});
        module_.decorate(known, spv::Decoration::SpecId, {number});
    }
    return known;
}

Id Constants::specialisation(std::uint32_t number, Type* type) {
    Id& known = specialisations_[number];
    if (known)
        return known;
    if (type->isIntegerTy(1))
        known = module_.declare(spv::Op::OpSpecConstantFalse, types_.of(type), {});
    else if (type->getPrimitiveSizeInBits() == 64)
        known = module_.declare(spv::Op::OpSpecConstant, types_.of(type), {0, 0});
    else
        known = module_.declare(spv::Op::OpSpecConstant, types_.of(type), {0});
    module_.decorate(known, spv::Decoration::SpecId, {number});
    return known;
}

Id Constants::scalar(Type* type, const APInt& bits) {
    std::uint64_t value = bits.getZExtValue();
    auto low = static_cast<std::uint32_t>(value);
    if (bits.getBitWidth() == 64)
        return module_.declare(spv::Op::OpConstant, types_.of(type),
                               {low, static_cast<std::uint32_t>(value >> 32)});
    return module_.declare(spv::Op::OpConstant, types_.of(type), {low});
}

Id Constants::declare(const Constant* constant) {
    Type* type = constant->getType();
    if (type->isIntegerTy(1) && !isa<UndefValue>(constant))
        return module_.declare(constant->isNullValue() ? spv::Op::OpConstantFalse
                                                       : spv::Op::OpConstantTrue,
                               types_.of(type), {});
    if (auto* number = dyn_cast<ConstantInt>(constant); number && !type->isVectorTy())
        return scalar(type, number->getValue());
    if (auto* number = dyn_cast<ConstantFP>(constant); number && !type->isVectorTy())
        return scalar(type, number->getValueAPF().bitcastToAPInt());
    if (constant->isNullValue() || isa<UndefValue>(constant))
        return module_.declare(spv::Op::OpConstantNull, types_.of(type), {});
    // LLVM's passes leave some conversions of constant vectors.
    const Constant* folded = ConstantFoldConstant(constant, types_.dataLayout());
    if (folded && folded != constant)
        return of(folded);
    if (isa<ConstantExpr, GlobalValue>(constant))
        throw TranslationError("Converting a pointer to an integer is not supported.");
    unsigned count = 0;
    if (auto* vector = dyn_cast<FixedVectorType>(type))
        count = vector->getNumElements();
    else if (type->isStructTy())
        count = type->getStructNumElements();
    else if (type->isArrayTy())
        count = static_cast<unsigned>(type->getArrayNumElements());
    SmallVector<std::uint32_t, 16> parts;
    for (unsigned part = 0; part < count; ++part)
        if (Constant* element = constant->getAggregateElement(part))
            parts.push_back(of(element));
    if (parts.empty() || parts.size() != count)
        throw CompilerFault("A constant is not known.");
    return composite(types_.of(type), parts);
}

Id Constants::of(const Constant* constant) {
    if (Id known = constants_.lookup(constant))
        return known;
    Id made = declare(constant);
    constants_[constant] = made;
    return made;
}

} // namespace tarnwick::msl::spirv
