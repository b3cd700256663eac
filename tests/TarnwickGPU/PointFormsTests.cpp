// The modules that draw points, of all pairs of functions in the compiler's corpus.
#include "TarnwickGPU/Points/PointForms.h"
#include "TarnwickGPU/Points/PointKernel.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "tests/TarnwickMSL/ProgramTexts.h"

#include <gtest/gtest.h>

namespace tarnwick::gpu {
namespace {

int checked = 0;

void expectValid(const std::vector<std::uint32_t>& words, const msl::EntryPoint& vertex,
                 const msl::EntryPoint& fragment) {
    ++checked;
    EXPECT_EQ(msl::spirvFaults(words), "") << vertex.name << ", " << fragment.name;
}

void expectValidForms(const msl::EntryPoint& vertex, const msl::EntryPoint& fragment) {
    PointPair pair = pointPair(vertex, fragment);
    pair.addsUp = true;
    for (const PointForm form : {PointForm::points, PointForm::quads}) {
        expectValid(vertexForm(pair, form), vertex, fragment);
        expectValid(fragmentForm(pair, form), vertex, fragment);
    }
    PointKernelNeeds needs{.vertex = &vertex, .drawsBinding = 100, .sumsBinding = 101};
    for (const msl::EntryPoint* drawn : {static_cast<const msl::EntryPoint*>(nullptr), &fragment}) {
        needs.fragment = drawn;
        if (const auto kernel = pointKernel(needs))
            expectValid(*kernel, vertex, fragment);
    }
}

} // namespace

TEST(PointForms, areValid) {
    for (const ProgramText& text : programTexts(TARNWICK_CORPUS)) {
        const msl::Compilation program = msl::compile(text.text);
        for (const msl::EntryPoint& vertex : program.entryPoints)
            for (const msl::EntryPoint& fragment : program.entryPoints)
                if (vertex.stage == msl::Stage::vertex && takesPointForms(vertex) &&
                    fragment.stage == msl::Stage::fragment)
                    expectValidForms(vertex, fragment);
    }
    EXPECT_GT(checked, 100);
}

} // namespace tarnwick::gpu
