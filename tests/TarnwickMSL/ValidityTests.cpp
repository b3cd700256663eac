// Every module that the compiler makes is valid: of the corpus, the episodes, random programs.
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace tarnwick {

namespace {

std::vector<std::filesystem::path> programsIn(const char* folder) {
    std::vector<std::filesystem::path> programs;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".metal")
            programs.push_back(entry.path());
    return programs;
}

std::string text(const std::filesystem::path& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void expectValid(const std::string& name, const std::string& source) {
    msl::Compilation compilation = msl::compile(source);
    EXPECT_FALSE(compilation.failed) << name << "\n" << compilation.messages;
    EXPECT_FALSE(compilation.entryPoints.empty()) << name;
    for (const msl::EntryPoint& entry : compilation.entryPoints)
        EXPECT_EQ(msl::spirvFaults(entry.words), "") << name << ", " << entry.name;
}

} // namespace

TEST(Validity, ofTheCorpus) {
    for (const auto& path : programsIn(TARNWICK_CORPUS))
        expectValid(path.filename(), text(path));
}

TEST(Validity, ofTheEpisodes) {
    for (const auto& path : programsIn(TARNWICK_EPISODES))
        expectValid(path.filename(), ShaderAssembler::assemble(text(path)).source);
}

TEST(Validity, ofRandomPrograms) {
    for (std::uint64_t seed = 1; seed <= 30; ++seed)
        expectValid("seed " + std::to_string(seed), trials::metalSource(seed));
}

} // namespace tarnwick
