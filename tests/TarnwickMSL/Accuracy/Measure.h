// Runs the sweeps, natively and on a device.
#pragma once

#include "tests/TarnwickMSL/Accuracy/Judge.h"
#include "tests/TarnwickMSL/Library/Machine.h"

#include <optional>

namespace tarnwick::trials {

// The arguments: runs of `length` floats with successive bits, each `every`-th of them.
struct Arguments {
    std::uint32_t length = 1 << 20; // a power of two from 1024
    std::uint32_t every = 1;
};

struct Measurement {
    std::optional<Judge> native; // absent if the device computes the function
    std::optional<Judge> device; // over all arguments if `native` is absent
    // Otherwise the results of the device are compared with the native ones, on each 17th run.
    std::uint64_t compared = 0, different = 0;
};

// One measurement a sweep; the sweeps have the same truth. Without a machine, functions that the
// device computes have none. Throws std::runtime_error with one sentence.
std::vector<Measurement> measured(std::span<const Sweep> sweeps, const Arguments& arguments,
                                  Machine* machine);

} // namespace tarnwick::trials
