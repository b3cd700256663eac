// Reads the pictures of movie files, picture files and cameras.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace tarnwick {

// A file or camera cannot be read. what() is one sentence that names it.
struct MediaError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct MediaUse {
    std::uint32_t longestSide = 4096; // pixels; larger pictures are scaled down
    std::function<bool()> isEnd{};    // called while reading blocks; true ends it with MediaError
};

// One thread at a time. Sound is ignored. All functions block.
class MediaReader {
  public:
    // Throws MediaError. A file may not refer to other files or to the network.
    static std::unique_ptr<MediaReader> openFile(const std::filesystem::path& file, MediaUse use);
    // `format` is the name of a registered input format of libavdevice. Throws MediaError.
    static std::unique_ptr<MediaReader>
    openDevice(const char* format, const std::filesystem::path& device, MediaUse use);
    ~MediaReader();
    MediaReader(const MediaReader&) = delete;
    MediaReader& operator=(const MediaReader&) = delete;

    // Whether the file is a single picture.
    bool isStill() const;
    // Seconds from the first frame to the end. Absent if the file does not say it.
    std::optional<double> duration() const;

    // Reads the next frame. False at the end. Damaged frames are skipped. Throws MediaError.
    bool next();
    // The time of the next frame, which is read ahead; absent at the end. Throws MediaError.
    std::optional<double> nextTime();
    // Of the frame that was read: seconds after the first frame of the file.
    double time() const;
    // Seconds that the frame is shown; an estimate if the file does not say it.
    double frameDuration() const;
    // Straight alpha, 255 if the file has none. Upright, if the file says how it is turned. Throws
    // MediaError.
    void readPicture(Picture& picture);

    // The next frame is the last key frame at or before `time`, or the first one.
    void seek(double time);
    // Whether a seek to `time` reaches a later frame than reading on does.
    bool seekIsAhead(double time) const;

  private:
    struct Parts;

    explicit MediaReader(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> parts_;
};

} // namespace tarnwick
