#include "benchmarks/ExportMemory.h"

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickRender/VideoExporter.h"

#include <sys/resource.h>

#include <cstdio>
#include <stdexcept>

namespace tarnwick::bench {

namespace {

// Small and fast, with all parts of an export: pictures, sound and a watermark.
constexpr ExportPreset preset{"", "", 64, 64, 60, 200'000, VideoCodec::h264};
constexpr const char* episode =
    R"(float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(uv, 0.5 + 0.5 * sin(u.time), 1.0);
}
float2 sound(float t, constant Params& p) {
    return 0.2 * sin(6.2831853 * fract(220.0 * t));
}
)";

void exportFrames(gpu::Device& device, std::int64_t frames) {
    const TemporaryFolder folder;
    const auto program =
        ShaderProgram::compile(Episode::of(episode), device, ShaderProgram::pixelFormat);
    const double duration = static_cast<double>(frames) / static_cast<double>(preset.fps);
    VideoExporter::export_(program, device, ExportPlan(preset, 0, duration), {}, true,
                           folder.path() / "movie.mp4",
                           [](std::int64_t, std::int64_t) { return true; });
}

double peakOf(const std::string& self, std::int64_t frames) {
    const std::string command = "'" + self + "' --export-peak " + std::to_string(frames);
    double peak = 0;
    if (FILE* process = popen(command.c_str(), "r")) {
        if (std::fscanf(process, "%lf", &peak) != 1)
            peak = 0;
        if (pclose(process) == 0 && peak > 0)
            return peak;
    }
    throw std::runtime_error("A process did not export " + std::to_string(frames) + " frames.");
}

} // namespace

std::vector<ExportMemory> exportMemory(const std::string& self,
                                       const std::vector<std::int64_t>& frames) {
    std::vector<ExportMemory> all;
    for (const std::int64_t count : frames)
        all.push_back({count, peakOf(self, count)});
    return all;
}

int printExportPeak(std::int64_t frames) {
    const auto device = gpu::Device::systemDefault();
    if (!device) {
        std::fputs("There is no Vulkan device.\n", stderr);
        return 1;
    }
    exportFrames(*device, frames);
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%f\n", static_cast<double>(usage.ru_maxrss) * 1024 / 1e6);
    return 0;
}

} // namespace tarnwick::bench
