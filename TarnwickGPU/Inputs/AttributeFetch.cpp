#include "TarnwickGPU/Inputs/AttributeFetch.h"

#include "TarnwickGPU/Inputs/FormatReader.h"
#include "TarnwickGPU/Vulkan/Stages.h"
#include "TarnwickSpirv/Interface.h"
#include "TarnwickSpirv/Rewriting.h"

#include <map>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

// The lanes of the input of a whole patch (EntryPoint.h).
enum class PatchLane : std::uint32_t { patch, instance, baseInstance, controlPoints };

class FetchWriter {
  public:
    FetchWriter(const msl::EntryPoint& function, const FetchNeeds& needs)
        : function_(function), needs_(needs), code_(function.words), made_(function),
          word_(code_.integer()) {}

    std::shared_ptr<const msl::EntryPoint> write();

  private:
    void write(const msl::StageAttribute& attribute);
    Id element(FunctionBody& body, const BufferLayoutDescriptor& layout, Id point);
    Id buffer(std::uint32_t index);
    Id indexAt(FunctionBody& body, Id place);
    Id gridPosition(FunctionBody& body, std::uint32_t axis);
    Id patchLane(FunctionBody& body, PatchLane lane);
    Id instance(FunctionBody& body, std::uint32_t rate);
    Id controlPoint(FunctionBody& body, Id point);
    Id constant(std::uint32_t value) { return code_.constant(word_, value); }

    const msl::EntryPoint& function_;
    const FetchNeeds& needs_;
    Module code_;
    msl::EntryPoint made_;
    Id word_;
    std::map<std::uint32_t, Id> buffers_; // by index
};

// The variable of an encoder's buffer, as 32-bit words.
Id FetchWriter::buffer(std::uint32_t index) {
    Id& known = buffers_[index];
    if (known)
        return known;
    const std::uint32_t binding = needs_.binding + static_cast<std::uint32_t>(buffers_.size()) - 1;
    const Id words = code_.type(spv::Op::OpTypeRuntimeArray, {word_});
    code_.decorate(words, spv::Decoration::ArrayStride, {4});
    known = code_.variable(spv::StorageClass::StorageBuffer, code_.block(words));
    code_.bind(known, binding);
    code_.decorate(known, spv::Decoration::NonWritable);
    made_.resources.push_back(
        {.kind = msl::ResourceKind::storageBuffer, .index = index, .binding = binding});
    return known;
}

// The index at a place of the index buffer.
Id FetchWriter::indexAt(FunctionBody& body, Id place) {
    const Id words = buffer(needs_.indices->buffer);
    const bool isShort = needs_.indices->type == IndexType::uint16;
    const Id at =
        isShort ? body.emit(spv::Op::OpShiftRightLogical, word_, {place, constant(1)}) : place;
    const Id pointer =
        body.emit(spv::Op::OpAccessChain, code_.pointer(spv::StorageClass::StorageBuffer, word_),
                  {words, constant(0), at});
    const Id word = body.emit(spv::Op::OpLoad, word_, {pointer});
    if (!isShort)
        return word;
    const Id odd = body.emit(spv::Op::OpBitwiseAnd, word_, {place, constant(1)});
    const Id first = body.emit(spv::Op::OpShiftLeftLogical, word_, {odd, constant(4)});
    return body.emit(spv::Op::OpBitFieldUExtract, word_, {word, first, constant(16)});
}

// The position in the grid, plus the origin of the region of stage_in. Each kernel reads the size
// of its grid, so that its push constants are there.
Id FetchWriter::gridPosition(FunctionBody& body, std::uint32_t axis) {
    const auto known = builtIn(code_, spv::BuiltIn::GlobalInvocationId);
    const Id triple = code_.vector(word_, 3);
    const Id position =
        known ? *known
              : code_.builtIn(spv::BuiltIn::GlobalInvocationId, spv::StorageClass::Input, triple);
    const Id all = body.emit(spv::Op::OpLoad, triple, {position});
    const Id own = body.emit(spv::Op::OpCompositeExtract, word_, {all, axis});
    const Id grid = variables(code_, spv::StorageClass::PushConstant).front();
    const auto member = static_cast<std::uint32_t>(msl::GridMember::originOfStageIn);
    const Id pointer =
        body.emit(spv::Op::OpAccessChain, code_.pointer(spv::StorageClass::PushConstant, word_),
                  {grid, constant(0), constant(member), constant(axis)});
    const Id origin = body.emit(spv::Op::OpLoad, word_, {pointer});
    return body.emit(spv::Op::OpIAdd, word_, {own, origin});
}

