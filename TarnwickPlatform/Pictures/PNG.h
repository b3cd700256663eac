// Pictures as PNG files (Portable Network Graphics, third edition).
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tarnwick {

// A picture could not be written or read; what() is one sentence that names the file.
struct PictureError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What a picture's fourth bytes are: nothing, or alpha, by which its colours have been multiplied.
enum class PictureAlpha : std::uint8_t { none, premultiplied };

// The bytes of a file of 8-bit RGB, marked as sRGB, or of RGBA. PNG's colours are not multiplied by
// alpha (third edition, 6.2), so they are divided by it: a colour beyond its alpha becomes 255, and
// without alpha there is no colour. Blocks. Throws PictureError; also when the picture has no
// pixels.
std::string pngOf(const Picture& picture, PictureAlpha alpha = PictureAlpha::none);

// Writes the same as a file that appears whole or not at all. Blocks. Throws PictureError; also
// when `file` exists and is no regular file.
void writePNG(const Picture& picture, const std::filesystem::path& file);

// Reads any kind of PNG as 8-bit sRGB, what is not opaque laid over black. Blocks. Throws
// PictureError.
Picture readPNG(const std::filesystem::path& file);

} // namespace tarnwick
