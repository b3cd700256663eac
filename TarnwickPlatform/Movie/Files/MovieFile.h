// Private to this folder: the container, from packets.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace tarnwick {

// What a track's sample entry says of its codec; different for each codec.
struct SampleEntry {
    std::uint32_t tag = 0; // its type, the first letter in the lowest byte
    int depth = 0;         // bits a pixel

    bool operator==(const SampleEntry&) const = default;
};
SampleEntry sampleEntry(VideoCodec codec);

// A QuickTime movie or MPEG-4 file being written: the index in front of the data, times of pictures
// in thousandths of a frame, an edit list that takes the sound's priming off. One thread calls.
// Throws MovieError with the system's own words.
class MovieFile {
  public:
    // Makes the file, empty.
    MovieFile(const std::filesystem::path& file, MovieFileType type);
    ~MovieFile();

    void addVideo(const VideoSettings& settings, std::span<const std::byte> configuration,
                  std::int64_t delay);
    void addSound(const AudioSettings& settings, const SoundFormat& format);

    // Writes what stands before the packets. `firstFrame`: which frame of the whole the file begins
    // with; one that is not 0 is noted in the file's comment (firstFrameComment).
    void begin(std::int64_t firstFrame);

    // Packets of a track come in decoding order, without gaps.
    void write(const VideoPacket& packet);
    void write(const SoundPacket& packet);

    // Writes the index.
    void finish(const std::vector<MovieChapter>& chapters);

  private:
    struct Container;
    std::unique_ptr<Container> container;
};

// What precedes the number of a part's first frame in its comment.
inline constexpr std::string_view firstFrameComment = "Begins at frame ";

} // namespace tarnwick