Id FetchWriter::patchLane(FunctionBody& body, PatchLane lane) {
    const Id four = code_.vector(word_, 4);
    const auto inputs = locations(code_, spv::StorageClass::Input);
    Id variable = inputs.empty() ? 0 : inputs.begin()->second; // a patch function has one input
    if (!variable) {
        variable = code_.variable(spv::StorageClass::Input, four);
        code_.decorate(variable, spv::Decoration::Location, {0});
        code_.decorate(variable, spv::Decoration::Patch);
    }
    const Id all = body.emit(spv::Op::OpLoad, four, {variable});
    return body.emit(spv::Op::OpCompositeExtract, word_, {all, static_cast<std::uint32_t>(lane)});
}

// The step rate counts from the first instance of the draw.
Id FetchWriter::instance(FunctionBody& body, std::uint32_t rate) {
    const Id instance = patchLane(body, PatchLane::instance);
    const Id first = patchLane(body, PatchLane::baseInstance);
    const Id before = body.emit(spv::Op::OpISub, word_, {instance, first});
    const Id step = body.emit(spv::Op::OpUDiv, word_, {before, constant(rate)});
    return body.emit(spv::Op::OpIAdd, word_, {first, step});
}

Id FetchWriter::controlPoint(FunctionBody& body, Id point) {
    const Id first =
        body.emit(spv::Op::OpIMul, word_,
                  {patchLane(body, PatchLane::patch), patchLane(body, PatchLane::controlPoints)});
    const Id place = body.emit(spv::Op::OpIAdd, word_, {first, point});
    return needs_.indices ? indexAt(body, place) : place;
}

// The number of the element that the attribute reads.
Id FetchWriter::element(FunctionBody& body, const BufferLayoutDescriptor& layout, Id point) {
    switch (layout.step) {
    case StepFunction::constant:
    case StepFunction::perVertex: // of vertex functions, whose attributes the device reads
        return constant(0);
    case StepFunction::perInstance:
        return instance(body, layout.stepRate);
    case StepFunction::perPatch:
        return patchLane(body, PatchLane::patch);
    case StepFunction::perPatchControlPoint:
        return controlPoint(body, point);
    case StepFunction::threadPositionInGridX:
        return gridPosition(body, 0);
    case StepFunction::threadPositionInGridY:
        return gridPosition(body, 1);
    case StepFunction::threadPositionInGridXIndexed:
        return indexAt(body, gridPosition(body, 0));
    case StepFunction::threadPositionInGridYIndexed:
        return indexAt(body, gridPosition(body, 1));
    }
    return constant(0);
}

void FetchWriter::write(const msl::StageAttribute& attribute) {
    const AttributeDescriptor& given = needs_.buffers.attributes[attribute.index];
    const BufferLayoutDescriptor& layout = needs_.buffers.layouts[given.bufferIndex];
    const VertexFormatRow& format = vertexFormat(given.format);
    removeFunction(code_, attribute.fetch);
    FunctionBody body(code_);
    const Id point = body.parameter(word_);
    const Id start =
        body.emit(spv::Op::OpIMul, word_, {element(body, layout, point), constant(layout.stride)});
    const Id byte = body.emit(spv::Op::OpIAdd, word_, {start, constant(given.offset)});
    body.act(spv::Op::OpReturnValue,
             {FormatReader(body, buffer(given.bufferIndex)).read(format, byte)});
    body.finish(attribute.fetch, 0, code_.vector(format.isInteger() ? word_ : code_.real(), 4));
}

std::shared_ptr<const msl::EntryPoint> FetchWriter::write() {
    for (const msl::StageAttribute& attribute : function_.attributes)
        write(attribute);
    made_.words = code_.finish(executionModel(function_));
    return std::make_shared<const msl::EntryPoint>(std::move(made_));
}

} // namespace

std::shared_ptr<const msl::EntryPoint> withFetches(const msl::EntryPoint& function,
                                                   const FetchNeeds& needs) {
    return FetchWriter(function, needs).write();
}

} // namespace tarnwick::gpu
