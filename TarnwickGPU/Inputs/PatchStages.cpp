#include "TarnwickGPU/Inputs/PatchStages.h"

#include "TarnwickSpirv/FunctionBody.h"

#include <array>
#include <span>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

// The locations of the vertex stage's outputs.
constexpr std::uint32_t patchLocation = 0, instanceLocation = 1;

// In the order of the enumeration. Powers of two are whole numbers.
constexpr std::array spacings{spv::ExecutionMode::SpacingEqual, spv::ExecutionMode::SpacingEqual,
                              spv::ExecutionMode::SpacingFractionalOdd,
                              spv::ExecutionMode::SpacingFractionalEven};

class ControlStage {
  public:
    explicit ControlStage(const PatchNeeds& needs)
        : needs_(needs), body_(code_), word_(code_.integer()), number_(code_.real()),
          boolean_(code_.type(spv::Op::OpTypeBool, {})),
          isQuad_(needs.kind == msl::PatchKind::quad) {}

    Words write();

  private:
    void modes();
    void pushConstants();
    Id constant(std::uint32_t value) { return code_.constant(word_, value); }
    Id load(Id type, spv::StorageClass storage, Id variable, Operands path);
    Id pushed(std::uint32_t member, Id type);
    Id perVertex(std::uint32_t location);
    Id firstByte(Id instance);
    std::array<Id, 6> factors(Id byte);
    Id limited(Id factor);
    Id nextPower(Id factor);
    void setLevels(spv::BuiltIn builtIn, std::span<const Id> levels);
    void setPatch(Id patch, Id instance);

    const PatchNeeds& needs_;
    Module code_;
    FunctionBody body_;
    Id word_, number_, boolean_;
    bool isQuad_;
    Id record_ = 0;
};

void ControlStage::modes() {
    const TessellationDescriptor& how = needs_.tessellation;
    code_.require(spv::Capability::Tessellation);
    code_.executionMode(spv::ExecutionMode::OutputVertices, {1});
    code_.executionMode(isQuad_ ? spv::ExecutionMode::Quads : spv::ExecutionMode::Triangles);
    code_.executionMode(spacings[static_cast<std::size_t>(how.partitionMode)]);
    code_.executionMode(how.outputWindingOrder == Winding::clockwise
                            ? spv::ExecutionMode::VertexOrderCw
                            : spv::ExecutionMode::VertexOrderCcw);
}

void ControlStage::pushConstants() {
    const Id type = code_.type(spv::Op::OpTypeStruct, {word_, word_, word_, word_, number_});
    code_.decorate(type, spv::Decoration::Block);
    for (std::uint32_t member = 0; member < 5; ++member)
        code_.decorateMember(type, member, spv::Decoration::Offset, {4 * member});
    record_ = code_.variable(spv::StorageClass::PushConstant, type);
}

Id ControlStage::load(Id type, spv::StorageClass storage, Id variable, Operands path) {
    const Id place =
        body_.emit(spv::Op::OpAccessChain, code_.pointer(storage, type), {variable}, path);
    return body_.emit(spv::Op::OpLoad, type, {place});
}

// A member of the PatchRecord.
Id ControlStage::pushed(std::uint32_t member, Id type) {
    return load(type, spv::StorageClass::PushConstant, record_, {constant(member)});
}

// An output of the vertex stage, for the one vertex of the patch.
Id ControlStage::perVertex(std::uint32_t location) {
    const Id list = code_.type(spv::Op::OpTypeArray, {word_, constant(32)});
    const Id variable = code_.variable(spv::StorageClass::Input, list);
    code_.decorate(variable, spv::Decoration::Location, {location});
    return load(word_, spv::StorageClass::Input, variable, {constant(0)});
}

// The place of the patch's factors in their buffer.
Id ControlStage::firstByte(Id instance) {
    const TessellationFactorStepFunction step = needs_.tessellation.factorStepFunction;
    const bool isPerPatch = step == TessellationFactorStepFunction::perPatch ||
                            step == TessellationFactorStepFunction::perPatchAndPerInstance;
    const bool isPerInstance = step == TessellationFactorStepFunction::perInstance ||
                               step == TessellationFactorStepFunction::perPatchAndPerInstance;
    Id byte = constant(0);
    if (isPerPatch) { // counted in the draw, not by an index buffer of patches
        const Id variable =
            code_.builtIn(spv::BuiltIn::PrimitiveId, spv::StorageClass::Input, word_);
        const Id counted = body_.emit(spv::Op::OpLoad, word_, {variable});
        const Id patch = body_.emit(spv::Op::OpIAdd, word_, {counted, pushed(0, word_)});
        byte = body_.emit(spv::Op::OpIMul, word_, {patch, constant(isQuad_ ? 12 : 8)});
    }
    if (isPerInstance) {
        const Id before = body_.emit(spv::Op::OpIMul, word_, {instance, pushed(3, word_)});
        byte = body_.emit(spv::Op::OpIAdd, word_, {byte, before});
    }
    return byte;
}

// A factor of up to 2^24 as the next power of two.
Id ControlStage::nextPower(Id factor) {
    const Id up = body_.extended(GLSLstd450Ceil, number_, {factor});
    const Id whole = body_.emit(spv::Op::OpConvertFToU, word_, {up});
    const Id below = body_.emit(spv::Op::OpISub, word_, {whole, constant(1)});
    const Id highest = body_.extended(GLSLstd450FindUMsb, word_, {below});
    const Id bit = body_.emit(spv::Op::OpIAdd, word_, {highest, constant(1)});
    const Id power = body_.emit(spv::Op::OpShiftLeftLogical, word_, {constant(1), bit});
    return body_.emit(spv::Op::OpConvertUToF, number_, {power});
}

