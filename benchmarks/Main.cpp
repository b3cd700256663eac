// tarnwick-bench: compile and draw times beside hand-written GLSL twins, as ratios of one run.
#include "benchmarks/Case.h"
#include "benchmarks/Compiling.h"
#include "benchmarks/Drawing.h"
#include "benchmarks/Statistics.h"
#include "benchmarks/Twin.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace {

using namespace tarnwick::bench;

constexpr const char* use =
    R"(Use: tarnwick-bench [--only NAME] [--compile-rounds N] [--draw-rounds N]

Measures, over the shaders of benchmarks/shaders and their hand-written GLSL twins:
  (a) milliseconds from source text to all SPIR-V, warm, ours beside shaderc with its optimiser;
  (b) milliseconds to draw 1280 by 720 pixels, our module against the twin's, in turns.
--only takes the shaders whose name contains NAME.
)";

struct Options {
    std::string only;
    int compileRounds = 15;
    int drawRounds = 9;
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
        else
            result.valid = false;
    }
    result.valid = result.valid && result.compileRounds > 0 && result.drawRounds > 0;
    return result;
}

const char* verdict(bool good) {
    return good ? "reached" : "MISSED";
}

bool printCompiling(const std::vector<Case>& all, const std::string& self, int rounds) {
    std::printf("Source text to SPIR-V, warm (median of %d)\n\n", rounds);
    std::printf("  %-16s %9s %9s %7s\n", "shader", "ours ms", "twin ms", "ratio");
    std::vector<double> ours, twins;
    for (const Case& one : all) {
        const CompileTime time = compileTime(one, rounds);
        std::printf("  %-16s %9.2f %9.2f %7.2f\n", one.name.c_str(), time.ours, time.twin,
                    time.ours / time.twin);
        std::fflush(stdout);
        ours.push_back(time.ours);
        twins.push_back(time.twin);
    }
    const std::vector<double> first = firstCompileTimes(self, all.front(), 7);
    const bool good = median(ours) < 12 && largest(ours) < 50 && median(first) < 120;
    std::printf("\n  median   %8.2f ms, twins %.2f (bar: under 12 ms, %s)\n", median(ours),
                median(twins), verdict(median(ours) < 12));
    std::printf("  worst    %8.2f ms, twins %.2f (bar: under 50 ms, %s)\n", largest(ours),
                largest(twins), verdict(largest(ours) < 50));
    std::printf(
        "  first    %8.2f ms, median of %zu processes, worst %.2f (bar: under 120 ms, %s)\n\n",
        median(first), first.size(), largest(first), verdict(median(first) < 120));
    return good;
}

bool printDrawing(Drawing& drawing, const std::vector<Case>& all, int rounds) {
    std::printf("Drawing %u by %u pixels on %s (shortest of %d rounds, in turns)\n\n", drawWidth,
                drawHeight, drawing.device().name.c_str(), rounds);
    std::printf("  %-16s %9s %9s %7s %9s %9s %9s %9s\n", "shader", "ours ms", "twin ms", "ratio",
                "median r.", "CPU r.", "differing", "strongest");
    std::vector<double> ratios, processorRatios;
    bool agree = true;
    for (const Case& one : all) {
        const DrawTime time = drawing.time(one, rounds);
        agree = agree && time.differing <= agreeing;
        std::printf("  %-16s %9.2f %9.2f %7.3f %9.3f %9.3f %8.3f%% %9u%s\n", one.name.c_str(),
                    time.ours, time.twin, time.ratio, time.medianRatio, time.processorRatio,
                    time.differing * 100, time.strongest,
                    time.differing <= agreeing ? "" : "  DIFFERENT PICTURES");
        std::fflush(stdout);
        ratios.push_back(time.ratio);
        processorRatios.push_back(time.processorRatio);
    }
    const double mean = geometricMean(ratios), worst = largest(ratios);
    std::printf("\n  geometric mean %.3f (bar: at most 1.00, %s)\n", mean, verdict(mean <= 1.0));
    std::printf("  worst          %.3f (bar: at most 1.10, %s)\n", worst, verdict(worst <= 1.10));
    if (drawing.device().isCPU)
        std::printf(
            "  in processor time, which other work on the machine sways less: geometric mean "
            "%.3f, worst %.3f\n",
            geometricMean(processorRatios), largest(processorRatios));
    std::printf(
        "  pictures agree: at most %.1f%% of the pixels differ by more than %u of 255: %s\n",
        agreeing * 100, tolerance, agree ? "yes" : "NO");
    return agree && mean <= 1.0 && worst <= 1.10;
}

int run(const Options& given) {
    std::vector<Case> all = cases(TARNWICK_BENCH_SHADERS);
    std::erase_if(all,
                  [&](const Case& one) { return one.name.find(given.only) == std::string::npos; });
    if (all.empty()) {
        std::fprintf(stderr, "No shader's name contains \"%s\".\n", given.only.c_str());
        return 2;
    }
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    bool good = printCompiling(all, self, given.compileRounds);
    const auto drawing = Drawing::make();
    if (!drawing) {
        std::fputs("There is no Vulkan device to draw on.\n", stderr);
        return 1;
    }
    good = printDrawing(*drawing, all, given.drawRounds) && good;
    return good ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    const Options given = options(count, arguments);
    if (!given.valid) {
        std::fputs(use, stderr);
        return 2;
    }
    if (given.first)
        return printFirstCompileTime();
    try {
        return run(given);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
