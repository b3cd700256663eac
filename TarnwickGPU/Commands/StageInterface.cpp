#include "TarnwickGPU/Commands/StageInterface.h"

#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/Stages.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"
#include "TarnwickSpirv/Interface.h"
#include "TarnwickSpirv/Rewriting.h"

#include <algorithm>
#include <map>
#include <utility>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

bool isSecondSource(BlendFactor factor) {
    return factor >= BlendFactor::source1Color && factor <= BlendFactor::oneMinusSource1Alpha;
}

bool blendsTwoSources(const ColorAttachmentDescriptor& color) {
    return color.blends &&
           (isSecondSource(color.sourceRGB) || isSecondSource(color.sourceAlpha) ||
            isSecondSource(color.destinationRGB) || isSecondSource(color.destinationAlpha));
}

bool hasTarget(const RenderPipelineDescriptor& descriptor, std::uint32_t location) {
    return location == 0 ||
           (location < mostColors && descriptor.colorAt(location).format != PixelFormat::invalid);
}

std::vector<Id> lostOutputs(const Module& code, msl::Stage stage,
                            const RenderPipelineDescriptor& descriptor) {
    std::vector<Id> lost;
    if (stage == msl::Stage::fragment)
        for (const auto& [location, variable] : locations(code, spv::StorageClass::Output))
            if (!hasTarget(descriptor, location))
                lost.push_back(variable);
    if (stage == msl::Stage::fragment && !blendsTwoSources(descriptor.color))
        for (const Id variable : secondSources(code))
            lost.push_back(variable);
    if (stage == msl::Stage::vertex)
        for (const spv::BuiltIn word : {spv::BuiltIn::Layer, spv::BuiltIn::ViewportIndex})
            if (const auto variable = builtIn(code, word))
                lost.push_back(*variable);
    return lost;
}

// A number or a vector of numbers. Other types have kind OpNop; the layer's compiler does not pass
// them between functions.
struct Shape {
    spv::Op kind = spv::Op::OpNop; // OpTypeInt or OpTypeFloat
    std::uint32_t lanes = 1;
};

Shape shapeOf(const Module& code, Id type) {
    Shape shape;
    eachInstruction(code.declarations(), [&](const Instruction& each) {
        if (each.operands.empty() || each.operands[0] != type)
            return;
        if (each.op == spv::Op::OpTypeInt || each.op == spv::Op::OpTypeFloat)
            shape.kind = each.op;
        if (each.op == spv::Op::OpTypeVector)
            shape = {shapeOf(code, each.operands[1]).kind, each.operands[2]};
    });
    return shape;
}

using Shapes = std::map<std::uint32_t, Shape>; // by location

Shapes shapesOf(const Module& code, spv::StorageClass storage) {
    Shapes shapes;
    for (const auto& [location, variable] : locations(code, storage))
        shapes[location] = shapeOf(code, pointee(code, variable));
    return shapes;
}

// An output may have more lanes than the input that takes it (Vulkan 1.3, 15.1.3).
bool takes(const Shape& input, const Shape& output) {
    return input.kind == output.kind && input.lanes <= output.lanes;
}

bool areTaken(const Shapes& inputs, const Shapes& outputs) {
    for (const auto& [location, input] : inputs) {
        const auto output = outputs.find(location);
        if (output == outputs.end() || !takes(input, output->second))
            return false;
    }
    return true;
}

// "color(3)", as the text has it; "the target" where there is one.
std::string targetName(const RenderPipelineDescriptor& descriptor, std::uint32_t location) {
    const bool isOnly = std::ranges::none_of(descriptor.otherColors, [](const auto& other) {
        return other.format != PixelFormat::invalid;
    });
    return isOnly ? "the target" : "the target of color(" + std::to_string(location) + ")";
}

std::optional<std::string> componentFault(const RenderPipelineDescriptor& descriptor,
                                          std::uint32_t location, spv::Op kind) {
    const PixelFormat format = descriptor.colorAt(location).format;
    const bool isFloat = componentOf(format) == msl::TextureComponent::float_;
    const bool isInteger = !isFloat && format != PixelFormat::invalid;
    const std::string &name = descriptor.fragment->name(),
                      target = targetName(descriptor, location);
    if (isFloat && kind == spv::Op::OpTypeInt)
        return name + " gives integers, and " + target + " holds fractions";
    if (isInteger && kind == spv::Op::OpTypeFloat)
        return name + " gives fractions, and " + target + " holds integers";
    return std::nullopt;
}

