#include "benchmarks/Exporting.h"

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Movie/MovieError.h"
#include "TarnwickRender/Movies/MovieFrames.h"
#include "TarnwickRender/Pictures/PixelBufferTextures.h"
#include "TarnwickRender/VideoExporter.h"
#include "benchmarks/Case.h"

#include <thread>

namespace tarnwick::bench {

namespace {

// The movie of one episode, drawn, encoded and exported any number of times.
class Movie {
  public:
    Movie(gpu::Device& device, const ExportCase& one);
    Movie(const Movie&) = delete;
    Movie& operator=(const Movie&) = delete;

    void draw();
    void encode();
    void export_();

  private:
    gpu::Device& device_;
    const ExportCase& case_;
    VideoSettings settings_;
    ExportSegment segment_;
    ExportTimeline timeline_;
    std::unique_ptr<PixelBufferTextures> textures_;
    std::vector<std::shared_ptr<PixelBuffer>> pictures_; // all frames of the movie
    TemporaryFolder folder_;
};

Movie::Movie(gpu::Device& device, const ExportCase& one)
    : device_(device), case_(one), settings_(VideoExporter::videoSettings(one.preset)) {
    const ExportPreset& preset = one.preset;
    segment_.program = ShaderProgram::compile(Episode::of(fileText(one.episode)), device,
                                              ShaderProgram::pixelFormat);
    segment_.duration = static_cast<double>(one.frames) / static_cast<double>(preset.fps);
    timeline_ = ExportTimeline::of({&segment_, 1}, preset.fps);
    const PixelFormat format = videoCodecRow(settings_.codec).pixelFormat;
    textures_ = PixelBufferTextures::make(device, preset.width, preset.height, format,
                                          ColorConversionPlace::chosen);
    if (!textures_)
        throw gpu::DeviceError("The device has no textures of the size of a movie.");
    settings_.source = textures_->source();
    const bool isConverted = settings_.source == VideoSettings::Source::converted;
    PixelBufferPool pool(isConverted ? format : PixelFormat::bgra, preset.width, preset.height,
                         one.frames, textures_->allocator());
    while (auto picture = pool.take())
        pictures_.push_back(std::move(picture));
    if (std::ssize(pictures_) < one.frames)
        throw gpu::DeviceError("The device has no memory for a movie's frames.");
}

void Movie::draw() {
    MovieFrames frames(timeline_, device_, *PixelSize::of(settings_.width, settings_.height));
    for (std::size_t index = 0; index < pictures_.size(); ++index) {
        const PixelBuffer& picture = *pictures_[index];
        frames.draw(
            static_cast<std::int64_t>(index), textures_->target(picture), [] {},
            [&](gpu::CommandBuffer& commands) {
                return textures_->encodeConversion(commands, picture);
            });
        textures_->finish(picture);
    }
}

void Movie::encode() {
    const auto writer = MovieWriter::make(folder_.path() / "encoded.mp4", MovieFileType::mpeg4);
    VideoInput* input = writer->add(settings_);
    if (input == nullptr || !writer->startWriting())
        throw MovieError(writer->errorText().value_or("The writer does not start."));
    const auto fps = static_cast<std::int32_t>(settings_.framesPerSecond);
    writer->startSession({0, fps});
    for (std::size_t index = 0; index < pictures_.size(); ++index) {
        while (!input->isReadyForMoreMediaData() && writer->status() == MovieWriterStatus::writing)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (!input->append(pictures_[index], {static_cast<std::int64_t>(index), fps}))
            break;
    }
    writer->finishWriting();
    if (writer->status() != MovieWriterStatus::completed)
        throw MovieError(writer->errorText().value_or("The writer does not accept a frame."));
}

void Movie::export_() {
    VideoExporter::export_({&segment_, 1}, case_.preset, device_, folder_.path() / "exported.mp4",
                           [](std::int64_t, std::int64_t) { return true; });
}

Sample shortestOf(const std::vector<ExportTime>& times, Sample ExportTime::*part) {
    std::vector<Sample> samples;
    for (const ExportTime& one : times)
        samples.push_back(one.*part);
    return shortest(samples);
}

} // namespace

std::vector<ExportCase> exportCases(const std::filesystem::path& shaders,
                                    const std::filesystem::path& episodes) {
    struct Row {
        const char* name;
        std::filesystem::path episode;
        std::int64_t small, large; // frames of either size, so that a movie takes some seconds
    };
    std::vector<ExportCase> cases;
    for (const Row& row : {Row{"light", shaders / "gradient.metal", 180, 120},
                           Row{"medium", episodes / "rose-window.metal", 120, 90},
                           Row{"heavy", episodes / "moon-lotus.metal", 96, 90}}) {
        const std::string name = std::string("export ") + row.name;
        cases.push_back({name + " 1280x720", row.episode, ExportPreset::site, row.small});
        cases.push_back({name + " 1920x1080", row.episode, ExportPreset::web, row.large});
    }
    return cases;
}

ExportTimes exportTimes(gpu::Device& device, const ExportCase& one, int rounds) {
    Movie movie(device, one);
    movie.draw();
    std::vector<ExportTime> times;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        ExportTime time{.cores = std::max(std::thread::hardware_concurrency(), 1U)};
        time.drawing = sample([&] { movie.draw(); });
        time.encoding = sample([&] { movie.encode(); });
        time.exporting = sample([&] { movie.export_(); });
        times.push_back(time);
        ratios.push_back(time.ratio());
    }
    return {.shortest = {.drawing = shortestOf(times, &ExportTime::drawing),
                         .encoding = shortestOf(times, &ExportTime::encoding),
                         .exporting = shortestOf(times, &ExportTime::exporting),
                         .cores = times.front().cores},
            .medianRatio = median(ratios)};
}

} // namespace tarnwick::bench
