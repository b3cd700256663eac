#include "tests/TarnwickMSL/Accuracy/Measure.h"

#include "tests/TarnwickMSL/Accuracy/NativeSweep.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>

namespace tarnwick::trials {

namespace {

constexpr std::uint32_t comparedRuns = 17; // has no factor in common with the runs of an octave

struct Runner {
    const Sweep& sweep;
    std::unique_ptr<NativeSweep> native;
    std::unique_ptr<gpu::Library> library;
    std::unique_ptr<gpu::ComputePipelineState> pipeline;
};

Runner runnerOf(const Sweep& sweep, Machine* machine) {
    Runner runner{sweep, NativeSweep::make(sweep.row), nullptr, nullptr};
    if (machine) {
        runner.library = machine->compile(deviceSweepText(sweep.row, "sweep"));
        runner.pipeline = machine->pipeline(*runner.library, "sweep");
    }
    return runner;
}

// The true results for the arguments x.
void findWanted(const Sweep& sweep, const std::vector<float>& x, std::vector<double>& wanted) {
    if (std::isfinite(x[0])) {
        sweep.truth(x.data(), wanted.data(), x.size());
        return;
    }
    const auto of = [&](float argument) {
        return static_cast<double>(sweep.row.reference(static_cast<long double>(argument), 0, 0));
    };
    std::ranges::fill(wanted, of(std::numeric_limits<float>::quiet_NaN()));
    if (std::isinf(x[0]))
        wanted[0] = of(x[0]);
}

bool isSame(float a, float b) {
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

bool touches(const Sweep& sweep, const std::vector<float>& x) {
    return sweep.hasSpecials || (std::max(x.front(), x.back()) >= sweep.low &&
                                 std::min(x.front(), x.back()) <= sweep.high);
}

class Run {
  public:
    Run(const Arguments& arguments, Machine* machine)
        : machine(machine), x(arguments.length), wanted(arguments.length),
          results(arguments.length) {}

    void start(std::uint32_t from) {
        first = from;
        for (std::size_t i = 0; i < x.size(); i++)
            x[i] = std::bit_cast<float>(first + static_cast<std::uint32_t>(i));
    }
    bool covers(const Sweep& sweep) const { return touches(sweep, x); }
    void find(const Sweep& sweep) { findWanted(sweep, x, wanted); }
    void add(Runner& runner, Measurement& measurement, bool isCompared) {
        if (!covers(runner.sweep))
            return;
        if (runner.native) {
            runner.native->run(first, results);
            measurement.native->add(first, results, wanted);
            if (isCompared && machine)
                compare(onDevice(runner), measurement);
        } else if (machine) {
            measurement.device->add(first, onDevice(runner), wanted);
        }
    }

  private:
    std::vector<float> onDevice(const Runner& runner) {
        const auto bits = machine->run(*runner.pipeline, {{first}}, results.size(), results.size());
        std::vector<float> found(bits.size());
        std::memcpy(found.data(), bits.data(), bits.size() * sizeof(float));
        return found;
    }
    void compare(const std::vector<float>& found, Measurement& measurement) const {
        for (std::size_t i = 0; i < found.size(); i++)
            measurement.different += isSame(found[i], results[i]) ? 0u : 1u;
        measurement.compared += found.size();
    }

    Machine* machine;
    std::uint32_t first = 0;
    std::vector<float> x;
    std::vector<double> wanted;
    std::vector<float> results;
};

} // namespace

std::vector<Measurement> measured(std::span<const Sweep> sweeps, const Arguments& arguments,
                                  Machine* machine) {
    std::vector<Runner> runners;
    std::vector<Measurement> found(sweeps.size());
    for (std::size_t i = 0; i < sweeps.size(); i++) {
        runners.push_back(runnerOf(sweeps[i], machine));
        (runners[i].native ? found[i].native : found[i].device).emplace(sweeps[i]);
        if (!runners[i].native && !machine)
            found[i].device.reset();
    }
    Run run(arguments, machine);
    const std::uint64_t runs = (std::uint64_t(1) << 32) / arguments.length;
    for (std::uint64_t n = 0; n < runs; n += arguments.every) {
        run.start(static_cast<std::uint32_t>(n * arguments.length));
        if (std::ranges::none_of(sweeps, [&](const Sweep& sweep) { return run.covers(sweep); }))
            continue;
        run.find(sweeps[0]);
        for (std::size_t i = 0; i < runners.size(); i++)
            run.add(runners[i], found[i], n / arguments.every % comparedRuns == 0);
    }
    return found;
}

} // namespace tarnwick::trials
