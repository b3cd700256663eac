// Changes of programs that keep most of them programs: they know tokens, statements and
// expressions.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tarnwick::fuzz {

// The same numbers from the same seed, on every system.
class Random {
  public:
    explicit Random(std::uint32_t seed) : numbers_(seed) {}
    std::size_t below(std::size_t count) { return count > 0 ? numbers_() % count : 0; }
    bool oneIn(std::size_t count) { return below(count) == 0; }

  private:
    std::minstd_rand numbers_;
};

// A changed `program`. Parts may come from `other`, with the names of `program` in the place of
// names that it lacks. Equal to `program` if it has nothing to change. Takes any bytes.
std::string mutated(std::string_view program, std::string_view other, Random& random);

// The same with a part of `other` in it: declarations, a statement or an expression.
std::string crossed(std::string_view program, std::string_view other, Random& random);

} // namespace tarnwick::fuzz
