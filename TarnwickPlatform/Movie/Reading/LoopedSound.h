// The sound of a media file that repeats: the same at each time, however it is reached.
#pragma once

#include "TarnwickPlatform/Movie/Reading/SoundChunks.h"
#include "TarnwickPlatform/Movie/Reading/SoundFile.h"

#include <filesystem>
#include <memory>
#include <span>

namespace tarnwick {

// One thread at a time. Functions block for the file.
class LoopedSound {
  public:
    // Throws MovieError if the file cannot be read or has no sound.
    static std::unique_ptr<LoopedSound> open(const std::filesystem::path& file);

    double seconds() const; // of the file

    // Writes interleaved stereo, left first: frame i is the one at `start` + i / `rate` seconds,
    // modulo the length of the file. Silence before time 0. `rate` is not 0; below 0: backwards.
    // Damaged parts are silent.
    void samples(double start, double rate, std::span<float> stereo);

  private:
    explicit LoopedSound(std::unique_ptr<SoundFile> file);

    std::unique_ptr<SoundFile> file_;
    SoundChunks chunks_;
};

} // namespace tarnwick
