#include "TarnwickGPU/Device.h"

#include "TarnwickBase/Quoted.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/QueueBeside.h"
#include "TarnwickGPU/Resources.h"
#include "TarnwickGPU/Resources/BufferParts.h"
#include "TarnwickGPU/Resources/TextureParts.h"
#include "TarnwickGPU/Vulkan/PhysicalDevices.h"
#include "TarnwickMSL/Compile.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tarnwick::gpu {

namespace {

std::vector<DeviceInfo> infos(const std::vector<PhysicalDevice>& devices) {
    std::vector<DeviceInfo> list;
    for (const PhysicalDevice& device : devices)
        list.push_back(device.info);
    return list;
}

std::optional<std::string_view> wantedDevice() {
    const char* wanted = std::getenv("TARNWICK_DEVICE");
    return wanted ? std::optional<std::string_view>(wanted) : std::nullopt;
}

// "0 llvmpipe, 1 another"
std::string listOf(const std::vector<DeviceInfo>& devices) {
    std::string list;
    for (std::size_t index = 0; index < devices.size(); ++index)
        list += (index > 0 ? ", " : "") + std::to_string(index) + " " + devices[index].name;
    return list;
}

} // namespace

std::vector<DeviceInfo> allDevices() {
    const auto instance = Instance::make();
    return instance ? infos(usableDevices(instance->handle)) : std::vector<DeviceInfo>();
}

std::shared_ptr<Device> Device::systemDefault() {
    auto instance = Instance::make();
    if (!instance)
        return nullptr;
    const auto devices = usableDevices(instance->handle);
    const auto chosen = chooseDevice(infos(devices), wantedDevice());
    auto state = chosen ? DeviceState::make(std::move(instance), devices[*chosen]) : nullptr;
    return state ? std::make_shared<Device>(std::move(state)) : nullptr;
}

std::string Device::absence() {
    const std::vector<DeviceInfo> devices = allDevices();
    if (devices.empty())
        return "There is no Vulkan device to draw with; tarnwick doctor says which package is "
               "missing.";
    const auto wanted = wantedDevice();
    if (const auto chosen = chooseDevice(devices, wanted))
        return "The device " + devices[*chosen].name + " cannot be opened.";
    return "TARNWICK_DEVICE is " + quoted(wanted.value_or("")) +
           ", which is neither the number of a device nor a part of its name: " + listOf(devices) +
           ".";
}

Device::Device(std::shared_ptr<DeviceState> state) : state_(std::move(state)) {}
Device::~Device() = default;

bool hasQueueBeside(const Device& device) {
    return device.state().record.queueCount > 1;
}

const DeviceInfo& Device::info() const {
    return state_->record.info;
}
bool Device::isLost() const {
    return state_->submissions.isLost();
}
void Device::lose() {
    state_->submissions.note(VK_ERROR_DEVICE_LOST);
}
std::uint64_t Device::validationMessages() {
    return validationMessageCount();
}

msl::Target Device::compilerTarget() const {
    const DeviceFeatures& features = state_->record.features;
    return {.addsFloatsInBuffers = features.addsFloatsInBuffers,
            .ordersFragments = features.ordersFragments,
            .keepsLogs = state_->instance->layerUse.printsLogs,
            .hasMeshFunctions = false, // the layer has no pipelines of them
            .specialisesUniforms = info().isCPU,
            .hasFloat16 = features.float16,
            .hasInt8 = features.int8,
            .hasInt16 = features.int16,
            .hasInt64 = features.int64};
}

std::unique_ptr<Library> Device::newLibrary(std::string_view source,
                                            std::string_view moreWarningsIn) {
    return gpu::newLibrary(
        source, {.target = compilerTarget(), .moreWarningsIn = std::string(moreWarningsIn)});
}

std::unique_ptr<Library> Device::newLibrary(std::vector<msl::EntryPoint> entryPoints) {
    return std::make_unique<Library>(std::move(entryPoints), std::string());
}

// Some devices make longer buffers, but a descriptor shows a shader only this much.
std::size_t Device::maxBufferLength() const {
    return std::min<VkDeviceSize>(state_->record.maxBufferSize,
                                  state_->record.limits.maxStorageBufferRange);
}

std::unique_ptr<Buffer> Device::newBuffer(std::size_t bytes, StorageMode storage) {
    if (isLost() || bytes > maxBufferLength())
        return nullptr;
    state_->graveyard.collect();
    auto parts =
        BufferParts::make(state_->record, state_->graveyard, state_->transfers, bytes, storage);
    if (!parts)
        return nullptr;
    parts->keepsAlive = state_;
    parts->residents = &state_->residents;
    state_->residents.add(parts->memory);
    return std::make_unique<Buffer>(std::move(parts));
}

std::unique_ptr<Texture> Device::newTexture(const TextureDescriptor& descriptor) {
    if (isLost())
        return nullptr;
    state_->graveyard.collect();
    auto parts =
        TextureParts::make(state_->record, state_->graveyard, state_->transfers, descriptor);
    if (!parts)
        return nullptr;
    parts->keepsAlive = state_;
    parts->residents = &state_->residents;
    parts->handle = state_->residents.add(*parts);
    return std::make_unique<Texture>(std::move(parts));
}

} // namespace tarnwick::gpu
