#include "TarnwickRender/ShaderError.h"

#include <gtest/gtest.h>

using namespace tarnwick;

static const std::string outside = "tw_host:5:3: error: use of undeclared identifier 'shade'\n";
static const std::string inside = "shader.metal:5:3: error: expected ';'\n"
                                  "tw_host:9:9: warning: unused variable 'x'\n";

TEST(ShaderError, listsWhatAnEpisodeDefinesWhereOneSeemsToLackIt) {
    const ShaderError grid = compilerError({.particles = 5, .grid = 3}, outside);
    ASSERT_EQ(grid.diagnostics.size(), 2u);
    const std::string hint =
        "a vertex episode defines:\n" + std::string(ShaderAssembler::meshSignatures);
    EXPECT_EQ(grid.diagnostics[1], (Diagnostic{Severity::note, 0, 0, hint}));
    EXPECT_EQ(grid.raw, outside + "\nnote: " + hint);
    EXPECT_EQ(grid.what(), grid.raw);

    const ShaderError particles = compilerError({.particles = 5}, outside);
    ASSERT_EQ(particles.diagnostics.size(), 2u);
    EXPECT_TRUE(particles.diagnostics[1].message.starts_with(
        "a particle episode defines:\nstruct Particle { ... };\n"));
}

TEST(ShaderError, leavesTheCompilersTextAloneOtherwise) {
    EXPECT_EQ(compilerError({}, outside).raw, outside);
    EXPECT_EQ(compilerError({.grid = 3}, inside).raw, inside);
    EXPECT_EQ(compilerError({.grid = 3}, inside).diagnostics.size(), 2u);
    const ShaderError crash = compilerError({.grid = 3}, outside, Fault::ofCompiler);
    EXPECT_EQ(crash.raw, outside);
    EXPECT_EQ(crash.diagnostics.size(), 1u);
}
