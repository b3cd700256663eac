// The types of simple expressions: names, members, calls, indices, and operators between them.
#pragma once

#include "player/Writing/WritingNames.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwick::player {

// Refers to the names. Where the type of an expression is not known, it is empty.
class ExpressionTypes {
  public:
    explicit ExpressionTypes(const WritingNames& names) : names_(names), own_(names.own) {}

    // The type of the operand that ends with token `last` of the episode: "particle.place" before a
    // further dot.
    std::string ofOperand(std::size_t last) const { return operand(last, 0); }
    // The type of a member, or the result of a member function.
    std::string ofMember(std::string_view type, std::string_view member) const;

  private:
    std::string operand(std::size_t last, int depth) const;
    std::string expression(std::size_t first, std::size_t end, int depth) const;
    std::string variable(std::string_view name, std::size_t at, int depth) const;
    std::string call(std::size_t open, std::size_t close, int depth) const;
    bool endsOperand(std::size_t at, std::size_t end) const;

    const WritingNames& names_;
    const SourceNames& own_;
};

} // namespace tarnwick::player
