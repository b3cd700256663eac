#include "TarnwickGPU/Device/DeviceState.h"
#include "TarnwickGPU/Vulkan/PhysicalDevices.h"
#include "tests/TarnwickGPU/Gpu.h"

#include <cstdlib>
#include <filesystem>
#include <unistd.h>
#include <utility>

namespace tarnwick::tests {

namespace {

using namespace gpu;

TEST(DeviceChoice, goesByOrderNumberOrPartOfTheName) {
    const std::vector<DeviceInfo> devices{
        {.name = "Fast Card 9000"}, {.name = "Small Card 10"}, {.name = "llvmpipe", .isCPU = true}};
    EXPECT_EQ(chooseDevice(devices, std::nullopt), 0u);
    EXPECT_EQ(chooseDevice(devices, ""), 0u);
    EXPECT_EQ(chooseDevice(devices, "2"), 2u);
    EXPECT_EQ(chooseDevice(devices, "3"), std::nullopt);
    EXPECT_EQ(chooseDevice(devices, "CARD 10"), 1u);
    EXPECT_EQ(chooseDevice(devices, "9000x"), std::nullopt);
    EXPECT_EQ(chooseDevice({}, std::nullopt), std::nullopt);
}

TEST_F(Gpu, isNotThereWhenTheEnvironmentNamesAnother) {
    setenv("TARNWICK_DEVICE", "no such device", 1);
    EXPECT_EQ(Device::systemDefault(), nullptr);
    setenv("TARNWICK_DEVICE", device->info().name.c_str(), 1);
    const auto named = Device::systemDefault();
    ASSERT_TRUE(named);
    EXPECT_EQ(named->info(), device->info());
    unsetenv("TARNWICK_DEVICE");
    EXPECT_EQ(allDevices().front(), device->info());
}

TEST_F(Gpu, refusesEverythingOnceLost) {
    const auto state =
        pipeline(wholeTarget(), glsl(msl::Stage::fragment, "nothing", "void main() {}"));
    auto pending = queue->commandBuffer();
    device->state().submissions.note(VK_ERROR_DEVICE_LOST);
    EXPECT_TRUE(device->isLost());
    EXPECT_EQ(device->newBuffer(16), nullptr);
    EXPECT_EQ(device->newTexture({}), nullptr);
    EXPECT_EQ(device->newCommandQueue(), nullptr);
    EXPECT_FALSE(queue->commandBuffer());
    EXPECT_FALSE(pending->computeCommandEncoder());
    pending->commit();
    EXPECT_EQ(pending->status(), CommandBufferStatus::error);
    try {
        pipeline(glsl(msl::Stage::kernel, "work", "void main() {}"));
        FAIL() << "A lost device made a pipeline.";
    } catch (const DeviceError& error) {
        EXPECT_EQ(std::string(error.what()), "The device could not make the compute pipeline of "
                                             "work: " +
                                                 device->info().name + " was lost.");
    }
}

// The CPU driver's cache is empty but for its header, which is enough to see it kept.
TEST_F(Gpu, keepsItsPipelinesOnDisk) {
    const auto folder =
        std::filesystem::path(testing::TempDir()) / ("pipeline-cache" + std::to_string(getpid()));
    std::filesystem::remove_all(folder);
    setenv("XDG_CACHE_HOME", folder.c_str(), 1);
    DeviceRecord record = device->state().record;
    record.info.isCPU = false;
    for (int run = 0; run < 2; ++run) {
        PipelineCache cache(record);
        cache.open();
        EXPECT_TRUE(cache.handle());
        cache.close();
        const std::filesystem::directory_iterator files(folder / "tarnwick"), end;
        ASSERT_EQ(std::distance(files, end), 1);
        EXPECT_GT(std::filesystem::directory_iterator(folder / "tarnwick")->file_size(), 0u);
    }
    std::filesystem::permissions(folder / "tarnwick", std::filesystem::perms::none);
    PipelineCache unreadable(record);
    unreadable.open();
    EXPECT_TRUE(unreadable.handle());
    unreadable.close();
    std::filesystem::permissions(folder / "tarnwick", std::filesystem::perms::owner_all);
    unsetenv("XDG_CACHE_HOME");
    std::filesystem::remove_all(folder);
}

TEST_F(Gpu, outlivesItsHandlesAndNeedsNoOrderOfDestruction) {
    auto texture = target(8, 8);
    auto buffer = device->newBuffer(64);
    auto commands = queue->commandBuffer();
    device = nullptr;
    queue = nullptr;
    auto encoder = commands->renderCommandEncoder(
        {.color = {.texture = texture.get(), .load = LoadAction::clear, .clear = {1, 0, 0, 1}}});
    encoder->endEncoding();
    commands->commit();
    buffer = nullptr;
    commands->waitUntilCompleted();
    EXPECT_EQ(pixelAt(*texture, 3, 3), (Pixel{255, 0, 0, 255}));
}

} // namespace

} // namespace tarnwick::tests
