#include "TarnwickMSL/Translation/Spirv/Stage.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <array>
#include <optional>
#include <string_view>

namespace tarnwick::msl::spirv {

using namespace llvm;

struct BuiltIn {
    std::string_view word;
    spv::BuiltIn builtIn;
    std::optional<spv::Capability> capability = std::nullopt;
    bool isArray = false;            // Vulkan's variable is an array
    std::string_view extension = {}; // of SPIR-V
};

// clang-format off
static constexpr std::array builtIns{
    BuiltIn{"vertex_id",                      spv::BuiltIn::VertexIndex},
    BuiltIn{"instance_id",                    spv::BuiltIn::InstanceIndex},
    BuiltIn{"base_vertex",                    spv::BuiltIn::BaseVertex, spv::Capability::DrawParameters},
    BuiltIn{"base_instance",                  spv::BuiltIn::BaseInstance, spv::Capability::DrawParameters},
    BuiltIn{"position_in_patch",              spv::BuiltIn::TessCoord},
    BuiltIn{"point_size",                     spv::BuiltIn::PointSize},
    BuiltIn{"point_coord",                    spv::BuiltIn::PointCoord},
    BuiltIn{"clip_distance",                  spv::BuiltIn::ClipDistance, spv::Capability::ClipDistance, true},
    BuiltIn{"front_facing",                   spv::BuiltIn::FrontFacing},
    BuiltIn{"primitive_id",                   spv::BuiltIn::PrimitiveId, spv::Capability::Geometry},
    BuiltIn{"sample_id",                      spv::BuiltIn::SampleId, spv::Capability::SampleRateShading},
    BuiltIn{"sample_mask",                    spv::BuiltIn::SampleMask, std::nullopt, true},
    BuiltIn{"render_target_array_index",      spv::BuiltIn::Layer, spv::Capability::ShaderLayer},
    BuiltIn{"viewport_array_index",           spv::BuiltIn::ViewportIndex, spv::Capability::ShaderViewportIndex},
    BuiltIn{"amplification_id",               spv::BuiltIn::ViewIndex, spv::Capability::MultiView},
    BuiltIn{"depth",                          spv::BuiltIn::FragDepth},
    BuiltIn{"stencil",                        spv::BuiltIn::FragStencilRefEXT, spv::Capability::StencilExportEXT, false, "SPV_EXT_shader_stencil_export"},
    BuiltIn{"thread_position_in_grid",        spv::BuiltIn::GlobalInvocationId},
    BuiltIn{"thread_position_in_threadgroup", spv::BuiltIn::LocalInvocationId},
    BuiltIn{"threadgroup_position_in_grid",   spv::BuiltIn::WorkgroupId},
    BuiltIn{"threadgroups_per_grid",          spv::BuiltIn::NumWorkgroups},
    BuiltIn{"thread_index_in_simdgroup",      spv::BuiltIn::SubgroupLocalInvocationId, spv::Capability::GroupNonUniform},
    BuiltIn{"simdgroup_index_in_threadgroup", spv::BuiltIn::SubgroupId, spv::Capability::GroupNonUniform},
    BuiltIn{"threads_per_simdgroup",          spv::BuiltIn::SubgroupSize, spv::Capability::GroupNonUniform},
    BuiltIn{"simdgroups_per_threadgroup",     spv::BuiltIn::NumSubgroups, spv::Capability::GroupNonUniform},
};
// clang-format on

// The position of a fragment function is its pixel's, of a vertex function its output.
static BuiltIn builtInFor(const InterfaceVariable& interface, bool isFragment) {
    StringRef word = interface.builtIn;
    if (word == "position")
        return {"position", isFragment ? spv::BuiltIn::FragCoord : spv::BuiltIn::Position};
    if (word == "barycentric_coord")
        return {"barycentric_coord",
                isPerspective(interface.interpolation) ? spv::BuiltIn::BaryCoordKHR
                                                       : spv::BuiltIn::BaryCoordNoPerspKHR,
                spv::Capability::FragmentBarycentricKHR, false,
                "SPV_KHR_fragment_shader_barycentric"};
    for (const BuiltIn& builtIn : builtIns)
        if (word == StringRef(builtIn.word.data(), builtIn.word.size()))
            return builtIn;
    throw TranslationError("The attribute '" + interface.builtIn + "' is not supported here.");
}

static Type* valueOf(Type* type) {
    return type->isArrayTy() ? type->getArrayElementType() : type;
}

// The entry point's one variable of the built-in. An integer that a fragment function reads is flat
// (VUID-StandaloneSpirv-Flat-04744).
static Id builtInVariable(Body& body, const BuiltIn& builtIn, bool isInput, Type* type) {
    auto number = static_cast<std::uint32_t>(builtIn.builtIn);
    Id& id = body.builtIns[{number, isInput ? 1u : 0u}];
    if (id)
        return id;
    auto storage = isInput ? spv::StorageClass::Input : spv::StorageClass::Output;
    id = body.module.builtIn(builtIn.builtIn, storage, body.types.of(type));
    if (builtIn.capability)
        body.module.require(*builtIn.capability);
    if (isInput && body.stage == Stage::fragment && valueOf(type)->isIntOrIntVectorTy(32))
        body.module.decorate(id, spv::Decoration::Flat);
    if (builtIn.builtIn == spv::BuiltIn::FragDepth)
        body.module.executionMode(spv::ExecutionMode::DepthReplacing);
    if (builtIn.builtIn == spv::BuiltIn::FragStencilRefEXT)
        body.module.executionMode(spv::ExecutionMode::StencilRefReplacingEXT);
    if (!builtIn.extension.empty())
        body.module.extension(builtIn.extension);
    return id;
}

// The place in the pixel; default: its centre.
static void interpolateAt(Body& body, Id id, Interpolation interpolation) {
    switch (interpolation) {
    case Interpolation::centroidPerspective:
    case Interpolation::centroidNoPerspective:
        return body.module.decorate(id, spv::Decoration::Centroid);
    case Interpolation::samplePerspective:
    case Interpolation::sampleNoPerspective:
        body.module.require(spv::Capability::SampleRateShading);
        return body.module.decorate(id, spv::Decoration::Sample);
    case Interpolation::centerPerspective:
    case Interpolation::centerNoPerspective:
    case Interpolation::flat:
        return;
    }
}

bool isSignedColor(Stage stage, const InterfaceVariable& interface) {
    return stage == Stage::fragment && interface.kind == InterfaceKind::output &&
           interface.builtIn.empty() && interface.scalar == Scalar::int32;
}

Id signedType(Body& body, Type* type) {
    Id scalar = body.types.signedScalar();
    return type->isVectorTy() ? body.module.vector(scalar, laneCount(type)) : scalar;
}

static void interpolate(Body& body, Id id, Interpolation interpolation) {
    if (interpolation == Interpolation::flat)
        return body.module.decorate(id, spv::Decoration::Flat);
    if (!isPerspective(interpolation))
        body.module.decorate(id, spv::Decoration::NoPerspective);
    interpolateAt(body, id, interpolation);
}

void requireMeshShading(Body& body) {
    body.module.require(spv::Capability::MeshShadingEXT);
    body.module.extension("SPV_EXT_mesh_shader");
}

static void decoratePrimitive(Body& body, Id id) {
    requireMeshShading(body);
    body.module.decorate(id, spv::Decoration::PerPrimitiveEXT);
}

static Id locationVariable(Body& body, const InterfaceVariable& interface, bool isInput,
                           Type* type) {
    auto storage = isInput ? spv::StorageClass::Input : spv::StorageClass::Output;
    bool isSigned = isSignedColor(body.stage, interface);
    Id id = body.module.variable(storage, isSigned ? signedType(body, type) : body.types.of(type));
    body.module.decorate(id, spv::Decoration::Location, {interface.location});
    if (interface.isOfPatch)
        body.module.decorate(id, spv::Decoration::Patch);
    if (interface.isOfPrimitive)
        decoratePrimitive(body, id);
    if (interface.source)
        body.module.decorate(id, spv::Decoration::Index, {interface.source});
    if (isInput && body.stage == Stage::fragment)
        interpolate(body, id,
                    type->isIntOrIntVectorTy() ? Interpolation::flat : interface.interpolation);
    return id;
}

StageVariable declareStageVariable(Body& body, const InterfaceVariable& interface, Type* type) {
    bool isInput = interface.kind == InterfaceKind::input;
    if (interface.builtIn.empty())
        return {locationVariable(body, interface, isInput, type), type};
    BuiltIn builtIn = builtInFor(interface, body.stage == Stage::fragment);
    if (builtIn.isArray && !type->isArrayTy())
        type = ArrayType::get(type, 1);
    Id id = builtInVariable(body, builtIn, isInput, type);
    if (interface.isOfPrimitive)
        decoratePrimitive(body, id);
    if (builtIn.word == "barycentric_coord")
        interpolateAt(body, id, interface.interpolation);
    return {id, type};
}

Id readBuiltIn(Body& body, spv::BuiltIn builtIn, Type* type) {
    return body.emit(spv::Op::OpLoad, type, {builtInVariable(body, {"", builtIn}, true, type)});
}

std::array<Id, 3> threadgroupSize(Body& body) {
    std::array<Id, 3> size{};
    for (std::size_t axis = 0; axis < 3; ++axis)
        size[axis] = body.constants.specialisation(threadgroupSizeConstants[axis], 1);
    return size;
}

// The size of this threadgroup: smaller at the end of a kernel's grid.
static Id threadsHere(Body& body, const std::function<Id()>& gridSize) {
    Type* triple = FixedVectorType::get(body.i32(), 3);
    Id full = body.emit(spv::Op::OpCompositeConstruct, triple, threadgroupSize(body));
    if (body.stage != Stage::kernel)
        return full;
    Id group = readBuiltIn(body, spv::BuiltIn::WorkgroupId, triple);
    Id before = body.emit(spv::Op::OpIMul, triple, {group, full});
    Id left = body.emit(spv::Op::OpISub, triple, {gridSize(), before});
    return body.extended(GLSLstd450UMin, triple, {full, left});
}

static Id threadIndex(Body& body, const std::function<Id()>& gridSize) {
    if (body.stage != Stage::kernel)
        return readBuiltIn(body, spv::BuiltIn::LocalInvocationIndex, body.i32());
    Type* triple = FixedVectorType::get(body.i32(), 3);
    Id size = threadsHere(body, gridSize);
    Id at = readBuiltIn(body, spv::BuiltIn::LocalInvocationId, triple);
    auto lane = [&](Id vector, std::uint32_t n) {
        return body.emit(spv::Op::OpCompositeExtract, body.i32(), {vector, n});
    };
    Id plane = body.emit(spv::Op::OpIMul, body.i32(), {lane(at, 2), lane(size, 1)});
    Id row = body.emit(spv::Op::OpIAdd, body.i32(), {plane, lane(at, 1)});
    Id rows = body.emit(spv::Op::OpIMul, body.i32(), {row, lane(size, 0)});
    return body.emit(spv::Op::OpIAdd, body.i32(), {rows, lane(at, 0)});
}

bool isComputedBuiltIn(StringRef word) {
    return word == "dispatch_threads_per_threadgroup" || word == "threads_per_threadgroup" ||
           word == "thread_index_in_threadgroup" || word == "threads_per_grid" ||
           word == "front_facing" || word == "amplification_count";
}

Id computedBuiltIn(Body& body, StringRef word, const std::function<Id()>& gridSize) {
    Type* triple = FixedVectorType::get(body.i32(), 3);
    if (word == "dispatch_threads_per_threadgroup")
        return body.emit(spv::Op::OpCompositeConstruct, triple, threadgroupSize(body));
    if (word == "threads_per_threadgroup")
        return threadsHere(body, gridSize);
    if (word == "thread_index_in_threadgroup")
        return threadIndex(body, gridSize);
    if (word == "threads_per_grid")
        return gridSize();
    if (word == "amplification_count")
        return body.constants.specialisation(viewCountConstant, 1);
    Id facing = readBuiltIn(body, spv::BuiltIn::FrontFacing, body.i1());
    return body.select(body.i32(), facing, body.constants.word(1), body.constants.word(0));
}

} // namespace tarnwick::msl::spirv
