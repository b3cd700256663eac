// Reads the files that MovieFile wrote.
#pragma once

#include "TarnwickPlatform/Movie/Files/MovieFile.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

namespace tarnwick {

// A movie file or a part of a movie. One thread calls. Throws MovieError of kind `parts`, with a
// sentence that names the file, if it cannot be read or its picture track is not of one of our
// codecs.
class MoviePart {
  public:
    enum class Track { video, sound };

    // Opens the file to read the packets of one track; those of the other are skipped.
    MoviePart(const std::filesystem::path& file, Track track);
    MoviePart(MoviePart&&) noexcept;
    ~MoviePart();

    const std::filesystem::path& path() const;
    VideoSettings video() const; // codec, size and frame rate; a file has no others
    std::vector<std::byte> configuration() const; // of VideoEncoder, as the container's record
    std::int64_t firstFrame() const;              // of the whole movie; 0 if the file does not say
    std::int64_t frameCount() const;
    std::int64_t delay() const; // frames by which decoding runs ahead of display

    bool hasSound() const; // the next two need it
    AudioSettings sound() const;
    SoundFormat soundFormat() const;
    std::vector<MovieChapter> chapters() const;

    // The next packet of the track in decoding order; absent at the end.
    std::optional<VideoPacket> nextPicture();
    std::optional<SoundPacket> nextSound(); // absent also if there is no sound

  private:
    struct Container;
    std::unique_ptr<Container> container;
};

} // namespace tarnwick
