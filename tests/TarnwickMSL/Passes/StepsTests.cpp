// Each step alone on text, and the table of steps against docs/compiler.md. With TARNWICK_REWRITE=1
// the tests write the texts after the steps and the page's table anew; read the difference.
#include "TarnwickMSL/Translation/Passes.h"
#include "TarnwickMSL/Translation/Passes/Forms/Text.h"
#include "TarnwickMSL/Translation/Passes/Steps.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace tarnwick::msl::test {

namespace fs = std::filesystem;

static std::string contents(const fs::path& path) {
    std::ifstream stream(path);
    return {std::istreambuf_iterator<char>(stream), {}};
}

static bool rewrites() {
    return std::getenv("TARNWICK_REWRITE") != nullptr;
}

// "flow" of flow.ll and of flow.endless-loop.ll.
static std::string stepOf(const fs::path& before) {
    const std::string name = before.filename();
    return name.substr(0, name.find('.'));
}

// The texts before the steps: NAME.ll and NAME.SUBJECT.ll; their results are in ....after.ll, those
// of the last steps in ....after.spvasm and ....after.wgsl.
static std::vector<fs::path> befores() {
    std::vector<fs::path> found;
    for (const auto& entry : fs::directory_iterator(TARNWICK_STEPS))
        if (entry.path().extension() == ".ll" &&
            !entry.path().filename().string().ends_with(".after.ll"))
            found.push_back(entry.path());
    std::ranges::sort(found);
    return found;
}

static fs::path afterOf(fs::path before) {
    const std::string step = stepOf(before);
    return before.replace_extension(step == "spirv"  ? ".after.spvasm"
                                    : step == "wgsl" ? ".after.wgsl"
                                                     : ".after.ll");
}

TEST(Steps, doToEachTextWhatTheTextAfterItSays) {
    for (const fs::path& before : befores()) {
        SCOPED_TRACE(before.filename());
        const std::string after = runStep(stepOf(before), contents(before));
        if (rewrites())
            std::ofstream(afterOf(before)) << after;
        EXPECT_EQ(after, contents(afterOf(before)));
        EXPECT_NE(after, text(*readWork(contents(before)).work)) << "the step does nothing";
    }
}

TEST(Steps, haveEachATextThatShowsThem) {
    std::set<std::string> shown;
    for (const fs::path& before : befores())
        shown.insert(stepOf(before));
    for (const Step& step : steps())
        EXPECT_TRUE(shown.contains(std::string(step.name))) << step.name;
}

// A text has all that the next step needs: from text to text the steps give the SPIR-V that they
// give in one run.
TEST(Steps, runOneByOneAsTheyDoTogether) {
    std::string code = contents(fs::path(TARNWICK_STEPS) / "describe.ll");
    const ReadWork read = readWork(code);
    const std::vector<EntryPoint> together = runSteps(*read.program, read.entries);
    for (const Step& step : steps())
        if (step.language != Language::wgsl)
            code = runStep(step.name, code);
    ASSERT_EQ(together.size(), 1u);
    EXPECT_EQ(code, spirvText(together.front().words));
}

TEST(Steps, areTheTableOfThePage) {
    std::string page = contents(TARNWICK_COMPILER_PAGE);
    const std::size_t begin = page.find("| step | header |");
    ASSERT_NE(begin, page.npos);
    const std::size_t end = page.find("\n\n", begin) + 1;
    if (rewrites())
        std::ofstream(TARNWICK_COMPILER_PAGE)
            << page.substr(0, begin) + stepTable() + page.substr(end);
    EXPECT_EQ(page.substr(begin, end - begin), stepTable());
}

TEST(Steps, establishTheirRulesInOrder) {
    Form last = Form::any;
    for (const Step& step : steps())
        if (step.form != Form::any) {
            EXPECT_EQ(static_cast<int>(step.form), static_cast<int>(last) + 1) << step.name;
            last = step.form;
        }
    EXPECT_EQ(last, Form::bindings);
}

// The step leaves what the step `pointers` should have removed.
TEST(Steps, nameTheStepWhoseResultIsWrong) {
    const char* code =
        "define void @main() {\n  %a = alloca i32\n  %p = getelementptr i32, ptr %a, "
        "i32 1\n  %c = icmp eq ptr %a, %p\n  ret void\n}\n";
    try {
        (void)runStep("tidy", code);
        FAIL();
    } catch (const CompilerFault& fault) {
        EXPECT_EQ(fault.detail, "After the step 'tidy': Pointers are compared:   %c = icmp eq ptr "
                                "%a, %p.");
    }
}

TEST(Steps, refuseATextThatLacksWhatTheyNeed) {
    const auto saysOf = [](const char* step, const char* text) -> std::string {
        try {
            return runStep(step, text);
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
    };
    EXPECT_TRUE(saysOf("nothing", "").starts_with("There is no step 'nothing'. The steps are: "));
    EXPECT_EQ(saysOf("cut", ""), "The step 'cut' needs a line '; entry'.");
    EXPECT_EQ(saysOf("flow", ""), "The step 'flow' needs a function 'main'.");
    EXPECT_EQ(saysOf("flow", "; texture shape=5d"),
              "The field 'shape=5d' is invalid in the line '; texture shape=5d'.");
    EXPECT_TRUE(saysOf("flow", "define void").starts_with("The assembly is invalid: "));
}

} // namespace tarnwick::msl::test
