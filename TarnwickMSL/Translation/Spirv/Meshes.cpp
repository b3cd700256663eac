#include "TarnwickMSL/Translation/Spirv/Meshes.h"

#include "TarnwickMSL/Translation/Spirv/Stage.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

using enum spv::Op;

static spv::ExecutionMode outputMode(Topology topology) {
    return topology == Topology::point  ? spv::ExecutionMode::OutputPoints
           : topology == Topology::line ? spv::ExecutionMode::OutputLinesEXT
                                        : spv::ExecutionMode::OutputTrianglesEXT;
}

static spv::BuiltIn indicesOf(Topology topology) {
    return topology == Topology::point  ? spv::BuiltIn::PrimitivePointIndicesEXT
           : topology == Topology::line ? spv::BuiltIn::PrimitiveLineIndicesEXT
                                        : spv::BuiltIn::PrimitiveTriangleIndicesEXT;
}

// A mesh function without a mesh makes none.
static bool makesMesh(const ShaderModule& shader) {
    return shader.topology != Topology::none;
}

void Meshes::modes() {
    requireMeshShading(body_);
    if (shader_.stage != Stage::mesh)
        return;
    const Topology topology = makesMesh(shader_) ? shader_.topology : Topology::triangle;
    body_.module.executionMode(outputMode(topology));
    body_.module.executionMode(spv::ExecutionMode::OutputVertices,
                               {std::max(1u, shader_.mostVertices)});
    body_.module.executionMode(spv::ExecutionMode::OutputPrimitivesEXT,
                               {std::max(1u, shader_.mostPrimitives)});
}

void Meshes::begin() {
    if (shader_.stage == Stage::mesh)
        body_.act(OpSetMeshOutputsEXT, {body_.constants.word(shader_.mostVertices),
                                        body_.constants.word(shader_.mostPrimitives)});
}

Id Meshes::shared(const char* name) {
    const GlobalVariable* global = shader_.module->getNamedGlobal(name);
    return global ? memory_.variable(*global) : 0;
}

Id Meshes::word(Id memory, Id index) {
    Id pointer = body_.module.pointer(spv::StorageClass::Workgroup, body_.types.of(body_.i32()));
    return body_.emit(OpLoad, body_.i32(), {body_.emit(OpAccessChain, pointer, {memory, index})});
}

// The indices of the primitive's vertices, all 0 if it is not live.
Id Meshes::indices(Id primitive, Id live) {
    const std::uint32_t count = indexCount(shader_.topology);
    const Id zero = body_.constants.word(0), memory = shared(meshIndices);
    SmallVector<std::uint32_t, 3> lanes;
    for (std::uint32_t n = 0; n < count; ++n) {
        Id lane = zero;
        if (memory) {
            Id first = body_.emit(OpIMul, body_.i32(), {primitive, body_.constants.word(count)});
            Id at = body_.emit(OpIAdd, body_.i32(), {first, body_.constants.word(n)});
            lane =
                body_.extended(GLSLstd450UMin, body_.i32(),
                               {word(memory, at), body_.constants.word(shader_.mostVertices - 1)});
            lane = body_.select(body_.i32(), live, lane, zero);
        }
        lanes.push_back(lane);
    }
    return count == 1
               ? lanes.front()
               : body_.emit(OpCompositeConstruct, FixedVectorType::get(body_.i32(), count), lanes);
}

void Meshes::finishPrimitive(Id primitive, Id count) {
    auto store = [&](Id variable, Type* type, Id value) {
        Id pointer = body_.module.pointer(spv::StorageClass::Output, body_.types.of(type));
        body_.act(OpStore, {body_.emit(OpAccessChain, pointer, {variable, primitive}), value});
    };
    Id live = body_.emit(OpULessThan, body_.i1(), {primitive, count});
    const std::uint32_t lanes = indexCount(shader_.topology);
    store(indicesVariable_, lanes == 1 ? body_.i32() : FixedVectorType::get(body_.i32(), lanes),
          indices(primitive, live));
    Id culled = body_.negated(body_.i1(), live);
    if (Id memory = shared(meshCulled)) {
        Id given =
            body_.emit(OpINotEqual, body_.i1(), {word(memory, primitive), body_.constants.word(0)});
        culled = body_.emit(OpLogicalOr, body_.i1(), {culled, given});
    }
    store(culledVariable_, body_.i1(), culled);
}

