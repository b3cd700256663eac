// The values of an episode's parameters in the layout of its `Params` record.
#pragma once

#include "TarnwickCore/Params.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace tarnwick {

// One float per declaration, in order: the value of that name; default: the declared default.
// Values are not clamped to the declared range. Without declarations: a single 0. Up to 1,024
// parameters need no heap memory.
class ParamBuffer {
  public:
    // The floats of a uniform buffer of 64 KiB.
    static constexpr std::size_t mostParams = 16384;

    ParamBuffer(std::span<const ParamDecl> params, const ParamValues& values);
    ParamBuffer(const ParamBuffer&) = delete;
    ParamBuffer& operator=(const ParamBuffer&) = delete;

    const float* data() const { return floats_.data(); }
    std::size_t length() const { return floats_.size_bytes(); } // bytes, at least 4
    std::span<const float> floats() const { return floats_; }

  private:
    std::array<float, 1024> few_;
    std::vector<float> many_;
    std::span<float> floats_;
};

} // namespace tarnwick
