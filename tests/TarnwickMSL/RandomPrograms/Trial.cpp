#include "tests/TarnwickMSL/RandomPrograms/Trial.h"

#include "TarnwickMSL/Compile.h"
#include "tests/TarnwickMSL/NumberedTextures.h"
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

// A part of the GPU layer said no.
struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void finish(gpu::CommandBuffer& commands) {
    commands.commit();
    commands.waitUntilCompleted();
    if (commands.status() != gpu::CommandBufferStatus::completed)
        throw Refused("The command buffer did not complete.");
    if (commands.hitLoopBudget())
        throw Refused("The program ran out of its loop budget.");
}

std::string firstDifference(const char* stage, const std::vector<std::uint32_t>& expected,
                            const std::vector<std::uint32_t>& results) {
    if (results.empty())
        return "";
    std::uint32_t differing = 0;
    std::string first;
    for (std::uint32_t i = 0; i < trialInputs; i++)
        if (results[i] != expected[i] && differing++ == 0)
            first = "input " + std::to_string(i) + " gives " + std::to_string(results[i]) +
                    ", native code " + std::to_string(expected[i]);
    if (differing == 0)
        return "";
    return std::string(stage) + ": " + first + " (" + std::to_string(differing) + " of " +
           std::to_string(trialInputs) + " inputs differ). ";
}

struct WorldTexture {
    const char* component;
    gpu::TextureDescriptor descriptor;
};

// The native code has the same sizes (Shim/NativeTextures.h).
std::vector<WorldTexture> worldTextures() {
    using gpu::TextureType;
    const auto sized = [](TextureType type, std::uint32_t width, std::uint32_t height = 1) {
        gpu::TextureDescriptor made;
        made.type = type;
        made.width = width;
        made.height = height;
        return made;
    };
    std::vector<WorldTexture> all{{"uint", sized(TextureType::type1D, 16)},
                                  {"float", sized(TextureType::type2D, 8, 4)},
                                  {"half", sized(TextureType::type2DArray, 4, 4)},
                                  {"int", sized(TextureType::type3D, 4, 4)},
                                  {"ushort", sized(TextureType::type1DArray, 8)},
                                  {"uint", sized(TextureType::type2D, trialSide, trialSide)}};
    all[1].descriptor.mipLevels = 3;
    all[2].descriptor.arrayLength = 3;
    all[3].descriptor.depth = 4;
    all[4].descriptor.arrayLength = 2;
    return all;
}

} // namespace

std::unique_ptr<Trial> Trial::make(std::optional<msl::Target> target) {
    auto device = gpu::Device::systemDefault();
    auto queue = device ? device->newCommandQueue() : nullptr;
    if (!queue)
        return nullptr;
    return std::unique_ptr<Trial>(
        new Trial(device, std::move(queue), target.value_or(device->compilerTarget())));
}

Trial::Trial(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue,
             const msl::Target& target)
    : device_(std::move(device)), queue_(std::move(queue)), target_(target) {}

// As it is before a program has run. The textures that programs only read are made once.
bool Trial::makeWorld() {
    memory_ = device_->newBuffer(std::size_t{memoryBytes} * trialInputs);
    if (memory_)
        std::memset(memory_->contents(), 0, memory_->length());
    const auto all = worldTextures();
    if (textures_.empty()) {
        for (const WorldTexture& one : all)
            textures_.push_back(tests::numberedTexture(*device_, one.descriptor,
                                                       tests::componentOf(one.component)));
        words_ = device_->newBuffer(constantWords * sizeof(std::uint32_t));
        for (std::uint32_t i = 0; i < constantWords && words_; i++)
            static_cast<std::uint32_t*>(words_->contents())[i] = constantWord(i);
    } else {
        textures_.back() = tests::numberedTexture(*device_, all.back().descriptor,
                                                  tests::componentOf(all.back().component));
    }
    return memory_ && words_ &&
           std::ranges::all_of(textures_, [](const auto& texture) { return texture != nullptr; });
}

