// The costs of the GPU layer: microseconds of CPU time for encoding, and of the clock for the
// smallest jobs, one line per cost, minimum and median of many runs. Then the pieces of work that
// takes seconds: how many there are, and the longest.
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Resources.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

using namespace tarnwick::gpu;

constexpr const char* program = R"(
#include <metal_stdlib>
using namespace metal;
struct Uniforms { float2 resolution; float time; float timeDelta; };
struct Out { float4 position [[position]]; };
vertex Out corner(uint id [[vertex_id]]) {
    return {float4(float(id & 1) * 4 - 1, float(id >> 1) * 4 - 1, 0, 1)};
}
fragment float4 plain(constant Uniforms& u [[buffer(0)]], constant float* values [[buffer(1)]]) {
    return float4(values[0], u.time, u.resolution.x, 1);
}
kernel void count(device uint* words [[buffer(0)]], uint id [[thread_position_in_grid]]) {
    words[id] += 1;
}
float waves(float at, int count) {
    for (int i = 0; i < count; ++i)
        at += sin(at * 3.1f + i);
    return at;
}
fragment float4 wave_picture(float4 at [[position]]) {
    return float4(fract(waves(at.x * at.y, 300)));
}
// The lower rows take longer than the upper ones.
fragment float4 uneven_picture(float4 at [[position]]) {
    return float4(fract(waves(at.x * at.y, int(at.y))));
}
kernel void wave_words(device float* words [[buffer(0)]], uint id [[thread_position_in_grid]]) {
    words[id & 255] = waves(id, 300);
}
)";

using Clock = std::chrono::steady_clock;

double microseconds(Clock::duration time) {
    return std::chrono::duration<double, std::micro>(time).count();
}

// `run` returns the measured time.
void report(const char* what, int runs, const std::function<Clock::duration()>& run) {
    std::vector<double> times;
    for (int warming = 0; warming < 5; ++warming)
        run();
    for (int at = 0; at < runs; ++at)
        times.push_back(microseconds(run()));
    std::sort(times.begin(), times.end());
    std::printf("%-58s %9.2f us least %9.2f us median\n", what, times.front(),
                times[times.size() / 2]);
}

// Runs `work` on a device of its own, which has measured none of it before, once and twice.
void reportPieces(const char* what, const std::function<void(Device&)>& work) {
    const auto device = Device::systemDefault();
    const Submissions& submissions = device->state().submissions;
    for (const char* time : {"first", "again"}) {
        const std::uint64_t earlier = submissions.pieces();
        const auto start = Clock::now();
        work(*device);
        std::printf("%-44s %s: %7.0f ms, %4llu pieces, longest %4.0f ms\n", what, time,
                    microseconds(Clock::now() - start) / 1000,
                    static_cast<unsigned long long>(submissions.pieces() - earlier),
                    submissions.longestPiece() * 1000);
    }
}

struct Bench {
    std::shared_ptr<Device> device = Device::systemDefault();
    std::unique_ptr<CommandQueue> queue;
    std::unique_ptr<RenderPipelineState> render;
    std::unique_ptr<ComputePipelineState> compute;
    std::unique_ptr<Texture> target, large, hidden;
    std::unique_ptr<Buffer> words;
    std::array<float, 12> uniforms{};

    bool make();
    void encodePass(CommandBuffer& commands, const Texture& texture, int draws) const;
    Clock::duration frame(int draws) const;
    Clock::duration drawing(const Texture& texture) const;
    Clock::duration job() const;
};

bool Bench::make() {
    if (!device)
        return false;
    queue = device->newCommandQueue();
    const auto library = device->newLibrary(program);
    const auto vertex = library->newFunction("corner"), fragment = library->newFunction("plain");
    render = device->newRenderPipelineState({.vertex = vertex.get(),
                                             .fragment = fragment.get(),
                                             .color = {.format = PixelFormat::bgra8Unorm}});
    compute = device->newComputePipelineState(*library->newFunction("count"));
    const TextureUsage usage{.shaderRead = true, .renderTarget = true};
    target = device->newTexture({.width = 8, .height = 8, .usage = usage});
    large = device->newTexture({.width = 1920, .height = 1080, .usage = usage});
    auto privately = large->descriptor();
    privately.storage = StorageMode::private_;
    hidden = device->newTexture(privately);
    words = device->newBuffer(1024, StorageMode::private_);
    return queue && target && large && hidden && words;
}

void Bench::encodePass(CommandBuffer& commands, const Texture& texture, int draws) const {
    auto encoder =
        commands.renderCommandEncoder({.color = {.texture = &texture, .load = LoadAction::clear}});
    encoder->setRenderPipelineState(*render);
    for (int draw = 0; draw < draws; ++draw) {
        encoder->setFragmentBytes(uniforms.data(), 48, 0);
        encoder->setFragmentBytes(uniforms.data(), 16, 1);
        encoder->drawPrimitives(PrimitiveType::triangle, 0, 3);
    }
    encoder->endEncoding();
}

