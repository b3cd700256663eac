// Writes programs' pictures and sound as a movie.
//
// Frame by frame on the calling thread: parameters and inputs at the frame's time, the picture on
// the GPU, the crossfade and the watermark over it, then into the writer, whose threads encode
// while the next frame is drawn. The sound is a task of its own.
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

// Frames of a movie, from `first` up to, not including, `end`.
struct FrameRange {
    std::int64_t first = 0, end = 0;

    std::int64_t count() const { return end - first; }
    bool operator==(const FrameRange&) const = default;
};

// What becomes known besides the movie.
struct ExportNews {
    // A loop of an episode was ended; known when the progress of the first such frame is told.
    bool hitLoopBudget = false;
};

struct ExportDetails {
    // A part of the movie, which begins at a multiple of stretchLength(preset), to be put together
    // with others later; the one from frame 0 on has all of the sound. Absent: the whole movie.
    std::optional<FrameRange> frames{};
    std::vector<MovieChapter> chapters{};
    EncodingSpeed speed = EncodingSpeed::usual; // the same for all parts of a movie
    MovieWriterFactory makeWriter = MovieWriter::make;
    std::chrono::nanoseconds patience = std::chrono::seconds(60); // with an input that is not ready
    ColorConversionPlace colorConversion = ColorConversionPlace::chosen;
    ExportNews* news = nullptr;
};

struct VideoExporter {
    // Told of the frames that are done and of all that there will be, at times without a new one;
    // true means to go on, false ends the export with ExportError::Cancelled.
    using Progress = std::function<bool(std::int64_t done, std::int64_t total)>;

    // Removes a file of that name first. Throws ExportError; a partial file may remain then, which
    // is the caller's to remove. Blocks until the movie is complete.
    static void export_(std::span<const ExportSegment> segments, const ExportPreset& preset,
                        gpu::Device& device, const std::filesystem::path& file,
                        const Progress& progress, const ExportDetails& details = {});
    // One program with its sound.
    static void export_(const std::shared_ptr<const ShaderProgram>& program, gpu::Device& device,
                        const ExportPlan& plan, const ParamValues& values, bool watermark,
                        const std::filesystem::path& file, const Progress& progress,
                        const ExportDetails& details = {});

    // Frames of the whole movie. Throws ExportError where a duration cannot be counted in frames.
    static std::int64_t frameCount(std::span<const ExportSegment> segments, std::int64_t fps);
    // What a preset asks of the writer.
    static VideoSettings videoSettings(const ExportPreset& preset);
};

} // namespace tarnwick
