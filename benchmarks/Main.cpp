// tarnwick-bench: times of compiling, drawing and playing relative to hand-written GLSL and Vulkan
// in the same run, the speed of rendering and analysing sound, the speed of reading text and data,
// and the time of exports relative to its lower bound.
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

Measures, with the shaders of benchmarks/shaders and their hand-written GLSL twins:
  (a) milliseconds from source text to all SPIR-V, warm, compared with shaderc and its optimiser;
  (b) milliseconds to draw 1280 by 720 pixels, in turns with the twin;
with benchmarks/shaders/scenes:
  (c) milliseconds to play a frame of particles or of a grid, compared with plain Vulkan and GLSL;
  (d) gigabytes per second that a particle update moves, compared with copying;
and without either:
  (e) milliseconds to render the sound of an episode, and to analyse it;
  (f) the speed of reading text and data;
  (g) milliseconds to export movies, compared with drawing only and encoding only;
  (h) the additional memory of a long movie compared with a short one;
  (i) milliseconds from the text of an episode to its first picture;
  (j) milliseconds from an edit in the player to the new picture.
--only measures the shaders and scenes whose name contains NAME. (d) is named "updating", (e)
"sound"; (f) and (g) have a name for each line, such as "osc" and "export heavy"; (h) is named
"export-memory", (i) is "first picture" and the name of the episode, (j) "edit" and that name.
)";

constexpr int textRounds = 21, firstPictureRounds = 3, editRounds = 7;

struct Options {
    std::string only;
    int compileRounds = 15;
    int drawRounds = 9;
    int playRounds = 9;
    int exportRounds = 3;
    bool first = false;
    int peakOfFrames = 0; // to export in this process
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

// The command line.
struct Plan {
    std::vector<Case> shaders, episodes;
    std::vector<SceneCase> scenes;
    std::vector<TextCase> texts;
    std::vector<ExportCase> exports;
    std::vector<FirstPictureCase> firstPictures;
    std::vector<EditCase> edits;
    bool updates = false, sounds = false, exportMemory = false;

    explicit Plan(const std::string& only)
        : shaders(cases(TARNWICK_BENCH_SHADERS)), episodes(episodeCases(TARNWICK_BENCH_EPISODES)),
          scenes(sceneCases()), texts(textCases(TARNWICK_BENCH_EPISODES)),
          exports(exportCases(TARNWICK_BENCH_SHADERS, TARNWICK_BENCH_EPISODES)),
          firstPictures(firstPictureCases(TARNWICK_BENCH_EPISODES)),
          edits(editCases(TARNWICK_BENCH_EPISODES)) {
        keepNamed(shaders, only);
        keepNamed(episodes, only);
        keepNamed(scenes, only);
        keepNamed(texts, only);
        keepNamed(exports, only);
        keepNamed(firstPictures, only);
        keepNamed(edits, only);
        auto isWanted = [&](std::string_view name) { return name.find(only) != name.npos; };
        updates = isWanted("updating");
        sounds = isWanted("sound");
        exportMemory = isWanted("export-memory");
    }

    bool takesDevice() const {
        return !shaders.empty() || !scenes.empty() || !exports.empty() || !firstPictures.empty() ||
               !edits.empty() || updates || sounds;
    }
    bool isEmpty() const {
        return texts.empty() && episodes.empty() && !exportMemory && !takesDevice();
    }
    std::vector<Case> compiled() const {
        std::vector<Case> all = shaders;
        all.insert(all.end(), episodes.begin(), episodes.end());
        return all;
    }
};

bool runOnDevice(const Plan& plan, const Options& given) {
    const std::filesystem::path sceneFolder =
        std::filesystem::path(TARNWICK_BENCH_SHADERS) / "scenes";
    // For first pictures the driver must compile.
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 0);
    const auto drawing = Drawing::make();
    if (!drawing) {
        std::fputs("There is no Vulkan device.\n", stderr);
        return false;
    }
    bool good = true;
    if (!plan.shaders.empty())
        good = printDrawing(*drawing, plan.shaders, given.drawRounds) && good;
    if (!plan.firstPictures.empty())
        good =
            printFirstPictures(*drawing->device(), plan.firstPictures, firstPictureRounds) && good;
    if (!plan.edits.empty())
        good = printEdits(plan.edits, editRounds) && good;
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
        std::fprintf(stderr, "No name of a shader or scene contains \"%s\".\n", given.only.c_str());
        return 2;
    }
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    bool good = plan.texts.empty() || printTexts(plan.texts, textRounds);
    if (const std::vector<Case> all = plan.compiled(); !all.empty())
        good = printCompiling(all, self, given.compileRounds) && good;
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
