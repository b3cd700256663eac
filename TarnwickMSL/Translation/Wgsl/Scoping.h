// Where the values of a function need variables: those that are used outside of the braces of their
// definition, and phis, which get their values at the ends of several blocks.
#pragma once

#include "TarnwickMSL/Translation/Wgsl/Flow.h"

#include <llvm/ADT/DenseSet.h>
#include <llvm/ADT/MapVector.h>
#include <llvm/IR/Instructions.h>

namespace tarnwick::msl::wgsl {

class Scoping {
  public:
    Scoping(const Flow& flow, const llvm::Function& main);

    // The values that are declared before a statement, in their order.
    llvm::ArrayRef<const llvm::Instruction*> before(const Scope& scope, std::size_t place) const;
    // Whether the statement of copies declares the phi's variable with its first value.
    bool isDeclaredBy(const Statement& copies, const llvm::PHINode& phi) const {
        return first_.contains({&copies, &phi});
    }

  private:
    void place(const llvm::Instruction& value);
    void place(const llvm::PHINode& phi);

    const Flow& flow_;
    llvm::DenseMap<std::pair<const Scope*, std::size_t>,
                   llvm::SmallVector<const llvm::Instruction*, 4>>
        before_;
    llvm::DenseSet<std::pair<const Statement*, const llvm::PHINode*>> first_;
};

} // namespace tarnwick::msl::wgsl
