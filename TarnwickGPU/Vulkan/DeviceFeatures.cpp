#include "TarnwickGPU/Vulkan/DeviceFeatures.h"

#include "TarnwickGPU/Vulkan/Capabilities.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tarnwick::gpu {

namespace {

// Required by the compiler's modules or by the encoders.
constexpr std::array needed12{&VkPhysicalDeviceVulkan12Features::timelineSemaphore,
                              &VkPhysicalDeviceVulkan12Features::scalarBlockLayout};
constexpr std::array needed13{&VkPhysicalDeviceVulkan13Features::synchronization2,
                              &VkPhysicalDeviceVulkan13Features::dynamicRendering,
                              &VkPhysicalDeviceVulkan13Features::maintenance4,
                              &VkPhysicalDeviceVulkan13Features::shaderDemoteToHelperInvocation};

constexpr std::array<const char*, needed12.size()> names12{"timelineSemaphore",
                                                           "scalarBlockLayout"};
constexpr std::array<const char*, needed13.size()> names13{
    "synchronization2", "dynamicRendering", "maintenance4", "shaderDemoteToHelperInvocation"};

constexpr std::array takenCore{&VkPhysicalDeviceFeatures::robustBufferAccess,
                               &VkPhysicalDeviceFeatures::fragmentStoresAndAtomics,
                               &VkPhysicalDeviceFeatures::vertexPipelineStoresAndAtomics,
                               &VkPhysicalDeviceFeatures::fullDrawIndexUint32,
                               &VkPhysicalDeviceFeatures::largePoints,
                               &VkPhysicalDeviceFeatures::multiDrawIndirect,
                               &VkPhysicalDeviceFeatures::samplerAnisotropy,
                               &VkPhysicalDeviceFeatures::imageCubeArray,
                               &VkPhysicalDeviceFeatures::geometryShader, // for primitive_id
                               &VkPhysicalDeviceFeatures::tessellationShader,
                               &VkPhysicalDeviceFeatures::sampleRateShading,
                               &VkPhysicalDeviceFeatures::dualSrcBlend,
                               &VkPhysicalDeviceFeatures::independentBlend,
                               &VkPhysicalDeviceFeatures::shaderClipDistance,
                               &VkPhysicalDeviceFeatures::shaderImageGatherExtended,
                               &VkPhysicalDeviceFeatures::shaderStorageImageExtendedFormats,
                               &VkPhysicalDeviceFeatures::shaderStorageImageReadWithoutFormat,
                               &VkPhysicalDeviceFeatures::shaderStorageImageWriteWithoutFormat,
                               &VkPhysicalDeviceFeatures::shaderInt16,
                               &VkPhysicalDeviceFeatures::shaderInt64};
constexpr std::array taken11{&VkPhysicalDeviceVulkan11Features::storageBuffer16BitAccess,
                             &VkPhysicalDeviceVulkan11Features::uniformAndStorageBuffer16BitAccess,
                             &VkPhysicalDeviceVulkan11Features::variablePointersStorageBuffer,
                             &VkPhysicalDeviceVulkan11Features::variablePointers,
                             &VkPhysicalDeviceVulkan11Features::multiview,
                             &VkPhysicalDeviceVulkan11Features::shaderDrawParameters};
constexpr std::array taken12{&VkPhysicalDeviceVulkan12Features::storageBuffer8BitAccess,
                             &VkPhysicalDeviceVulkan12Features::uniformAndStorageBuffer8BitAccess,
                             &VkPhysicalDeviceVulkan12Features::shaderFloat16,
                             &VkPhysicalDeviceVulkan12Features::shaderInt8,
                             &VkPhysicalDeviceVulkan12Features::shaderBufferInt64Atomics,
                             &VkPhysicalDeviceVulkan12Features::shaderSharedInt64Atomics,
                             &VkPhysicalDeviceVulkan12Features::shaderOutputLayer,
                             &VkPhysicalDeviceVulkan12Features::shaderOutputViewportIndex,
                             &VkPhysicalDeviceVulkan12Features::samplerMirrorClampToEdge,
                             &VkPhysicalDeviceVulkan12Features::bufferDeviceAddress,
                             &VkPhysicalDeviceVulkan12Features::uniformBufferStandardLayout,
                             &VkPhysicalDeviceVulkan12Features::shaderSubgroupExtendedTypes,
                             &VkPhysicalDeviceVulkan12Features::vulkanMemoryModel,
                             &VkPhysicalDeviceVulkan12Features::vulkanMemoryModelDeviceScope};
constexpr std::array taken13{
    &VkPhysicalDeviceVulkan13Features::robustImageAccess,
    &VkPhysicalDeviceVulkan13Features::shaderTerminateInvocation,
    &VkPhysicalDeviceVulkan13Features::shaderZeroInitializeWorkgroupMemory};

template <typename Record, std::size_t count>
void keep(const Record& from, Record& to, const std::array<VkBool32 Record::*, count>& members) {
    for (auto member : members)
        to.*member = from.*member;
}

template <typename Record, std::size_t count>
void noteMissing(const Record& record, const std::array<VkBool32 Record::*, count>& members,
                 const std::array<const char*, count>& names, std::vector<std::string>& missing) {
    for (std::size_t index = 0; index < count; ++index)
        if (record.*members[index] != VK_TRUE)
            missing.emplace_back(names[index]);
}

std::uint32_t maxPushDescriptors(VkPhysicalDevice device) {
    VkPhysicalDevicePushDescriptorPropertiesKHR push{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PUSH_DESCRIPTOR_PROPERTIES_KHR};
    VkPhysicalDeviceProperties2 properties{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2,
                                           .pNext = &push};
    vkGetPhysicalDeviceProperties2(device, &properties);
    return push.maxPushDescriptors;
}

bool hasDeviceExtension(VkPhysicalDevice device, const char* name) {
    std::uint32_t count = 0;
    vkEnumerateDeviceExtensionProperties(device, nullptr, &count, nullptr);
    std::vector<VkExtensionProperties> extensions(count);
    vkEnumerateDeviceExtensionProperties(device, nullptr, &count, extensions.data());
    return std::any_of(extensions.begin(), extensions.end(),
                       [name](const VkExtensionProperties& extension) {
                           return std::strcmp(extension.extensionName, name) == 0;
                       });
}

// On GPUs a target that may be read costs each of its draws, whether they read it or not.
bool isCPU(VkPhysicalDevice device) {
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(device, &properties);
    return properties.deviceType == VK_PHYSICAL_DEVICE_TYPE_CPU;
}

} // namespace

