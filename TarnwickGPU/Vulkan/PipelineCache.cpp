#include "TarnwickGPU/Vulkan/PipelineCache.h"

#include "TarnwickBase/WholeFile.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace tarnwick::gpu {

namespace {

// One file per device and driver version, so that devices do not overwrite each other's. The driver
// itself refuses data of another device or version (Vulkan 1.3, 10.6.4).
std::string fileName(const DeviceRecord& device) {
    VkPhysicalDeviceProperties properties;
    vkGetPhysicalDeviceProperties(device.physical, &properties);
    std::string name = "pipelines-";
    constexpr char digits[] = "0123456789abcdef";
    for (std::uint8_t byte : properties.pipelineCacheUUID) {
        name += digits[byte >> 4];
        name += digits[byte & 15];
    }
    return name;
}

std::vector<char> read(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Errors are ignored: without a cache the next run only takes longer.
void replaceFile(const std::filesystem::path& file, const std::vector<char>& bytes) {
    std::error_code failure;
    std::filesystem::create_directories(file.parent_path(), failure);
    try {
        writeWholeFile(file, {bytes.data(), bytes.size()});
    } catch (const WholeFileError&) {
    }
}

} // namespace

std::filesystem::path cacheFolder() {
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache && *cache)
        return std::filesystem::path(cache) / "tarnwick";
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::filesystem::path(home) / ".cache" / "tarnwick";
    return {};
}

void PipelineCache::open() {
    if (device_.info.isCPU || cacheFolder().empty())
        return;
    file_ = cacheFolder() / fileName(device_);
    const std::vector<char> bytes = read(file_);
    const VkPipelineCacheCreateInfo info{.sType = VK_STRUCTURE_TYPE_PIPELINE_CACHE_CREATE_INFO,
                                         .initialDataSize = bytes.size(),
                                         .pInitialData = bytes.data()};
    if (vkCreatePipelineCache(device_.handle, &info, nullptr, &handle_) != VK_SUCCESS)
        handle_ = VK_NULL_HANDLE;
}

void PipelineCache::close() {
    if (!handle_)
        return;
    std::size_t size = 0;
    vkGetPipelineCacheData(device_.handle, handle_, &size, nullptr);
    std::vector<char> bytes(size);
    if (size > 0 &&
        vkGetPipelineCacheData(device_.handle, handle_, &size, bytes.data()) == VK_SUCCESS &&
        bytes != read(file_))
        replaceFile(file_, bytes);
    vkDestroyPipelineCache(device_.handle, handle_, nullptr);
    handle_ = VK_NULL_HANDLE;
}

} // namespace tarnwick::gpu
