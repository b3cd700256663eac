#include "TarnwickSpirv/Link.h"

#include "TarnwickSpirv/IdOperands.h"
#include "TarnwickSpirv/Interface.h"

#include <set>
#include <utility>

namespace tarnwick::spirv {

namespace {

bool areKnown(Operands section) {
    bool known = true;
    eachInstruction(section, [&](const Instruction& each) { known = known && isKnown(each.op); });
    return known;
}

class Linking {
  public:
    Linking(Module& into, const Module& from) : into_(into), from_(from) {}

    std::map<Id, Id> run() {
        for (const spv::Capability capability : from_.capabilities)
            into_.require(capability);
        if (const auto import = from_.importedInstructions())
            ids_[*import] = into_.extendedInstructions();
        eachInstruction(from_.declarations(), [this](const Instruction& each) { declare(each); });
        eachInstruction(from_.annotations, [this](const Instruction& each) {
            if (!shared_.contains(each.operands[0]))
                append(into_.annotations, each.op, renamed(each));
        });
        eachInstruction(from_.functions, [this](const Instruction& each) {
            append(into_.functions, each.op, renamed(each));
        });
        for (const Id variable : from_.interface)
            into_.interface.push_back(idOf(variable));
        return std::move(ids_);
    }

  private:
    Id idOf(Id id) {
        Id& known = ids_[id];
        if (known == 0)
            known = into_.newId();
        return known;
    }

    // With the ids of `into`, except the operand `unchanged`.
    Words renamed(const Instruction& each, std::optional<std::size_t> unchanged = std::nullopt) {
        Words operands(each.operands.begin(), each.operands.end());
        for (std::size_t at = 0; at < operands.size(); ++at)
            if (at != unchanged && isIdOperand(each.op, at))
                operands[at] = idOf(operands[at]);
        return operands;
    }

    // Types and constants that both modules have become one; specialisation constants by number.
    void declare(const Instruction& each) {
        const auto result = resultOperand(each.op);
        const Id id = each.operands[*result];
        if (const auto number = specialisation(from_, id))
            if (const auto known = specialised(into_, *number))
                return share(id, *known);
        Words operands = renamed(each, result);
        if (const auto known = into_.find({each.op, operands}))
            return share(id, *known);
        operands[*result] = idOf(id);
        into_.add({each.op, operands});
    }

    void share(Id id, Id known) {
        ids_[id] = known;
        shared_.insert(id);
    }

    Module& into_;
    const Module& from_;
    std::map<Id, Id> ids_;
    std::set<Id> shared_; // of `from`
};

} // namespace

std::optional<std::map<Id, Id>> link(Module& into, const Module& from) {
    if (!areKnown(into.functions) || !areKnown(from.functions) || !areKnown(from.declarations()) ||
        !areKnown(from.annotations) || !from.extensions.empty())
        return std::nullopt;
    return Linking(into, from).run();
}

} // namespace tarnwick::spirv
