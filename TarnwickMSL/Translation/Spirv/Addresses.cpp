// Accesses by address: pointers of the storage class PhysicalStorageBuffer (SPIR-V 1.6, 3.7), each
// made of 64 bits for one access. The memory has no declared type, so each scalar or vector is
// accessed as itself.

#include "TarnwickMSL/Translation/Spirv/Memory.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

static constexpr std::uint32_t aligned = 2; // SPIR-V 1.6, 3.26: MemoryAccess Aligned

Memory::Spot Memory::spot(const Place& place, Align align) {
    Type* wide = Type::getInt64Ty(body_.types.context());
    const Value* base = addressOf(place.root);
    Id address = body_.resized(wide, base->getType(), body_.id(base), false);
    auto add = [&](Id bytes) { address = body_.emit(spv::Op::OpIAdd, wide, {address, bytes}); };
    for (const Term& term : place.terms) {
        Id index = body_.resized(wide, term.index->getType(), body_.id(term.index), true);
        Id scale = body_.constants.integer(wide, static_cast<std::uint64_t>(term.scale));
        add(term.scale == 1 ? index : body_.emit(spv::Op::OpIMul, wide, {index, scale}));
    }
    if (place.offset)
        add(body_.constants.integer(wide, static_cast<std::uint64_t>(place.offset)));
    return {address, align};
}

Memory::Spot Memory::movedBy(const Spot& spot, std::uint64_t bytes) {
    if (bytes == 0)
        return spot;
    Type* wide = Type::getInt64Ty(body_.types.context());
    Id address =
        body_.emit(spv::Op::OpIAdd, wide, {spot.address, body_.constants.integer(wide, bytes)});
    return {address, commonAlignment(spot.align, bytes)};
}

Id Memory::pointer(const Spot& spot, Type* type) {
    usesAddresses_ = true;
    body_.module.require(spv::Capability::PhysicalStorageBufferAddresses);
    requireStorage(spv::StorageClass::PhysicalStorageBuffer, type);
    Id pointee = body_.types.of(type);
    return body_.emit(spv::Op::OpConvertUToPtr,
                      body_.module.pointer(spv::StorageClass::PhysicalStorageBuffer, pointee),
                      {spot.address});
}

// The alignment is a multiple of the size of a scalar (Vulkan 1.3,
// VUID-StandaloneSpirv-PhysicalStorageBuffer64-06314).
static std::uint32_t alignment(Align known, Type* type, const DataLayout& layout) {
    std::uint64_t scalar = layout.getTypeStoreSize(type->getScalarType());
    return static_cast<std::uint32_t>(std::max(known.value(), scalar));
}

Id Memory::read(const Spot& spot, Type* type) {
    const DataLayout& layout = body_.types.dataLayout();
    if (auto* array = dyn_cast<ArrayType>(type)) {
        SmallVector<std::uint32_t, 8> parts;
        Type* element = array->getElementType();
        for (std::uint64_t n = 0; n < array->getNumElements(); ++n)
            parts.push_back(read(movedBy(spot, n * layout.getTypeAllocSize(element)), element));
        return body_.emit(spv::Op::OpCompositeConstruct, type, parts);
    }
    bool isBoolean = type->isIntegerTy(1);
    Type* leaf = isBoolean ? Type::getInt8Ty(body_.types.context()) : type;
    Id value = body_.emit(spv::Op::OpLoad, leaf,
                          {pointer(spot, leaf), aligned, alignment(spot.align, leaf, layout)});
    return converted(type, leaf, value);
}

void Memory::write(const Spot& spot, Type* type, Id value) {
    const DataLayout& layout = body_.types.dataLayout();
    if (auto* array = dyn_cast<ArrayType>(type)) {
        Type* element = array->getElementType();
        for (std::uint32_t n = 0; n < array->getNumElements(); ++n)
            write(movedBy(spot, n * layout.getTypeAllocSize(element)), element,
                  body_.emit(spv::Op::OpCompositeExtract, element, {value, n}));
        return;
    }
    bool isBoolean = type->isIntegerTy(1);
    Type* leaf = isBoolean ? Type::getInt8Ty(body_.types.context()) : type;
    Id stored = converted(leaf, type, value);
    body_.act(spv::Op::OpStore,
              {pointer(spot, leaf), stored, aligned, alignment(spot.align, leaf, layout)});
}

} // namespace tarnwick::msl::spirv
