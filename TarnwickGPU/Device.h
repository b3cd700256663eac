// A GPU: makes every other object of the layer. Shaped as Metal's device, over Vulkan 1.3.
#pragma once

#include "TarnwickGPU/DeviceInfo.h"
#include "TarnwickGPU/Errors.h"
#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Target.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {
struct CompileOptions;
} // namespace tarnwick::msl

namespace tarnwick::gpu {

class Buffer;
class CommandQueue;
class Layer;
class SamplerState;
class Texture;
struct SamplerDescriptor;
struct DeviceState; // the Vulkan side, in Device/DeviceState.h

// `beside` is for kernels with their own buffers: the CPU waits for their results while pictures
// are in flight. Such a queue runs in parallel to the others if the device has two Vulkan queues.
// Otherwise each command buffer waits for all earlier ones of all queues.
enum class QueueUse : std::uint8_t { pictures, beside };

// The usable devices of the machine in order of preference: discrete, integrated, virtual, CPU.
std::vector<DeviceInfo> allDevices();

// Compiles a program for any device; requires no device. Blocks. Throws LibraryError. Any thread.
std::unique_ptr<Library> newLibrary(std::string_view source, const msl::CompileOptions& options);

// Any thread may call its functions.
class Device {
  public:
    // The first of allDevices(), or the device that the environment variable TARNWICK_DEVICE names:
    // its index in allDevices(), or a part of its name in any case. Null if there is no such device
    // or the driver does not open it. Every object made by a device keeps it open.
    static std::shared_ptr<Device> systemDefault();

    // Why systemDefault() is null, in one sentence: there is no device, TARNWICK_DEVICE names none
    // (the sentence lists the devices), or the device cannot be opened.
    static std::string absence();

    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    const DeviceInfo& info() const;

    // Whether the device was lost. Later calls then return null or throw DeviceError.
    bool isLost() const;
    // Makes the device lost, as a driver does after a fault. For tests; the environment variable
    // TARNWICK_LOSE_DEVICE=N loses each device at its Nth submission, N:COUNT the first COUNT
    // devices.
    void lose();

    // The maximum length, in bytes, of a buffer that shaders can read completely.
    std::size_t maxBufferLength() const;

    // The number of messages of Vulkan's validation layer so far, over all devices. The environment
    // variable TARNWICK_VALIDATION enables the layer: 1, or abort to end the process at the first
    // message.
    static std::uint64_t validationMessages();

    // The features that the compiler may use in programs for this device.
    msl::Target compilerTarget() const;

    // Compiles a program. Blocks. `moreWarningsIn`: see msl::CompileOptions. Throws LibraryError.
    std::unique_ptr<Library> newLibrary(std::string_view source,
                                        std::string_view moreWarningsIn = {});
    // A library of compiled entry points.
    std::unique_ptr<Library> newLibrary(std::vector<msl::EntryPoint> entryPoints);

    // Null if memory is exhausted, the device is lost or it does not support the descriptor.
    // Buffers and textures are zero at first.
    std::unique_ptr<CommandQueue> newCommandQueue(QueueUse use = QueueUse::pictures);
    std::unique_ptr<Buffer> newBuffer(std::size_t bytes, StorageMode storage = StorageMode::shared);
    std::unique_ptr<Texture> newTexture(const TextureDescriptor& descriptor);
    std::unique_ptr<DepthStencilState> newDepthStencilState(const DepthStencilDescriptor&);
    std::unique_ptr<SamplerState> newSamplerState(const SamplerDescriptor&);

    // Blocks while the driver compiles. Throws DeviceError if the functions do not fit each other
    // or the device refuses them. The functions may be destroyed afterwards.
    std::unique_ptr<RenderPipelineState> newRenderPipelineState(const RenderPipelineDescriptor&);
    // `stageInput` is of a kernel with [[stage_in]].
    std::unique_ptr<ComputePipelineState>
    newComputePipelineState(const Function& kernel,
                            const StageInputDescriptor* stageInput = nullptr);

    // A layer that presents on an X11 window. `display` is an Xlib Display*, which must outlive the
    // layer. Null if the device cannot present on the window.
    std::unique_ptr<Layer> newLayer(void* display, unsigned long window);
    // A layer that presents on a VkSurfaceKHR, which a window toolkit made with vulkanInstance().
    // The surface must outlive the layer. Null if the device cannot present on it.
    std::unique_ptr<Layer> newLayer(void* surface);
    // The VkInstance, with the extensions for the windows of X11 and, where WAYLAND_DISPLAY is
    // set, Wayland.
    void* vulkanInstance() const;

    explicit Device(std::shared_ptr<DeviceState> state);
    DeviceState& state() const { return *state_; }

  private:
    std::shared_ptr<DeviceState> state_;
};

} // namespace tarnwick::gpu
