// exportSoak [EXPORTS] [SEED]: exports movies one after another in this process, of several kinds,
// sizes, codecs and lengths, with sound; some are cancelled. Prints what the process and its
// compiler take. Exits with 1 if that grows, or if a movie is not written.
#include "TarnwickBase/FreedMemory.h"
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickRender/VideoExporter.h"
#include "tests/reliability/Footprint.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

const std::array<std::string, 3> episodes{
    R"(float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {
    return float4(uv, 0.5 + 0.5 * sin(u.time * NUMBER), 1.0);
}
float2 sound(float t, constant Params& p) { return float2(0.2 * sin(t * 2000.0)); }
)",
    R"(// @particles 500
struct Particle { float2 at; };
Particle spawn(uint id, constant Params& p) { return {float2(0.1, 0.002 * float(id))}; }
void update(thread Particle& q, uint id, constant Uniforms& u, constant Params& p) {
    q.at.x = fract(q.at.x + 0.0001 * NUMBER * float(id));
}
float3 place(Particle q, constant Uniforms& u, constant Params& p) { return float3(q.at, 0.02); }
float4 ink(Particle q, float2 at, constant Uniforms& u, constant Params& p) { return float4(0.5); }
float4 fade(float2 uv, Trails t, constant Uniforms& u, constant Params& p) { return t.at(uv) * 0.9; }
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Trails t) { return t.at(uv); }
float2 sound(float t, constant Params& p) { return float2(0.2 * fract(t * 200.0)); }
)",
    R"(// @grid 8
struct Vertex { float4 position [[position]]; };
Vertex corner(float2 g, constant Uniforms& u, constant Params& p) {
    return {float4(g * sin(u.time * NUMBER), 0.5, 1.0)};
}
float4 shade(Vertex v, constant Uniforms& u, constant Params& p) { return float4(1.0); }
)"};

constexpr std::array presets{
    ExportPreset{"a", "", 160, 90, 30, 500'000, VideoCodec::h264},
    ExportPreset{"b", "", 320, 180, 30, 500'000, VideoCodec::hevc},
    ExportPreset{"c", "", 96, 64, 24, 0, VideoCodec::prores422},
    ExportPreset{"d", "", 64, 64, 25, 500'000, VideoCodec::hevcAlpha},
};

class Soak {
  public:
    Soak(gpu::Device& device, unsigned seed) : device_(device), random_(seed) {}

    // Whether one movie is written, or cancelled as asked.
    bool exportOne(const fs::path& folder) {
        const std::size_t which = below(episodes.size());
        std::string text = episodes[which];
        text.replace(text.find("NUMBER"), 6, std::to_string(0.5 + 0.001 * ++count_));
        const ExportPreset& preset = presets[below(presets.size())];
        const ExportSegment segment{.program = ShaderProgram::compile(Episode::of(text), device_,
                                                                      ShaderProgram::pixelFormat),
                                    .duration = 0.5 + static_cast<double>(below(20)) / 20,
                                    .sound = true};
        const fs::path file = folder / "movie";
        const bool isCancelled = below(10) == 0;
        try {
            VideoExporter::export_(
                {&segment, 1}, preset, device_, file,
                [&](std::int64_t done, std::int64_t) { return !isCancelled || done < 5; });
        } catch (const ExportError& error) {
            fs::remove(file);
            if (!isCancelled)
                std::printf("%s\n", error.what());
            return isCancelled;
        }
        return fs::file_size(file) > 0 && !isCancelled;
    }

  private:
    std::size_t below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }

    gpu::Device& device_;
    std::mt19937 random_;
    int count_ = 0;
};

int soak(long exports, unsigned seed) {
    const auto begin = std::chrono::steady_clock::now();
    const auto device = gpu::Device::systemDefault();
    if (!device)
        return 77;
    const TemporaryFolder folder;
    Soak soak(*device, seed);
    FootprintCourse course("exports");
    long failures = 0;
    for (long done = 1; done <= exports; ++done) {
        failures += soak.exportOne(folder.path()) ? 0 : 1;
        giveFreedMemoryBack();
        Footprint footprint = Footprint::present();
        for (const pid_t child : childProcesses())
            footprint += Footprint::of(child);
        course.add(done, footprint);
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    std::printf("seed %u: %ld exports, %ld failures, %.0f s\n", seed, exports, failures,
                time.count());
    return course.isFlat() && failures == 0 ? 0 : 1;
}

} // namespace
} // namespace tarnwick

int main(int count, char** words) {
    tarnwick::keepFreedMemory();
    return tarnwick::soak(count > 1 ? std::atol(words[1]) : 100,
                          count > 2 ? static_cast<unsigned>(std::atol(words[2])) : 1);
}
