// tarnwick-bench: compile, draw and play times beside hand-written GLSL and Vulkan, as ratios of
// one run, how fast sound is evaluated and heard, how fast text and data are read, and how near
// exports come to the floor of their time.
#include "TarnwickBase/FreedMemory.h"
#include "benchmarks/Compiling.h"
#include "benchmarks/ExportMemory.h"
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
                    [--export-rounds N]

Measures, over the shaders of benchmarks/shaders and their hand-written GLSL twins:
  (a) milliseconds from source text to all SPIR-V, warm, ours beside shaderc with its optimiser;
  (b) milliseconds to draw 1280 by 720 pixels, our module against the twin's, in turns;
and over benchmarks/shaders/scenes:
  (c) milliseconds to play a frame of particles or of a grid, beside plain Vulkan with GLSL;
  (d) gigabytes a second that a particle update moves, beside copying;
(e) milliseconds to evaluate an episode's sound and to hear it;
(f) how fast text and data are read;
(g) milliseconds to export movies, beside drawing and encoding alone;
and (h) how much more memory a long movie takes than a short one.
--only takes the shaders and scenes whose name contains NAME; (d) is called "updating", (e) "sound",
(f) and (g) have a name for each line, such as "osc" and "export heavy", (h) is "export-memory".
)";

constexpr int textRounds = 21;

struct Options {
    std::string only;
    int compileRounds = 15;
    int drawRounds = 9;
    int playRounds = 9;
    int exportRounds = 3;
    bool first = false;
    int peakOfFrames = 0; // to be exported by this process alone
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
        else if (value != nullptr && word == "--export-rounds")
            result.exportRounds = std::atoi(arguments[++i]);
        else if (value != nullptr && word == "--export-peak")
            result.peakOfFrames = std::atoi(arguments[++i]);
        else
            result.valid = false;
    }
    result.valid = result.valid && result.compileRounds > 0 && result.drawRounds > 0 &&
                   result.playRounds > 0 && result.exportRounds > 0;
    return result;
}

template <class One> void keepNamed(std::vector<One>& all, const std::string& part) {
    std::erase_if(all, [&](const One& one) { return one.name.find(part) == std::string::npos; });
}

// What was asked for.
struct Plan {
    std::vector<Case> shaders;
    std::vector<SceneCase> scenes;
    std::vector<TextCase> texts;
    std::vector<ExportCase> exports;
    bool updates = false, sounds = false, exportMemory = false;

    explicit Plan(const std::string& only)
        : shaders(cases(TARNWICK_BENCH_SHADERS)), scenes(sceneCases()),
          texts(textCases(TARNWICK_BENCH_EPISODES)),
          exports(exportCases(TARNWICK_BENCH_SHADERS, TARNWICK_BENCH_EPISODES)) {
        keepNamed(shaders, only);
        keepNamed(scenes, only);
        keepNamed(texts, only);
        keepNamed(exports, only);
        auto isWanted = [&](std::string_view name) { return name.find(only) != name.npos; };
        updates = isWanted("updating");
        sounds = isWanted("sound");
        exportMemory = isWanted("export-memory");
    }

    bool takesDevice() const {
        return !shaders.empty() || !scenes.empty() || !exports.empty() || updates || sounds;
    }
    bool isEmpty() const { return texts.empty() && !exportMemory && !takesDevice(); }
};

bool runOnDevice(const Plan& plan, const Options& given) {
    const std::filesystem::path sceneFolder =
        std::filesystem::path(TARNWICK_BENCH_SHADERS) / "scenes";
    const auto drawing = Drawing::make();
    if (!drawing) {
        std::fputs("There is no Vulkan device to draw on.\n", stderr);
        return false;
    }
    bool good = true;
    if (!plan.shaders.empty())
        good = printDrawing(*drawing, plan.shaders, given.drawRounds) && good;
    if (!plan.scenes.empty())
        good = printPlaying(drawing->device(), sceneFolder, plan.scenes, given.playRounds) && good;
    if (plan.updates)
        good = printUpdating(drawing->device(), sceneFolder) && good;
    if (plan.sounds)
        good = printSounding(*drawing->device()) && good;
    if (!plan.exports.empty())
        good = printExporting(*drawing->device(), plan.exports, given.exportRounds) && good;
    return good;
}

int run(const Options& given) {
    const Plan plan(given.only);
    if (plan.isEmpty()) {
        std::fprintf(stderr, "No shader's or scene's name contains \"%s\".\n", given.only.c_str());
        return 2;
    }
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    bool good = plan.texts.empty() || printTexts(plan.texts, textRounds);
    if (!plan.shaders.empty())
        good = printCompiling(plan.shaders, self, given.compileRounds) && good;
    if (plan.takesDevice())
        good = runOnDevice(plan, given) && good;
    if (plan.exportMemory)
        good = printExportMemory(self) && good;
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
        if (given.peakOfFrames > 0)
            return printExportPeak(given.peakOfFrames);
        return run(given);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