// The CPU time from requesting the command buffer until commit() returns.
Clock::duration Bench::frame(int draws) const {
    const auto start = Clock::now();
    auto commands = queue->commandBuffer();
    encodePass(*commands, *target, draws);
    const auto encoded = Clock::now();
    commands->commit();
    commands->waitUntilCompleted();
    return encoded - start;
}

Clock::duration Bench::drawing(const Texture& texture) const {
    auto commands = queue->commandBuffer();
    encodePass(*commands, texture, 1);
    const auto start = Clock::now();
    commands->commit();
    commands->waitUntilCompleted();
    return Clock::now() - start;
}

Clock::duration Bench::job() const {
    const auto start = Clock::now();
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*compute);
    encoder->setBuffer(*words, 0, 0);
    encoder->dispatchThreads({1, 1, 1}, {1, 1, 1});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    return Clock::now() - start;
}

void drawOnce(Device& device, const char* function) {
    const auto library = device.newLibrary(program);
    const auto vertex = library->newFunction("corner"), fragment = library->newFunction(function);
    const auto pipeline =
        device.newRenderPipelineState({.vertex = vertex.get(),
                                       .fragment = fragment.get(),
                                       .color = {.format = PixelFormat::bgra8Unorm}});
    const auto texture =
        device.newTexture({.width = 1920, .height = 1080, .usage = {.renderTarget = true}});
    const auto queue = device.newCommandQueue();
    auto commands = queue->commandBuffer();
    auto encoder = commands->renderCommandEncoder(
        {.color = {.texture = texture.get(), .load = LoadAction::clear}});
    encoder->setRenderPipelineState(*pipeline);
    encoder->drawPrimitives(PrimitiveType::triangle, 0, 3);
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
}

void computeOnce(Device& device) {
    const auto library = device.newLibrary(program);
    const auto pipeline = device.newComputePipelineState(*library->newFunction("wave_words"));
    const auto buffer = device.newBuffer(1024, StorageMode::private_);
    const auto queue = device.newCommandQueue();
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*pipeline);
    encoder->setBuffer(*buffer, 0, 0);
    encoder->dispatchThreads({1u << 21, 1, 1}, {64, 1, 1});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
}

} // namespace

int main() {
    Bench bench;
    if (!bench.make()) {
        std::fprintf(stderr, "There is no Vulkan 1.3 device.\n");
        return 2;
    }
    std::printf("%s (%s)\n", bench.device->info().name.c_str(),
                bench.device->info().driver.c_str());
    report("encode a frame of 1 draw", 500, [&] { return bench.frame(1); });
    report("encode a frame of 1000 draws, two setBytes each", 100,
           [&] { return bench.frame(1000); });
    report("commit and wait for 1 draw on 8 x 8 pixels", 500,
           [&] { return bench.drawing(*bench.target); });
    report("the same on 1920 x 1080, shared", 100, [&] { return bench.drawing(*bench.large); });
    report("the same on 1920 x 1080, private", 100, [&] { return bench.drawing(*bench.hidden); });
    report("a kernel of 1 thread, from encoding to completion", 500, [&] { return bench.job(); });
    std::vector<std::uint8_t> bytes(1920 * 1080 * 4);
    auto timed = [](const std::function<void()>& work) {
        const auto start = Clock::now();
        work();
        return Clock::now() - start;
    };
    report("getBytes of 1 pixel", 500, [&] {
        return timed([&] { bench.large->getBytes(bytes.data(), 4, {0, 0, 1, 1}, 0); });
    });
    report("getBytes of 1920 x 1080", 50, [&] {
        return timed([&] { bench.large->getBytes(bytes.data(), 7680, {0, 0, 1920, 1080}, 0); });
    });
    report("replace of 1920 x 1080", 50, [&] {
        return timed([&] { bench.large->replace({0, 0, 1920, 1080}, 0, bytes.data(), 7680); });
    });
    report("newTexture of 1920 x 1080", 50,
           [&] { return timed([&] { bench.device->newTexture(bench.large->descriptor()); }); });
    report("open a device", 10, [&] { return timed([] { Device::systemDefault(); }); });
    reportPieces("draw a heavy picture of 1920 x 1080",
                 [](Device& device) { drawOnce(device, "wave_picture"); });
    reportPieces("one with rows of 1 to 1080 times the work",
                 [](Device& device) { drawOnce(device, "uneven_picture"); });
    reportPieces("a heavy kernel of 2 million threads", computeOnce);
}
