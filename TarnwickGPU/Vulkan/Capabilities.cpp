#include "TarnwickGPU/Vulkan/Capabilities.h"

#include "TarnwickMSL/Capabilities.h"

#include <algorithm>
#include <array>

namespace tarnwick::gpu {

namespace {

// SPIR-V 1.6, 3.31 and 2.3.
enum class Capability : std::uint32_t {
    Geometry = 2,
    Tessellation = 3,
    Float16 = 9,
    Int64 = 11,
    Int64Atomics = 12,
    Int16 = 22,
    ClipDistance = 32,
    ImageCubeArray = 34,
    SampleRateShading = 35,
    Int8 = 39,
    SampledCubeArray = 45,
    InterpolationFunction = 52,
    StorageImageReadWithoutFormat = 55,
    StorageImageWriteWithoutFormat = 56,
    GroupNonUniform = 61,
    GroupNonUniformVote = 62,
    GroupNonUniformArithmetic = 63,
    GroupNonUniformBallot = 64,
    GroupNonUniformShuffle = 65,
    ShaderLayer = 69,
    ShaderViewportIndex = 70,
    DrawParameters = 4427,
    StorageBuffer16BitAccess = 4433,
    UniformAndStorageBuffer16BitAccess = 4434,
    StorageBuffer8BitAccess = 4448,
    UniformAndStorageBuffer8BitAccess = 4449,
    MultiView = 4439,
    StencilExportEXT = 5013,
    FragmentBarycentricKHR = 5284,
    SampleMaskPostDepthCoverage = 4447,
    PhysicalStorageBufferAddresses = 5347,
    FragmentShaderPixelInterlockEXT = 5378,
    RayQueryKHR = 4472,
    MeshShadingEXT = 5283,
    Int64ImageEXT = 5016,
    AtomicFloat32AddEXT = 6033
};

struct Asked {
    const FeatureChain& chain;
    VkSubgroupFeatureFlags groups;
    bool readsEveryFormat; // of textures, whatever the device reports
    Extensions extensions;

