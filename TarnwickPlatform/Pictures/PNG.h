// Pictures as PNG files (Portable Network Graphics, third edition).
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <filesystem>
#include <stdexcept>

namespace tarnwick {

// A picture could not be written or read; what() is one sentence that names the file.
struct PictureError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Writes 8-bit RGB, marked as sRGB. The file appears whole or not at all: it is written under
// another name in the same folder and renamed. Blocks. Throws PictureError; also when `file` exists
// and is no regular file, or the picture has no pixels.
void writePNG(const Picture& picture, const std::filesystem::path& file);

// Reads any kind of PNG as 8-bit sRGB, what is not opaque laid over black. Blocks. Throws
// PictureError.
Picture readPNG(const std::filesystem::path& file);

} // namespace tarnwick
