// What the tests of movies write and read: small pictures that move, and clicks.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Movie/MovieWriter.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tarnwick {

// 64 x 48 pixels, ten frames a second, stretches of 100 frames.
VideoSettings smallVideo(VideoCodec codec);

// `corners`: full and no red, green, blue and alpha by turns.
enum class Content { moving, noise, corners };

// Frame `frame` of a movie that every test knows.
std::shared_ptr<PixelBuffer> drawnPicture(const VideoSettings& settings, std::int64_t frame,
                                          Content content = Content::moving);

// The same in the format that the codec's encoder takes.
std::shared_ptr<PixelBuffer> convertedPicture(const VideoSettings& settings, std::int64_t frame,
                                              Content content = Content::moving);

// A plane's samples, rows one behind the other.
std::vector<int> samplesOf(const PixelBuffer& picture, std::size_t plane);

enum class SoundOrder { afterPictures, beforePictures };

struct SmallMovie {
    VideoSettings video{};
    std::int64_t firstFrame = 0;
    std::int64_t frames = 0;
    Content content = Content::moving;
    std::vector<float> samples{}; // left and right by turns; without any there is no sound track
    SoundOrder order = SoundOrder::afterPictures; // in which the writer is given the tracks
    std::vector<MovieChapter> chapters{};
};

// Waits until the input is ready or the writer has ended.
void waitFor(const MovieWriter& writer, const MovieInput& input);

// Writes it and expects that to succeed.
void writeMovie(const std::filesystem::path& file, const SmallMovie& movie);

// A picture as a decoder gives it: planes of numbers, rows one behind the other.
struct DecodedPicture {
    std::vector<std::vector<int>> planes;
    double seconds = 0;   // when it is shown
    bool isBT709 = false; // in video range, primaries, transfer function and matrix
};

// Decibels of the difference to full scale, `bits` being given's; decoded may have `moreBits`.
double likeness(const std::vector<int>& given, const std::vector<int>& decoded, int bits,
                int moreBits = 0);

// All pictures of a file in showing order, by libavcodec.
std::vector<DecodedPicture> decodedPictures(const std::filesystem::path& file);

// The left channel as it is heard, the priming taken off as the edit list says.
std::vector<float> decodedSound(const std::filesystem::path& file);

std::string contents(const std::filesystem::path& file);

} // namespace tarnwick
