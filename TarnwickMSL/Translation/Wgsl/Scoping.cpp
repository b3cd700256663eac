#include "TarnwickMSL/Translation/Wgsl/Scoping.h"

#include "TarnwickMSL/Translation/Reading/Deferred.h"
#include "TarnwickMSL/Translation/Wgsl/ValueUses.h"

#include <llvm/IR/Constants.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;
using namespace reading;
using llvm::Use;

static const Scope* scopeOfUse(const Flow& flow, const Use& use) {
    auto* user = cast<Instruction>(use.getUser());
    if (auto* phi = dyn_cast<PHINode>(user))
        return flow.scopeOf(*phi->getIncomingBlock(use), *phi->getParent());
    return flow.scopeOf(*user->getParent());
}

// The innermost scope from which a variable of `home` is seen at `use`. A `continue` must not pass
// a declaration that the code of `continuing` uses, so that code sees nothing of the loop's body.
static const Scope* reach(const Scope* home, const Scope* use) {
    const Scope* common = commonScope(home, use);
    for (const Scope* at = use; at != common; at = at->around)
        if (at->isContinuing && at->around == common)
            return common->around;
    return common;
}

Scoping::Scoping(const Flow& flow, const Function& main) : flow_(flow) {
    for (const Instruction& instruction : instructions(main)) {
        const Type* type = instruction.getType();
        if (type->isVoidTy() || type->isPointerTy() || isa<AllocaInst>(instruction))
            continue;
        if (auto* phi = dyn_cast<PHINode>(&instruction))
            place(*phi);
        else if (!isDeferred(instruction))
            place(instruction);
    }
}

void Scoping::place(const Instruction& value) {
    const Scope* home = flow_.scopeOf(*value.getParent());
    if (!home)
        return;
    const Scope* common = home;
    for (const Use* use : usesIn(value))
        if (const Scope* seen = scopeOfUse(flow_, *use))
            common = reach(common, seen);
    if (common != home)
        before_[{common, placeIn(*common, *home)}].push_back(&value);
}

void Scoping::place(const PHINode& phi) {
    const Scope* common = flow_.scopeOf(*phi.getParent());
    if (!common)
        return;
    SmallVector<const Scope*, 4> edges;
    for (const BasicBlock* from : phi.blocks())
        if (const Scope* edge = flow_.scopeOf(*from, *phi.getParent()))
            edges.push_back(edge);
    for (const Scope* edge : edges)
        common = reach(common, edge);
    for (const Use* use : usesIn(phi))
        if (const Scope* seen = scopeOfUse(flow_, *use))
            common = reach(common, seen);
    // The first statement that gives a value, or contains one that does.
    std::size_t first = common->statements.size();
    const Statement* giving = nullptr;
    for (std::size_t at = 0; at < first; ++at) {
        const Statement& statement = *common->statements[at];
        const bool gives =
            statement.kind == StatementKind::copies && statement.to == phi.getParent();
        const bool contains = any_of(edges, [&](const Scope* edge) {
            return edge != common && placeIn(*common, *edge) == at;
        });
        if (!gives && !contains)
            continue;
        first = at;
        giving = gives ? &statement : nullptr;
    }
    const bool isGiven = giving && !isa<UndefValue>(phi.getIncomingValueForBlock(giving->block));
    if (isGiven)
        first_.insert({giving, &phi});
    else
        before_[{common, first}].push_back(&phi);
}

ArrayRef<const Instruction*> Scoping::before(const Scope& scope, std::size_t place) const {
    const auto found = before_.find({&scope, place});
    return found == before_.end() ? ArrayRef<const Instruction*>() : found->second;
}

} // namespace tarnwick::msl::wgsl
