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
    bool isArray = false; // Vulkan's variable is an array
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
    BuiltIn{"depth",                          spv::BuiltIn::FragDepth},
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
static BuiltIn builtInFor(StringRef word, bool isFragment) {
    if (word == "position")
        return {"position", isFragment ? spv::BuiltIn::FragCoord : spv::BuiltIn::Position};
    for (const BuiltIn& builtIn : builtIns)
        if (word == StringRef(builtIn.word.data(), builtIn.word.size()))
            return builtIn;
    throw TranslationError("The attribute '" + word.str() + "' is not supported here.");
}

// The entry point's one variable of the built-in.
static Id builtInVariable(Body& body, const BuiltIn& builtIn, bool isInput, Type* type) {
    auto number = static_cast<std::uint32_t>(builtIn.builtIn);
    Id& id = body.builtIns[{number, isInput ? 1u : 0u}];
    if (id)
        return id;
    auto storage = isInput ? spv::StorageClass::Input : spv::StorageClass::Output;
    id = body.module.builtIn(builtIn.builtIn, storage, body.types.of(type));
    if (builtIn.capability)
        body.module.require(*builtIn.capability);
    if (builtIn.builtIn == spv::BuiltIn::FragDepth)
        body.module.executionMode(spv::ExecutionMode::DepthReplacing);
    return id;
}

static void interpolate(Body& body, Id id, Interpolation interpolation) {
    auto decorate = [&](spv::Decoration decoration) { body.module.decorate(id, decoration); };
    switch (interpolation) {
    case Interpolation::centerPerspective:
        return;
    case Interpolation::centerNoPerspective:
        return decorate(spv::Decoration::NoPerspective);
    case Interpolation::centroidPerspective:
        return decorate(spv::Decoration::Centroid);
    case Interpolation::centroidNoPerspective:
        decorate(spv::Decoration::NoPerspective);
        return decorate(spv::Decoration::Centroid);
    case Interpolation::samplePerspective:
        body.module.require(spv::Capability::SampleRateShading);
        return decorate(spv::Decoration::Sample);
    case Interpolation::sampleNoPerspective:
        body.module.require(spv::Capability::SampleRateShading);
        decorate(spv::Decoration::NoPerspective);
        return decorate(spv::Decoration::Sample);
    case Interpolation::flat:
        return decorate(spv::Decoration::Flat);
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

StageVariable declareStageVariable(Body& body, Stage stage, const InterfaceVariable& interface,
                                   Type* type) {
    bool isInput = interface.kind == InterfaceKind::input;
    bool isFragmentInput = isInput && stage == Stage::fragment;
    auto storage = isInput ? spv::StorageClass::Input : spv::StorageClass::Output;
    bool hasLocation = interface.builtIn.empty();
    Id id = 0;
    if (hasLocation) {
        bool isSigned = isSignedColor(stage, interface);
        id = body.module.variable(storage, isSigned ? signedType(body, type) : body.types.of(type));
        body.module.decorate(id, spv::Decoration::Location, {interface.location});
        if (interface.isOfPatch)
            body.module.decorate(id, spv::Decoration::Patch);
        if (interface.source)
            body.module.decorate(id, spv::Decoration::Index, {interface.source});
    } else {
        BuiltIn builtIn = builtInFor(interface.builtIn, stage == Stage::fragment);
        if (builtIn.isArray && !type->isArrayTy())
            type = ArrayType::get(type, 1);
        id = builtInVariable(body, builtIn, isInput, type);
    }
    Type* value = type->isArrayTy() ? type->getArrayElementType() : type;
    if (isFragmentInput && value->getScalarType()->isIntegerTy())
        body.module.decorate(id, spv::Decoration::Flat);
    else if (isFragmentInput && hasLocation)
        interpolate(body, id, interface.interpolation);
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

// The size of this threadgroup: smaller at the end of the grid.
static Id threadsHere(Body& body, const std::function<Id()>& gridSize) {
    Type* triple = FixedVectorType::get(body.i32(), 3);
    Id full = body.emit(spv::Op::OpCompositeConstruct, triple, threadgroupSize(body));
    Id group = readBuiltIn(body, spv::BuiltIn::WorkgroupId, triple);
    Id before = body.emit(spv::Op::OpIMul, triple, {group, full});
    Id left = body.emit(spv::Op::OpISub, triple, {gridSize(), before});
    return body.extended(GLSLstd450UMin, triple, {full, left});
}

static Id threadIndex(Body& body, const std::function<Id()>& gridSize) {
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
           word == "front_facing";
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
    Id facing = readBuiltIn(body, spv::BuiltIn::FrontFacing, body.i1());
    return body.select(body.i32(), facing, body.constants.word(1), body.constants.word(0));
}

} // namespace tarnwick::msl::spirv
