// Steps in local memory, whose index is a number of bytes or a choice of constants, as steps over
// elements.
#pragma once

#include <llvm/ADT/SmallVector.h>
#include <llvm/IR/Instructions.h>

#include <cstdint>
#include <optional>

namespace tarnwick::msl {

// A step of a constant number of bytes for each unit of an index that is one of a few constants,
// from a known place of a local variable.
struct ChosenStep {
    std::int64_t offset = 0, scale = 0;
    std::int64_t others = 0; // the common factor of the scales of other indices
    llvm::SmallVector<std::int64_t, 4> indices;
};

// Absent if the index may be another value.
std::optional<ChosenStep> chosenStep(llvm::GetElementPtrInst& step, llvm::Value* index);

// Whether the step leads to elements of one array, so that its index counts them. Other indices are
// those of arrays around it.
bool countsElements(const ChosenStep& chosen, const llvm::AllocaInst& local,
                    const llvm::DataLayout& layout);

// Writes a choice of 11 or 17 as `(choice - 11) / 6 * 6` after a step of 11, which shows the member
// that the elements are in. LLVM would fold a sum.
void showChoice(llvm::GetElementPtrInst& step);

// The first value of a loop's counter, and the step of each round.
struct Counter {
    std::int64_t first = 0, step = 0; // step > 0
};

// Absent if the value is no counter with a constant first value and step.
std::optional<Counter> counterOf(const llvm::Value* value);

// Shows the size of the elements that a step of bytes counts: `x & 8` becomes `((x & 8) >> 3) <<
// 3`,
// `(x & 4) << 1` the same, and `(x & 4) * 6` becomes `((x & 4) >> 2) * 24`. The shifts to the right
// are not exact: LLVM would fold them. A counter from 32 on in steps of 96 becomes
// `(counter - 32) / 96 * 96 + 32`.
void showProducts(llvm::GetElementPtrInst& step);

} // namespace tarnwick::msl
