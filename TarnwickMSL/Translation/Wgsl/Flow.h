// The structured control flow as nested lists of statements, before they are written.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <llvm/ADT/DenseMap.h>

#include <memory>
#include <vector>

namespace tarnwick::msl::wgsl {

struct Statement;

// The statements between two braces. A name that is declared in it is visible in it and below.
struct Scope {
    std::vector<std::unique_ptr<Statement>> statements;
    Scope* around = nullptr;
    std::size_t place = 0;     // in `around`, of the statement that this scope is of
    std::size_t depth = 0;     // scopes around it
    bool isContinuing = false; // of a loop, whose body is the scope around it
};

enum class StatementKind : std::uint8_t {
    code,      // the instructions of `block`, without its phis and its terminator
    copies,    // the values that the phis of `to` have after `block`
    branch,    // if (condition of `block`) { first } else { second }
    loop,      // loop { first continuing { second } }
    breaking,  // break;
    repeating, // continue;
    returning, // the end of the function
};

struct Statement {
    StatementKind kind = StatementKind::code;
    const llvm::BasicBlock* block = nullptr;
    const llvm::BasicBlock* to = nullptr;
    std::unique_ptr<Scope> first, second; // a loop's second is null without `repeating`
};

class Flow {
  public:
    // Throws CompilerFault on control flow that is not as ShaderModule::structure says.
    explicit Flow(const ShaderModule& shader);

    const Scope& all() const { return *all_; }
    // The scope with the block's instructions; null for a block that is never reached.
    const Scope* scopeOf(const llvm::BasicBlock& block) const { return scopes_.lookup(&block); }
    // The scope in which the phis of `to` get their values from `from`.
    const Scope* scopeOf(const llvm::BasicBlock& from, const llvm::BasicBlock& to) const {
        return edges_.lookup({&from, &to});
    }

  private:
    // What jumps mean at a place.
    struct Surroundings {
        const llvm::BasicBlock* end = nullptr;     // reached at the end of the scope
        const llvm::BasicBlock* header = nullptr;  // of the innermost loop; null outside of loops
        const llvm::BasicBlock* merge = nullptr;   // after that loop
        const llvm::BasicBlock* further = nullptr; // its continue target; null inside of that
    };

    void walk(const llvm::BasicBlock* block, Scope& scope, const Surroundings& around);
    const llvm::BasicBlock* loop(const llvm::BasicBlock& header, Scope& scope);
    bool jump(const llvm::BasicBlock& to, Scope& scope, const Surroundings& around);
    const llvm::BasicBlock* branch(const llvm::BasicBlock& block, Scope& scope,
                                   const Surroundings& around);
    void arm(const llvm::BasicBlock& from, const llvm::BasicBlock& to, Scope& scope,
             const Surroundings& around);
    void edge(const llvm::BasicBlock& from, const llvm::BasicBlock& to, Scope& scope);
    static Statement& add(Scope& scope, StatementKind kind,
                          const llvm::BasicBlock* block = nullptr);
    static std::unique_ptr<Scope> inside(Scope& around);

    const ShaderModule& shader_;
    std::unique_ptr<Scope> all_;
    llvm::DenseMap<const llvm::BasicBlock*, const Scope*> scopes_;
    llvm::DenseMap<std::pair<const llvm::BasicBlock*, const llvm::BasicBlock*>, const Scope*>
        edges_;
    const llvm::BasicBlock* repeated_ = nullptr; // the continue target that a `repeating` goes to
};

// The innermost scope that has both; `a` and `b` are of one Flow.
const Scope* commonScope(const Scope* a, const Scope* b);
// The place in `outer` of the statement that `inner`, which is in it, is in or of.
std::size_t placeIn(const Scope& outer, const Scope& inner);

} // namespace tarnwick::msl::wgsl
