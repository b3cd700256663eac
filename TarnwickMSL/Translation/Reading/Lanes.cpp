#include "TarnwickMSL/Translation/Reading/Lanes.h"

namespace tarnwick::msl::reading {

using namespace llvm;

Type* shapedLike(Type* shape, Type* scalar) {
    auto* vector = dyn_cast<FixedVectorType>(shape);
    return vector ? FixedVectorType::get(scalar, vector->getNumElements()) : scalar;
}

unsigned laneCount(Type* type) {
    auto* vector = dyn_cast<FixedVectorType>(type);
    return vector ? vector->getNumElements() : 1;
}

} // namespace tarnwick::msl::reading
