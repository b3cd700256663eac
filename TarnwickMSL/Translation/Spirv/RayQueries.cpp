#include "TarnwickMSL/Translation/Spirv/RayQueries.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

using enum spv::Op;

Id RayQueries::typeOf(spv::Op op, Id& known) {
    return known ? known : known = body_.module.type(op, {});
}

Id RayQueries::query(const CallInst& call) {
    auto* made = dyn_cast<CallInst>(call.getArgOperand(0));
    if (!made || !made->getCalledFunction() ||
        made->getCalledFunction()->getName() != "msl.ray_query_make")
        throw TranslationError("The intersection query must be known at compile time.");
    Id& known = queries_[made];
    if (!known) {
        body_.module.require(spv::Capability::RayQueryKHR);
        body_.module.extension("SPV_KHR_ray_query");
        known = body_.module.variable(spv::StorageClass::Private,
                                      typeOf(OpTypeRayQueryKHR, queryType_));
    }
    return known;
}

Id RayQueries::structure(const Value* handle) {
    auto* constant = dyn_cast<ConstantInt>(handle);
    if (!constant)
        throw TranslationError("The acceleration structure must be known at compile time.");
    Id type = typeOf(OpTypeAccelerationStructureKHR, structureType_);
    Id& known = structures_[constant->getZExtValue()];
    if (!known) {
        known = body_.module.variable(spv::StorageClass::UniformConstant, type);
        Resource resource{.kind = ResourceKind::accelerationStructure,
                          .index = static_cast<std::uint32_t>(constant->getZExtValue()),
                          .binding = takeBinding_()};
        body_.module.bind(known, resource.binding);
        resources_.push_back(resource);
    }
    return body_.emit(OpLoad, type, {known});
}

// Skipping all triangles or all boxes is a capability of its own (SPIR-V 1.6, 3.RayFlags).
static constexpr std::uint64_t skippingFlags = 0x300;

void RayQueries::reset(const CallInst& call) {
    auto* flags = dyn_cast<ConstantInt>(call.getArgOperand(2));
    if (!flags || (flags->getZExtValue() & skippingFlags))
        body_.module.require(spv::Capability::RayTraversalPrimitiveCullingKHR);
    SmallVector<std::uint32_t, 8> operands{query(call), structure(call.getArgOperand(1))};
    for (unsigned n = 2; n < call.arg_size(); ++n)
        operands.push_back(body_.id(call.getArgOperand(n)));
    body_.act(OpRayQueryInitializeKHR, operands);
}

// The candidate or the committed intersection, by the symbol; absent if the call is about neither.
std::optional<Id> RayQueries::intersection(const CallInst& call) {
    StringRef symbol = call.getCalledFunction()->getName();
    if (symbol.ends_with(".0") || symbol.ends_with(".1"))
        return body_.constants.word(symbol.ends_with(".1"));
    return std::nullopt;
}

// SPIR-V gives a matrix of four columns of three.
Id RayQueries::column(spv::Op op, const CallInst& call) {
    Id type = body_.module.type(OpTypeMatrix, {body_.types.of(call.getType()), 4});
    Id matrix = body_.emit(op, type, {query(call), *intersection(call)});
    auto* column = dyn_cast<ConstantInt>(call.getArgOperand(1));
    if (!column)
        throw CompilerFault("The column of a transform is not constant.");
    return body_.emit(OpCompositeExtract, call.getType(),
                      {matrix, static_cast<std::uint32_t>(column->getZExtValue())});
}

static spv::Op getter(StringRef name) {
    return StringSwitch<spv::Op>(name)
        .Case("next", OpRayQueryProceedKHR)
        .Case("box_opaque", OpRayQueryGetIntersectionCandidateAABBOpaqueKHR)
        .Case("origin", OpRayQueryGetWorldRayOriginKHR)
        .Case("direction", OpRayQueryGetWorldRayDirectionKHR)
        .Case("least", OpRayQueryGetRayTMinKHR)
        .Case("type", OpRayQueryGetIntersectionTypeKHR)
        .Case("distance", OpRayQueryGetIntersectionTKHR)
        .Case("user_instance", OpRayQueryGetIntersectionInstanceCustomIndexKHR)
        .Case("instance", OpRayQueryGetIntersectionInstanceIdKHR)
        .Case("geometry", OpRayQueryGetIntersectionGeometryIndexKHR)
        .Case("primitive", OpRayQueryGetIntersectionPrimitiveIndexKHR)
        .Case("barycentrics", OpRayQueryGetIntersectionBarycentricsKHR)
        .Case("front", OpRayQueryGetIntersectionFrontFaceKHR)
        .Case("object_origin", OpRayQueryGetIntersectionObjectRayOriginKHR)
        .Case("object_direction", OpRayQueryGetIntersectionObjectRayDirectionKHR)
        .Default(OpNop);
}

Id RayQueries::write(StringRef name, const CallInst& call) {
    name.consume_front("ray_query_");
    if (name == "make")
        return body_.constants.word(0); // the variable is declared at the first use
    if (name == "reset")
        return reset(call), 0;
    if (name == "abort")
        return body_.act(OpRayQueryTerminateKHR, {query(call)}), 0;
    if (name == "commit_triangle")
        return body_.act(OpRayQueryConfirmIntersectionKHR, {query(call)}), 0;
    if (name == "commit_box")
        return body_.act(OpRayQueryGenerateIntersectionKHR,
                         {query(call), body_.id(call.getArgOperand(1))}),
               0;
    if (name == "to_world")
        return column(OpRayQueryGetIntersectionObjectToWorldKHR, call);
    if (name == "to_object")
        return column(OpRayQueryGetIntersectionWorldToObjectKHR, call);
    spv::Op op = getter(name);
    if (op == OpNop)
        throw CompilerFault("A built-in call is not known: ray_query_" + name.str());
    SmallVector<std::uint32_t, 2> operands{query(call)};
    if (auto which = intersection(call))
        operands.push_back(*which);
    return body_.emit(op, call.getType(), operands);
}

} // namespace tarnwick::msl::spirv
