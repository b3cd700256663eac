// The path from a root's memory to a value in it, through the types with which the memory is
// viewed. Depends on LLVM, not on SPIR-V.
#pragma once

#include "TarnwickMSL/Translation/Reading/Lanes.h"
#include "TarnwickMSL/Translation/Reading/Place.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tarnwick::msl::reading {

// The types with which a root's memory is viewed: one element, or consecutive elements.
struct View {
    llvm::Type* element = nullptr;
    bool isArray = false;
    std::uint64_t count = 0; // elements of an array; 0: as many as are bound
    Layout layout = Layout::plain;
    bool isPacked = false; // an array of words that smaller values share, at changing bytes too
};

// One step down: into an array, a struct's member or a vector's lane.
struct Step {
    std::int64_t constant = 0;
    llvm::SmallVector<Term, 2> terms; // each `scale` counts elements
    std::uint64_t bound = 0;          // number of elements; 0: not known
    bool isLane = false;
};

// How a value of a type is composed of the values in memory.
struct Access {
    enum class Form : std::uint8_t {
        whole,   // the leaf is the value, perhaps under another type of the same size
        lanes,   // lanes of the leaf, a vector, from `first` on
        narrow,  // bytes of the leaf, a wider scalar, from `first` on
        inWord,  // bytes of a word at a changing byte: the only step counts bytes, `bound` words
        parts,   // each part on its own
        halves,  // two integers, low one first, make one scalar
        outside, // past the end of the memory
    };
    Form form = Form::whole;
    llvm::Type* type = nullptr; // the value's
    llvm::Type* leaf = nullptr; // of the value in memory at the end of the steps
    llvm::SmallVector<Step, 4> steps{};
    std::uint32_t first = 0;
    std::vector<Access> parts{};
    // Whether the steps reach the value for all values of the terms. Otherwise a term may count
    // elements of another array than that of its step, and the clamp of that step's index would
    // change it. Indices of buffers are not clamped, so there only an index of a vector's lanes can
    // be uncertain: a lane that the vector lacks is undefined (SPIR-V 1.6, OpAccessChain).
    bool isCertain = true;
};

// Absent if the view cannot show a value of the type at that place.
std::optional<Access> access(const View& view, const Place& place, llvm::Type* type,
                             const llvm::DataLayout& layout);

// Whether all parts are certain.
bool isCertain(const Access& access);

// Whether a store of this form first reads the bytes beside the value.
bool storesBeside(const Access& access);

} // namespace tarnwick::msl::reading
