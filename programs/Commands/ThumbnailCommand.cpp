// tarnwick thumbnail: the small picture of an episode that a file manager shows.
#include "TarnwickPlatform/Pictures/PNG.h"
#include "programs/CommandLine/Output.h"
#include "programs/Commands/Command.h"
#include "programs/Episode/DrawingDevice.h"
#include "programs/Episode/EpisodeFile.h"
#include "programs/Episode/EpisodePicture.h"
#include "programs/Episode/EpisodeProgram.h"
#include "programs/Episode/EpisodeSettings.h"

#include <sys/resource.h>

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>

namespace tarnwick {
namespace {

// Ends the process if it is not destroyed within the time: a driver cannot be stopped.
class TimeLimit {
  public:
    TimeLimit(double seconds, std::string sentence)
        : thread_([this, seconds, sentence = std::move(sentence)](const std::stop_token& stop) {
              std::unique_lock lock(mutex_);
              if (ended_.wait_for(lock, stop, std::chrono::duration<double>(seconds),
                                  [&] { return stop.stop_requested(); }))
                  return;
              tell(sentence);
              std::_Exit(static_cast<int>(Status::failed));
          }) {}

  private:
    std::mutex mutex_;
    std::condition_variable_any ended_;
    std::jthread thread_; // asks it to stop
};

// As wide as a movie: 16:9.
PixelSize thumbnailSize(const Arguments& arguments) {
    const auto width = static_cast<std::uint32_t>(arguments.integerOf("--size"));
    return {width, width * 9 / 16};
}

// A file manager may start one for each file of a folder.
void lowerPriority() {
    constexpr int lowest = 19;
    setpriority(PRIO_PROCESS, 0, lowest);
}

// A file manager makes the file, empty, and may read it by the descriptor that it has (Tumbler
// does). So it is written in place, not replaced.
void write(const Output& out, const std::string& bytes) {
    std::error_code absent;
    if (!std::filesystem::is_empty(out.name(), absent) || absent) {
        out.write(bytes);
        return;
    }
    std::ofstream stream(out.name(), std::ios::binary);
    if (!(stream << bytes).flush())
        failure(out.name() + " cannot be written.");
}

// Nothing is written before it ends, so that no unfinished file remains.
Picture drawnInTime(const EpisodeFrame& frame, const Arguments& arguments) {
    const TimeLimit limit(arguments.numberOf("--limit"),
                          frame.episode.path + " takes longer than " +
                              std::string(arguments.textOf("--limit")) + " seconds to draw.");
    return DrawingDevice().with([&](gpu::Device& device) { return pictureOf(frame, device); });
}

Status thumbnail(const Arguments& arguments) {
    const auto out =
        Output::at(arguments.textOf("-o"), FileKind::pngPicture, arguments.wordsBeside("-o"));
    out.check();
    lowerPriority();
    EpisodeFrame frame{.episode = episodeAt(arguments.operand()), .size = thumbnailSize(arguments)};
    frame.time = stillTime(frame.episode);
    frame.frame = savedFrame(frame.time);
    frame.timeline = episodeSettingsOf(arguments, frame.episode);
    write(out, pngOf(drawnInTime(frame, arguments)));
    return Status::done;
}

constexpr auto thumbnailOptions =
    joined(std::array<Option, 3>{{
               {.name = "-o",
                .value = "OUT",
                .help = "the picture, a PNG file of any name",
                .values = FileName{},
                .isRequired = true},
               {.name = "--size",
                .value = "PIXELS",
                .help = "width of the picture; its height is 9/16 of it",
                .values = WholeNumber{.least = 16, .most = 4096, .unit = "pixels"},
                .byDefault = "256"},
               {.name = "--limit",
                .value = "SECONDS",
                .help = "time after which the command fails",
                .values = Number{.most = 3600, .unit = "seconds", .excludesLeast = true},
                .byDefault = "20"},
           }},
           settingsOptions);

} // namespace

const Command thumbnailCommand{.name = "thumbnail",
                               .operands = "EPISODE",
                               .summary =
                                   "Draws the small still of the episode that a file manager "
                                   "shows, at the lowest priority.",
                               .options = thumbnailOptions,
                               .run = thumbnail};

} // namespace tarnwick
