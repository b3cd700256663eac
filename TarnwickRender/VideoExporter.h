// Writes programs' pictures and sound as a movie.
//
// The calling thread draws frame by frame: values and inputs at the frame's time, the picture, the
// crossfade, the watermark. The writer's threads encode a frame while the next one is drawn. The
// sound is a task on another thread.
#pragma once

#include "TarnwickCore/Movies/ExportPlan.h"
#include "TarnwickPlatform/Movie/MovieWriter.h"
#include "TarnwickRender/ExportError.h"
#include "TarnwickRender/ExportSegment.h"
#include "TarnwickRender/Pictures/PixelBufferTextures.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace tarnwick {

// Frames [first, end) of a movie.
struct FrameRange {
    std::int64_t first = 0, end = 0;

    std::int64_t count() const { return end - first; }
    bool operator==(const FrameRange&) const = default;
};

// Results beside the movie.
struct ExportNews {
    // A loop of an episode was ended. Set before the progress of the frame is reported.
    bool hitLoopBudget = false;
};

struct ExportDetails {
    // A part of the movie, to be joined with the others later. It begins at a multiple of
    // stretchLength(preset). The part from frame 0 on has all of the sound. Absent: the whole
    // movie.
    std::optional<FrameRange> frames{};
    std::vector<MovieChapter> chapters{};
    EncodingSpeed speed = EncodingSpeed::usual; // the same for all parts of a movie
    MovieWriterFactory makeWriter = MovieWriter::make;
    std::chrono::nanoseconds patience = std::chrono::seconds(60); // maximum wait for an input
    ColorConversionPlace colorConversion = ColorConversionPlace::chosen;
    ExportNews* news = nullptr;
    // Opens a device again after it was lost, and gives the same segments on it. May throw. The
    // export then goes on with the frame that was not done; its device may be lost again, but not
    // at the same frame. Absent: an export whose device is lost ends with ExportError::Render.
    std::function<ExportStage()> reopen{};
};

struct VideoExporter {
    // Called with the frames done and their total, also while no frame is finished. True: go on.
    // False: the export ends with ExportError::Cancelled.
    using Progress = std::function<bool(std::int64_t done, std::int64_t total)>;

    // Replaces `file`. Blocks until the movie is complete. Throws ExportError; a partial file may
    // remain then, and the caller removes it.
    static void export_(std::span<const ExportSegment> segments, const ExportPreset& preset,
                        gpu::Device& device, const std::filesystem::path& file,
                        const Progress& progress, const ExportDetails& details = {});
    // One program with its sound.
    static void export_(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                        const ExportPlan& plan, const ParamValues& values, bool watermark,
                        const std::filesystem::path& file, const Progress& progress,
                        const ExportDetails& details = {});

    // Frames of the whole movie. Throws ExportError for a duration that is too long or not finite.
    static std::int64_t frameCount(std::span<const ExportSegment> segments, std::int64_t fps);
    // The writer's settings for a preset.
    static VideoSettings videoSettings(const ExportPreset& preset);
};

} // namespace tarnwick