    bool core(VkBool32 VkPhysicalDeviceFeatures::*feature) const {
        return chain.core.features.*feature;
    }
    bool in11(VkBool32 VkPhysicalDeviceVulkan11Features::*feature) const {
        return chain.vulkan11.*feature;
    }
    bool in12(VkBool32 VkPhysicalDeviceVulkan12Features::*feature) const {
        return chain.vulkan12.*feature;
    }
    bool hasGroups(VkSubgroupFeatureFlags wanted) const { return (groups & wanted) == wanted; }
};

struct Row {
    Capability capability;
    const char* words;
    bool (*isThere)(const Asked& device);
};

using Core = VkPhysicalDeviceFeatures;
using In11 = VkPhysicalDeviceVulkan11Features;
using In12 = VkPhysicalDeviceVulkan12Features;

// clang-format off
constexpr std::array rows{
    Row{Capability::Int8,  "8-bit integers",  [](const Asked& a) { return a.in12(&In12::shaderInt8); }},
    Row{Capability::Int16, "16-bit integers", [](const Asked& a) { return a.core(&Core::shaderInt16); }},
    Row{Capability::Int64, "64-bit integers", [](const Asked& a) { return a.core(&Core::shaderInt64); }},
    Row{Capability::Float16, "half", [](const Asked& a) { return a.in12(&In12::shaderFloat16); }},
    Row{Capability::StorageBuffer8BitAccess, "8-bit values in buffers",
        [](const Asked& a) { return a.in12(&In12::storageBuffer8BitAccess); }},
    Row{Capability::UniformAndStorageBuffer8BitAccess, "8-bit values in constant buffers",
        [](const Asked& a) { return a.in12(&In12::uniformAndStorageBuffer8BitAccess); }},
    Row{Capability::StorageBuffer16BitAccess, "16-bit values in buffers",
        [](const Asked& a) { return a.in11(&In11::storageBuffer16BitAccess); }},
    Row{Capability::UniformAndStorageBuffer16BitAccess, "16-bit values in constant buffers",
        [](const Asked& a) { return a.in11(&In11::uniformAndStorageBuffer16BitAccess); }},
    Row{Capability::PhysicalStorageBufferAddresses, "pointers in buffers",
        [](const Asked& a) { return a.in12(&In12::bufferDeviceAddress); }},
    Row{Capability::Int64Atomics, "64-bit atomic operations",
        [](const Asked& a) { return a.in12(&In12::shaderBufferInt64Atomics); }},
    // The layer makes no pipelines of object and mesh functions and no acceleration structures, so it
    // switches the features on nowhere.
    Row{Capability::MeshShadingEXT, "object and mesh functions", [](const Asked&) { return false; }},
    Row{Capability::RayQueryKHR, "ray queries", [](const Asked&) { return false; }},
    Row{Capability::Int64ImageEXT, "64-bit atomic operations on textures",
        [](const Asked& a) { return a.chain.imageAtomics.shaderImageInt64Atomics == VK_TRUE; }},
    Row{Capability::AtomicFloat32AddEXT, "atomic sums of floats",
        [](const Asked& a) { return a.chain.atomicFloat.shaderBufferFloat32AtomicAdd == VK_TRUE; }},
    Row{Capability::GroupNonUniform, "SIMD-groups",
        [](const Asked& a) { return a.hasGroups(VK_SUBGROUP_FEATURE_BASIC_BIT); }},
    Row{Capability::GroupNonUniformVote, "votes of SIMD-groups",
        [](const Asked& a) { return a.hasGroups(VK_SUBGROUP_FEATURE_VOTE_BIT); }},
    Row{Capability::GroupNonUniformBallot, "ballots of SIMD-groups",
        [](const Asked& a) { return a.hasGroups(VK_SUBGROUP_FEATURE_BALLOT_BIT); }},
    Row{Capability::GroupNonUniformShuffle, "shuffles of SIMD-groups",
        [](const Asked& a) { return a.hasGroups(VK_SUBGROUP_FEATURE_SHUFFLE_BIT); }},
    Row{Capability::GroupNonUniformArithmetic, "sums of SIMD-groups",
        [](const Asked& a) { return a.hasGroups(VK_SUBGROUP_FEATURE_ARITHMETIC_BIT); }},
    Row{Capability::DrawParameters, "base_vertex and base_instance",
        [](const Asked& a) { return a.in11(&In11::shaderDrawParameters); }},
    Row{Capability::Geometry, "primitive_id", [](const Asked& a) { return a.core(&Core::geometryShader); }},
    Row{Capability::Tessellation, "tessellation", [](const Asked& a) { return a.core(&Core::tessellationShader); }},
    Row{Capability::SampleRateShading, "sample_id and interpolation at samples",
        [](const Asked& a) { return a.core(&Core::sampleRateShading); }},
    Row{Capability::InterpolationFunction, "interpolation at offsets and samples",
        [](const Asked& a) { return a.core(&Core::sampleRateShading); }},
    Row{Capability::MultiView, "amplification_id",
        [](const Asked& a) { return a.in11(&In11::multiview); }},
    Row{Capability::StencilExportEXT, "stencil", [](const Asked& a) { return a.extensions.stencilExport; }},
    Row{Capability::SampleMaskPostDepthCoverage, "post_depth_coverage",
        [](const Asked& a) { return a.extensions.postDepthCoverage; }},
    Row{Capability::FragmentBarycentricKHR, "barycentric_coord",
        [](const Asked& a) { return a.chain.barycentric.fragmentShaderBarycentric == VK_TRUE; }},
    Row{Capability::FragmentShaderPixelInterlockEXT, "raster order groups",
        [](const Asked& a) { return a.chain.interlock.fragmentShaderPixelInterlock == VK_TRUE; }},
    Row{Capability::ClipDistance, "clip_distance",
        [](const Asked& a) { return a.core(&Core::shaderClipDistance); }},
    // Mesa's CPU driver does not report the feature, but reads all formats (LayerMessages.cpp).
    Row{Capability::StorageImageReadWithoutFormat, "textures that are read and written",
        [](const Asked& a) { return a.readsEveryFormat || a.core(&Core::shaderStorageImageReadWithoutFormat); }},
    Row{Capability::StorageImageWriteWithoutFormat, "textures that are written",
        [](const Asked& a) { return a.core(&Core::shaderStorageImageWriteWithoutFormat); }},
    Row{Capability::SampledCubeArray, "arrays of cubes",
        [](const Asked& a) { return a.core(&Core::imageCubeArray); }},
    Row{Capability::ImageCubeArray, "arrays of cubes that are written",
        [](const Asked& a) { return a.core(&Core::imageCubeArray); }},
    Row{Capability::ShaderLayer, "render_target_array_index",
        [](const Asked& a) { return a.in12(&In12::shaderOutputLayer); }},
    Row{Capability::ShaderViewportIndex, "viewport_array_index",
        [](const Asked& a) { return a.in12(&In12::shaderOutputViewportIndex); }},
};
// clang-format on

bool isMesaCPU(VkPhysicalDevice device) {
    VkPhysicalDeviceDriverProperties driver{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_DRIVER_PROPERTIES};
    VkPhysicalDeviceProperties2 properties{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2,
                                           .pNext = &driver};
    vkGetPhysicalDeviceProperties2(device, &properties);
    return driver.driverID == VK_DRIVER_ID_MESA_LLVMPIPE;
}

VkPhysicalDeviceVulkan11Properties propertiesOf(VkPhysicalDevice device) {
    VkPhysicalDeviceVulkan11Properties vulkan11{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_1_PROPERTIES};
    VkPhysicalDeviceProperties2 properties{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2,
                                           .pNext = &vulkan11};
    vkGetPhysicalDeviceProperties2(device, &properties);
    return vulkan11;
}

} // namespace

std::vector<std::uint32_t> capabilitiesOf(VkPhysicalDevice device, const FeatureChain& chain,
                                          Extensions extensions) {
    const Asked asked{chain, propertiesOf(device).subgroupSupportedOperations, isMesaCPU(device),
                      extensions};
    std::vector<std::uint32_t> there;
    for (const Row& row : rows)
        if (row.isThere(asked))
            there.push_back(static_cast<std::uint32_t>(row.capability));
    std::sort(there.begin(), there.end());
    return there;
}

std::optional<std::string> missingCapability(std::span<const std::uint32_t> module,
                                             std::span<const std::uint32_t> capabilities) {
    for (const std::uint32_t capability : msl::capabilitiesOf(module)) {
        if (std::binary_search(capabilities.begin(), capabilities.end(), capability))
            continue;
        for (const Row& row : rows)
            if (static_cast<std::uint32_t>(row.capability) == capability)
                return row.words;
    }
    return std::nullopt;
}

bool usesGroups(std::span<const std::uint32_t> module) {
    return std::ranges::count(msl::capabilitiesOf(module),
                              static_cast<std::uint32_t>(Capability::GroupNonUniform)) != 0;
}

Groups groupsOf(VkPhysicalDevice device) {
    const VkPhysicalDeviceVulkan11Properties properties = propertiesOf(device);
    return {.stages = properties.subgroupSupportedStages, .lanes = properties.subgroupSize};
}

} // namespace tarnwick::gpu
