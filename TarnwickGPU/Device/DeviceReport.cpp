#include "TarnwickGPU/DeviceReport.h"

#include "TarnwickGPU/Vulkan/DeviceFeatures.h"
#include "TarnwickGPU/Vulkan/Instance.h"
#include "TarnwickGPU/Vulkan/PhysicalDevices.h"

#include <array>
#include <string_view>

namespace tarnwick::gpu {
namespace {

struct Row {
    bool DeviceFeatures::*feature;
    std::string_view name;
};

// The features whose absence a user notices.
constexpr std::array rows{
    Row{&DeviceFeatures::presents, "pictures in windows"},
    Row{&DeviceFeatures::wideSums, "sums of 64 bits, with which many points are drawn faster"},
    Row{&DeviceFeatures::addsFloatsInBuffers, "atomic additions of floats"},
    Row{&DeviceFeatures::ordersFragments, "raster order groups"},
    Row{&DeviceFeatures::textureAtomics64, "atomic operations of 64 bits on textures"},
    Row{&DeviceFeatures::anisotropy, "anisotropic filtering"},
    Row{&DeviceFeatures::largePoints, "points larger than a pixel in hardware"},
};

std::string versionText(std::uint32_t version) {
    return std::to_string(VK_API_VERSION_MAJOR(version)) + "." +
           std::to_string(VK_API_VERSION_MINOR(version)) + "." +
           std::to_string(VK_API_VERSION_PATCH(version));
}

std::vector<std::string> lackingFeatures(VkPhysicalDevice handle, bool hasSurfaces) {
    FeatureChain chain(optionalRecords(handle));
    std::vector<const char*> extensions;
    const DeviceFeatures features = chooseFeatures(handle, hasSurfaces, chain, extensions);
    std::vector<std::string> lacking;
    for (const Row& row : rows)
        if (!(features.*row.feature))
            lacking.emplace_back(row.name);
    return lacking;
}

DeviceReport reportOf(VkPhysicalDevice handle, bool hasSurfaces) {
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(handle, &properties);
    DeviceReport report{.info = deviceInfo(handle),
                        .vulkan = versionText(properties.apiVersion),
                        .missing = missingRequirements(handle)};
    if (report.missing.empty())
        report.lacking = lackingFeatures(handle, hasSurfaces);
    return report;
}

} // namespace

std::vector<DeviceReport> deviceReports() {
    const auto instance = Instance::make();
    if (!instance)
        return {};
    std::uint32_t count = 0;
    vkEnumeratePhysicalDevices(instance->handle, &count, nullptr);
    std::vector<VkPhysicalDevice> handles(count);
    vkEnumeratePhysicalDevices(instance->handle, &count, handles.data());
    std::vector<DeviceReport> reports;
    for (VkPhysicalDevice handle : handles)
        reports.push_back(reportOf(handle, instance->presents));
    return reports;
}

} // namespace tarnwick::gpu
