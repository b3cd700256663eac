// Where a pointer points: a root and a byte offset, and the way there through the root's type.
// Knows LLVM alone, nothing of SPIR-V.
#pragma once

#include "TarnwickMSL/Translation/Spirv/Types.h"

#include <llvm/IR/Value.h>

#include <memory>

namespace tarnwick::msl::spirv {

// `scale` bytes for each unit of a value that is known at run time alone.
struct Term {
    const llvm::Value* index = nullptr;
    std::int64_t scale = 0;
};

struct Place {
    const llvm::Value* root = nullptr; // an alloca or a global variable
    std::int64_t offset = 0;           // bytes, without the terms
    // The offset before the first term was added: which member of a struct is meant where the
    // optimiser has moved a constant from the index into the offset.
    std::int64_t anchor = 0;
    llvm::SmallVector<Term, 2> terms;
};

// Throws TranslationError on a pointer that does not come from one root.
Place placeOf(const llvm::Value* pointer, const llvm::DataLayout& layout);

// How a root's memory is seen: one element, or elements one after the other.
struct View {
    llvm::Type* element = nullptr;
    bool isArray = false;
    std::uint64_t count = 0; // elements of an array; 0: as many as are bound
    Layout layout = Layout::plain;
};

// One step down: into an array, a struct's member or a vector's lane.
struct Step {
    std::int64_t constant = 0;
    llvm::SmallVector<Term, 2> terms; // each `scale` counts elements
    std::uint64_t bound = 0;          // elements there are; 0: not known
    bool isLane = false;
};

// How a value of a type is put together from what stands in memory.
struct Access {
    enum class Form : std::uint8_t {
        whole,   // the leaf is the value, at most under another type of the same size
        lanes,   // lanes of the leaf, a vector, from `first` on
        narrow,  // bytes of the leaf, a wider scalar, from `first` on
        parts,   // each part on its own
        halves,  // two integers, low one first, make one scalar
        outside, // past the end of the memory
    };
    Form form = Form::whole;
    llvm::Type* type = nullptr; // the value's
    llvm::Type* leaf = nullptr; // what the steps lead to
    llvm::SmallVector<Step, 4> steps{};
    std::uint32_t first = 0;
    std::vector<Access> parts{};
};

// Nothing where the view cannot show a value of the type at that place.
std::optional<Access> access(const View& view, const Place& place, llvm::Type* type,
                             const llvm::DataLayout& layout);

// Whether storing so means reading what stands beside it first.
bool storesBeside(const Access& access);

// A load or store of a root's memory, or an atomic change.
struct Use {
    Place place{};
    llvm::Type* type = nullptr;
    bool isWrite = false;
    bool isAtomic = false;
};
std::vector<Use> usesOf(const llvm::Value& root, const llvm::DataLayout& layout);
// Whether the use may reach its place so. Other invocations see what is shared.
bool suits(const Access& access, const Use& use, bool isShared);

// The view of a buffer that shows any value at that place: integers of as many bytes as divide its
// offset and its parts.
View unitView(const Place& place, llvm::Type* type, const llvm::DataLayout& layout);
// The view of memory of so many bytes that suits all its uses.
View commonView(llvm::ArrayRef<Use> uses, std::uint64_t bytes, llvm::LLVMContext& context,
                const llvm::DataLayout& layout);

} // namespace tarnwick::msl::spirv
