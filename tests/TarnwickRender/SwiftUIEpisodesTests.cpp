// The episodes that can be SwiftUI colour effects show the same picture as those.
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/SwiftUIExport.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "tests/TarnwickRender/EpisodeFiles.h"
#include "tests/TarnwickRender/Rendering.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

using namespace tarnwick;

namespace {

namespace fs = std::filesystem;

// The exported Metal file as an episode of its own, which calls the effect as SwiftUI does: with
// points from the upper left and their scale. This compiler has no stitchable functions and there
// is no SwiftUI here, so a few lines stand in for both.
std::string asEpisode(const std::string& source) {
    auto output = SwiftUIExport::make(source, "Effect");
    const std::string header = "#include <SwiftUI/SwiftUI_Metal.h>";
    output.metal.replace(output.metal.find(header), header.size(),
                         "namespace SwiftUI {}\n#define stitchable");
    std::string arguments;
    for (const ParamDecl& param : ParamParser::parse(source))
        arguments += ", p." + param.name;
    return output.metal +
           "\nfloat4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
           "    const float scale = 2.0;\n"
           "    const float2 size = u.resolution / scale;\n"
           "    const float2 position = float2(uv.x, 1.0 - uv.y) * size;\n"
           "    return float4(effect(position, half4(0.0), size, scale, u.time" +
           arguments +
           "));\n}\n"
           "float2 sound(float t, constant Params& p) { return float2(0.0); }\n";
}

struct SwiftUIEpisodes : tests::Rendering {};

} // namespace

TEST_F(SwiftUIEpisodes, drawTheSamePicture) {
    std::vector<std::string> drawn;
    for (const auto& path : episodeFiles()) {
        const std::string source = fileText(path).value();
        std::string effect;
        try {
            effect = asEpisode(source);
        } catch (const SwiftUIExport::Problem&) {
            continue;
        }
        const auto time = static_cast<float>(EpisodeMeta::parse(source).still);
        const Picture wanted = still(source, 96, 54, time);
        const Picture met = still(effect, 96, 54, time);
        ASSERT_EQ(met.bytes.size(), wanted.bytes.size());
        int worst = 0;
        int sum = 0;
        for (std::size_t index = 0; index < met.bytes.size(); ++index) {
            const int difference = std::abs(int{met.bytes[index]} - int{wanted.bytes[index]});
            worst = std::max(worst, difference);
            sum += difference;
        }
        // A colour effect's half has 11 bits, so only what lies between two steps may fall apart.
        EXPECT_LE(worst, 2) << path;
        EXPECT_LE(sum, static_cast<int>(met.bytes.size() / 50)) << path;
        drawn.push_back(path.stem());
    }
    EXPECT_GE(drawn.size(), 4u);
}
