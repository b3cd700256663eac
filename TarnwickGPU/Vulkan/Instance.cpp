#include "TarnwickGPU/Vulkan/Instance.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace tarnwick::gpu {

namespace {

constexpr const char* validationLayer = "VK_LAYER_KHRONOS_validation";

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

// Empty if the loader has no kind of windows. Those of Wayland only where the environment names a
// compositor: otherwise Mesa's layer that chooses devices writes an error for each process.
std::vector<const char*> surfaceExtensions() {
    std::vector<const char*> kinds{"VK_KHR_xlib_surface", "VK_KHR_xcb_surface"};
    if (std::getenv("WAYLAND_DISPLAY") != nullptr)
        kinds.push_back("VK_KHR_wayland_surface");
    std::erase_if(kinds, [](const char* kind) { return !extensionExists(nullptr, kind); });
    if (kinds.empty() || !extensionExists(nullptr, "VK_KHR_surface"))
        return {};
    kinds.push_back("VK_KHR_surface");
    return kinds;
}

template <typename Function> Function instanceFunction(VkInstance instance, const char* name) {
    return reinterpret_cast<Function>(vkGetInstanceProcAddr(instance, name));
}

void listen(Instance& instance, const VkDebugUtilsMessengerCreateInfoEXT& info) {
    auto create = instanceFunction<PFN_vkCreateDebugUtilsMessengerEXT>(
        instance.handle, "vkCreateDebugUtilsMessengerEXT");
    if (create)
        create(instance.handle, &info, nullptr, &instance.messenger);
}

std::vector<VkValidationFeatureEnableEXT> layerFeatures(const LayerUse& use) {
    std::vector<VkValidationFeatureEnableEXT> features;
    if (use.checksShaders)
        features.push_back(VK_VALIDATION_FEATURE_ENABLE_GPU_ASSISTED_EXT);
    else if (use.validates)
        features.push_back(VK_VALIDATION_FEATURE_ENABLE_SYNCHRONIZATION_VALIDATION_EXT);
    if (use.printsLogs)
        features.push_back(VK_VALIDATION_FEATURE_ENABLE_DEBUG_PRINTF_EXT);
    return features;
}

// With its checks in shaders the layer asks for the others to be off.
std::vector<VkValidationFeatureDisableEXT> omittedLayerFeatures(const LayerUse& use) {
    std::vector<VkValidationFeatureDisableEXT> features;
    if (use.checksShaders)
        features.push_back(VK_VALIDATION_FEATURE_DISABLE_CORE_CHECKS_EXT);
    return features;
}

} // namespace

std::shared_ptr<Instance> Instance::make() {
    auto instance = std::make_shared<Instance>();
    if (layerExists(validationLayer))
        instance->layerUse = LayerUse::ofEnvironment();
    const LayerUse use = instance->layerUse;
    const bool hasLayer = use.validates || use.printsLogs;
    std::vector<const char*> extensions = surfaceExtensions();
    instance->presents = !extensions.empty();
    if (hasLayer)
        extensions.push_back(VK_EXT_DEBUG_UTILS_EXTENSION_NAME);

    const auto features = layerFeatures(use);
    const auto omitted = omittedLayerFeatures(use);
    const VkDebugUtilsMessengerCreateInfoEXT messenger = messengerInfo(use);
    const VkValidationFeaturesEXT validation{
        .sType = VK_STRUCTURE_TYPE_VALIDATION_FEATURES_EXT,
        .pNext = &messenger,
        .enabledValidationFeatureCount = static_cast<std::uint32_t>(features.size()),
        .pEnabledValidationFeatures = features.data(),
        .disabledValidationFeatureCount = static_cast<std::uint32_t>(omitted.size()),
        .pDisabledValidationFeatures = omitted.data()};
    const VkApplicationInfo application{.sType = VK_STRUCTURE_TYPE_APPLICATION_INFO,
                                        .pApplicationName = "Tarnwick",
                                        .apiVersion = VK_API_VERSION_1_3};
    const VkInstanceCreateInfo info{.sType = VK_STRUCTURE_TYPE_INSTANCE_CREATE_INFO,
                                    .pNext = hasLayer ? &validation : nullptr,
                                    .pApplicationInfo = &application,
                                    .enabledLayerCount = hasLayer ? 1u : 0u,
                                    .ppEnabledLayerNames = &validationLayer,
                                    .enabledExtensionCount =
                                        static_cast<std::uint32_t>(extensions.size()),
                                    .ppEnabledExtensionNames = extensions.data()};
    if (vkCreateInstance(&info, nullptr, &instance->handle) != VK_SUCCESS)
        return nullptr;
    if (hasLayer)
        listen(*instance, messenger);
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
