#include "TarnwickGPU/Vulkan/PhysicalDevices.h"

#include "TarnwickGPU/Vulkan/DeviceFeatures.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string>
#include <tuple>

namespace tarnwick::gpu {

namespace {

struct Candidate {
    PhysicalDevice device;
    int rank = 0; // smaller is better
    VkDeviceSize memory = 0;
};

int rank(VkPhysicalDeviceType type) {
    switch (type) {
    case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU:
        return 0;
    case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU:
        return 1;
    case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU:
        return 2;
    case VK_PHYSICAL_DEVICE_TYPE_CPU:
        return 4;
    default:
        return 3;
    }
}

VkDeviceSize ownMemory(VkPhysicalDevice device) {
    VkPhysicalDeviceMemoryProperties properties;
    vkGetPhysicalDeviceMemoryProperties(device, &properties);
    VkDeviceSize bytes = 0;
    for (std::uint32_t heap = 0; heap < properties.memoryHeapCount; ++heap)
        if (properties.memoryHeaps[heap].flags & VK_MEMORY_HEAP_DEVICE_LOCAL_BIT)
            bytes += properties.memoryHeaps[heap].size;
    return bytes;
}

struct Family {
    std::uint32_t index, queueCount;
};

std::optional<Family> generalQueueFamily(VkPhysicalDevice device) {
    std::uint32_t count = 0;
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, nullptr);
    std::vector<VkQueueFamilyProperties> families(count);
    vkGetPhysicalDeviceQueueFamilyProperties(device, &count, families.data());
    constexpr VkQueueFlags needed = VK_QUEUE_GRAPHICS_BIT | VK_QUEUE_COMPUTE_BIT;
    for (std::uint32_t family = 0; family < count; ++family)
        if ((families[family].queueFlags & needed) == needed)
            return Family{family, families[family].queueCount};
    return std::nullopt;
}

std::optional<Candidate> candidate(VkPhysicalDevice handle) {
    if (!missingRequirements(handle).empty())
        return std::nullopt;
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(handle, &properties);
    const auto family = generalQueueFamily(handle);
    return Candidate{.device = {.handle = handle,
                                .queueFamily = family->index,
                                .queueCount = family->queueCount,
                                .info = deviceInfo(handle)},
                     .rank = rank(properties.deviceType),
                     .memory = ownMemory(handle)};
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    for (char& character : lower)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return lower;
}

} // namespace

DeviceInfo deviceInfo(VkPhysicalDevice device) {
    VkPhysicalDeviceDriverProperties driver{
        .sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_DRIVER_PROPERTIES};
    VkPhysicalDeviceProperties2 properties{.sType = VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2,
                                           .pNext = &driver};
    vkGetPhysicalDeviceProperties2(device, &properties);
    return {.name = properties.properties.deviceName,
            .driver = std::string(driver.driverName) + " " + driver.driverInfo,
            .isCPU = properties.properties.deviceType == VK_PHYSICAL_DEVICE_TYPE_CPU};
}

// An older device has no records of Vulkan 1.3 that could be read.
std::vector<std::string> missingRequirements(VkPhysicalDevice device) {
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(device, &properties);
    if (properties.apiVersion < VK_API_VERSION_1_3)
        return {"Vulkan 1.3"};
    std::vector<std::string> missing = missingFeatures(device);
    if (!generalQueueFamily(device))
        missing.emplace_back("a queue for both graphics and compute");
    return missing;
}

std::vector<PhysicalDevice> usableDevices(VkInstance instance) {
    std::uint32_t count = 0;
    vkEnumeratePhysicalDevices(instance, &count, nullptr);
    std::vector<VkPhysicalDevice> handles(count);
    vkEnumeratePhysicalDevices(instance, &count, handles.data());

    std::vector<Candidate> candidates;
    for (VkPhysicalDevice handle : handles)
        if (auto found = candidate(handle))
            candidates.push_back(std::move(*found));
    std::stable_sort(candidates.begin(), candidates.end(), [](const auto& a, const auto& b) {
        return std::tuple(a.rank, b.memory) < std::tuple(b.rank, a.memory);
    });
    std::vector<PhysicalDevice> devices;
    for (Candidate& found : candidates)
        devices.push_back(std::move(found.device));
    return devices;
}

std::optional<std::size_t> chooseDevice(std::span<const DeviceInfo> devices,
                                        std::optional<std::string_view> wanted) {
    if (!wanted || wanted->empty())
        return devices.empty() ? std::nullopt : std::optional<std::size_t>(0);
    std::size_t number = 0;
    const auto [end, error] =
        std::from_chars(wanted->data(), wanted->data() + wanted->size(), number);
    if (error == std::errc() && end == wanted->data() + wanted->size())
        return number < devices.size() ? std::optional(number) : std::nullopt;
    const std::string part = lowerCase(*wanted);
    for (std::size_t index = 0; index < devices.size(); ++index)
        if (lowerCase(devices[index].name).find(part) != std::string::npos)
            return index;
    return std::nullopt;
}

} // namespace tarnwick::gpu
