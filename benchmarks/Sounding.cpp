#include "benchmarks/Sounding.h"

#include "TarnwickRender/AudioRenderer.h"
#include "TarnwickRender/SoundTap.h"
#include "benchmarks/Statistics.h"

namespace tarnwick::bench {

namespace {

constexpr int renders = 9, frames = 600, blocks = 5000;

constexpr const char* episode = R"(// @param tone 220 20 2000 Hertz
float2 sound(float t, constant Params& p) {
    float first = sin(6.2831853 * fract(p.tone * t));
    float second = sin(6.2831853 * fract(1.5 * p.tone * t) + 0.5 * first);
    return 0.4 * float2(first + 0.3 * second, second + 0.3 * first);
}
float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {
    return float4(in.audio);
}
)";

// The first run warms up and is not counted.
template <class Work> double medianTime(int times, Work&& work) {
    std::vector<double> all;
    for (int time = 0; time <= times; time++) {
        const double took = milliseconds([&] { work(time); });
        if (time > 0)
            all.push_back(took);
    }
    return median(all);
}

double analyseTime(const std::vector<float>& samples) {
    AudioAnalyzer analyzer(ShaderAssembler::sampleRate, ShaderAssembler::spectrumBins);
    const std::span<const float> mono(samples);
    const std::size_t room = samples.size() - AudioAnalyzer::window;
    return medianTime(blocks, [&](int block) {
        const std::size_t from = static_cast<std::size_t>(block) * 800 % room;
        analyzer.analyse(mono.subspan(from, AudioAnalyzer::window), 1.0 / 60);
    });
}

} // namespace

SoundSpeed soundSpeed(gpu::Device& device) {
    const std::shared_ptr<const ShaderProgram> program =
        ShaderProgram::compile(Episode::of(episode), device, ShaderProgram::pixelFormat);
    const auto tap = SoundTap::make(program, device);
    if (!tap)
        throw gpu::DeviceError("The device cannot make the sound inputs.");
    std::vector<float> samples;
    SoundSpeed speed;
    speed.render = medianTime(renders, [&](int) {
        auto rendered = AudioRenderer::render(program, device, 0, SoundSpeed::duration, {});
        if (!rendered)
            throw gpu::DeviceError("The device cannot render sound.");
        samples = *std::move(rendered);
    });
    speed.inputs = medianTime(frames, [&](int frame) { tap->inputs(1 + frame / 60.0, {}); });
    speed.analyse = analyseTime(AudioAnalyzer::mono(samples));
    return speed;
}

} // namespace tarnwick::bench
