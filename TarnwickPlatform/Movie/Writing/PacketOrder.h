// Private to this folder: brings the packets of both tracks into the order of the file.
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

// Sound stands beside the pictures that it is heard with. Neither encoder waits for the other
// track: a caller may append one track as a whole before the other. Sound that is ahead waits here,
// small as it is; pictures wait for sound while they are few, then go into the file without it.
// Each encoder's thread puts, one thread takes.
class PacketOrder {
  public:
    // Before anything is put: what the tracks are.
    void expect(const VideoSettings& video, const AudioSettings* sound);

    void put(VideoPacket packet); // waits while very much lies here
    void put(SoundPacket packet);
    void finishVideo();
    void finishSound();

    // Waits for the packet that comes next. Nothing: all are out, or abandoned.
    std::optional<MoviePacket> take();

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
    double pictureTime =
        0; // seconds at which the next picture is decoded, from the file's beginning
    bool videoFinished = false;
    bool soundFinished = true;
    bool abandoned = false;
};

} // namespace tarnwick
