#include "benchmarks/Texts.h"

#include "TarnwickCore/OSC.h"
#include "benchmarks/Statistics.h"

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

} // namespace

std::vector<TextCase> textCases() {
    return {parsingOSC()};
}

} // namespace tarnwick::bench
