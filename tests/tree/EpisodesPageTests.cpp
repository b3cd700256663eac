#include "TarnwickCore/ShaderAssembler.h"
#include "tests/tree/Tree.h"

#include <gtest/gtest.h>

#include <regex>

namespace tarnwick {
namespace {

std::string episodesPage() {
    std::string page;
    for (const std::string& line : linesOf(std::filesystem::path(TREE_ROOT) / "docs/episodes.md"))
        page += line + "\n";
    return page;
}

TEST(EpisodesPage, givesTheSignatureOfEveryFunction) {
    const std::string page = episodesPage();
    std::string wanted =
        "float4 shade(float2 uv, constant Uniforms& u, constant Params& p)\n"
        "float4 shade(float2 uv, constant Uniforms& u, constant Params& p, Inputs in)\n"
        "float2 sound(float t, constant Params& p)\n";
    wanted.append(ShaderAssembler::particleSignatures).append("\n");
    wanted.append(ShaderAssembler::meshSignatures).append("\n");
    const std::regex declaration(R"((struct|Particle|Vertex|void|float\d) \w+ ?[({].*)");
    int count = 0;
    for (std::sregex_iterator match(wanted.begin(), wanted.end(), declaration), end; match != end;
         ++match, ++count)
        EXPECT_NE(page.find(match->str()), std::string::npos) << match->str();
    EXPECT_EQ(count, 14);
}

TEST(EpisodesPage, namesEveryMemberOfTheHostsRecords) {
    const std::string page = episodesPage();
    const std::string program =
        ShaderAssembler::assemble("float4 shade(float2 uv, constant Uniforms& u, "
                                  "constant Params& p, Inputs in) { return 0; }\n")
            .source;
    const std::regex member(R"(\n    (?:float\d?|uint|texture2d<float>) +(\w+)(?:;|\())");
    int count = 0;
    for (std::sregex_iterator match(program.begin(), program.end(), member), end; match != end;
         ++match, ++count) {
        const std::string name = (*match)[1];
        if (name == "pad" || name == "unused" || name == "position" || name == "uv")
            continue;
        const bool isRange = name == "channel1" || name == "channel2"; // channel0 ... channel3
        EXPECT_TRUE(isRange || page.find("`" + name + "`") != std::string::npos ||
                    page.find("`in." + name) != std::string::npos)
            << name;
    }
    EXPECT_GE(count, 16);
}

} // namespace
} // namespace tarnwick
