#include "TarnwickGPU/Vulkan/LayerMessages.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tarnwick::gpu {

namespace {

// The layer's callback does not name a device, so the count is per process.
std::atomic<std::uint64_t> findings{0};

bool variableIs(const char* variable, const char* wanted) {
    const char* value = std::getenv(variable);
    return value && std::strcmp(value, wanted) == 0;
}

std::string_view nameOf(const VkDebugUtilsMessengerCallbackDataEXT& data) {
    return data.pMessageIdName ? data.pMessageIdName : "";
}

// Reading a storage texture without a format in the module requires a feature that the packaged CPU
// driver does not report, though it reads all formats correctly. Pipelines that do it are made on
// that driver and on devices with the feature (Capabilities.cpp).
bool isBearable(const VkDebugUtilsMessengerCallbackDataEXT& data) {
    const std::string_view name = nameOf(data);
    return name.ends_with("-OpTypeImage-07028") || // images
           name.ends_with("-OpTypeImage-07030");   // texel buffers
}

// Logs, and the layer's warning that its buffer was too small for them. The name in Vulkan 1.3.239
// ends in a space.
bool isOfLogs(const VkDebugUtilsMessengerCallbackDataEXT& data) {
    return nameOf(data).find("DEBUG-PRINTF") != std::string_view::npos;
}

// What the layer changes in its own settings, such as the severities that logs require.
bool isOfSettings(const VkDebugUtilsMessengerCallbackDataEXT& data) {
    return nameOf(data) == "VALIDATION-SETTINGS";
}

VKAPI_ATTR VkBool32 VKAPI_CALL takeFinding(VkDebugUtilsMessageSeverityFlagBitsEXT,
                                           VkDebugUtilsMessageTypeFlagsEXT,
                                           const VkDebugUtilsMessengerCallbackDataEXT* data,
                                           void*) {
    if (isBearable(*data) || isOfLogs(*data))
        return VK_FALSE;
    ++findings;
    std::fprintf(stderr, "Vulkan validation: %s\n", data->pMessage);
    if (variableIs("TARNWICK_VALIDATION", "abort") || variableIs("TARNWICK_VALIDATION", "gpu"))
        std::abort();
    return VK_FALSE;
}

VkBool32 takeLog(const VkDebugUtilsMessengerCallbackDataEXT& data) {
    const std::string_view log = logOf(data.pMessage);
    std::fprintf(stderr, "Shader log: %.*s\n", static_cast<int>(log.size()), log.data());
    return VK_FALSE;
}

VKAPI_ATTR VkBool32 VKAPI_CALL takeLogOrFinding(VkDebugUtilsMessageSeverityFlagBitsEXT severity,
                                                VkDebugUtilsMessageTypeFlagsEXT types,
                                                const VkDebugUtilsMessengerCallbackDataEXT* data,
                                                void* user) {
    if (isOfLogs(*data))
        return takeLog(*data);
    return severity == VK_DEBUG_UTILS_MESSAGE_SEVERITY_INFO_BIT_EXT || isOfSettings(*data)
               ? VK_FALSE
               : takeFinding(severity, types, data, user);
}

} // namespace

LayerUse LayerUse::ofEnvironment() {
    const bool printsLogs = variableIs("TARNWICK_SHADER_LOGS", "1");
    const bool checksShaders = variableIs("TARNWICK_VALIDATION", "gpu");
    return {.validates = checksShaders || variableIs("TARNWICK_VALIDATION", "1") ||
                         variableIs("TARNWICK_VALIDATION", "abort"),
            .checksShaders = checksShaders && !printsLogs,
            .printsLogs = printsLogs};
}

// Logs are messages of the severity "info".
VkDebugUtilsMessengerCreateInfoEXT messengerInfo(const LayerUse& use) {
    VkDebugUtilsMessengerCreateInfoEXT info{
        .sType = VK_STRUCTURE_TYPE_DEBUG_UTILS_MESSENGER_CREATE_INFO_EXT,
        .messageSeverity = VK_DEBUG_UTILS_MESSAGE_SEVERITY_WARNING_BIT_EXT |
                           VK_DEBUG_UTILS_MESSAGE_SEVERITY_ERROR_BIT_EXT,
        .messageType = VK_DEBUG_UTILS_MESSAGE_TYPE_VALIDATION_BIT_EXT,
        .pfnUserCallback = takeFinding};
    if (use.printsLogs) {
        info.messageSeverity |= VK_DEBUG_UTILS_MESSAGE_SEVERITY_INFO_BIT_EXT;
        info.pfnUserCallback = takeLogOrFinding;
    }
    return info;
}

// 1.3.239: "Validation Information: [ NAME ] Object ... | MessageID = 0x92394c89 | thread 3"
// 1.4.309: "vkQueueSubmit2(): pSubmits[0] DebugPrintf:\nthread 3"
std::string_view logOf(std::string_view message) {
    constexpr std::string_view heading = " DebugPrintf:\n", number = "| MessageID = ", bar = " | ";
    if (const std::size_t start = message.find(heading); start != message.npos)
        return message.substr(start + heading.size());
    const std::size_t start = message.find(number);
    if (start == message.npos)
        return message;
    const std::size_t end = message.find(bar, start + number.size());
    return end == message.npos ? message : message.substr(end + bar.size());
}

std::uint64_t validationMessageCount() {
    return findings.load();
}

} // namespace tarnwick::gpu
