#include "TarnwickBase/Precondition.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/PipelineParts.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

// The size that a pipeline is first made for, to learn early whether the device takes the kernel.
Size usualThreadgroup(const DeviceState& device) {
    return {std::min(device.limits.maxComputeWorkGroupInvocations, 256u), 1, 1};
}

VkResult makeVariant(const DeviceState& device, const BindingLayout& layout, VkShaderModule module,
                     const Size& threadgroup, VkPipeline& pipeline) {
    const std::array<std::uint32_t, 4> values{device.loopBudget, threadgroup.width,
                                              threadgroup.height, threadgroup.depth};
    std::array<VkSpecializationMapEntry, 4> entries;
    entries[0] = {msl::loopBudgetConstant, 0, sizeof(std::uint32_t)};
    for (std::uint32_t axis = 0; axis < 3; ++axis)
        entries[axis + 1] = {msl::threadgroupSizeConstants[axis],
                             (axis + 1) * static_cast<std::uint32_t>(sizeof(std::uint32_t)),
                             sizeof(std::uint32_t)};
    const VkSpecializationInfo constants{entries.size(), entries.data(), sizeof values,
                                         values.data()};
    const VkComputePipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_COMPUTE_PIPELINE_CREATE_INFO,
        .stage = {.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
                  .stage = VK_SHADER_STAGE_COMPUTE_BIT,
                  .module = module,
                  .pName = "main",
                  .pSpecializationInfo = &constants},
        .layout = layout.pipelineLayout};
    return vkCreateComputePipelines(device.handle, device.pipelineCache.handle(), 1, &info, nullptr,
                                    &pipeline);
}

} // namespace

ShaderModule::ShaderModule(VkDevice device, const msl::EntryPoint& entryPoint) : device_(device) {
    const VkShaderModuleCreateInfo info{.sType = VK_STRUCTURE_TYPE_SHADER_MODULE_CREATE_INFO,
                                        .codeSize = entryPoint.words.size() * sizeof(std::uint32_t),
                                        .pCode = entryPoint.words.data()};
    if (vkCreateShaderModule(device, &info, nullptr, &handle_) != VK_SUCCESS)
        handle_ = VK_NULL_HANDLE;
}

ShaderModule::~ShaderModule() {
    if (handle_)
        vkDestroyShaderModule(device_, handle_, nullptr);
}

std::string refusal(const DeviceState& device, const std::string& what, VkResult result) {
    const char* reason = "does not take it";
    if (result == VK_ERROR_OUT_OF_DEVICE_MEMORY || result == VK_ERROR_OUT_OF_HOST_MEMORY)
        reason = "is out of memory";
    if (result == VK_ERROR_DEVICE_LOST)
        reason = "was lost";
    return "The device could not make " + what + ": " + device.info.name + " " + reason + ".";
}

VkPipeline ComputePipelineParts::pipelineFor(const Size& threadgroup) const {
    std::lock_guard lock(mutex_);
    for (const Variant& variant : variants_)
        if (variant.threadgroup == threadgroup)
            return variant.pipeline;
    const ShaderModule module(device->handle, *kernel);
    VkPipeline pipeline = VK_NULL_HANDLE;
    if (!module.handle() ||
        makeVariant(*device, layout, module.handle(), threadgroup, pipeline) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    variants_.push_back({threadgroup, pipeline});
    return pipeline;
}

ComputePipelineParts::~ComputePipelineParts() {
    for (const Variant& variant : variants_)
        device->bury(variant.pipeline);
    layout.bury(*device);
}

ComputePipelineState::ComputePipelineState(std::unique_ptr<ComputePipelineParts> parts)
    : parts_(std::move(parts)) {}
ComputePipelineState::~ComputePipelineState() = default;

std::uint32_t ComputePipelineState::maxTotalThreadsPerThreadgroup() const {
    return parts_->device->limits.maxComputeWorkGroupInvocations;
}

std::unique_ptr<ComputePipelineState> Device::newComputePipelineState(const Function& kernel) {
    precondition(kernel.stage() == msl::Stage::kernel, "A compute pipeline has a kernel.");
    const std::string subject = "the compute pipeline of " + kernel.name();
    if (isLost())
        throw DeviceError(refusal(*state_, subject, VK_ERROR_DEVICE_LOST));
    auto parts = std::make_unique<ComputePipelineParts>();
    parts->device = state_;
    parts->kernel = kernel.sharedEntryPoint();
    const std::array functions{&kernel.entryPoint()};
    auto layout = BindingLayout::make(*state_, functions);
    if (!layout)
        throw DeviceError(refusal(*state_, subject, VK_ERROR_UNKNOWN));
    parts->layout = std::move(*layout);
    if (!parts->pipelineFor(usualThreadgroup(*state_)))
        throw DeviceError(refusal(*state_, subject, VK_ERROR_UNKNOWN));
    return std::make_unique<ComputePipelineState>(std::move(parts));
}

} // namespace tarnwick::gpu
