#include "TarnwickPlatform/Pictures/PNG.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickBase/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <png.h>
#include <string>
#include <string_view>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& file, const std::string& what, const std::string& why) {
    throw PictureError(file.string() + " cannot be " + what + ": " + why + ".");
}

// Owns libpng's record of a picture.
struct Image : png_image {
    Image() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~Image() { png_image_free(this); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
};

// Rows without gaps, with pixels of `size` bytes that copy(to, from) writes.
template <typename Copy>
std::vector<std::uint8_t> packed(const Picture& picture, std::size_t size, const Copy& copy) {
    std::vector<std::uint8_t> pixels(size * picture.width * picture.height);
    std::uint8_t* to = pixels.data();
    for (std::size_t row = 0; row < picture.height; ++row) {
        const std::uint8_t* from = picture.bytes.data() + row * picture.bytesPerRow;
        for (std::size_t column = 0; column < picture.width; ++column, to += size, from += 4)
            copy(to, from);
    }
    return pixels;
}

void copyColors(std::uint8_t* to, const std::uint8_t* from) {
    std::memcpy(to, from, 3);
}

void copyStraight(std::uint8_t* to, const std::uint8_t* from) {
    const int alpha = from[3];
    for (int channel = 0; channel < 3; ++channel)
        to[channel] = static_cast<std::uint8_t>(
            alpha > 0 ? std::min((from[channel] * 255 + alpha / 2) / alpha, 255) : 0);
    to[3] = from[3];
}

} // namespace

std::string pngOf(const Picture& picture, PictureAlpha alpha) {
    precondition(picture.bytesPerRow >= std::size_t{4} * picture.width &&
                     picture.bytes.size() >= picture.bytesPerRow * picture.height,
                 "a picture's bytes hold all of its rows", "width", picture.width, "height",
                 picture.height, "bytes per row", picture.bytesPerRow, "bytes",
                 picture.bytes.size());
    if (picture.width == 0 || picture.height == 0)
        throw PictureError("A picture without pixels cannot be written.");
    Image image;
    image.width = picture.width;
    image.height = picture.height;
    const bool isOpaque = alpha == PictureAlpha::none;
    image.format = isOpaque ? PNG_FORMAT_BGR : PNG_FORMAT_BGRA; // RGB first, with the sRGB chunk
    const std::vector<std::uint8_t> colors =
        isOpaque ? packed(picture, 3, copyColors) : packed(picture, 4, copyStraight);
    std::string bytes(PNG_IMAGE_PNG_SIZE_MAX(image), '\0');
    png_alloc_size_t length = bytes.size();
    if (!png_image_write_to_memory(&image, bytes.data(), &length, 0, colors.data(), 0, nullptr))
        throw PictureError("The picture cannot be written: " + std::string(image.message) + ".");
    bytes.resize(length);
    return bytes;
}

void writePNG(const Picture& picture, const std::filesystem::path& file) {
    try {
        writeWholeFile(file, pngOf(picture));
    } catch (const WholeFileError& error) {
        throw PictureError(error.what());
    }
}

Picture readPNG(const std::filesystem::path& file) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> opened(std::fopen(file.c_str(), "rbe"),
                                                                 std::fclose);
    if (!opened)
        fail(file, "read", std::strerror(errno));
    Image image;
    if (!png_image_begin_read_from_stdio(&image, opened.get()))
        fail(file, "read", image.message);
    Picture picture{.width = image.width, .height = image.height};
    // Reads the colours alone, so that libpng lays them over black; then makes room for the fourth
    // byte.
    image.format = PNG_FORMAT_BGR;
    const png_color black{};
    std::vector<std::uint8_t> packed(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, &black, packed.data(), 0, nullptr))
        fail(file, "read", image.message);
    picture.bytesPerRow = std::size_t{4} * picture.width;
    picture.bytes.assign(picture.bytesPerRow * picture.height, 0xff);
    for (std::size_t pixel = 0; pixel * 3 < packed.size(); ++pixel)
        std::memcpy(&picture.bytes[pixel * 4], &packed[pixel * 3], 3);
    return picture;
}

} // namespace tarnwick