Outcome Trial::run(const std::string& body, Stages stages) {
    Outcome outcome;
    try {
        // However busy the machine is with other work.
        msl::Compilation compilation = msl::compile(
            metalSource(body, stages), {.limit = std::chrono::minutes(2), .target = target_});
        if (compilation.failed)
            throw Refused(compilation.messages);
        const auto library = device_->newLibrary(std::move(compilation.entryPoints));
        const Form form = formOf(body);
        if (stages.kernel || form == Form::group)
            kernelResults(*library, form, outcome);
        if (stages.fragment && form != Form::group)
            fragmentResults(*library, form, outcome);
    } catch (const std::runtime_error& error) {
        outcome.problem = error.what();
    }
    return outcome;
}

void Trial::kernelResults(const gpu::Library& library, Form form, Outcome& outcome) {
    const auto function = library.newFunction("trial_kernel");
    if (!function)
        throw Refused("The program has no trial_kernel.");
    const auto pipeline = device_->newComputePipelineState(*function);
    const auto buffer = device_->newBuffer((trialInputs + 1) * sizeof(std::uint32_t));
    if (!buffer || (form != Form::plain && !makeWorld()))
        throw Refused("The device has no memory for a kernel.");
    auto commands = queue_->commandBuffer();
    auto encoder = commands ? commands->computeCommandEncoder() : std::nullopt;
    if (!encoder)
        throw Refused("The device has no memory for commands.");
    encoder->setComputePipelineState(*pipeline);
    encoder->setBuffer(*buffer, 0, 0);
    if (form != Form::plain)
        encoder->setBuffer(*memory_, 0, 1);
    if (form == Form::world) {
        encoder->setBuffer(*words_, 0, 2);
        for (std::uint32_t i = 0; i < textures_.size(); i++)
            encoder->setTexture(textures_[i].get(), i);
    }
    encoder->dispatchThreads({trialInputs, 1, 1}, {trialGroup, 1, 1});
    encoder->endEncoding();
    finish(*commands);
    const auto* results = static_cast<const std::uint32_t*>(buffer->contents());
    outcome.kernel.assign(results, results + trialInputs);
    outcome.simdWidth = results[trialInputs];
}

void Trial::fragmentResults(const gpu::Library& library, Form form, Outcome& outcome) {
    const auto vertex = library.newFunction("trial_vertex");
    const auto fragment = library.newFunction("trial_fragment");
    if (!vertex || !fragment)
        throw Refused("The program lacks its vertex or fragment function.");
    gpu::RenderPipelineDescriptor descriptor;
    descriptor.vertex = vertex.get();
    descriptor.fragment = fragment.get();
    descriptor.color.format = gpu::PixelFormat::r32Uint;
    const auto pipeline = device_->newRenderPipelineState(descriptor);
    gpu::TextureDescriptor target;
    target.format = gpu::PixelFormat::r32Uint;
    target.width = target.height = trialSide;
    target.usage.renderTarget = true;
    const auto texture = device_->newTexture(target);
    if (!texture || (form == Form::world && !makeWorld()))
        throw Refused("The device has no memory for a picture.");
    auto commands = queue_->commandBuffer();
    gpu::RenderPassDescriptor pass;
    pass.color.texture = texture.get();
    pass.color.load = gpu::LoadAction::clear;
    auto encoder = commands ? commands->renderCommandEncoder(pass) : std::nullopt;
    if (!encoder)
        throw Refused("The device has no memory for commands.");
    encoder->setRenderPipelineState(*pipeline);
    if (form == Form::world) {
        encoder->setFragmentBuffer(*memory_, 0, 1);
        encoder->setFragmentBuffer(*words_, 0, 2);
        for (std::uint32_t i = 0; i < textures_.size(); i++)
            encoder->setFragmentTexture(textures_[i].get(), i);
    }
    encoder->drawPrimitives(gpu::PrimitiveType::triangle, 0, 3);
    encoder->endEncoding();
    finish(*commands);
    outcome.fragment.resize(trialInputs);
    texture->getBytes(outcome.fragment.data(), trialSide * sizeof(std::uint32_t),
                      {0, 0, trialSide, trialSide}, 0);
}

std::string Trial::difference(const std::string& body, std::uint64_t program,
                              const NativeTrial& native, Stages stages) {
    const Outcome outcome = run(body, stages);
    if (!outcome.problem.empty())
        return outcome.problem;
    std::vector<std::uint32_t> expected(trialInputs);
    native(program, outcome.simdWidth, expected.data());
    return firstDifference("kernel", expected, outcome.kernel) +
           firstDifference("fragment", expected, outcome.fragment);
}

} // namespace tarnwick::trials
