// Each trial_NAME.metal of the corpus runs a kernel that gets 256 numbers (0, 1, 2...) and must
// give the numbers that its line `// @expects` lists, bars aside.
#include "TarnwickGPU/Commands.h"
#include "TarnwickGPU/Device.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

using namespace tarnwick;

namespace {

constexpr std::size_t numbers = 256;

std::vector<std::string> trials() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TARNWICK_CORPUS)) {
        const std::string name = entry.path().stem().string();
        if (name.starts_with("trial_"))
            names.push_back(name.substr(6));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string text(const std::string& name) {
    std::ifstream stream(std::filesystem::path(TARNWICK_CORPUS) / ("trial_" + name + ".metal"));
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<float> expectations(const std::string& source) {
    const std::size_t start = source.find("@expects ") + 9;
    std::istringstream words(source.substr(start, source.find('\n', start) - start));
    std::vector<float> values;
    for (std::string word; words >> word;)
        if (word != "|")
            values.push_back(std::stof(word));
    return values;
}

std::vector<float> results(gpu::Device& device, const std::string& source) {
    const auto function = device.newLibrary(source)->newFunction("check");
    const auto pipeline = device.newComputePipelineState(*function);
    const auto queue = device.newCommandQueue();
    const auto out = device.newBuffer(numbers * sizeof(float));
    std::vector<float> in(numbers), values(numbers, NAN);
    std::iota(in.begin(), in.end(), 0.0f);
    std::memcpy(out->contents(), values.data(), numbers * sizeof(float));
    auto commands = queue->commandBuffer();
    auto encoder = commands->computeCommandEncoder();
    encoder->setComputePipelineState(*pipeline);
    encoder->setBuffer(*out, 0, 0);
    encoder->setBytes(in.data(), in.size() * sizeof(float), 1);
    encoder->dispatchThreads({1, 1, 1}, {1, 1, 1});
    encoder->endEncoding();
    commands->commit();
    commands->waitUntilCompleted();
    EXPECT_EQ(commands->status(), gpu::CommandBufferStatus::completed);
    std::memcpy(values.data(), out->contents(), numbers * sizeof(float));
    return values;
}

class Corpus : public testing::TestWithParam<std::string> {};

} // namespace

TEST_P(Corpus, givesTheNumbersItPromises) {
    const auto device = gpu::Device::systemDefault();
    if (!device)
        GTEST_SKIP() << "No Vulkan device is here.";
    const std::string source = text(GetParam());
    const std::vector<float> expected = expectations(source);
    ASSERT_FALSE(expected.empty());
    const std::vector<float> given = results(*device, source);
    for (std::size_t i = 0; i < expected.size(); i++)
        EXPECT_NEAR(given[i], expected[i], 1e-6f * std::abs(expected[i])) << "out[" << i << "]";
}

INSTANTIATE_TEST_SUITE_P(Trials, Corpus, testing::ValuesIn(trials()),
                         [](const auto& trial) { return trial.param; });
