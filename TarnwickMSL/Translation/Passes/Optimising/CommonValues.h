// Replaces a value by an equal one that is computed in the same block or in a dominating one, and
// simplifies instructions on the way. A loaded value is also that of the last store to its address.
//
// It does the work of LLVM's EarlyCSE in half of the time: the hash table forgets a block's values
// in the reverse of their order, so that it has no erased entries to search through.
#pragma once

#include <llvm/IR/PassManager.h>

namespace tarnwick::msl {

class CommonValues : public llvm::PassInfoMixin<CommonValues> {
  public:
    // With MemorySSA, values are loaded once even if other memory is written between the loads.
    enum class Memory : std::uint8_t { byOrder, bySSA };

    explicit CommonValues(Memory memory = Memory::byOrder) : memory_(memory) {}
    llvm::PreservedAnalyses run(llvm::Function& function, llvm::FunctionAnalysisManager& analyses);

  private:
    Memory memory_;
};

} // namespace tarnwick::msl
