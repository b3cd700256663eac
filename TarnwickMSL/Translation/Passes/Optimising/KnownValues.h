// The values that are computed before a place in a function: a hash table that forgets in the
// reverse of the order in which it learnt.
#pragma once

#include <llvm/IR/Instructions.h>

#include <cstdint>
#include <vector>

namespace tarnwick::msl {

class KnownValues {
  public:
    struct Entry {
        const llvm::Instruction* key = nullptr; // null: empty
        llvm::Value* value = nullptr;
        std::uint32_t hash = 0;
        unsigned writes = 0; // the caller's: the state of memory
    };

    // For at most `instructions` entries of the function's own, and one more for each branch.
    explicit KnownValues(std::size_t instructions);

    // The entry of an instruction that computes the same value if memory is the same. A load and a
    // store of the same address are equal.
    const Entry* find(const llvm::Instruction& instruction) const;
    // Until it is forgotten, `find` gives this one instead of earlier entries that are equal.
    void add(const llvm::Instruction& instruction, llvm::Value* value, unsigned writes);

    std::size_t mark() const { return log_.size(); }
    void forgetTo(std::size_t mark);

  private:
    struct Change {
        std::size_t slot;
        Entry before;
    };
    std::vector<Entry> slots_; // a power of two of them
    std::vector<Change> log_;

    std::size_t slotOf(const llvm::Instruction& instruction, std::uint32_t hash) const;
};

} // namespace tarnwick::msl
