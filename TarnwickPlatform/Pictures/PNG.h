// Pictures as PNG files (Portable Network Graphics, third edition).
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tarnwick {

// A picture cannot be written or read. what() is one sentence that names the file.
struct PictureError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The meaning of a picture's fourth bytes: ignored, or alpha with premultiplied colours.
enum class PictureAlpha : std::uint8_t { none, premultiplied };

// The bytes of a file of 8-bit RGB, marked as sRGB, or of RGBA. Colours of PNG are not
// premultiplied (third edition, 6.2), so they are divided by alpha: a colour above its alpha
// becomes 255, and a colour of alpha 0 becomes 0. Blocks. Throws PictureError, also if the picture
// has no pixels.
std::string pngOf(const Picture& picture, PictureAlpha alpha = PictureAlpha::none);

// Writes the same to a file, whole or not at all. Blocks. Throws PictureError, also if `file`
// exists and is not a regular file.
void writePNG(const Picture& picture, const std::filesystem::path& file);

// Reads any kind of PNG as 8-bit sRGB, laid over black. Blocks. Throws PictureError.
Picture readPNG(const std::filesystem::path& file);

} // namespace tarnwick
