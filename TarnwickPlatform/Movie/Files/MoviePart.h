// Private to this folder: reads back what MovieFile wrote.
#pragma once

#include "TarnwickPlatform/Movie/Files/MovieFile.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// A movie file, or a part of a movie. One thread calls. Throws MovieError with a sentence that
// names the file, when it cannot be read or has no picture track of one of our codecs.
class MoviePart {
  public:
    enum class Track { video, sound };

    // Reads the packets of one track; the other's are passed over.
    MoviePart(const std::filesystem::path& file, Track track);
    MoviePart(MoviePart&&) noexcept;
    ~MoviePart();

    const std::filesystem::path& path() const;
    VideoSettings
    video() const; // what a file says of them: no rates of bits, no key frames' interval
    std::vector<std::byte> configuration() const;
    std::int64_t firstFrame() const;
    std::int64_t frameCount() const;
    std::int64_t delay() const; // frames by which decoding runs ahead of showing

    bool hasSound() const;
    AudioSettings sound() const;
    SoundFormat soundFormat() const;
    std::vector<MovieChapter> chapters() const;

    // The next packet of the track in decoding order; nothing at the end.
    std::optional<VideoPacket> nextPicture();
    std::optional<SoundPacket> nextSound();

  private:
    struct Container;
    std::unique_ptr<Container> container;
};

} // namespace tarnwick
