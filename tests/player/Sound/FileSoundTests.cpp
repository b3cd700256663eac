#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Movie/Reading/LoopedSound.h"
#include "TarnwickRender/AudioRenderer.h"
#include "player/Sound/FileSound.h"
#include "player/Sound/PerformedSound.h"
#include "player/Sound/SampleRing.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <numbers>
#include <thread>

namespace tarnwick::player {
namespace {

constexpr double hertz = 440;

// Of the frame that the sample belongs to.
double secondsOf(std::size_t sample) {
    return static_cast<double>(sample / 2) / soundRate;
}

double toneAt(double time, std::size_t side) {
    return (side == 0 ? 0.5 : 0.25) * std::sin(2 * std::numbers::pi * hertz * time);
}

class FileSoundTest : public testing::Test {
  protected:
    // A tone of 440 Hz, louder on the left, at a rate of the file.
    std::filesystem::path tone(double seconds, std::uint32_t rate) {
        std::vector<float> samples;
        for (std::int64_t at = 0; at < std::llround(seconds * rate); ++at)
            for (const std::size_t side : {0u, 1u})
                samples.push_back(static_cast<float>(toneAt(static_cast<double>(at) / rate, side)));
        auto bytes = AudioRenderer::wavData(samples);
        for (std::size_t byte = 0; byte < 4; ++byte) {
            bytes[24 + byte] = static_cast<std::uint8_t>(rate >> (8 * byte));
            bytes[28 + byte] = static_cast<std::uint8_t>((rate * 4) >> (8 * byte));
        }
        const auto file = folder.path() / (std::to_string(rate) + ".wav");
        std::ofstream(file, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
        return file;
    }

    // Waits until the samples are there.
    static std::vector<float> wait(FileSound& sound, double start, double rate, std::size_t count) {
        std::vector<float> stereo(2 * count);
        for (int tries = 0; tries < 1000 && !sound.samples(start, rate, stereo); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return stereo;
    }

    TemporaryFolder folder{std::filesystem::temp_directory_path(), "file-sound"};
};

// At any rate of the file, in any order of places.
TEST_F(FileSoundTest, readsEachPlaceAsInOrder) {
    for (const std::uint32_t rate : {48000u, 44100u}) {
        const auto file = SoundFile::open(tone(5, rate));
        EXPECT_EQ(file->length(), 5 * soundRate);
        for (const std::int64_t first : {0, 100000, 100500, 30000, 239000, 1}) {
            const auto samples = file->read(first, 2000);
            EXPECT_EQ(samples.size(), 2 * static_cast<std::size_t>(
                                              std::min<std::int64_t>(2000, 5 * soundRate - first)));
            for (std::size_t at = 200; at + 200 < samples.size(); ++at) {
                const double time = static_cast<double>(first) / soundRate + secondsOf(at);
                ASSERT_NEAR(samples[at], toneAt(time, at % 2), 0.01)
                    << rate << " " << first << " " << at;
            }
        }
    }
}

TEST_F(FileSoundTest, followsTheTimeAndRepeats) {
    FileSound sound(tone(2.5, 48000), [](const std::string& sentence) { FAIL() << sentence; });
    const auto movies = LoopedSound::open(tone(2.5, 48000)); // what movies read
    EXPECT_EQ(movies->seconds(), 2.5);
    for (const double start : {0.0, 2.0, 4.9, 251.2}) {
        const auto samples = wait(sound, start, soundRate, 9600);
        std::vector<float> ofMovie(samples.size());
        movies->samples(start, soundRate, ofMovie);
        EXPECT_EQ(ofMovie, samples) << start;
        for (std::size_t at = 0; at < samples.size(); ++at) {
            const double time = start + secondsOf(at);
            ASSERT_NEAR(samples[at], toneAt(std::fmod(time + 1e-9, 2.5), at % 2), 1e-3)
                << start << " " << at;
        }
    }
    // Backwards at half the speed, between the frames of the file.
    const auto samples = wait(sound, 2, -2 * soundRate, 9600);
    for (std::size_t at = 0; at < samples.size(); ++at)
        ASSERT_NEAR(samples[at], toneAt(2 - secondsOf(at) / 2, at % 2), 2e-3);
    for (const float sample : wait(sound, -1, soundRate, 4800))
        ASSERT_EQ(sample, 0);
}

TEST_F(FileSoundTest, isSilentAndSaysWhyIfItCannotBeRead) {
    const auto file = folder.path() / "text.wav";
    std::ofstream(file) << "no sound";
    std::string said;
    {
        FileSound sound(file, [&](const std::string& sentence) { said = sentence; });
        for (const float sample : wait(sound, 0, soundRate, 100))
            ASSERT_EQ(sample, 0);
    }
    EXPECT_TRUE(said.starts_with("The sound of \"text.wav\" cannot be read: ")) << said;
}

// In a performance it is at the time of the episode's clock, while it is the sound input.
TEST_F(FileSoundTest, isHeardInAReplayWhileItIsTheInput) {
    const auto file = tone(20, 48000);
    Performance made{.start = {.transport = Transport{.time = 7}.played(0),
                               .inputs = {{"audio", {.file = file.string()}}}}};
    made.changes = {{1, Performance::Input{"audio"}}};
    made.length = 2;
    PerformedSound replayed(std::make_shared<FileSound>(file, [](const std::string&) {}),
                            std::make_shared<const Performance>(made));
    std::vector<float> stereo(std::size_t{2} * soundRate);
    while (!replayed.samples(0.5, soundRate, stereo))
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    for (std::size_t at = 0; at < stereo.size(); at += 37) {
        const double time = 7.5 + secondsOf(at);
        ASSERT_NEAR(stereo[at], time < 8 ? toneAt(time, at % 2) : 0, 1e-3) << at;
    }
}

} // namespace
} // namespace tarnwick::player