bool blendAlike(const RenderPipelineDescriptor& descriptor) {
    ColorAttachmentDescriptor first = descriptor.color;
    return std::ranges::all_of(descriptor.otherColors, [&](const auto& other) {
        first.format = other.format;
        return other.format == PixelFormat::invalid || other == first;
    });
}

// Colours, their blending and their reading that the targets or the device do not have.
std::optional<std::string> colorFault(const DeviceRecord& device,
                                      const RenderPipelineDescriptor& descriptor,
                                      const Shapes& colours) {
    for (const auto& [location, colour] : colours)
        if (hasTarget(descriptor, location))
            if (auto fault = componentFault(descriptor, location, colour.kind))
                return fault;
    if (takesColors(descriptor.fragment->entryPoint()) && descriptor.sampleCount > 1)
        return descriptor.fragment->name() + " takes the colour so far, and the target has " +
               std::to_string(descriptor.sampleCount) + " samples";
    if (!device.features.independentBlend && !blendAlike(descriptor))
        return "the targets do not blend alike, which " + device.info.name + " requires";
    for (std::size_t n = 0; n < mostColors; ++n) {
        const bool isTaken = blendsTwoSources(descriptor.colorAt(n));
        if (isTaken && !device.features.twoSources)
            return device.info.name + " does not blend two sources";
        if (isTaken && !blendsTwoSources(descriptor.color))
            return "two sources are blended into the target of color(0) alone";
        const bool isBeyond = n >= device.limits.maxFragmentDualSrcAttachments &&
                              descriptor.colorAt(n).format != PixelFormat::invalid;
        if (isBeyond && blendsTwoSources(descriptor.color))
            return "two sources are blended, and there are targets beside that of color(0)";
    }
    return std::nullopt;
}

} // namespace

bool takesColors(const msl::EntryPoint& fragment) {
    return std::ranges::any_of(fragment.resources, [](const msl::Resource& resource) {
        return resource.kind == msl::ResourceKind::colorInput;
    });
}

Function withoutLostOutputs(const Function& function, const RenderPipelineDescriptor& descriptor) {
    Module code(function.entryPoint().words);
    const std::vector<Id> lost = lostOutputs(code, function.stage(), descriptor);
    if (lost.empty())
        return function;
    for (const Id variable : lost)
        makePrivate(code, variable);
    auto changed = std::make_shared<msl::EntryPoint>(function.entryPoint());
    changed->words = code.finish(executionModel(function.entryPoint()));
    for (std::uint32_t location = 0; location < mostColors; ++location)
        if (!hasTarget(descriptor, location))
            changed->colorAttachments &= ~(1u << location);
    return Function(std::move(changed));
}

std::optional<std::string> interfaceFault(const DeviceRecord& device,
                                          const RenderPipelineDescriptor& descriptor) {
    const std::string &vertex = descriptor.vertex->name(), &fragment = descriptor.fragment->name();
    if (descriptor.vertex->stage() != msl::Stage::vertex)
        return vertex + " is no vertex function";
    if (descriptor.fragment->stage() != msl::Stage::fragment)
        return fragment + " is no fragment function";
    const Module giver(descriptor.vertex->entryPoint().words);
    const Module taker(descriptor.fragment->entryPoint().words);
    if (variables(giver, spv::StorageClass::Output).empty()) // the function never returns
        return vertex + " gives no position";
    const Shapes outputs = shapesOf(giver, spv::StorageClass::Output);
    if (4 * outputs.size() > device.limits.maxVertexOutputComponents)
        return vertex + " gives more values than " + device.info.name + " passes between functions";
    if (!areTaken(shapesOf(taker, spv::StorageClass::Input), outputs))
        return fragment + " takes a value that " + vertex +
               " does not give, or gives as another type";
    if (auto fault = colorFault(device, descriptor, shapesOf(taker, spv::StorageClass::Output)))
        return fault;
    return std::nullopt;
}

} // namespace tarnwick::gpu
