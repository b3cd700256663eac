// The errors of many results of one function, and the results beyond its bound.
#pragma once

#include "tests/TarnwickMSL/Accuracy/Sweeps.h"

#include <cstdint>
#include <span>

namespace tarnwick::trials {

class Judge {
  public:
    explicit Judge(const Sweep& sweep);

    // Results i are for the arguments with the bits first + i; first and the number of results are
    // multiples of 1024. `wanted` has the true results.
    void add(std::uint32_t first, std::span<const float> results, std::span<const double> wanted);

    // Whether the unit of worst() is the value itself rather than units in the last place.
    bool isAbsolute() const { return isAbsolute_; }
    // Over arguments and results of normal size.
    double worst() const { return worst_; }
    float worstAt() const { return worstAt_; }
    std::uint64_t misses() const { return misses_; }
    float firstMiss() const { return firstMiss_; }

  private:
    struct Errors;
    void addOne(float x, float got, double wanted);
    bool isCovered(float x) const;
    bool isWithin(const Errors& errors, float x, float y, double wanted, double wantedOfY) const;
    bool isFlushed(float x, float got, double wanted) const;
    double allowed(float x, double wanted) const; // the absolute part of the bound

    const Sweep& sweep_;
    bool isAbsolute_;
    double worst_ = 0;
    float worstAt_ = 0;
    std::uint64_t misses_ = 0;
    float firstMiss_ = 0;
    static Errors errorsOf(float got, double wanted);
    static Errors largest(const float* results, const double* wanted);
};

} // namespace tarnwick::trials
