#include "TarnwickGPU/Commands/StageInterface.h"

#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/VulkanFormat.h"
#include "TarnwickSpirv/Interface.h"
#include "TarnwickSpirv/Rewriting.h"

#include <map>
#include <utility>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

std::vector<Id> lostOutputs(const Module& code, msl::Stage stage) {
    std::vector<Id> lost;
    if (stage == msl::Stage::fragment)
        for (const auto& [location, variable] : locations(code, spv::StorageClass::Output))
            if (location != 0)
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

} // namespace

Function withoutLostOutputs(const Function& function) {
    Module code(function.entryPoint().words);
    const std::vector<Id> lost = lostOutputs(code, function.stage());
    if (lost.empty())
        return function;
    for (const Id variable : lost)
        makePrivate(code, variable);
    auto changed = std::make_shared<msl::EntryPoint>(function.entryPoint());
    changed->words =
        code.finish(function.stage() == msl::Stage::vertex ? spv::ExecutionModel::Vertex
                                                           : spv::ExecutionModel::Fragment);
    changed->colorAttachments &= 1;
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
    const Shapes colours = shapesOf(taker, spv::StorageClass::Output);
    const bool isFloat = componentOf(descriptor.color.format) == msl::TextureComponent::float_;
    const bool isInteger = !isFloat && descriptor.color.format != PixelFormat::invalid;
    if (const auto colour = colours.find(0); colour != colours.end())
        if ((isFloat && colour->second.kind == spv::Op::OpTypeInt) ||
            (isInteger && colour->second.kind == spv::Op::OpTypeFloat))
            return fragment + (isFloat ? " gives integers, and the target holds fractions"
                                       : " gives fractions, and the target holds integers");
    return std::nullopt;
}

} // namespace tarnwick::gpu
