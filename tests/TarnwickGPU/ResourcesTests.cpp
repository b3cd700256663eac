#include "TarnwickGPU/Resources/ValueTexts.h"
#include "tests/TarnwickGPU/Gpu.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace tarnwick::tests {

namespace {

using namespace gpu;

TEST_F(Gpu, keepsTheBytesOfATexture) {
    for (auto format = PixelFormat::r8Unorm; format <= PixelFormat::rgba32Sint;
         format = static_cast<PixelFormat>(static_cast<int>(format) + 1)) {
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

// Slices of arrays and cubes, and planes of 3D textures, with gaps between rows and images.
TEST_F(Gpu, keepsSlicesAndPlanesApart) {
    for (auto type : {TextureType::type1DArray, TextureType::type2DArray, TextureType::type3D,
                      TextureType::typeCube, TextureType::typeCubeArray}) {
        const bool isLine = type == TextureType::type1DArray;
        const bool isSolid = type == TextureType::type3D;
        const bool isArray = type != TextureType::typeCube && !isSolid;
        const auto texture = device->newTexture({.type = type,
                                                 .format = PixelFormat::r8Uint,
                                                 .width = 4,
                                                 .height = isLine ? 1u : 4u,
                                                 .depth = isSolid ? 4u : 1u,
                                                 .arrayLength = isArray ? 4u : 1u});
        ASSERT_TRUE(texture);
        const std::uint32_t rows = isLine ? 1 : 2;
        std::vector<std::uint8_t> written(40), read(40, 99);
        std::iota(written.begin(), written.end(), std::uint8_t{1});
        const Region region{1, 0, 2, rows, isSolid ? 1u : 0u, isSolid ? 2u : 1u};
        texture->replace(region, 0, isSolid ? 0 : 2, written.data(), 5, 15);
        texture->getBytes(read.data(), 3, 8, region, 0, isSolid ? 0 : 2);
        for (std::uint32_t plane = 0; plane < region.depth; ++plane)
            for (std::uint32_t row = 0; row < rows; ++row)
                for (std::uint32_t x = 0; x < 2; ++x)
                    EXPECT_EQ(read[plane * 8 + row * 3 + x], written[plane * 15 + row * 5 + x]);
        texture->getBytes(read.data(), 4, 16, {0, 0, 4, 1}, 0, isSolid ? 0 : 1);
        EXPECT_EQ(std::count(read.begin(), read.begin() + 4, std::uint8_t{0}), 4);
    }
}

TEST_F(Gpu, fillsLevelsFromTheFirst) {
    const auto texture = device->newTexture({.type = TextureType::type2DArray,
                                             .format = PixelFormat::r32Float,
                                             .width = 4,
                                             .height = 4,
                                             .mipLevels = 3,
                                             .arrayLength = 2});
    std::array<float, 16> first{};
    std::iota(first.begin(), first.end(), 0.0f);
    for (std::uint32_t slice : {0u, 1u}) {
        texture->replace({0, 0, 4, 4}, 0, slice, first.data(), 16, 64);
        for (float& value : first)
            value += 100;
    }
    auto commands = queue->commandBuffer();
    auto blit = commands->blitCommandEncoder();
    blit->generateMipmaps(*texture);
    blit->endEncoding();
    finish(*commands);
    std::array<float, 4> second{};
    float last = 0;
    texture->getBytes(second.data(), 8, 16, {0, 0, 2, 2}, 1, 1);
    texture->getBytes(&last, 4, 4, {0, 0, 1, 1}, 2, 1);
    EXPECT_EQ(second, (std::array<float, 4>{102.5f, 104.5f, 110.5f, 112.5f}));
    EXPECT_EQ(last, 107.5f);
}

TEST_F(Gpu, makesNothingThatTheDeviceCannotHold) {
    EXPECT_EQ(device->newTexture({.width = 0, .height = 4}), nullptr);
    EXPECT_EQ(device->newTexture({.width = 100'000, .height = 100'000}), nullptr);
    EXPECT_EQ(device->newTexture({.format = PixelFormat::invalid}), nullptr);
    EXPECT_EQ(device->newTexture({.width = 4, .mipLevels = 4}), nullptr);
    EXPECT_EQ(device->newTexture({.type = TextureType::typeCube, .width = 4, .height = 2}),
              nullptr);
    EXPECT_EQ(device->newTexture({.width = 4, .depth = 4}), nullptr);
    EXPECT_EQ(device->newTexture({.type = TextureType::type3D, .usage = {.renderTarget = true}}),
              nullptr);
    EXPECT_EQ(device->newBuffer(0), nullptr);
    EXPECT_EQ(device->newBuffer(std::size_t{1} << 60), nullptr);
}

TEST(ValueTexts, giveSizesOfRegionsAndTextures) {
    EXPECT_EQ(valueText(Region{16, 0, 640, 480}), "16,0 640x480");
    EXPECT_EQ(valueText(Region{0, 0, 8, 8, 4, 2}), "0,0,4 8x8x2");
    EXPECT_EQ(valueText(TextureDescriptor{.width = 320, .height = 240}), "320x240");
    EXPECT_EQ(valueText(TextureDescriptor{.width = 8, .height = 8, .mipLevels = 4}),
              "8x8 of 4 levels");
}

TEST_F(Gpu, givesBuffersOfZeros) {
    const auto buffer = device->newBuffer(1000);
    ASSERT_TRUE(buffer);
    EXPECT_EQ(buffer->length(), 1000u);
    const std::vector<std::byte> zeros(1000);
    EXPECT_EQ(std::memcmp(buffer->contents(), zeros.data(), zeros.size()), 0);
    EXPECT_EQ(device->newBuffer(16, StorageMode::private_)->contents(), nullptr);
}

// A texture over a part of a buffer shares its bytes and keeps them.
TEST_F(Gpu, makesTexturesOverBuffers) {
    auto buffer = device->newBuffer(1024);
    auto* numbers = static_cast<float*>(buffer->contents());
    std::iota(numbers, numbers + 256, 0.0f);
    const TextureDescriptor descriptor{.type = TextureType::typeTextureBuffer,
                                       .format = PixelFormat::rgba32Float,
                                       .width = 8,
                                       .usage = {.shaderRead = true, .shaderWrite = true}};
    const auto texture = buffer->newTexture(descriptor, 256, 128);
    ASSERT_TRUE(texture);
    for (auto [offset, bytesPerRow] : {std::pair<std::size_t, std::size_t>{256, 127}, // too short
                                       {1024 - 64, 128},                              // beyond
                                       {1024, 128},
                                       {7, 128}}) // not aligned
        EXPECT_FALSE(buffer->newTexture(descriptor, offset, bytesPerRow)) << offset;
    EXPECT_FALSE(buffer->newTexture({.format = PixelFormat::rgba32Float, .width = 8}, 0, 128));
    buffer.reset();
    const std::array<float, 4> written{-1, -2, -3, -4};
    texture->replace({2, 0, 1, 1}, 0, written.data(), sizeof written);
    std::array<float, 8> read{};
    texture->getBytes(read.data(), sizeof read, {1, 0, 2, 1}, 0);
    EXPECT_EQ(read, (std::array<float, 8>{68, 69, 70, 71, -1, -2, -3, -4}));
}

} // namespace

} // namespace tarnwick::tests
