#include "TarnwickGPU/Vulkan/Instance.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace tarnwick::gpu {

namespace {

constexpr const char* validationLayer = "VK_LAYER_KHRONOS_validation";

// The layer's callback does not name a device, so the count is per process.
std::atomic<std::uint64_t> messages{0};

bool variableIs(const char* wanted) {
    const char* value = std::getenv("TARNWICK_VALIDATION");
    return value && std::strcmp(value, wanted) == 0;
}

// Reading a storage texture without a format in the module requires a feature that the packaged CPU
// driver does not report, though it reads all formats correctly. Pipelines that do it are made on
// that driver and on devices with the feature (Capabilities.cpp).
bool isBearable(const VkDebugUtilsMessengerCallbackDataEXT& data) {
    const std::string_view name = data.pMessageIdName ? data.pMessageIdName : "";
    return name.ends_with("-OpTypeImage-07028") || // images
           name.ends_with("-OpTypeImage-07030");   // texel buffers
}

VKAPI_ATTR VkBool32 VKAPI_CALL takeMessage(VkDebugUtilsMessageSeverityFlagBitsEXT,
                                           VkDebugUtilsMessageTypeFlagsEXT,
                                           const VkDebugUtilsMessengerCallbackDataEXT* data,
                                           void*) {
    if (isBearable(*data))
        return VK_FALSE;
    ++messages;
    std::fprintf(stderr, "Vulkan validation: %s\n", data->pMessage);
    if (variableIs("abort"))
        std::abort();
    return VK_FALSE;
}

constexpr VkDebugUtilsMessengerCreateInfoEXT messengerInfo{
    .sType = VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT,
    .messageSeverity = VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT |
                       VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT,
    .messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT,
    .pfnUserCallback = takeMessage};

bool layerExists(const char* name) {
    std::uint32_t count = 0;
    vkEnumerateInstanceLayerProperties(&count, nullptr);
    std::vector<VkLayerProperties> layers(count);
    vkEnumerateInstanceLayerProperties(&count, layers.data());
    return std::any_of(layers.begin(), layers.end(), [name](const VkLayerProperties& layer) {
        return std::strcmp(layer.layerName, name) == 0;
    });
}

bool extensionExists(const char* layer, const char* name) {
    std::uint32_t count = 0;
    vkEnumerateInstanceExtensionProperties(layer, &count, nullptr);
    std::vector<VkExtensionProperties> extensions(count);
    vkEnumerateInstanceExtensionProperties(layer, &count, extensions.data());
    return std::any_of(extensions.begin(), extensions.end(),
                       [name](const VkExtensionProperties& extension) {
                           return std::strcmp(extension.extensionName, name) == 0;
                       });
}

template <typename Function> Function instanceFunction(VkInstance instance, const char* name) {
    return reinterpret_cast<Function>(vkGetInstanceProcAddr(instance, name));
}

void listenToValidation(Instance& instance) {
    auto create = instanceFunction<PFN_vkCreateDebugUtilsMessengerEXT>(
        instance.handle, "vkCreateDebugUtilsMessengerEXT");
    if (create)
        create(instance.handle, &messengerInfo, nullptr, &instance.messenger);
}

} // namespace

std::uint64_t validationMessageCount() {
    return messages.load();
}

std::shared_ptr<Instance> Instance::make() {
    auto instance = std::make_shared<Instance>();
    instance->validates = (variableIs("1") || variableIs("abort")) && layerExists(validationLayer);
    instance->presentsOnXlib = extensionExists(nullptr, "VK_KHR_surface") &&
                               extensionExists(nullptr, "VK_KHR_xlib_surface");

    std::vector<const char*> extensions;
    if (instance->presentsOnXlib)
        extensions.insert(extensions.end(), {"VK_KHR_surface", "VK_KHR_xlib_surface"});
    if (instance->validates)
        extensions.push_back(VK_EXT_DEBUG_UTILS_EXTENSION_NAME);

    constexpr std::array extra{VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT};
    const VkValidationFeaturesEXT validation{.sType = VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT,
                                             .pNext = &messengerInfo,
                                             .enabledValidationFeatureCount = extra.size(),
                                             .pEnabledValidationFeatures = extra.data()};
    const VkApplicationInfo application{.sType = VK_STRUCTURE_TYPE_APPLICATION_INFO,
                                        .pApplicationName = "Tarnwick",
                                        .apiVersion = VK_API_VERSION_1_3};
    const VkInstanceCreateInfo info{.sType = VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO,
                                    .pNext = instance->validates ? &validation : nullptr,
                                    .pApplicationInfo = &application,
                                    .enabledLayerCount = instance->validates ? 1u : 0u,
                                    .ppEnabledLayerNames = &validationLayer,
                                    .enabledExtensionCount =
                                        static_cast<std::uint32_t>(extensions.size()),
                                    .ppEnabledExtensionNames = extensions.data()};
    if (vkCreateInstance(&info, nullptr, &instance->handle) != VK_SUCCESS)
        return nullptr;
    if (instance->validates)
        listenToValidation(*instance);
    return instance;
}

Instance::~Instance() {
    if (messenger) {
        auto destroy = instanceFunction<PFN_vkDestroyDebugUtilsMessengerEXT>(
            handle, "vkDestroyDebugUtilsMessengerEXT");
        destroy(handle, messenger, nullptr);
    }
    if (handle)
        vkDestroyInstance(handle, nullptr);
}

} // namespace tarnwick::gpu
