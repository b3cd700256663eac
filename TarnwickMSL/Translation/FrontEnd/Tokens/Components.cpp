// References and pointers to components of vectors. Clang's vectors have no addressable components,
// so the `v.x` of `thread float& x = v.x` and of `&v.x` becomes a call of
//
//     [](auto& v) -> decltype(auto) {
//         if constexpr (metal::_has_lanes<...>) return metal::_component(v, 0); else return (v.x);
//     }
//
// The tokens do not say whether `v` is a vector or a record with a member `x`, which may be
// private. So the member is named at the place of the expression, and the type decides which way is
// compiled.

#include "TarnwickMSL/Translation/FrontEnd/TokenPass.h"

namespace tarnwick::msl {

// The number of the lane that a word of one letter names, as text; empty for others.
static llvm::StringRef laneOf(const Token& token) {
    const IdentifierInfo* name = token.is(tok::identifier) ? token.getIdentifierInfo() : nullptr;
    if (!name || name->getLength() != 1)
        return {};
    static constexpr llvm::StringLiteral numbers[] = {"0", "1", "2", "3"};
    for (llvm::StringRef words : {"xyzw", "rgba"})
        if (const std::size_t lane = words.find(name->getName()); lane != llvm::StringRef::npos)
            return numbers[lane];
    return {};
}

// Whether `&` at i declares a reference, not to a constant: a constant may be a copy.
bool TokenPass::declaresReference(std::size_t i) const {
    if (!is(i + 1, tok::identifier) || !is(i + 2, tok::equal) || i == 0 || !endsType(tokens[i - 1]))
        return false;
    while (i-- > 0 && !tokens[i].isOneOf(tok::semi, tok::l_brace, tok::r_brace, tok::l_paren))
        if (is(i, tok::kw_const) || isWord(i, "constant") || is(i, tok::l_square))
            return false;
    return true;
}

bool TokenPass::takesAddress(std::size_t i) const {
    return i > 0 && tokens[i - 1].isOneOf(tok::equal, tok::l_paren, tok::comma, tok::kw_return,
                                          tok::question, tok::colon, tok::l_brace);
}

void TokenPass::component(std::size_t i) {
    const bool isDeclared = declaresReference(i);
    if (!isDeclared && !takesAddress(i))
        return;
    const std::size_t first = isDeclared ? i + 3 : i + 1;
    if (first >= tokens.size() ||
        !(is(first, tok::identifier) || is(first, tok::l_paren) || is(first, tok::kw_this)))
        return;
    const std::size_t end = unaryEnd(first);
    if (end < first + 3 || end >= tokens.size() ||
        (isDeclared && !tokens[end].isOneOf(tok::semi, tok::comma)))
        return;
    const bool isArrow = is(end - 2, tok::arrow);
    const llvm::StringRef lane = laneOf(tokens[end - 1]);
    if (lane.empty() || (!isArrow && !is(end - 2, tok::period)))
        return;
    const SourceLocation at = tokens[end - 1].getLocation();
    const std::string name = tokens[end - 1].getIdentifierInfo()->getName().str();
    append(edits[first].before,
           ("[ ] ( auto & msl_whole ) -> decltype ( auto ) { if constexpr ( metal :: _has_lanes "
            "< decltype ( msl_whole ) > ) return metal :: _component ( msl_whole , msl_lane ) ; "
            "else return ( msl_whole . " +
            name + " ) ; } (")
               .c_str(),
           at);
    for (Token& token : edits[first].before)
        if (token.is(tok::identifier) && token.getIdentifierInfo()->getName() == "msl_lane")
            token = number(lane, at);
    if (isArrow)
        append(edits[first].before, "* (", at);
    dropRange(end - 2, end);
    append(edits[end - 1].after, isArrow ? ") )" : ")", at);
}

} // namespace tarnwick::msl