std::vector<std::string> missingFeatures(VkPhysicalDevice device) {
    FeatureChain chain({});
    vkGetPhysicalDeviceFeatures2(device, &chain.core);
    std::vector<std::string> missing;
    noteMissing(chain.vulkan12, needed12, names12, missing);
    noteMissing(chain.vulkan13, needed13, names13, missing);
    return missing;
}

OptionalRecords optionalRecords(VkPhysicalDevice device) {
    return {
        .robustness2 = hasDeviceExtension(device, VK_EXT_ROBUSTNESS_2_EXTENSION_NAME),
        .atomicFloat = hasDeviceExtension(device, VK_EXT_SHADER_ATOMIC_FLOAT_EXTENSION_NAME),
        .instanceRates = hasDeviceExtension(device, VK_EXT_VERTEX_ATTRIBUTE_DIVISOR_EXTENSION_NAME),
        .imageAtomics = hasDeviceExtension(device, VK_EXT_SHADER_IMAGE_ATOMIC_INT64_EXTENSION_NAME),
        .feedback =
            isCPU(device) &&
            hasDeviceExtension(device, VK_EXT_ATTACHMENT_FEEDBACK_LOOP_LAYOUT_EXTENSION_NAME),
        .barycentric =
            hasDeviceExtension(device, VK_KHR_FRAGMENT_SHADER_BARYCENTRIC_EXTENSION_NAME),
        .interlock = hasDeviceExtension(device, VK_EXT_FRAGMENT_SHADER_INTERLOCK_EXTENSION_NAME)};
}

