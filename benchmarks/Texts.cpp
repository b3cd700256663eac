#include "benchmarks/Texts.h"

#include "TarnwickCore/OSC.h"
#include "TarnwickCore/Walkthrough.h"
#include "benchmarks/Statistics.h"

#include <random>

namespace tarnwick::bench {
namespace {

// Nanoseconds that `work` takes, as the mean of many.
template <class Work> double nanoseconds(int times, Work&& work) {
    return milliseconds([&] {
               for (int time = 0; time < times; time++)
                   work();
           }) *
           1e6 / times;
}

// The compiler has to believe that the value is looked at.
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

// Of 1,000 lines, a fifth of them braces; each stage changes 100 lines of the one before it, the
// first among them, and most of the new ones have a comment.
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

} // namespace

std::vector<TextCase> textCases() {
    return {parsingOSC(), explainingStages()};
}

} // namespace tarnwick::bench
