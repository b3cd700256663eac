#include "TarnwickCore/Animation/KeyframeTracks.h"
#include "TarnwickCore/Live/AudioAnalyzer.h"
#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickWeb/WebDocument.h"
#include "TarnwickWeb/WebError.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdint>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

namespace tarnwick {
namespace {

using nlohmann::json;

constexpr std::string_view text =
    "// @episode 3 Two \"colours\"\n"
    "// @still inf\n"
    "// @length inf\n"
    "// @param red 0.1 0 1 How <b>red</b>\n"
    "// @param constructor 2 1 3\n"
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {"
    " return float4(p.red); }\n";

msl::EntryPoint finalPass(std::vector<msl::Resource> resources) {
    return {.name = "tw_fragment",
            .stage = msl::Stage::fragment,
            .text = "@fragment fn main() {}",
            .resources = std::move(resources)};
}

json documentOf(std::vector<msl::Resource> resources, const Settings& settings = {},
                std::string_view episode = text) {
    const WebProgram program{.functions = {finalPass(std::move(resources))}};
    return json::parse(webDocument(Episode::of(std::string(episode)), settings, program));
}

TEST(WebDocument, hasFiniteTimesAndTheValuesOfTheSettings) {
    Settings settings{.values = {{"constructor", 2.5f}}};
    settings.keys.set("red", 1, 0.2f, KeyframeTracks::Ease::hold);
    const json document = documentOf({}, settings);
    EXPECT_EQ(document["still"], EpisodeMeta().still);
    EXPECT_EQ(document["length"], EpisodeMeta().length);
    EXPECT_EQ(document["kind"], "fragment");
    EXPECT_EQ(document["title"], "Two \"colours\"");
    ASSERT_EQ(document["params"].size(), 2U);
    EXPECT_EQ(document["params"][0],
              json::parse(R"({"name":"red","value":0.1,"min":0,"max":1,"detail":"How <b>red</b>",
                              "keys":[{"time":1,"value":0.2,"ease":"hold"}]})"));
    EXPECT_EQ(document["params"][1]["value"], 2.5);
    EXPECT_EQ(document["functions"]["tw_fragment"]["code"], "@fragment fn main() {}");
}

TEST(WebDocument, tellsSamplersAsWebGPUHasThem) {
    const msl::SamplerState state{.t = msl::SamplerAddress::mirroredRepeat,
                                  .mag = msl::SamplerFilter::linear,
                                  .maxAnisotropy = 8};
    msl::SamplerState levels = state;
    levels.mip = msl::SamplerMipFilter::linear;
    const auto sampler = [](const msl::SamplerState& given) {
        return msl::Resource{.kind = msl::ResourceKind::constantSampler,
                             .binding = 35,
                             .samplerState = msl::packSampler(given)};
    };
    const json document = documentOf({sampler(state), sampler(levels)});
    const json& resources = document["functions"]["tw_fragment"]["resources"];
    const json& resource = resources[0];
    EXPECT_EQ(resource["kind"], "sampler");
    EXPECT_EQ(resource["binding"], 35);
    EXPECT_EQ(resource["sampler"],
              json::parse(R"({"u":"clamp-to-edge","v":"mirror-repeat","w":"clamp-to-edge",
                              "mag":"linear","min":"nearest","mip":"nearest","leastLevel":0,
                              "mostLevel":0.25,"anisotropy":1})"));
    EXPECT_EQ(resources[1]["sampler"]["mip"], "linear");
    EXPECT_EQ(resources[1]["sampler"]["mostLevel"], 1000);
}

TEST(WebDocument, refusesWhatNoPageHas) {
    const auto sentence = [](msl::Resource resource) {
        return thrownBy<WebError>([&] { documentOf({resource}); });
    };
    using Kind = msl::ResourceKind;
    EXPECT_EQ(sentence({.kind = Kind::storageTexture}),
              "The function tw_fragment takes an argument that pages do not have.");
}

TEST(WebDocument, keepsFramesOnlyIfTheyAreRead) {
    constexpr std::string_view inputs =
        "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in) {"
        " return in.previous(uv); }\n";
    const msl::Resource previous{.kind = msl::ResourceKind::sampledTexture,
                                 .index = ShaderAssembler::previousTexture};
    EXPECT_EQ(documentOf({previous}, {}, inputs)["readsPrevious"], true);
    EXPECT_EQ(documentOf({}, {}, inputs)["readsPrevious"], false);
    EXPECT_EQ(documentOf({}, {}, inputs)["usesInputs"], true);
}

// The files by which the player in JavaScript is tested too.
json sharedFile(const std::string& name) {
    std::ifstream file(WEB_TESTS + name);
    return json::parse(file);
}

// tests/web/values.test.js
TEST(WebValues, ofKeysAreThoseOfTheFile) {
    const json given = sharedFile("keys.json"), expected = sharedFile("values.json");
    const KeyframeTracks tracks = KeyframeTracks::decode(given.dump());
    ASSERT_EQ(tracks.tracks.size(), expected.size());
    for (const auto& [name, values] : expected.items())
        for (std::size_t at = 0; at < values.size(); ++at)
            EXPECT_EQ(tracks.value(name, given["times"][at].get<double>()), values[at].get<float>())
                << name << " at " << given["times"][at];
}

// tests/web/spectrum.test.js
TEST(WebValues, ofSoundAreThoseOfTheFile) {
    const auto sound = [](double scale) {
        std::uint32_t state = 1;
        std::vector<float> samples(AudioAnalyzer::window);
        for (std::size_t n = 0; n < samples.size(); ++n) {
            state = state * 1664525 + 1013904223;
            const double turn = 2 * std::numbers::pi * static_cast<double>(n) / 48000;
            samples[n] = static_cast<float>(scale * (0.5 * std::sin(440 * turn) +
                                                     0.1 * std::sin(5000 * turn) +
                                                     0.02 * static_cast<double>(state) / 0x1p32));
        }
        return samples;
    };
    const json expected = sharedFile("spectrum.json");
    AudioAnalyzer analyzer(48000, 256);
    analyzer.analyse(sound(1), 1.0 / 60);
    analyzer.analyse(sound(1.0 / 8), 0.1);
    ASSERT_EQ(expected["spectrum"].size(), analyzer.spectrum().size());
    for (std::size_t bin = 0; bin < analyzer.spectrum().size(); ++bin)
        EXPECT_NEAR(analyzer.spectrum()[bin], expected["spectrum"][bin].get<float>(), 1e-4) << bin;
    for (std::size_t band = 0; band < 4; ++band)
        EXPECT_NEAR(analyzer.bands()[band], expected["bands"][band].get<float>(), 1e-4) << band;
}

} // namespace
} // namespace tarnwick
