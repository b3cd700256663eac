// The values of a loop that code after it uses.
#pragma once

#include <llvm/ADT/ArrayRef.h>
#include <llvm/ADT/SmallVector.h>

namespace llvm {
class BasicBlock;
class Instruction;
class Loop;
class PHINode;
class Use;
class Value;
} // namespace llvm

namespace tarnwick::msl {

// Whether the user is outside the loop. The use of a phi is in the block that it comes from.
bool isOutside(const llvm::Loop& loop, const llvm::Use& use);

// Each once. The use of a phi is in the block that it comes from.
llvm::SmallVector<llvm::Instruction*, 8> leavingValues(const llvm::Loop& loop);

// A new phi of the header: `next` from the block `last` of the loop, `first` from outside.
llvm::PHINode* headerPhi(llvm::BasicBlock& header, llvm::BasicBlock& last, llvm::Value* first,
                         llvm::Value* next);

// Uses after the loop get the value from a phi of the header, whose block before it in the loop is
// `last`, so that the loop may be left there.
void leaveThroughPhis(const llvm::Loop& loop, llvm::BasicBlock& header, llvm::BasicBlock& last);
void leaveThroughPhis(const llvm::Loop& loop, llvm::BasicBlock& header, llvm::BasicBlock& last,
                      llvm::ArrayRef<llvm::Instruction*> values); // these only

} // namespace tarnwick::msl
