#include "tests/TarnwickGPU/Gpu.h"

#include <cstring>
#include <numeric>

namespace tarnwick::tests {

namespace {

using namespace gpu;

TEST_F(Gpu, keepsTheBytesOfATexture) {
    for (auto format : {PixelFormat::r8Unorm, PixelFormat::rgba8Unorm, PixelFormat::bgra8Unorm,
                        PixelFormat::r32Uint, PixelFormat::rgba16Float, PixelFormat::rgba32Float}) {
        const auto texture =
            device->newTexture({.format = format, .width = 7, .height = 5, .mipLevels = 2});
        ASSERT_TRUE(texture);
        const std::size_t row = 7 * bytesPerPixel(format);
        std::vector<std::uint8_t> written(row * 5), read(row * 5, 99);
        texture->getBytes(read.data(), row, {0, 0, 7, 5}, 0);
        EXPECT_EQ(read, written); // a fresh texture is zeros
        std::iota(written.begin(), written.end(), std::uint8_t{0});
        for (std::size_t at = 3; at < written.size(); at += 4)
            written[at] &= 0x3b; // no NaN and no infinity in any format
        texture->replace({0, 0, 7, 5}, 0, written.data(), row);
        texture->getBytes(read.data(), row, {0, 0, 7, 5}, 0);
        EXPECT_EQ(read, written);
    }
}

TEST_F(Gpu, copiesPartsOfATextureWithAStride) {
    const auto texture =
        device->newTexture({.format = PixelFormat::r8Unorm, .width = 8, .height = 8});
    const std::array<std::uint8_t, 10> bytes{1, 2, 3, 0, 0, 4, 5, 6, 0, 0};
    texture->replace({2, 4, 3, 2}, 0, bytes.data(), 5);
    std::array<std::uint8_t, 12> read{};
    texture->getBytes(read.data(), 4, {1, 4, 3, 3}, 0);
    EXPECT_EQ(read, (std::array<std::uint8_t, 12>{0, 1, 2, 0, 0, 4, 5, 0, 0, 0, 0, 0}));
}

TEST_F(Gpu, makesNothingThatTheDeviceCannotHold) {
    EXPECT_EQ(device->newTexture({.width = 0, .height = 4}), nullptr);
    EXPECT_EQ(device->newTexture({.width = 100'000, .height = 100'000}), nullptr);
    EXPECT_EQ(device->newTexture({.format = PixelFormat::invalid}), nullptr);
    EXPECT_EQ(device->newBuffer(0), nullptr);
    EXPECT_EQ(device->newBuffer(std::size_t{1} << 60), nullptr);
}

TEST_F(Gpu, givesBuffersOfZeros) {
    const auto buffer = device->newBuffer(1000);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(buffer->length(), 1000u);
    const std::vector<std::byte> zeros(1000);
    EXPECT_EQ(std::memcmp(buffer->contents(), zeros.data(), zeros.size()), 0);
    EXPECT_EQ(device->newBuffer(16, StorageMode::private_)->contents(), nullptr);
}

} // namespace

} // namespace tarnwick::tests
