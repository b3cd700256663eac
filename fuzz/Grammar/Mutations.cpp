#include "fuzz/Grammar/Mutations.h"

#include "fuzz/Grammar/Pieces.h"
#include "fuzz/Grammar/Words.h"

#include <algorithm>
#include <array>
#include <set>
#include <vector>

namespace tarnwick::fuzz {
namespace {

struct Parts {
    const Program& program;
    const Program& other;
    Random& random;
};

template <class List> const auto& any(const List& list, Random& random) {
    return list[random.below(std::size(list))];
}

Piece token(std::size_t at) {
    return {at, at + 1};
}

// The names that may be used at a token: those of its declaration before it, and those that other
// declarations declare outside of braces. Functions are those before a bracket.
struct Known {
    Known(const Program& program, std::size_t at) {
        const Piece here = program.around(at);
        for (const std::size_t each : program.names) {
            const bool isHere = each >= here.first && each < here.last;
            if (isHere ? each >= at : program.isInBody[each])
                continue;
            const std::string_view name = program.tokens[each].text;
            if (all.insert(name).second || isHere)
                (program.is(program.after(each), "(") ? functions : values).push_back(name);
        }
    }
    std::set<std::string_view> all;
    std::vector<std::string_view> values, functions;
};

// The text with known names in the place of others, so that it may stand at the token.
std::string adopted(std::string_view text, std::size_t at, const Parts& parts) {
    Known known(parts.program, at);
    const Program stranger(text);
    for (const std::size_t each : stranger.names)
        if (stranger.isDeclared[each])
            known.all.insert(stranger.tokens[each].text);
    std::string result;
    for (std::size_t each = 0; each < stranger.tokens.size(); ++each) {
        const std::string_view word = stranger.tokens[each].text;
        const auto& others =
            stranger.is(stranger.after(each), "(") ? known.functions : known.values;
        const bool isForeign = std::ranges::binary_search(stranger.names, each) &&
                               !known.all.contains(word) && !others.empty() && !isOfLibrary(word);
        result += isForeign ? any(others, parts.random) : word;
    }
    return result;
}

std::string_view anyText(const Program& program, const std::vector<Piece>& pieces, Random& random,
                         std::string_view otherwise) {
    return pieces.empty() ? otherwise : program.textOf(any(pieces, random));
}

// A piece of the declaration around a token, or seldom of another place.
std::string_view near(const Program& program, const std::vector<Piece>& pieces, std::size_t at,
                      Random& random, std::string_view otherwise) {
    const Piece here = program.around(at);
    constexpr int tries = 8;
    for (int i = 0; i < tries && !pieces.empty() && !random.oneIn(16); ++i) {
        const Piece piece = any(pieces, random);
        if (piece.first >= here.first && piece.last <= here.last)
            return program.textOf(piece);
    }
    return anyText(program, pieces, random, otherwise);
}

// What may stand at the token.
std::string expression(std::size_t at, const Parts& parts) {
    const bool isForeign = parts.random.oneIn(6);
    return adopted(isForeign
                       ? anyText(parts.other, parts.other.expressions, parts.random, "1")
                       : near(parts.program, parts.program.expressions, at, parts.random, "1"),
                   at, parts);
}

std::string statement(std::size_t at, const Parts& parts) {
    const bool isForeign = parts.random.oneIn(4);
    return adopted(isForeign ? anyText(parts.other, parts.other.statements, parts.random, ";")
                             : near(parts.program, parts.program.statements, at, parts.random, ";"),
                   at, parts);
}

// Fills the first $e or $s of a form with the piece, and all others with other pieces.
std::string filled(std::string_view form, char kind, Piece piece, const Parts& parts) {
    std::string result;
    bool isGiven = false;
    for (std::size_t at = 0; at < form.size(); ++at) {
        if (form[at] != '$' || at + 1 == form.size()) {
            result += form[at];
            continue;
        }
        const char asked = form[++at];
        if (asked == kind && !isGiven) {
            result += parts.program.textOf(piece);
            isGiven = true;
        } else if (asked == 'e') {
            result += expression(piece.first, parts);
        } else if (asked == 's') {
            result += statement(piece.first, parts);
        } else {
            result += any(edgeNumbers(), parts.random);
        }
    }
    return result;
}

// Each change gives the whole program, or an empty text where it has no place.

std::string replaceWord(const Parts& parts) {
    const Program& program = parts.program;
    if (program.words.empty())
        return {};
    const std::size_t at = any(program.words, parts.random);
    const WordClass others = classOf(program.tokens[at].text);
    if (!others.empty())
        return program.with(token(at), any(others, parts.random));
    if (program.isDeclared[at])
        return {};
    const Known known(program, at);
    const auto& names = program.is(program.after(at), "(") ? known.functions : known.values;
    return names.empty() ? std::string() : program.with(token(at), any(names, parts.random));
}

std::string replaceOperator(const Parts& parts) {
    const Program& program = parts.program;
    if (program.operators.empty())
        return {};
    const std::size_t at = any(program.operators, parts.random);
    const WordClass others = classOf(program.tokens[at].text);
    return others.empty() ? std::string() : program.with(token(at), any(others, parts.random));
}

std::string replaceNumber(const Parts& parts) {
    const Program& program = parts.program;
    if (program.numbers.empty())
        return {};
    return program.with(token(any(program.numbers, parts.random)),
                        any(edgeNumbers(), parts.random));
}

std::string replaceExpression(const Parts& parts) {
    const Program& program = parts.program;
    if (program.expressions.empty())
        return {};
    const Piece piece = any(program.expressions, parts.random);
    return program.with(piece, expression(piece.first, parts));
}

std::string wrapExpression(const Parts& parts) {
    const Program& program = parts.program;
    if (program.expressions.empty())
        return {};
    const Piece piece = any(program.expressions, parts.random);
    return program.with(piece, filled(any(expressionForms(), parts.random), 'e', piece, parts));
}

std::string wrapStatement(const Parts& parts) {
    const Program& program = parts.program;
    if (program.statements.empty())
        return {};
    const Piece piece = any(program.statements, parts.random);
    return program.with(piece, filled(any(statementForms(), parts.random), 's', piece, parts));
}

// Several in a row, as loops and branches with more than one statement have.
std::string wrapRest(const Parts& parts) {
    const Program& program = parts.program;
    if (program.statements.empty())
        return {};
    const std::size_t first = parts.random.below(program.statements.size());
    Piece rest = program.statements[first];
    for (std::size_t next = first + 1; next < program.statements.size(); ++next) {
        const Piece more = program.statements[next];
        if (more.first < rest.last ||
            program.textOf({rest.last, more.first}).find('}') != std::string_view::npos)
            break;
        rest.last = more.last;
        if (parts.random.oneIn(3))
            break;
    }
    return program.with(rest, filled(any(statementForms(), parts.random), 's', rest, parts));
}

std::string deleteStatement(const Parts& parts) {
    const Program& program = parts.program;
    return program.statements.empty() ? std::string()
                                      : program.with(any(program.statements, parts.random), "");
}

std::string repeatStatement(const Parts& parts) {
    const Program& program = parts.program;
    if (program.statements.empty())
        return {};
    const Piece piece = any(program.statements, parts.random);
    const std::string text(program.textOf(piece));
    return program.with(piece, text + " " + text);
}

std::string insertStatement(const Parts& parts) {
    const Program& program = parts.program;
    if (program.statements.empty())
        return {};
    const std::size_t at = any(program.statements, parts.random).first;
    return program.with({at, at}, statement(at, parts) + " ");
}

std::string swapStatements(const Parts& parts) {
    const Program& program = parts.program;
    if (program.statements.size() < 2)
        return {};
    Piece first = any(program.statements, parts.random);
    Piece second = any(program.statements, parts.random);
    if (second.first < first.first)
        std::swap(first, second);
    if (second.first < first.last)
        return {}; // one is in the other
    const std::string between(program.textOf({first.last, second.first}));
    return program.with({first.first, second.last}, std::string(program.textOf(second)) + between +
                                                        std::string(program.textOf(first)));
}

std::string deleteDeclaration(const Parts& parts) {
    const Program& program = parts.program;
    return program.declarations.empty() ? std::string()
                                        : program.with(any(program.declarations, parts.random), "");
}

std::string deleteToken(const Parts& parts) {
    const Program& program = parts.program;
    return program.tokens.empty()
               ? std::string()
               : program.with(token(parts.random.below(program.tokens.size())), "");
}

using Change = std::string (*)(const Parts&);

// Changes that more often give programs without errors are here more often.
constexpr std::array<Change, 21> changes{
    replaceWord,     replaceWord,     replaceWord,       replaceOperator,   replaceOperator,
    replaceNumber,   replaceNumber,   replaceExpression, replaceExpression, replaceExpression,
    wrapExpression,  wrapExpression,  wrapStatement,     wrapStatement,     wrapRest,
    deleteStatement, repeatStatement, insertStatement,   swapStatements,    deleteDeclaration,
    deleteToken};

std::string insertDeclarations(const Parts& parts) {
    const Program& other = parts.other;
    if (other.declarations.empty())
        return {};
    const std::size_t first = parts.random.below(other.declarations.size());
    const std::size_t last = std::min(other.declarations.size(), first + 1 + parts.random.below(3));
    const std::string_view text =
        other.textOf({other.declarations[first].first, other.declarations[last - 1].last});
    if (parts.program.declarations.empty())
        return std::string(text);
    const std::size_t at = any(parts.program.declarations, parts.random).first;
    return parts.program.with({at, at}, std::string(text) + "\n");
}

std::string takeStatement(const Parts& parts) {
    if (parts.program.statements.empty() || parts.other.statements.empty())
        return {};
    const std::size_t at = any(parts.program.statements, parts.random).first;
    const std::string_view text = parts.other.textOf(any(parts.other.statements, parts.random));
    return parts.program.with({at, at}, adopted(text, at, parts) + " ");
}

std::string takeExpression(const Parts& parts) {
    if (parts.program.expressions.empty() || parts.other.expressions.empty())
        return {};
    const std::string_view text = parts.other.textOf(any(parts.other.expressions, parts.random));
    const Piece piece = any(parts.program.expressions, parts.random);
    return parts.program.with(piece, adopted(text, piece.first, parts));
}

constexpr std::array<Change, 4> crossings{insertDeclarations, takeStatement, takeStatement,
                                          takeExpression};

std::string changed(std::string_view program, std::string_view other, Random& random,
                    std::span<const Change> choices) {
    const Program ours(program), theirs(other);
    constexpr int tries = 8;
    for (int i = 0; i < tries; ++i)
        if (std::string result = any(choices, random)({ours, theirs, random}); !result.empty())
            return result;
    return std::string(program);
}

} // namespace

std::string mutated(std::string_view program, std::string_view other, Random& random) {
    std::string result = changed(program, other, random, changes);
    while (random.oneIn(3))
        result = changed(result, other, random, changes);
    return result;
}

std::string crossed(std::string_view program, std::string_view other, Random& random) {
    return changed(program, other, random, crossings);
}

} // namespace tarnwick::fuzz
