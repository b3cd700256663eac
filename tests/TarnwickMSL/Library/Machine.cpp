#include "tests/TarnwickMSL/Library/Machine.h"

#include <cstring>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

constexpr const char* prologue = "#include <metal_stdlib>\nusing namespace metal;\n";
constexpr std::size_t casesAtOnce = 12; // in one program: a parse costs more than a kernel

std::string kernelName(std::size_t index, int width) {
    return "k" + std::to_string(index) + "_" + std::to_string(width);
}

} // namespace

std::unique_ptr<Machine> Machine::make() {
    auto device = gpu::Device::systemDefault();
    auto queue = device ? device->newCommandQueue() : nullptr;
    if (!queue)
        return nullptr;
    return std::unique_ptr<Machine>(new Machine(std::move(device), std::move(queue)));
}

Machine::Machine(std::shared_ptr<gpu::Device> device, std::unique_ptr<gpu::CommandQueue> queue)
    : device_(std::move(device)), queue_(std::move(queue)) {}

std::unique_ptr<gpu::Library> Machine::compile(const std::string& text) {
    return device_->newLibrary(prologue + text);
}

std::unique_ptr<gpu::ComputePipelineState> Machine::pipeline(const gpu::Library& library,
                                                             const std::string& kernel) {
    const auto function = library.newFunction(kernel);
    if (!function)
        throw std::runtime_error("The program has no kernel " + kernel + ".");
    return device_->newComputePipelineState(*function);
}

std::vector<std::uint32_t> Machine::run(const gpu::Library& library, const std::string& kernel,
                                        const Columns& columns, std::size_t threads,
                                        std::size_t words) {
    return run(*pipeline(library, kernel), columns, threads, words);
}

std::vector<std::uint32_t> Machine::run(const gpu::ComputePipelineState& pipeline,
                                        const Columns& columns, std::size_t threads,
                                        std::size_t words) {
    std::vector<std::unique_ptr<gpu::Buffer>> buffers;
    for (const std::vector<std::uint32_t>& column : columns) {
        const std::size_t bytes = column.size() * sizeof(std::uint32_t);
        buffers.push_back(device_->newBuffer(bytes));
        if (buffers.back())
            std::memcpy(buffers.back()->contents(), column.data(), bytes);
    }
    buffers.push_back(device_->newBuffer(words * sizeof(std::uint32_t)));
    auto commands = queue_->commandBuffer();
    auto encoder = commands ? commands->computeCommandEncoder() : std::nullopt;
    if (!encoder || !buffers.back())
        throw std::runtime_error("The device has no memory for a kernel.");
    encoder->setComputePipelineState(pipeline);
    for (std::uint32_t i = 0; i < buffers.size(); i++)
        encoder->setBuffer(*buffers[i], 0, i);
    encoder->dispatchThreads({static_cast<std::uint32_t>(threads), 1, 1}, {64, 1, 1});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    if (commands->status() != gpu::CommandBufferStatus::completed || commands->hitLoopBudget())
        throw std::runtime_error("A kernel did not complete.");
    std::vector<std::uint32_t> results(words);
    std::memcpy(results.data(), buffers.back()->contents(), words * sizeof(std::uint32_t));
    return results;
}

void Machine::judgeAll(const std::vector<Case>& cases, std::size_t count,
                       std::span<const int> widths,
                       const std::function<void(const Case&, const Verdict&)>& report) {
    for (std::size_t from = 0; from < cases.size(); from += casesAtOnce) {
        const std::size_t to = std::min(cases.size(), from + casesAtOnce);
        std::string text;
        for (std::size_t i = from; i < to; i++)
            for (const int width : widths)
                if (width == 1 || !cases[i].scalarOnly)
                    text += kernelText(cases[i], kernelName(i, width), width);
        const auto library = compile(text);
        for (std::size_t i = from; i < to; i++) {
            const Columns arguments = columns(cases[i], count);
            const std::size_t n = arguments[0].size();
            Verdict verdict;
            for (const int width : widths)
                if (width == 1 || !cases[i].scalarOnly)
                    verdict.add(judge(cases[i], arguments,
                                      run(*library, kernelName(i, width), arguments,
                                          n / static_cast<std::size_t>(width), n)));
            report(cases[i], verdict);
        }
    }
}

} // namespace tarnwick::trials
