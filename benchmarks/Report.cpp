#include "benchmarks/Report.h"

#include "benchmarks/Compiling.h"
#include "benchmarks/ExportMemory.h"
#include "benchmarks/Sounding.h"
#include "benchmarks/Statistics.h"
#include "benchmarks/Updating.h"

#include <cstdio>

namespace tarnwick::bench {

namespace {

const char* verdict(bool good) {
    return good ? "reached" : "MISSED";
}

} // namespace

// Prints ours beside the twins' at one place of the sorted times.
static bool printRatio(const char* name, double ours, double twins) {
    constexpr double bar = 1;
    std::printf("  %-8s %8.2f ms, twins %.2f, ratio %.2f (bar: at most %.2f, %s)\n", name, ours,
                twins, ours / twins, bar, verdict(ours / twins <= bar));
    return ours / twins <= bar;
}

bool printCompiling(const std::vector<Case>& all, const std::string& self, int rounds) {
    std::printf("Source text to SPIR-V, warm (median of %d)\n\n", rounds);
    std::printf("  %-22s %9s %9s %9s %7s\n", "shader", "ours ms", "number ms", "twin ms", "ratio");
    std::vector<double> ours, twins, withoutTwins, numberRatios;
    for (const Case& one : all) {
        const CompileTime time = compileTime(one, rounds);
        numberRatios.push_back(time.otherNumber / time.ours);
        if (one.twin.empty()) {
            std::printf("  %-22s %9.2f %9.2f\n", one.name.c_str(), time.ours, time.otherNumber);
            withoutTwins.push_back(time.ours);
            continue;
        }
        std::printf("  %-22s %9.2f %9.2f %9.2f %7.2f\n", one.name.c_str(), time.ours,
                    time.otherNumber, time.twin, time.ours / time.twin);
        std::fflush(stdout);
        ours.push_back(time.ours);
        twins.push_back(time.twin);
    }
    bool good = true;
    std::printf("\n");
    if (!ours.empty()) {
        good = printRatio("median", median(ours), median(twins));
        good = printRatio("p95", percentile(ours, 0.95), percentile(twins, 0.95)) && good;
        std::printf("  worst    %8.2f ms, twins %.2f\n", largest(ours), largest(twins));
    }
    if (!withoutTwins.empty())
        std::printf("  episodes, without twins: median %.2f ms, p95 %.2f, worst %.2f\n",
                    median(withoutTwins), percentile(withoutTwins, 0.95), largest(withoutTwins));
    const double numbers = median(numberRatios);
    std::printf(
        "  a second compilation with one other number: %.2f of the first at the median, %.2f "
        "at most (bar: at most 0.50 at the median, %s)\n",
        numbers, largest(numberRatios), verdict(numbers <= 0.5));
    good = good && numbers <= 0.5;
    const std::vector<double> first = firstCompileTimes(self, all.front(), 7);
    good = good && median(first) < 120;
    std::printf(
        "  first    %8.2f ms, median of %zu processes, worst %.2f (bar: under 120 ms, %s)\n\n",
        median(first), first.size(), largest(first), verdict(median(first) < 120));
    std::printf("Processor time of each step, ms for all %zu programs (shortest of 5), and its "
                "share\n\n%s\n",
                all.size(), stepTimes(all).c_str());
    return good;
}

bool printDrawing(Drawing& drawing, const std::vector<Case>& all, int rounds) {
    std::printf("Drawing %u by %u pixels on %s (shortest of %d rounds, in turns)\n\n", drawWidth,
                drawHeight, drawing.device()->info().name.c_str(), rounds);
    std::printf("  %-22s %9s %9s %7s %9s %9s %9s %9s\n", "shader", "ours ms", "twin ms", "ratio",
                "median r.", "CPU r.", "differing", "strongest");
    std::vector<double> ratios, processorRatios;
    bool agree = true;
    for (const Case& one : all) {
        const DrawTime time = drawing.time(one, rounds);
        agree = agree && time.pictures.agrees();
        std::printf("  %-22s %9.2f %9.2f %7.3f %9.3f %9.3f %8.3f%% %9u%s\n", one.name.c_str(),
                    time.times.ours, time.times.twin, time.times.ratio, time.times.medianRatio,
                    time.times.processorRatio, time.pictures.differing * 100,
                    time.pictures.strongest, time.pictures.agrees() ? "" : "  DIFFERENT PICTURES");
        std::fflush(stdout);
        ratios.push_back(time.times.ratio);
        processorRatios.push_back(time.times.processorRatio);
    }
    const double mean = geometricMean(ratios), worst = largest(ratios);
    std::printf("\n  geometric mean %.3f (bar: at most 1.00, %s)\n", mean, verdict(mean <= 1.0));
    std::printf("  worst          %.3f (bar: at most 1.10, %s)\n", worst, verdict(worst <= 1.10));
    if (drawing.device()->info().isCPU)
        std::printf("  in CPU time, which other work on the machine affects less: geometric mean "
                    "%.3f, worst %.3f\n",
                    geometricMean(processorRatios), largest(processorRatios));
    std::printf(
        "  pictures agree: at most %.1f%% of the pixels differ by more than %u of 255: %s\n",
        agreeing * 100, tolerance, agree ? "yes" : "NO");
    return agree && mean <= 1.0 && worst <= 1.10;
}

bool printFirstPictures(gpu::Device& device, const std::vector<FirstPictureCase>& all, int rounds) {
    std::printf(
        "\nFrom the text of an episode to its first picture on %s (shortest of %d rounds)\n\n",
        device.info().name.c_str(), rounds);
    std::printf("  %-30s %9s %9s %9s %9s %11s\n", "ms", "compile", "pipelines", "picture", "all",
                "our share");
    for (const FirstPictureCase& one : all) {
        const FirstPictureTime time = firstPictureTime(device, one, rounds);
        std::printf("  %-30s %9.1f %9.1f %9.1f %9.1f %10.0f%%\n", one.name.c_str(), time.compile,
                    time.pipelines, time.picture, time.all(), time.compile / time.all() * 100);
        std::fflush(stdout);
    }
    return true;
}

constexpr int shortEpisode = 125; // lines

bool printEdits(const std::vector<EditCase>& all, int rounds) {
    std::printf(
        "\nFrom an edit in the player to the new picture, while the old one plays (%d edits "
        "each)\n\n",
        rounds);
    std::printf("  %-26s %6s %9s %10s %9s %9s %9s\n", "median ms", "lines", "compile", "pipelines",
                "picture", "all", "our part");
    std::vector<double> ours, oursOfShort;
    for (const EditCase& one : all) {
        const std::vector<EditTime> times = editTimes(one, rounds);
        const auto medianOf = [&](auto part) {
            std::vector<double> values;
            for (const EditTime& time : times)
                values.push_back(part(time));
            return median(values);
        };
        for (const EditTime& time : times) {
            ours.push_back(time.ours());
            if (one.lines <= shortEpisode)
                oursOfShort.push_back(time.ours());
        }
        std::printf("  %-26s %6d %9.1f %10.1f %9.1f %9.1f %9.1f\n", one.name.c_str(), one.lines,
                    medianOf([](const EditTime& time) { return time.compile; }),
                    medianOf([](const EditTime& time) { return time.pipelines; }),
                    medianOf([](const EditTime& time) { return time.picture; }),
                    medianOf([](const EditTime& time) { return time.all; }),
                    medianOf([](const EditTime& time) { return time.ours(); }));
        std::fflush(stdout);
    }
    std::printf("\n  our part at the median %.1f ms, at p95 %.1f\n", median(ours),
                percentile(ours, 0.95));
    if (oursOfShort.empty())
        return true;
    const double middle = median(oursOfShort);
    std::printf("  of episodes up to %d lines %.1f ms at the median (bar: below 30, %s)\n",
                shortEpisode, middle, verdict(middle < 30));
    return middle < 30;
}

bool printPlaying(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder,
                  const std::vector<SceneCase>& all, int rounds) {
    std::printf("\nPlaying %u by %u pixels on %s: update, draw and final picture of a frame\n"
                "(shortest of %d rounds, in turns, beside plain Vulkan with GLSL)\n\n",
                sceneWidth, sceneHeight, device->info().name.c_str(), rounds);
    std::printf("  %-16s %9s %9s %7s %9s %9s %9s %9s\n", "scene", "ours ms", "hand ms", "ratio",
                "median r.", "CPU r.", "differing", "strongest");
    bool good = true;
    for (const SceneCase& one : all) {
        const PlayTime time = playTime(device, folder, one, rounds);
        std::printf("  %-16s ", one.name.c_str());
        if (time.pictures.agrees())
            std::printf("%9.2f %9.2f %7.3f %9.3f %9.3f", time.times.ours, time.times.twin,
                        time.times.ratio, time.times.medianRatio, time.times.processorRatio);
        else
            std::printf("%47s", "DIFFERENT PICTURES");
        const bool reached = time.pictures.agrees() && time.times.ratio <= one.bar;
        std::printf(" %8.3f%% %9u  (bar: at most %.2f, %s)\n", time.pictures.differing * 100,
                    time.pictures.strongest, one.bar, verdict(reached));
        std::fflush(stdout);
        good = good && reached;
    }
    return good;
}

bool printUpdating(const std::shared_ptr<gpu::Device>& device,
                   const std::filesystem::path& folder) {
    const UpdateSpeed speed = updateSpeed(device, folder);
    const double share = speed.ours / speed.copying;
    const bool isCPU = device->info().isCPU;
    std::printf(
        "\n  update kernel of %u records of %u bytes: %.1f GB/s, by hand %.1f, copying %.1f "
        "(%.0f%% of copying",
        speed.count, speed.stride, speed.ours, speed.twin, speed.copying, share * 100);
    if (isCPU)
        std::printf("; processor time %.3f of by hand's; no bar on a CPU)\n", speed.processorRatio);
    else
        std::printf("; bar: at least 80%%, %s)\n", verdict(share >= 0.8));
    return isCPU || share >= 0.8;
}

bool printTexts(const std::vector<TextCase>& all, int rounds) {
    std::printf("\nText and data (medians of %d)\n\n", rounds);
    bool good = true;
    for (const TextCase& one : all) {
        std::vector<double> samples;
        for (int round = 0; round < rounds; round++)
            samples.push_back(one.sample());
        const double middle = median(samples);
        const bool reached = one.isRate ? middle >= one.bar : middle < one.bar;
        std::printf("  %-44s %9.2f %s (bar: %s %g, %s)\n", one.what.c_str(), middle,
                    one.unit.c_str(), one.isRate ? "at least" : "under", one.bar, verdict(reached));
        good = good && reached;
    }
    return good;
}

bool printSounding(gpu::Device& device) {
    const SoundSpeed speed = soundSpeed(device);
    const double analyse = speed.analyse * 1000;
    std::printf("\nSound of two oscillators on %s (medians)\n\n", device.info().name.c_str());
    std::printf("  %.0f s of it   %8.2f ms, %.0f times faster than real time (bar: 100, %s)\n",
                SoundSpeed::duration, speed.render, speed.realTime(),
                verdict(speed.realTime() >= 100));
    std::printf("  a frame hears  %8.3f ms (bar: under 2 ms, %s)\n", speed.inputs,
                verdict(speed.inputs < 2));
    std::printf("  analysing      %8.2f us of that (bar: under 30 us, %s)\n", analyse,
                verdict(analyse < 30));
    return speed.realTime() >= 100 && speed.inputs < 2 && analyse < 30;
}

bool printExporting(gpu::Device& device, const std::vector<ExportCase>& all, int rounds) {
    constexpr double bar = 1.10;
    std::printf("\nExporting H.264 on %s (shortest of %d rounds, in turns; ms a frame).\n"
                "The lower bound is the largest of drawing only, encoding only, and the CPU time "
                "of both\ndivided by the cores.\n\n",
                device.info().name.c_str(), rounds);
    std::printf("  %-24s %7s %9s %9s %9s %9s %7s %9s %7s\n", "movie", "frames", "drawing",
                "encoding", "sharing", "export", "ratio", "median r.", "CPU r.");
    bool good = true;
    for (const ExportCase& one : all) {
        const ExportTimes times = exportTimes(device, one, rounds);
        const ExportTime& time = times.shortest;
        const auto frames = static_cast<double>(one.frames);
        const bool reached = time.ratio() <= bar;
        std::printf("  %-24s %7.0f %9.2f %9.2f %9.2f %9.2f %7.3f %9.3f %7.3f  (bar: at most %.2f, "
                    "%s)\n",
                    one.name.c_str(), frames, time.drawing.wall / frames,
                    time.encoding.wall / frames, time.sharing() / frames,
                    time.exporting.wall / frames, time.ratio(), times.medianRatio,
                    time.processorRatio(), bar, verdict(reached));
        std::fflush(stdout);
        good = good && reached;
    }
    return good;
}

bool printExportMemory(const std::string& self) {
    constexpr double bar = 64;
    const std::vector<ExportMemory> all = exportMemory(self, {500, 10'000});
    const double growth = all[1].peak - all[0].peak;
    std::printf(
        "\n  peak memory of exporting %lld frames %.1f MB, %lld frames %.1f MB, grown by %.1f "
        "(bar: under %.0f MB, %s)\n",
        static_cast<long long>(all[0].frames), all[0].peak, static_cast<long long>(all[1].frames),
        all[1].peak, growth, bar, verdict(growth < bar));
    return growth < bar;
}

} // namespace tarnwick::bench
