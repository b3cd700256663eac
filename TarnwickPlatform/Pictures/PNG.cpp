#include "TarnwickPlatform/Pictures/PNG.h"

#include "TarnwickBase/Precondition.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <png.h>
#include <string>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void fail(const fs::path& file, const std::string& what, const std::string& why) {
    throw PictureError(file.string() + " cannot be " + what + ": " + why + ".");
}

std::string systemReason() {
    return std::strerror(errno);
}

// libpng's own record of a picture, freed at the end of its life.
struct Image : png_image {
    Image() : png_image{} { version = PNG_IMAGE_VERSION; }
    ~Image() { png_image_free(this); }
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
};

// The pixels without their fourth bytes, rows without gaps.
std::vector<std::uint8_t> packedColors(const Picture& picture) {
    std::vector<std::uint8_t> packed(std::size_t{3} * picture.width * picture.height);
    std::uint8_t* to = packed.data();
    for (std::size_t row = 0; row < picture.height; ++row) {
        const std::uint8_t* from = picture.bytes.data() + row * picture.bytesPerRow;
        for (std::size_t column = 0; column < picture.width; ++column, to += 3, from += 4)
            std::memcpy(to, from, 3);
    }
    return packed;
}

// A new file beside `target` that goes when it is not kept.
class FileInProgress {
  public:
    explicit FileInProgress(const fs::path& target)
        : target_(target), path_(target.string() + "." + std::to_string(getpid()) + ".partial") {
        const int descriptor = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        file_.reset(descriptor < 0 ? nullptr : fdopen(descriptor, "wb"));
        if (!file_)
            fail(target_, "written", systemReason());
    }
    ~FileInProgress() {
        if (!kept_)
            unlink(path_.c_str());
    }
    FileInProgress(const FileInProgress&) = delete;
    FileInProgress& operator=(const FileInProgress&) = delete;

    std::FILE* get() { return file_.get(); }
    void keep() {
        // A full disk may speak up only now.
        if (std::fclose(file_.release()) != 0 || std::rename(path_.c_str(), target_.c_str()) != 0)
            fail(target_, "written", systemReason());
        kept_ = true;
    }

  private:
    fs::path target_, path_;
    File file_;
    bool kept_ = false;
};

// What a link leads to stays where it is, and devices are not replaced by files.
fs::path writableTarget(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (fs::is_directory(status))
        fail(file, "written", "It is a folder");
    if (fs::exists(status) && !fs::is_regular_file(status))
        fail(file, "written", "It is not a regular file");
    return fs::exists(status) ? fs::canonical(file, error) : file;
}

} // namespace

void writePNG(const Picture& picture, const std::filesystem::path& file) {
    precondition(picture.bytesPerRow >= std::size_t{4} * picture.width &&
                     picture.bytes.size() >= picture.bytesPerRow * picture.height,
                 "A picture holds the rows that it says it has.");
    if (picture.width == 0 || picture.height == 0)
        fail(file, "written", "The picture has no pixels");
    Image image;
    image.width = picture.width;
    image.height = picture.height;
    image.format = PNG_FORMAT_BGR; // written as RGB, with the sRGB chunk
    const std::vector<std::uint8_t> colors = packedColors(picture);
    FileInProgress progress(writableTarget(file));
    if (!png_image_write_to_stdio(&image, progress.get(), 0, colors.data(), 0, nullptr))
        fail(file, "written", image.message);
    progress.keep();
}

Picture readPNG(const std::filesystem::path& file) {
    const File opened(std::fopen(file.c_str(), "rbe"));
    if (!opened)
        fail(file, "read", systemReason());
    Image image;
    if (!png_image_begin_read_from_stdio(&image, opened.get()))
        fail(file, "read", image.message);
    Picture picture{.width = image.width, .height = image.height};
    // Colours alone, so that what is not opaque is laid over black; then room for the fourth byte.
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
