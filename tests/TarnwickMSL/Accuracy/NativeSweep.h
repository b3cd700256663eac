// A function of the library as machine code of this processor: the front end's code, optimised and
// vectorised by LLVM.
#pragma once

#include "tests/TarnwickMSL/Library/Cases.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tarnwick::trials {

// A kernel whose thread i writes the result of the case's body for the argument with the bits
// first + i.
std::string deviceSweepText(const Case& row, const std::string& name);

class NativeSweep {
  public:
    // Null if the body calls functions that the device computes. Throws std::runtime_error with the
    // compiler's text if the body does not compile.
    static std::unique_ptr<NativeSweep> make(const Case& row);
    ~NativeSweep();

    // Result i is for the argument with the bits first + i.
    void run(std::uint32_t first, std::span<float> results) const;

  private:
    struct Engine;
    explicit NativeSweep(std::unique_ptr<Engine> engine);
    std::unique_ptr<Engine> engine_;
};

} // namespace tarnwick::trials
