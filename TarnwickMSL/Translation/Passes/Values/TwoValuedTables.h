// Tables whose elements have two values.
#pragma once

namespace llvm {
class Function;
}

namespace tarnwick::msl {

// Makes an element of a constant table of at most 32, in each lane of which only two values occur
// (as in a list of corners), a choice by a bit of a number. Whether anything changed.
bool replaceTwoValuedTables(llvm::Function& main);

} // namespace tarnwick::msl