// NaN and numbers that are not positive remain: such a patch is not drawn.
Id ControlStage::limited(Id factor) {
    const Id most = code_.constant(static_cast<float>(needs_.tessellation.maxFactor));
    const Id isMore = body_.emit(spv::Op::OpFOrdGreaterThan, boolean_, {factor, most});
    const Id level = body_.emit(spv::Op::OpSelect, number_, {isMore, most, factor});
    if (needs_.tessellation.partitionMode != TessellationPartitionMode::pow2)
        return level;
    const Id isAboveOne =
        body_.emit(spv::Op::OpFOrdGreaterThan, boolean_, {level, code_.constant(1.0f)});
    return body_.emit(spv::Op::OpSelect, number_, {isAboveOne, nextPower(level), level});
}

// The halves of the factor record: edges, then the inside.
std::array<Id, 6> ControlStage::factors(Id byte) {
    const Id words = code_.type(spv::Op::OpTypeRuntimeArray, {word_});
    code_.decorate(words, spv::Decoration::ArrayStride, {4});
    const Id buffer = code_.variable(spv::StorageClass::StorageBuffer, code_.block(words));
    code_.bind(buffer, needs_.factorsBinding);
    code_.decorate(buffer, spv::Decoration::NonWritable);
    const Id first = body_.emit(spv::Op::OpShiftRightLogical, word_, {byte, constant(2)});
    std::array<Id, 6> factors{};
    for (std::uint32_t pair = 0; pair < (isQuad_ ? 3u : 2u); ++pair) {
        const Id at = body_.emit(spv::Op::OpIAdd, word_, {first, constant(pair)});
        const Id word = load(word_, spv::StorageClass::StorageBuffer, buffer, {constant(0), at});
        const Id both = body_.extended(GLSLstd450UnpackHalf2x16, code_.vector(number_, 2), {word});
        for (std::uint32_t half = 0; half < 2; ++half) {
            Id factor = body_.emit(spv::Op::OpCompositeExtract, number_, {both, half});
            if (needs_.tessellation.scalesFactors)
                factor = body_.emit(spv::Op::OpFMul, number_, {factor, pushed(4, number_)});
            factors[2 * pair + half] = limited(factor);
        }
    }
    return factors;
}

// The built-in is an array; SPIR-V requires all of it, whatever the kind of the patch.
void ControlStage::setLevels(spv::BuiltIn builtIn, std::span<const Id> levels) {
    const std::uint32_t count = builtIn == spv::BuiltIn::TessLevelOuter ? 4 : 2;
    const Id list = code_.type(spv::Op::OpTypeArray, {number_, constant(count)});
    const Id variable = code_.builtIn(builtIn, spv::StorageClass::Output, list);
    code_.decorate(variable, spv::Decoration::Patch);
    for (std::uint32_t at = 0; at < count; ++at) {
        const Id place =
            body_.emit(spv::Op::OpAccessChain, code_.pointer(spv::StorageClass::Output, number_),
                       {variable, constant(at)});
        body_.act(spv::Op::OpStore,
                  {place, at < levels.size() ? levels[at] : code_.constant(0.0f)});
    }
}

void ControlStage::setPatch(Id patch, Id instance) {
    const Id four = code_.vector(word_, 4);
    const Id variable = code_.variable(spv::StorageClass::Output, four);
    code_.decorate(variable, spv::Decoration::Location, {0});
    code_.decorate(variable, spv::Decoration::Patch);
    body_.act(spv::Op::OpStore,
              {variable, body_.emit(spv::Op::OpCompositeConstruct, four,
                                    {patch, instance, pushed(2, word_), pushed(1, word_)})});
}

Words ControlStage::write() {
    modes();
    pushConstants();
    const Id patch = perVertex(patchLocation), instance = perVertex(instanceLocation);
    const std::array<Id, 6> levels = factors(firstByte(instance));
    const std::size_t edges = isQuad_ ? 4 : 3;
    setLevels(spv::BuiltIn::TessLevelOuter, std::span(levels).first(edges));
    setLevels(spv::BuiltIn::TessLevelInner, std::span(levels).subspan(edges, edges - 2));
    setPatch(patch, instance);
    body_.act(spv::Op::OpReturn, {});
    body_.finish(code_.main());
    return code_.finish(spv::ExecutionModel::TessellationControl);
}

} // namespace

Words patchControlStage(const PatchNeeds& needs) {
    return ControlStage(needs).write();
}

Words patchVertexStage() {
    Module code;
    FunctionBody body(code);
    const Id word = code.integer();
    auto pass = [&](spv::BuiltIn builtIn, std::uint32_t location) {
        const Id from = code.builtIn(builtIn, spv::StorageClass::Input, word);
        const Id to = code.variable(spv::StorageClass::Output, word);
        code.decorate(to, spv::Decoration::Location, {location});
        body.act(spv::Op::OpStore, {to, body.emit(spv::Op::OpLoad, word, {from})});
    };
    pass(spv::BuiltIn::VertexIndex, patchLocation);
    pass(spv::BuiltIn::InstanceIndex, instanceLocation);
    body.act(spv::Op::OpReturn, {});
    body.finish(code.main());
    return code.finish(spv::ExecutionModel::Vertex);
}

} // namespace tarnwick::gpu
