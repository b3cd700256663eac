// The identifiers of one text: valid in WGSL, each once.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tarnwick::msl::wgsl {

class Names {
  public:
    // A name that is like `wanted`, which may be any text: "uv", "uv_2". Never a keyword or a
    // reserved word of WGSL, nor the name of a type or function that WGSL declares.
    std::string make(std::string_view wanted);

  private:
    std::set<std::string, std::less<>> taken_;
    std::map<std::string, int> next_; // the number to try next, by the name without it
};

// The name as the program spells it, of LLVM's name of a value: without the numbers and endings
// that LLVM adds ("uv.sroa.0.i" is "uv").
std::string plainName(std::string_view llvmName);

} // namespace tarnwick::msl::wgsl
