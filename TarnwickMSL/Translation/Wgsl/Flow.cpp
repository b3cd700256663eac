// Every conditional branch of a structured `main` is a header with a merge block, or a break or
// continue of the loop around it (docs/compiler.md). So the blocks from a header to its merge block
// are the two arms of an `if`, and those from a loop's header to its continue target the body of a
// `loop`. A jump to the end of the scope needs no statement.
//
// The blocks from the continue target back to the header stand at the end of the body if the body
// reaches them in one way only; `continuing` is needed for a `continue` alone. There no `break` is
// allowed, so a loop that is left from its continue target must be of the first kind.
#include "TarnwickMSL/Translation/Wgsl/Flow.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/Instructions.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;

Flow::Flow(const ShaderModule& shader) : shader_(shader), all_(std::make_unique<Scope>()) {
    walk(&shader.main->getEntryBlock(), *all_, {});
}

Statement& Flow::add(Scope& scope, StatementKind kind, const BasicBlock* block) {
    scope.statements.push_back(std::make_unique<Statement>());
    scope.statements.back()->kind = kind;
    scope.statements.back()->block = block;
    return *scope.statements.back();
}

// For the statement that is added to the scope next.
std::unique_ptr<Scope> Flow::inside(Scope& around) {
    auto made = std::make_unique<Scope>();
    made->around = &around;
    made->place = around.statements.size();
    made->depth = around.depth + 1;
    return made;
}

void Flow::edge(const BasicBlock& from, const BasicBlock& to, Scope& scope) {
    if (to.phis().empty())
        return;
    add(scope, StatementKind::copies, &from).to = &to;
    edges_[{&from, &to}] = &scope;
}

// Whether the block is reached by a jump, or by the end of the scope.
bool Flow::jump(const BasicBlock& to, Scope& scope, const Surroundings& around) {
    if (&to == around.end || &to == around.header)
        return true;
    if (around.header && &to == around.merge) {
        add(scope, StatementKind::breaking);
        return true;
    }
    if (around.further && &to == around.further) {
        add(scope, StatementKind::repeating);
        repeated_ = &to;
        return true;
    }
    return false;
}

void Flow::arm(const BasicBlock& from, const BasicBlock& to, Scope& scope,
               const Surroundings& around) {
    edge(from, to, scope);
    if (!jump(to, scope, around))
        walk(&to, scope, around);
}

// Returns the block after the branch; null if that is reached by a jump.
const BasicBlock* Flow::branch(const BasicBlock& block, Scope& scope, const Surroundings& around) {
    auto* end = cast<BranchInst>(block.getTerminator());
    const auto found = shader_.structure.find(const_cast<BasicBlock*>(&block));
    const bool isHeader = found != shader_.structure.end() && !found->second.continueTarget;
    const BasicBlock* merge = isHeader ? found->second.merge : nullptr;
    Surroundings inner = around;
    if (merge)
        inner.end = merge;
    auto first = inside(scope), second = inside(scope);
    const BasicBlock *yes = end->getSuccessor(0), *no = end->getSuccessor(1);
    const BasicBlock* next = merge;
    if (merge) {
        arm(block, *yes, *first, inner);
        arm(block, *no, *second, inner);
    } else { // a break or a continue, and the other way
        Surroundings jumps = around;
        jumps.end = nullptr;
        const auto isJump = [&](const BasicBlock* to) {
            return to == around.merge || to == around.further || to == around.header;
        };
        const bool leavesFirst = isJump(yes);
        const BasicBlock* jumped = leavesFirst ? yes : no;
        next = leavesFirst ? no : yes;
        if (!isJump(jumped))
            throw CompilerFault("A branch has no merge block.");
        Scope& jumping = leavesFirst ? *first : *second;
        edge(block, *jumped, jumping);
        if (jumped == around.header) { // the end of the round; the other way leaves the loop
            edge(block, *next, leavesFirst ? *second : *first);
            if (!jump(*next, leavesFirst ? *second : *first, jumps))
                throw CompilerFault("A loop is left at its end to another block.");
            next = nullptr;
        } else {
            jump(*jumped, jumping, jumps);
        }
    }
    Statement& made = add(scope, StatementKind::branch, &block);
    made.first = std::move(first);
    made.second = std::move(second);
    if (!merge && next)
        edge(block, *next, scope);
    return next;
}

// Returns the block after the loop.
const BasicBlock* Flow::loop(const BasicBlock& header, Scope& scope) {
    const Merge& merge = shader_.structure.find(const_cast<BasicBlock*>(&header))->second;
    const BasicBlock* outerRepeated = std::exchange(repeated_, nullptr);
    auto body = inside(scope);
    const bool isOneBlock = merge.continueTarget == &header;
    const Surroundings inBody{.end = isOneBlock ? nullptr : merge.continueTarget,
                              .header = &header,
                              .merge = merge.merge,
                              .further = isOneBlock ? nullptr : merge.continueTarget};
    walk(&header, *body, inBody);
    std::unique_ptr<Scope> rest;
    if (!isOneBlock) {
        const Surroundings inRest{.header = &header, .merge = repeated_ ? nullptr : merge.merge};
        if (repeated_) {
            rest = inside(*body);
            rest->isContinuing = true;
            walk(merge.continueTarget, *rest, inRest);
        } else {
            walk(merge.continueTarget, *body, inRest);
        }
    }
    repeated_ = outerRepeated;
    Statement& made = add(scope, StatementKind::loop, &header);
    made.first = std::move(body);
    made.second = std::move(rest);
    return merge.merge;
}

void Flow::walk(const BasicBlock* block, Scope& scope, const Surroundings& around) {
    bool isStart = true; // of a walk that begins with the header of its loop
    while (block) {
        const auto found = shader_.structure.find(const_cast<BasicBlock*>(block));
        const bool isLoop =
            found != shader_.structure.end() && found->second.continueTarget != nullptr;
        if (isLoop && !(isStart && block == around.header)) {
            block = loop(*block, scope);
            isStart = false;
            if (jump(*block, scope, around))
                return;
            continue;
        }
        isStart = false;
        if (scopes_.contains(block))
            throw CompilerFault("A block is reached in two ways that are no merge.");
        scopes_[block] = &scope;
        add(scope, StatementKind::code, block);
        const Instruction* end = block->getTerminator();
        if (isa<ReturnInst, UnreachableInst>(end)) {
            add(scope, StatementKind::returning, block);
            return;
        }
        auto* jumping = cast<BranchInst>(end);
        const BasicBlock* next = nullptr;
        if (jumping->isConditional() && jumping->getSuccessor(0) != jumping->getSuccessor(1)) {
            next = branch(*block, scope, around);
        } else {
            next = jumping->getSuccessor(0);
            edge(*block, *next, scope);
        }
        if (!next || jump(*next, scope, around))
            return;
        block = next;
    }
}

const Scope* commonScope(const Scope* a, const Scope* b) {
    while (a != b) {
        if (a->depth < b->depth)
            std::swap(a, b);
        a = a->around;
    }
    return a;
}

std::size_t placeIn(const Scope& outer, const Scope& inner) {
    const Scope* at = &inner;
    while (at->around != &outer)
        at = at->around;
    return at->place;
}

} // namespace tarnwick::msl::wgsl