// for (primitive = index in the threadgroup; primitive < most; primitive += threads)
void Meshes::finishPrimitives() {
    Module& module = body_.module;
    const Id length = body_.constants.word(shader_.mostPrimitives);
    auto array = [&](Type* element) {
        return module.type(OpTypeArray, {body_.types.of(element), length});
    };
    const std::uint32_t lanes = indexCount(shader_.topology);
    indicesVariable_ =
        module.builtIn(indicesOf(shader_.topology), spv::StorageClass::Output,
                       array(lanes == 1 ? body_.i32() : FixedVectorType::get(body_.i32(), lanes)));
    culledVariable_ = module.builtIn(spv::BuiltIn::CullPrimitiveEXT, spv::StorageClass::Output,
                                     array(body_.i1()));
    module.decorate(culledVariable_, spv::Decoration::PerPrimitiveEXT);

    const Id count = body_.extended(GLSLstd450UMin, body_.i32(),
                                    {word(shared(meshCount), body_.constants.word(0)), length});
    const Id first = readBuiltIn(body_, spv::BuiltIn::LocalInvocationIndex, body_.i32());
    const std::array<Id, 3> size = threadgroupSize(body_);
    Id threads = body_.emit(OpIMul, body_.i32(), {size[0], size[1]});
    threads = body_.emit(OpIMul, body_.i32(), {threads, size[2]});
    const Id before = module.newId(), header = module.newId(), round = module.newId(),
             next = module.newId(), after = module.newId(), following = module.newId();
    body_.act(OpBranch, {before});
    body_.act(OpLabel, {before});
    body_.act(OpBranch, {header});
    body_.act(OpLabel, {header});
    const Id primitive = body_.emit(OpPhi, body_.i32(), {first, before, following, next});
    const Id goesOn = body_.emit(OpULessThan, body_.i1(), {primitive, length});
    body_.act(OpLoopMerge, {after, next, 0});
    body_.act(OpBranchConditional, {goesOn, round, after});
    body_.act(OpLabel, {round});
    finishPrimitive(primitive, count);
    body_.act(OpBranch, {next});
    body_.act(OpLabel, {next});
    tarnwick::spirv::append(body_.code, OpIAdd,
                            {body_.types.of(body_.i32()), following, primitive, threads});
    body_.act(OpBranch, {header});
    body_.act(OpLabel, {after});
}

void Meshes::startMeshes() {
    const Id memory = shared(meshGrid);
    SmallVector<std::uint32_t, 4> operands;
    for (std::uint32_t axis = 0; axis < 3; ++axis)
        operands.push_back(word(memory, body_.constants.word(axis)));
    if (const Id payload = shared(payloadName))
        operands.push_back(payload);
    body_.act(OpEmitMeshTasksEXT, operands);
}

void Meshes::end() {
    const Id scope = body_.constants.word(static_cast<std::uint32_t>(spv::Scope::Workgroup));
    const Id order =
        body_.constants.word(static_cast<std::uint32_t>(spv::MemorySemanticsMask::AcquireRelease) |
                             static_cast<std::uint32_t>(spv::MemorySemanticsMask::WorkgroupMemory));
    if (shader_.stage == Stage::object || makesMesh(shader_))
        body_.act(OpControlBarrier, {scope, scope, order});
    if (shader_.stage == Stage::object)
        return startMeshes(); // the terminator
    if (makesMesh(shader_))
        finishPrimitives();
    body_.act(OpReturn, {});
}

} // namespace tarnwick::msl::spirv
