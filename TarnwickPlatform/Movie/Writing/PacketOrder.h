// Puts the packets of both tracks into the order of the file.
#pragma once

#include "TarnwickPlatform/Movie/MovieSettings.h"
#include "TarnwickPlatform/Movie/Packets/Packets.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <variant>

namespace tarnwick {

using MoviePacket = std::variant<VideoPacket, SoundPacket>;

// In the file, sound is next to the pictures of its time. Neither encoder waits for the other
// track, as a caller may append one track as a whole before the other. Sound that is ahead waits
// here; it is small. Pictures wait for sound up to 8 MB, then they are written without it. Each
// encoder's thread puts, one thread takes.
class PacketOrder {
  public:
    // Sets the tracks, before anything is put.
    void expect(const VideoSettings& video, const AudioSettings* sound);

    void put(VideoPacket packet); // blocks while 32 MB of pictures wait
    void put(SoundPacket packet);
    // No more packets of the track are coming.
    void finishVideo();
    void finishSound();

    // Blocks until the next packet of the file is there. Absent: all packets are out, or abandoned.
    std::optional<MoviePacket> take();

    // Drops all packets and ends all blocking calls.
    void abandon();

  private:
    bool soundIsNext() const;
    bool pictureIsNext() const;

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<VideoPacket> pictures;
    std::deque<SoundPacket> sounds;
    std::size_t pictureBytes = 0;
    double secondsPerFrame = 0;
    double secondsPerSample = 0;
    double pictureTime = 0; // seconds from the file's start at which the next picture is decoded
    bool videoFinished = false;
    bool soundFinished = true;
    bool abandoned = false;
};

} // namespace tarnwick
