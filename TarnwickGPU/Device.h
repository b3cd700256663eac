// A GPU: makes every other object of the layer. Shaped as Metal's device, over Vulkan 1.3.
#pragma once

#include "TarnwickGPU/DeviceInfo.h"
#include "TarnwickGPU/Format.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickMSL/EntryPoint.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
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
struct DeviceState; // the Vulkan side, in DeviceState.h

// The compiler rejected a program: what() is the compiler's whole text.
struct LibraryError : std::runtime_error {
    explicit LibraryError(const std::string& text, bool isCompilersFault = false)
        : std::runtime_error(text), isCompilersFault(isCompilersFault) {}

    bool isCompilersFault; // it crashed or ran out of time: nothing is known about the program
};

// The device refused a pipeline or was lost: what() is one sentence.
struct DeviceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// `beside` is for kernels over buffers of their own whose results are waited for while pictures are
// in flight: such a queue works beside the others where the device can. Where it cannot, a command
// buffer waits for those that were committed before it, of any queue.
enum class QueueUse : std::uint8_t { pictures, beside };

// The machine's usable devices, in the order in which systemDefault prefers them: discrete,
// integrated, virtual, then the CPU's.
std::vector<DeviceInfo> allDevices();

// A library of code for any device, for a machine without one. Throws LibraryError.
std::unique_ptr<Library> newLibrary(std::string_view source, const msl::CompileOptions& options);

class Device {
  public:
    // The first of allDevices(), or the one that the environment variable TARNWICK_DEVICE names by
    // number (from 0, in allDevices()' order) or by a part of its name (any case). Null when there
    // is none or when TARNWICK_DEVICE fits none. Objects made from a device keep it alive, so
    // that it may be shared: the last of them to go closes it.
    static std::shared_ptr<Device> systemDefault();

    // Why systemDefault() is null, in one sentence: there is no device, TARNWICK_DEVICE fits none
    // (of which the sentence lists all), or the one that it fits cannot be opened.
    static std::string absence();

    ~Device();
    Device(const Device&) = delete;
    Device& operator=(const Device&) = delete;

    const DeviceInfo& info() const;

    // Whether the device was lost; every later call then fails in its own way.
    bool isLost() const;

    // The longest buffer, in bytes, that the device makes and shows to shaders as a whole.
    std::size_t maxBufferLength() const;

    // Messages that the validation layer gave so far. The layer is on where the environment
    // variable TARNWICK_VALIDATION is 1, or abort: then the first message ends the process.
    static std::uint64_t validationMessages();

    // Compiles a program's text. `moreWarningsIn`: msl::CompileOptions. Throws LibraryError.
    std::unique_ptr<Library> newLibrary(std::string_view source,
                                        std::string_view moreWarningsIn = {});
    // A library of modules that exist already.
    std::unique_ptr<Library> newLibrary(std::vector<msl::EntryPoint> entryPoints);

    // Null where the device cannot make them.
    std::unique_ptr<CommandQueue> newCommandQueue(QueueUse use = QueueUse::pictures);
    std::unique_ptr<Buffer> newBuffer(std::size_t bytes, StorageMode storage = StorageMode::shared);
    std::unique_ptr<Texture> newTexture(const TextureDescriptor& descriptor);
    std::unique_ptr<DepthStencilState> newDepthStencilState(const DepthStencilDescriptor&);
    std::unique_ptr<SamplerState> newSamplerState(const SamplerDescriptor&);

    // Throw DeviceError when the device refuses them. The functions may go afterwards.
    std::unique_ptr<RenderPipelineState> newRenderPipelineState(const RenderPipelineDescriptor&);
    std::unique_ptr<ComputePipelineState> newComputePipelineState(const Function& kernel);

    // A layer that presents on an X11 window. `display` is an Xlib Display*, borrowed for the
    // layer's life. Null when the device cannot present there.
    std::unique_ptr<Layer> newLayer(void* display, unsigned long window);

    explicit Device(std::shared_ptr<DeviceState> state);
    DeviceState& state() const { return *state_; }

  private:
    std::shared_ptr<DeviceState> state_;
};

} // namespace tarnwick::gpu
