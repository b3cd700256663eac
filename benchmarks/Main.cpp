// tarnwick-bench: compile, draw and play times beside hand-written GLSL and Vulkan, as ratios of
// one run, how fast sound is evaluated and heard, and how fast text and data are read.
#include "TarnwickBase/FreedMemory.h"
#include "benchmarks/Compiling.h"
#include "benchmarks/Report.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

namespace {

using namespace tarnwick::bench;

constexpr const char* use =
    R"(Use: tarnwick-bench [--only NAME] [--compile-rounds N] [--draw-rounds N] [--play-rounds N]

Measures, over the shaders of benchmarks/shaders and their hand-written GLSL twins:
  (a) milliseconds from source text to all SPIR-V, warm, ours beside shaderc with its optimiser;
  (b) milliseconds to draw 1280 by 720 pixels, our module against the twin's, in turns;
and over benchmarks/shaders/scenes:
  (c) milliseconds to play a frame of particles or of a grid, beside plain Vulkan with GLSL;
  (d) gigabytes a second that a particle update moves, beside copying;
(e) milliseconds to evaluate an episode's sound and to hear it;
and (f) how fast text and data are read.
--only takes the shaders and scenes whose name contains NAME; (d) is called "updating", (e) "sound",
and (f) has a name for each line, such as "osc".
)";

constexpr int textRounds = 21;

struct Options {
    std::string only;
    int compileRounds = 15;
    int drawRounds = 9;
    int playRounds = 9;
    bool first = false;
    bool valid = true;
};

Options options(int count, char** arguments) {
    Options result;
    for (int i = 1; i < count; i++) {
        const std::string_view word = arguments[i];
        const char* value = i + 1 < count ? arguments[i + 1] : nullptr;
        if (word == "--first")
            result.first = true;
        else if (value != nullptr && word == "--only")
            result.only = arguments[++i];
        else if (value != nullptr && word == "--compile-rounds")
            result.compileRounds = std::atoi(arguments[++i]);
        else if (value != nullptr && word == "--draw-rounds")
            result.drawRounds = std::atoi(arguments[++i]);
        else if (value != nullptr && word == "--play-rounds")
            result.playRounds = std::atoi(arguments[++i]);
        else
            result.valid = false;
    }
    result.valid =
        result.valid && result.compileRounds > 0 && result.drawRounds > 0 && result.playRounds > 0;
    return result;
}

template <class One> void keepNamed(std::vector<One>& all, const std::string& part) {
    std::erase_if(all, [&](const One& one) { return one.name.find(part) == std::string::npos; });
}

int run(const Options& given) {
    const std::filesystem::path shaders = TARNWICK_BENCH_SHADERS, sceneFolder = shaders / "scenes";
    std::vector<Case> all = cases(shaders);
    std::vector<SceneCase> scenes = sceneCases();
    keepNamed(all, given.only);
    std::vector<TextCase> texts = textCases(TARNWICK_BENCH_EPISODES);
    keepNamed(scenes, given.only);
    keepNamed(texts, given.only);
    const bool updates = std::string_view("updating").find(given.only) != std::string_view::npos;
    const bool sounds = std::string_view("sound").find(given.only) != std::string_view::npos;
    if (all.empty() && scenes.empty() && texts.empty() && !updates && !sounds) {
        std::fprintf(stderr, "No shader's or scene's name contains \"%s\".\n", given.only.c_str());
        return 2;
    }
    bool good = texts.empty() || printTexts(texts, textRounds);
    if (all.empty() && scenes.empty() && !updates && !sounds)
        return good ? 0 : 1;
    if (!all.empty())
        good = printCompiling(all, std::filesystem::read_symlink("/proc/self/exe").string(),
                              given.compileRounds) &&
               good;
    const auto drawing = Drawing::make();
    if (!drawing) {
        std::fputs("There is no Vulkan device to draw on.\n", stderr);
        return 1;
    }
    if (!all.empty())
        good = printDrawing(*drawing, all, given.drawRounds) && good;
    if (!scenes.empty())
        good = printPlaying(drawing->device(), sceneFolder, scenes, given.playRounds) && good;
    if (updates)
        good = printUpdating(drawing->device(), sceneFolder) && good;
    if (sounds)
        good = printSounding(*drawing->device()) && good;
    return good ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    const Options given = options(count, arguments);
    if (!given.valid) {
        std::fputs(use, stderr);
        return 2;
    }
    tarnwick::keepFreedMemory();
    if (given.first)
        return printFirstCompileTime();
    try {
        return run(given);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
