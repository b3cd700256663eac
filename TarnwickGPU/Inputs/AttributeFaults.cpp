#include "TarnwickGPU/Inputs/AttributeFaults.h"

#include "TarnwickGPU/Vulkan/DeviceRecord.h"
#include "TarnwickGPU/Vulkan/VertexFormats.h"

#include <array>
#include <string_view>

namespace tarnwick::gpu {

namespace {

struct ScalarRow {
    msl::Scalar scalar;
    std::string_view name;
    NumberKind kind; // of the formats that fit: float_, sint or uint
};

// In the order of the enumeration.
constexpr std::array<ScalarRow, 9> scalars{{{msl::Scalar::bool_, "bool", NumberKind::uint},
                                            {msl::Scalar::int8, "char", NumberKind::sint},
                                            {msl::Scalar::uint8, "uchar", NumberKind::uint},
                                            {msl::Scalar::int16, "short", NumberKind::sint},
                                            {msl::Scalar::uint16, "ushort", NumberKind::uint},
                                            {msl::Scalar::int32, "int", NumberKind::sint},
                                            {msl::Scalar::uint32, "uint", NumberKind::uint},
                                            {msl::Scalar::half, "half", NumberKind::float_},
                                            {msl::Scalar::float_, "float", NumberKind::float_}}};

enum class Reader : std::uint8_t { vertex, patch, kernel };

// In the order of the enumeration.
constexpr std::array<std::string_view, 3> readerNames{"a vertex function", "a patch function",
                                                      "a kernel"};

struct StepRow {
    StepFunction step;
    std::string_view name;
    std::array<bool, 3> isOf; // by Reader
};

// In the order of the enumeration.
// clang-format off
constexpr std::array<StepRow, 9> steps{{
    {StepFunction::constant,                     "constant",                     {true, true, true}},
    {StepFunction::perVertex,                    "perVertex",                    {true, false, false}},
    {StepFunction::perInstance,                  "perInstance",                  {true, true, false}},
    {StepFunction::perPatch,                     "perPatch",                     {false, true, false}},
    {StepFunction::perPatchControlPoint,         "perPatchControlPoint",         {false, true, false}},
    {StepFunction::threadPositionInGridX,        "threadPositionInGridX",        {false, false, true}},
    {StepFunction::threadPositionInGridY,        "threadPositionInGridY",        {false, false, true}},
    {StepFunction::threadPositionInGridXIndexed, "threadPositionInGridXIndexed", {false, false, true}},
    {StepFunction::threadPositionInGridYIndexed, "threadPositionInGridYIndexed", {false, false, true}},
}};
// clang-format on

template <typename Rows> constexpr bool areInOrder(const Rows& rows, auto member) {
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (static_cast<std::size_t>(rows[row].*member) != row)
            return false;
    return true;
}
static_assert(areInOrder(scalars, &ScalarRow::scalar) && areInOrder(steps, &StepRow::step));

using Fault = std::optional<std::string>;

Reader readerOf(const msl::EntryPoint& function) {
    return function.stage == msl::Stage::kernel     ? Reader::kernel
           : function.patch != msl::PatchKind::none ? Reader::patch
                                                    : Reader::vertex;
}

std::string textOf(const msl::StageAttribute& attribute) {
    return "attribute " + std::to_string(attribute.index) + " (" + attribute.name + ")";
}

std::string typeOf(const msl::StageAttribute& attribute) {
    const ScalarRow& row = scalars[static_cast<std::size_t>(attribute.scalar)];
    return std::string(row.name) + (attribute.width > 1 ? std::to_string(attribute.width) : "");
}

bool fits(msl::Scalar scalar, const VertexFormatRow& format) {
    const NumberKind kind = scalars[static_cast<std::size_t>(scalar)].kind;
    return kind == (format.isInteger() ? format.kind : NumberKind::float_);
}

Fault formatFault(const msl::StageAttribute& attribute, const AttributeDescriptor& given) {
    const VertexFormatRow& format = vertexFormat(given.format);
    if (given.format == VertexFormat::invalid)
        return "the vertex descriptor has no " + textOf(attribute);
    if (!fits(attribute.scalar, format))
        return textOf(attribute) + " is of type " + typeOf(attribute) +
               ", which cannot be read from the format " + std::string(format.name);
    if (given.bufferIndex >= mostBufferLayouts)
        return textOf(attribute) + " is in buffer " + std::to_string(given.bufferIndex) +
               ", and the last buffer is 30";
    if (given.offset % 4 != 0)
        return textOf(attribute) + " has the offset " + std::to_string(given.offset) +
               ", which is not a multiple of 4";
    return std::nullopt;
}

Fault layoutFault(Reader reader, std::uint32_t index, const BufferLayoutDescriptor& layout) {
    const std::string text = "the layout of buffer " + std::to_string(index);
    const StepRow& step = steps[static_cast<std::size_t>(layout.step)];
    if (!step.isOf[static_cast<std::size_t>(reader)])
        return text + " has the step function " + std::string(step.name) + ", which " +
               std::string(readerNames[static_cast<std::size_t>(reader)]) + " does not have";
    if (layout.stride == 0 && layout.step != StepFunction::constant)
        return text + " has the stride 0";
    if (layout.stride % 4 != 0)
        return text + " has the stride " + std::to_string(layout.stride) +
               ", which is not a multiple of 4";
    if (layout.stepRate == 0 && layout.step == StepFunction::perInstance)
        return text + " has the step rate 0";
    return std::nullopt;
}

std::string beyond(const DeviceRecord& device, const std::string& what, std::uint32_t most,
                   std::size_t wanted) {
    return device.info.name + " takes " + what + " up to " + std::to_string(most) + ", and " +
           std::to_string(wanted) + " is wanted";
}

bool readsVertices(const DeviceRecord& device, VkFormat format) {
    VkFormatProperties properties;
    vkGetPhysicalDeviceFormatProperties(device.physical, format, &properties);
    return (properties.bufferFeatures & VK_FORMAT_FEATURE_VERTEX_BUFFER_BIT) != 0;
}

// Of vertex functions, whose attributes the device reads itself.
Fault deviceFault(const DeviceRecord& device, const msl::StageAttribute& attribute,
                  const AttributeDescriptor& given, const BufferLayoutDescriptor& layout) {
    const VkPhysicalDeviceLimits& limits = device.limits;
    const VertexFormatRow& format = vertexFormat(given.format);
    if (!readsVertices(device, format.vulkan))
        return device.info.name + " does not read vertices of the format " +
               std::string(format.name);
    if (attribute.index >= limits.maxVertexInputAttributes)
        return beyond(device, "indices of attributes", limits.maxVertexInputAttributes - 1,
                      attribute.index);
    if (given.offset > limits.maxVertexInputAttributeOffset)
        return beyond(device, "offsets of attributes", limits.maxVertexInputAttributeOffset,
                      given.offset);
    if (layout.stride > limits.maxVertexInputBindingStride)
        return beyond(device, "strides of vertex buffers", limits.maxVertexInputBindingStride,
                      layout.stride);
    if (layout.step == StepFunction::perInstance && layout.stepRate > 1 &&
        !device.features.instanceRates)
        return device.info.name + " has no step rates above 1";
    return std::nullopt;
}

} // namespace

std::optional<std::string> attributeFault(const DeviceRecord& device,
                                          const msl::EntryPoint& function,
                                          const VertexDescriptor* descriptor) {
    const Reader reader = readerOf(function);
    for (const msl::StageAttribute& attribute : function.attributes) {
        if (!descriptor)
            return function.name + " reads " + textOf(attribute) +
                   ", and there is no vertex descriptor";
        const AttributeDescriptor& given = descriptor->attributes.at(attribute.index);
        Fault fault = formatFault(attribute, given);
        if (fault)
            return fault;
        const BufferLayoutDescriptor& layout = descriptor->layouts[given.bufferIndex];
        fault = layoutFault(reader, given.bufferIndex, layout);
        if (!fault && reader == Reader::vertex)
            fault = deviceFault(device, attribute, given, layout);
        if (fault)
            return fault;
    }
    return std::nullopt;
}

} // namespace tarnwick::gpu
