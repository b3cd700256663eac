#include "benchmarks/Texts.h"

#include "TarnwickCore/Editor/MSLSyntax.h"
#include "TarnwickCore/Live/OSC.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickCore/Walkthroughs/Walkthrough.h"
#include "TarnwickMSL/Confinement/Confinement.h"
#include "benchmarks/Statistics.h"

#include <sys/wait.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <unistd.h>

namespace tarnwick::bench {
namespace {

// The nanoseconds of one call of `work`, as the mean of many calls.
template <class Work> double nanoseconds(int times, Work&& work) {
    return milliseconds([&] {
               for (int time = 0; time < times; time++)
                   work();
           }) *
           1e6 / times;
}

// Makes the compiler compute the value.
template <class Value> void keep(const Value& value) {
    asm volatile("" : : "g"(&value) : "memory");
}

TextCase parsingOSC() {
    return {.name = "osc",
            .what = "OSC::parse of a message of 3 floats",
            .unit = "ns",
            .bar = 150,
            .sample = [packet = OSC::encode({"/tarnwick/speed", {0.25f, 0.5f, 0.75f}})] {
                return nanoseconds(100'000, [&] { keep(OSC::parse(packet)); });
            }};
}

// Stages of 1,000 lines, a fifth of them braces. Each stage changes 100 lines of the one before,
// including the first; most new lines have a comment.
std::vector<std::string> stageSources(std::size_t count) {
    std::vector<std::string> lines(1000), sources;
    std::mt19937 random(1);
    auto change = [&](std::size_t line) {
        lines[line] = random() % 5 == 0 ? "    }"
                                        : "    float a" + std::to_string(random()) +
                                              " = 0.5 * sin(p.speed * u.time); // how far it went";
    };
    for (std::size_t line = 0; line < lines.size(); ++line)
        change(line);
    for (std::size_t stage = 0; stage < count; ++stage) {
        change(0);
        for (int times = 1; times < 100; ++times)
            change(random() % lines.size());
        std::string& source = sources.emplace_back();
        for (const std::string& line : lines)
            source += line + "\n";
    }
    return sources;
}

TextCase explainingStages() {
    return {.name = "walkthrough",
            .what = "Walkthrough::stages of 10 stages of 1,000 lines",
            .unit = "ms",
            .bar = 100,
            .sample = [sources = stageSources(10)] {
                const std::span<const std::string> stages(sources.begin(), 9);
                return milliseconds(
                    [&] { keep(Walkthrough::stages(sources.back(), {}, stages, 20)); });
            }};
}

// The texts of the episodes of a folder, the longest last; in ASCII.
std::vector<std::string> episodeSources(const std::filesystem::path& folder) {
    std::vector<std::string> sources;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() != ".metal")
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::string& source = sources.emplace_back(std::istreambuf_iterator<char>(file),
                                                   std::istreambuf_iterator<char>());
        std::replace_if(
            source.begin(), source.end(),
            [](char character) { return static_cast<unsigned char>(character) > 0x7f; }, '?');
    }
    if (sources.empty())
        throw std::runtime_error("There are no episodes in " + folder.string() + ".");
    std::sort(sources.begin(), sources.end(),
              [](const auto& one, const auto& other) { return one.size() < other.size(); });
    return sources;
}

TextCase colouringSource(const std::vector<std::string>& sources) {
    std::string text;
    while (text.size() < 2'000'000)
        for (const std::string& source : sources)
            text += source;
    return {.name = "tokens",
            .what = "MSLSyntax::tokens of 2 MB of episodes",
            .unit = "MB/s",
            .bar = 200,
            .isRate = true,
            .sample = [text] {
                const double time = milliseconds([&] { keep(MSLSyntax::tokens(text)); });
                return static_cast<double>(text.size()) / 1e3 / time;
            }};
}

TextCase assembling(const std::string& source) {
    const auto lines = std::count(source.begin(), source.end(), '\n');
    return {.name = "assemble",
            .what = "ShaderAssembler::assemble of " + std::to_string(lines) + " lines",
            .unit = "us",
            .bar = 300,
            .sample = [source] {
                return nanoseconds(100, [&] { keep(ShaderAssembler::assemble(source)); }) / 1000;
            }};
}

// In a process of its own, because it cannot be taken back; 0 where the kernel has no such filters.
double millisecondsOfConfining() {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("A pipe cannot be made.");
    const pid_t child = fork();
    if (child == 0) {
        bool isConfined = false;
        const double time = milliseconds([&] { isConfined = msl::confine(msl::FileAccess::none); });
        const double told = isConfined ? time : 0;
        _exit(write(ends[1], &told, sizeof told) == sizeof told ? 0 : 1);
    }
    close(ends[1]);
    double time = 0;
    const bool isTold = child > 0 && read(ends[0], &time, sizeof time) == sizeof time;
    close(ends[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
    if (!isTold)
        throw std::runtime_error("A process cannot be made.");
    return time;
}

TextCase confining() {
    return {.name = "confinement",
            .what = "confining a worker of the compiler",
            .unit = "ms",
            .bar = 1,
            .sample = millisecondsOfConfining};
}

} // namespace

std::vector<TextCase> textCases(const std::filesystem::path& episodes) {
    const std::vector<std::string> sources = episodeSources(episodes);
    return {parsingOSC(), explainingStages(), colouringSource(sources), assembling(sources.back()),
            confining()};
}

} // namespace tarnwick::bench
