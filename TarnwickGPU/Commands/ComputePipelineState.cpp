#include "TarnwickGPU/Commands/PipelineErrors.h"
#include "TarnwickGPU/Commands/PipelineParts.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Inputs/AttributeFaults.h"
#include "TarnwickGPU/Inputs/AttributeFetch.h"
#include "TarnwickGPU/Vulkan/ShaderModule.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace tarnwick::gpu {

namespace {

std::uint32_t mostThreads(const DeviceRecord& device, const msl::EntryPoint& kernel) {
    const std::uint32_t most = device.limits.maxComputeWorkGroupInvocations;
    return kernel.mostThreads ? std::min(kernel.mostThreads, most) : most;
}

// The shape of the first variant, made at once to learn whether the device supports the kernel.
ThreadgroupShape usualThreadgroup(const DeviceRecord& device, const msl::EntryPoint& kernel) {
    return {.threads = {std::min(mostThreads(device, kernel), 256u), 1, 1}};
}

// The specialisation constants of a kernel's pipelines.
class Constants {
  public:
    Constants(const DeviceRecord& device, const msl::EntryPoint& kernel,
              const ThreadgroupShape& shape) {
        add(msl::loopBudgetConstant, device.loopBudget);
        add(msl::threadgroupSizeConstants[0], shape.threads.width);
        add(msl::threadgroupSizeConstants[1], shape.threads.height);
        add(msl::threadgroupSizeConstants[2], shape.threads.depth);
        for (std::uint32_t index : kernel.threadgroupPointers)
            if (shape.lengths[index])
                add(msl::threadgroupLengthConstant(index), shape.lengths[index]);
    }
    VkSpecializationInfo info() const {
        return {count_, entries_.data(), count_ * sizeof(std::uint32_t), values_.data()};
    }

  private:
    static constexpr std::size_t most = 4 + mostThreadgroupPointers;

    void add(std::uint32_t constant, std::uint32_t value) {
        entries_[count_] = {constant, count_ * static_cast<std::uint32_t>(sizeof value),
                            sizeof value};
        values_[count_++] = value;
    }

    std::uint32_t count_ = 0;
    std::array<VkSpecializationMapEntry, most> entries_{};
    std::array<std::uint32_t, most> values_{};
};

// Bytes of threadgroup memory without the default of pointers that have no length.
std::uint64_t memoryOf(const msl::EntryPoint& kernel, const ThreadgroupShape& shape) {
    return std::accumulate(shape.lengths.begin(), shape.lengths.end(),
                           std::uint64_t{kernel.threadgroupBytes});
}

VkResult makeVariant(const DeviceState& device, const BindingLayout& layout,
                     const msl::EntryPoint& kernel, const ThreadgroupShape& threadgroup,
                     VkPipeline& pipeline) {
    const DeviceRecord& record = device.record;
    if (memoryOf(kernel, threadgroup) > record.limits.maxComputeSharedMemorySize)
        return VK_ERROR_OUT_OF_DEVICE_MEMORY;
    const ShaderModule module(record.handle, kernel.words);
    if (!module.handle())
        return VK_ERROR_UNKNOWN;
    const Constants values(record, kernel, threadgroup);
    const VkSpecializationInfo constants = values.info();
    const VkComputePipelineCreateInfo info{
        .sType = VK_STRUCTURE_TYPE_COMPUTE_PIPELINE_CREATE_INFO,
        .flags = VK_PIPELINE_CREATE_DISPATCH_BASE_BIT,
        .stage = {.sType = VK_STRUCTURE_TYPE_PIPELINE_SHADER_STAGE_CREATE_INFO,
                  .stage = VK_SHADER_STAGE_COMPUTE_BIT,
                  .module = module.handle(),
                  .pName = "main",
                  .pSpecializationInfo = &constants},
        .layout = layout.pipelineLayout};
    return vkCreateComputePipelines(record.handle, device.pipelineCache.handle(), 1, &info, nullptr,
                                    &pipeline);
}

std::shared_ptr<const msl::EntryPoint> withStageInput(const Function& kernel,
                                                      const StageInputDescriptor& stageInput) {
    const std::array functions{&kernel.entryPoint()};
    return withFetches(kernel.entryPoint(),
                       {.buffers = stageInput.buffers,
                        .indices = IndexSource{.type = stageInput.indexType,
                                               .buffer = stageInput.indexBufferIndex},
                        .binding = ownBinding(functions)});
}

} // namespace

VkPipeline ComputePipelineParts::pipelineFor(const ThreadgroupShape& threadgroup) const {
    std::lock_guard lock(mutex_);
    for (const Variant& variant : variants_)
        if (variant.threadgroup == threadgroup)
            return variant.pipeline;
    VkPipeline pipeline = VK_NULL_HANDLE;
    if (makeVariant(*device, layout, *kernel, threadgroup, pipeline) != VK_SUCCESS)
        return VK_NULL_HANDLE;
    variants_.push_back({threadgroup, pipeline});
    return pipeline;
}

ComputePipelineParts::~ComputePipelineParts() {
    for (const Variant& variant : variants_)
        device->graveyard.bury(variant.pipeline);
    layout.bury(device->graveyard);
}

ComputePipelineState::ComputePipelineState(std::unique_ptr<ComputePipelineParts> parts)
    : parts_(std::move(parts)) {}
ComputePipelineState::~ComputePipelineState() = default;

std::uint32_t ComputePipelineState::maxTotalThreadsPerThreadgroup() const {
    return mostThreads(parts_->device->record, *parts_->kernel);
}

std::unique_ptr<ComputePipelineState>
Device::newComputePipelineState(const Function& kernel, const StageInputDescriptor* stageInput) {
    const std::string subject = "the compute pipeline of " + kernel.name();
    if (isLost())
        throw DeviceError(refusal(state_->record, subject, VK_ERROR_DEVICE_LOST));
    if (kernel.stage() != msl::Stage::kernel)
        throw DeviceError("The device could not make " + subject + ": it is no kernel.");
    checkNeeds(state_->record, subject, kernel.entryPoint());
    if (const auto fault = attributeFault(state_->record, kernel.entryPoint(),
                                          stageInput ? &stageInput->buffers : nullptr))
        throw DeviceError("The device could not make " + subject + ": " + *fault + ".");
    auto parts = std::make_unique<ComputePipelineParts>();
    parts->device = state_;
    parts->kernel = kernel.entryPoint().attributes.empty() ? kernel.sharedEntryPoint()
                                                           : withStageInput(kernel, *stageInput);
    heed(*parts->traits, *parts->kernel);
    const std::array functions{parts->kernel.get()};
    auto layout =
        BindingLayout::make(*state_, {.functions = functions,
                                      .pushConstants = {.stageFlags = VK_SHADER_STAGE_COMPUTE_BIT,
                                                        .size = msl::kernelPushConstantBytes}});
    if (!layout)
        throw DeviceError(refusal(state_->record, subject, VK_ERROR_UNKNOWN));
    parts->layout = std::move(*layout);
    if (!parts->pipelineFor(usualThreadgroup(state_->record, *parts->kernel)))
        throw DeviceError(refusal(state_->record, subject, VK_ERROR_UNKNOWN));
    return std::make_unique<ComputePipelineState>(std::move(parts));
}

} // namespace tarnwick::gpu
