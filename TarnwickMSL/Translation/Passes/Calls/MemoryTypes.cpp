#include "TarnwickMSL/Translation/Passes/Calls/MemoryTypes.h"

#include <llvm/ADT/SmallVector.h>

namespace tarnwick::msl {

using namespace llvm;

Type* scalarType(LLVMContext& context, Scalar scalar) {
    switch (scalar) {
    case Scalar::bool_:
    case Scalar::int8:
    case Scalar::uint8:
        return Type::getInt8Ty(context);
    case Scalar::int16:
    case Scalar::uint16:
        return Type::getInt16Ty(context);
    case Scalar::int32:
    case Scalar::uint32:
        return Type::getInt32Ty(context);
    case Scalar::half:
        return Type::getHalfTy(context);
    case Scalar::float_:
        return Type::getFloatTy(context);
    case Scalar::int64:
    case Scalar::uint64:
        return Type::getInt64Ty(context);
    }
    return nullptr;
}

Type* withoutPointers(Type* type) {
    if (type->isPointerTy())
        return Type::getInt64Ty(type->getContext());
    if (auto* array = dyn_cast<ArrayType>(type))
        return ArrayType::get(withoutPointers(array->getElementType()), array->getNumElements());
    auto* record = dyn_cast<StructType>(type);
    if (!record)
        return type;
    SmallVector<Type*, 8> members;
    for (Type* member : record->elements())
        members.push_back(withoutPointers(member));
    return ArrayRef<Type*>(members) == record->elements()
               ? type
               : StructType::get(type->getContext(), members, record->isPacked());
}

} // namespace tarnwick::msl
