// Writes the container from packets.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <filesystem>
#include <memory>
#include <span>
#include <vector>

namespace tarnwick {

// The part of a track's sample entry that depends on the codec; different for each codec.
struct SampleEntry {
    std::uint32_t tag = 0; // its type, the first letter in the lowest byte
    int depth = 0;         // bits a pixel

    bool operator==(const SampleEntry&) const = default;
};
SampleEntry sampleEntry(VideoCodec codec);

// A QuickTime movie or MPEG-4 file that is being written. The index is before the data, times of
// pictures are in thousandths of a frame, and an edit list removes the sound's priming. One thread
// calls. Throws MovieError with the system's own words.
class MovieFile {
  public:
    // Creates the file, empty; an existing one is replaced.
    MovieFile(const std::filesystem::path& file, MovieFileType type);
    ~MovieFile();

    // Add the tracks, before begin(). `configuration` and `delay` are those of the VideoEncoder.
    void addVideo(const VideoSettings& settings, std::span<const std::byte> configuration,
                  std::int64_t delay);
    void addSound(const AudioSettings& settings, const SoundFormat& format);

    // Writes the header. `firstFrame` is the frame of the whole movie with which the file begins;
    // if it is not 0, the file's comment has it (firstFrameComment).
    void begin(std::int64_t firstFrame);

    // Take the packets of a track in decoding order, without gaps.
    void write(const VideoPacket& packet);
    void write(const SoundPacket& packet);

    // Writes the index.
    void finish(const std::vector<MovieChapter>& chapters);

  private:
    struct Container;
    std::unique_ptr<Container> container;
};

// The text before the number of the first frame in a part's comment.
inline constexpr std::string_view firstFrameComment = "Begins at frame ";

} // namespace tarnwick
