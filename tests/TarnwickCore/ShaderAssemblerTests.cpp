#include "TarnwickCore/Episode/ShaderKind.h"
#include "TarnwickCore/Episode/ShaderTemplate.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace tarnwick;

static std::string fileText(const std::string& name) {
    std::ifstream file(PROGRAMS + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

static AssembledShader assembled(std::string_view episode) {
    return ShaderAssembler::assemble(episode);
}

struct Program : testing::TestWithParam<const char*> {};

TEST_P(Program, isAssembledByteForByte) {
    const std::string name = GetParam();
    EXPECT_EQ(assembled(fileText(name + ".metal")).source, fileText(name + ".metal.txt"));
}

INSTANTIATE_TEST_SUITE_P(ShaderAssembler, Program,
                         testing::Values("plain", "sound", "inputs", "particles", "fade", "grid",
                                         "background"),
                         [](const auto& row) { return std::string(row.param); });

TEST(ShaderAssembler, describesEachKind) {
    const AssembledShader sound = assembled(fileText("sound.metal"));
    EXPECT_TRUE(sound.hasSound && !sound.isParticles() && !sound.isMesh() && !sound.usesInputs);
    EXPECT_EQ(sound.params.size(), 2u);
    EXPECT_TRUE(assembled(fileText("inputs.metal")).usesInputs);
    const AssembledShader fade = assembled(fileText("fade.metal"));
    EXPECT_TRUE(fade.particles == 1000 && fade.hasFade && !fade.hasBackground);
    const AssembledShader background = assembled(fileText("background.metal"));
    EXPECT_TRUE(background.grid == 8 && background.particles == 0 && background.hasBackground);
}

TEST(ShaderAssembler, capsTheDirectives) {
    EXPECT_EQ(ShaderAssembler::particleCount("// @particles 9000000"), 4000000);
    EXPECT_EQ(ShaderAssembler::gridSize("\t//@grid\t5000 "), 1024);
    EXPECT_EQ(ShaderAssembler::gridSize("// @grid 99999999999999999999"), 1024);
    EXPECT_EQ(ShaderAssembler::gridSize("// @grid x\n// @grid 7\n// @grid 9"), 7);
    EXPECT_EQ(ShaderAssembler::gridSize("// @grid 7 cells"), 0);
    EXPECT_EQ(assembled("// @particles 0").particles, 0);
    EXPECT_EQ(assembled("// @grid 0\n// @particles 5").particles, 5);
}

TEST(ShaderAssembler, findsInputsInTheParametersOfShadeOnly) {
    const std::string_view shade = "float4 shade(float2 uv, constant Params& p, Inputs in)";
    EXPECT_TRUE(ShaderAssembler::usesInputs(shade));
    EXPECT_TRUE(
        ShaderAssembler::usesInputs("float f() { return 1; }\nfloat4\n\nshade (float2 uv, // a)\n"
                                    " Inputs in"));
    for (const char* text :
         {"// float4 shade(float2 uv, Inputs in)", "float4 shade(float2 uv) { Inputs in; }",
          "float4 shade(float2 uv, MyInputs in)", "float4 shades(Inputs in)"})
        EXPECT_FALSE(ShaderAssembler::usesInputs(text)) << text;
    const AssembledShader particles = assembled("// @particles 5\n" + std::string(shade));
    EXPECT_TRUE(particles.isParticles() && !particles.usesInputs);
}

TEST(ShaderAssembler, findsADefinitionOnlyAtTheBeginningOfALine) {
    EXPECT_TRUE(ShaderAssembler::definesSound("    float2 sound(float t, constant Params& p)"));
    EXPECT_FALSE(ShaderAssembler::definesSound("static float2 sound(float t, constant Params& p)"));
    EXPECT_FALSE(ShaderAssembler::definesSound("float2 sounds(float t)"));
}

TEST(ShaderKind, isReadFromItsRawValue) {
    for (const ShaderKind kind : {ShaderKind::fragment, ShaderKind::particles, ShaderKind::grid})
        EXPECT_EQ(shaderKindNamed(rawValue(kind)), kind);
    EXPECT_FALSE(shaderKindNamed("Grid"));
}

TEST(ShaderKind, isReadFromTheDirectivesWithParticlesFirst) {
    EXPECT_EQ(shaderKindOf("// @grid 16\n// @particles 1000"), ShaderKind::particles);
    EXPECT_EQ(shaderKindOf("// @particles 0\n// @grid 16"), ShaderKind::grid);
    EXPECT_EQ(shaderKindOf("// @grid many"), ShaderKind::fragment);
}

TEST(ShaderTemplate, isAnEpisodeAfterItsTitle) {
    const std::string plain = ShaderTemplate::newShader("Waves");
    EXPECT_TRUE(plain.starts_with("// Waves\n//\n// @still 4\n"));
    const AssembledShader shader = assembled(plain);
    EXPECT_TRUE(shader.hasSound && !shader.usesInputs && shader.params.size() == 3);
    const std::string inputs = ShaderTemplate::inputsShader("Waves");
    EXPECT_TRUE(inputs.starts_with("// Waves\n//\n// @still 4\n") && inputs.ends_with("\n}\n"));
    EXPECT_TRUE(assembled(inputs).usesInputs);
}
