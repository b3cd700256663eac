// Divides local lists of records into a list for each member.
#pragma once

namespace llvm {
class Function;
} // namespace llvm

namespace tarnwick::msl {

// Divides each local array of records that has an access at a changing index, if every access is of
// one member. Members that are records are divided as well. Returns whether it changed anything.
bool divideLists(llvm::Function& main);

} // namespace tarnwick::msl