DeviceFeatures chooseFeatures(VkPhysicalDevice device, bool hasSurfaces, FeatureChain& chain,
                              std::vector<const char*>& extensions) {
    const OptionalRecords records = optionalRecords(device);
    FeatureChain had(records);
    vkGetPhysicalDeviceFeatures2(device, &had.core);
    keep(had.core.features, chain.core.features, takenCore);
    keep(had.vulkan11, chain.vulkan11, taken11);
    keep(had.vulkan12, chain.vulkan12, needed12);
    keep(had.vulkan12, chain.vulkan12, taken12);
    keep(had.vulkan13, chain.vulkan13, needed13);
    keep(had.vulkan13, chain.vulkan13, taken13);
    chain.robustness2.nullDescriptor = had.robustness2.nullDescriptor;
    chain.atomicFloat.shaderBufferFloat32AtomicAdd = had.atomicFloat.shaderBufferFloat32AtomicAdd;
    chain.imageAtomics.shaderImageInt64Atomics = had.imageAtomics.shaderImageInt64Atomics;
    chain.feedback.attachmentFeedbackLoopLayout = had.feedback.attachmentFeedbackLoopLayout;
    chain.barycentric.fragmentShaderBarycentric = had.barycentric.fragmentShaderBarycentric;
    chain.interlock.fragmentShaderPixelInterlock = had.interlock.fragmentShaderPixelInterlock;
    const Extensions alone{
        .stencilExport = hasDeviceExtension(device, VK_EXT_SHADER_STENCIL_EXPORT_EXTENSION_NAME),
        .postDepthCoverage = hasDeviceExtension(device, VK_EXT_POST_DEPTH_COVERAGE_EXTENSION_NAME)};

    chain.instanceRates.vertexAttributeInstanceRateDivisor =
        had.instanceRates.vertexAttributeInstanceRateDivisor;

    const bool holdsBytes = had.vulkan12.storageBuffer8BitAccess == VK_TRUE &&
                            had.vulkan12.uniformAndStorageBuffer8BitAccess == VK_TRUE;
    const bool holdsHalves = had.vulkan11.storageBuffer16BitAccess == VK_TRUE &&
                             had.vulkan11.uniformAndStorageBuffer16BitAccess == VK_TRUE;

    DeviceFeatures features{
        .nullDescriptors = had.robustness2.nullDescriptor == VK_TRUE,
        .anisotropy = had.core.features.samplerAnisotropy == VK_TRUE,
        .addsFloatsInBuffers = chain.atomicFloat.shaderBufferFloat32AtomicAdd == VK_TRUE,
        .ordersFragments = chain.interlock.fragmentShaderPixelInterlock == VK_TRUE,
        .multiDraws = had.core.features.multiDrawIndirect == VK_TRUE,
        .sums = had.core.features.fragmentStoresAndAtomics == VK_TRUE,
        .wideSums = had.core.features.shaderInt64 == VK_TRUE &&
                    had.vulkan12.shaderBufferInt64Atomics == VK_TRUE,
        .largePoints = had.core.features.largePoints == VK_TRUE,
        .addresses = had.vulkan12.bufferDeviceAddress == VK_TRUE,
        .mirrorClamp = had.vulkan12.samplerMirrorClampToEdge == VK_TRUE,
        .instanceRates = chain.instanceRates.vertexAttributeInstanceRateDivisor == VK_TRUE,
        .textureAtomics64 = had.imageAtomics.shaderImageInt64Atomics == VK_TRUE,
        .readsTargets = had.feedback.attachmentFeedbackLoopLayout == VK_TRUE,
        .twoSources = had.core.features.dualSrcBlend == VK_TRUE,
        .independentBlend = had.core.features.independentBlend == VK_TRUE,
        .int8 = had.vulkan12.shaderInt8 == VK_TRUE && holdsBytes,
        .int16 = had.core.features.shaderInt16 == VK_TRUE && holdsHalves,
        .int64 = had.core.features.shaderInt64 == VK_TRUE,
        .float16 = had.vulkan12.shaderFloat16 == VK_TRUE && holdsHalves,
        .groups = groupsOf(device),
        .capabilities = capabilitiesOf(device, chain, alone)};
    if (records.robustness2)
        extensions.push_back(VK_EXT_ROBUSTNESS_2_EXTENSION_NAME);
    if (records.atomicFloat)
        extensions.push_back(VK_EXT_SHADER_ATOMIC_FLOAT_EXTENSION_NAME);
    if (records.instanceRates)
        extensions.push_back(VK_EXT_VERTEX_ATTRIBUTE_DIVISOR_EXTENSION_NAME);
    if (records.imageAtomics)
        extensions.push_back(VK_EXT_SHADER_IMAGE_ATOMIC_INT64_EXTENSION_NAME);
    if (records.feedback)
        extensions.push_back(VK_EXT_ATTACHMENT_FEEDBACK_LOOP_LAYOUT_EXTENSION_NAME);
    if (records.barycentric)
        extensions.push_back(VK_KHR_FRAGMENT_SHADER_BARYCENTRIC_EXTENSION_NAME);
    if (records.interlock)
        extensions.push_back(VK_EXT_FRAGMENT_SHADER_INTERLOCK_EXTENSION_NAME);
    if (alone.stencilExport)
        extensions.push_back(VK_EXT_SHADER_STENCIL_EXPORT_EXTENSION_NAME);
    if (alone.postDepthCoverage)
        extensions.push_back(VK_EXT_POST_DEPTH_COVERAGE_EXTENSION_NAME);
    if (hasDeviceExtension(device, VK_KHR_PUSH_DESCRIPTOR_EXTENSION_NAME)) {
        extensions.push_back(VK_KHR_PUSH_DESCRIPTOR_EXTENSION_NAME);
        features.maxPushDescriptors = maxPushDescriptors(device);
    }
    if (hasSurfaces && hasDeviceExtension(device, VK_KHR_SWAPCHAIN_EXTENSION_NAME)) {
        extensions.push_back(VK_KHR_SWAPCHAIN_EXTENSION_NAME);
        features.presents = true;
    }
    return features;
}

} // namespace tarnwick::gpu
