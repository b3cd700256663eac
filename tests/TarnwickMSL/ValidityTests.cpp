// Every module that the compiler makes is valid: of the corpus, the episodes, random programs.
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "tests/TarnwickMSL/ProgramTexts.h"
#include "tests/TarnwickMSL/RandomPrograms/Metal.h"
#include "tests/TarnwickMSL/RandomPrograms/RandomProgram.h"

#include <gtest/gtest.h>

#include <string>

namespace tarnwick {

namespace {

void expectValid(const std::string& name, const std::string& source) {
    msl::Compilation compilation = msl::compile(source);
    EXPECT_FALSE(compilation.failed) << name << "\n" << compilation.messages;
    EXPECT_FALSE(compilation.entryPoints.empty()) << name;
    for (const msl::EntryPoint& entry : compilation.entryPoints)
        EXPECT_EQ(msl::spirvFaults(entry.words), "") << name << ", " << entry.name;
}

} // namespace

TEST(Validity, ofTheCorpus) {
    for (const ProgramText& program : programTexts(TARNWICK_CORPUS))
        expectValid(program.name, program.text);
}

TEST(Validity, ofTheEpisodes) {
    for (const ProgramText& episode : programTexts(TARNWICK_EPISODES))
        expectValid(episode.name, ShaderAssembler::assemble(episode.text).source);
}

TEST(Validity, ofRandomPrograms) {
    for (std::uint64_t seed = 1; seed <= 30; ++seed)
        expectValid("seed " + std::to_string(seed),
                    trials::metalSource(trials::randomProgram(seed)));
}

} // namespace tarnwick
