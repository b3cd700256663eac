// The parts of a program that a change may take, repeat or replace.
#pragma once

#include "fuzz/Grammar/Tokens.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::fuzz {

// Tokens [first, last) of a program.
struct Piece {
    std::size_t first = 0, last = 0;

    bool operator==(const Piece&) const = default;
};

// A program's text divided in several ways. Brackets that have no partner are symbols here.
struct Program {
    explicit Program(std::string_view text);

    std::string_view textOf(Piece piece) const;
    // The whole text with other text in the place of the piece.
    std::string with(Piece piece, std::string_view text) const;

    // The declaration that has the token; all tokens before the first one belong to it too.
    Piece around(std::size_t token) const;
    // The index of the next token after `token` that is no blank; the number of tokens at the end.
    std::size_t after(std::size_t token) const;
    // The same before it; the number of tokens at the start.
    std::size_t before(std::size_t token) const;
    bool is(std::size_t token, std::string_view text) const;

    std::string_view text; // outlives this
    std::vector<Token> tokens;
    std::vector<std::size_t> partners;  // of each token that is a bracket; else its own index
    std::vector<Piece> declarations;    // outside of all braces, and whole directives
    std::vector<Piece> statements;      // in braces
    std::vector<Piece> expressions;     // operands, calls, arguments, right sides
    std::vector<std::size_t> words;     // tokens that are words
    std::vector<std::size_t> numbers;   // tokens that are numbers
    std::vector<std::size_t> operators; // tokens that are symbols
    // Words that a program may have given a meaning: no words of the language, no members after a
    // point.
    std::vector<std::size_t> names;
    std::vector<bool> isDeclared; // of each token: a name at the place of its declaration
    std::vector<bool> isInBody;   // of each token: in braces, and not in an attribute

  private:
    void pair();
    void findBodies();
    void findNames();
    void divide(std::size_t first, std::size_t last, std::vector<Piece>& pieces);
    void findStatements();
    bool isStatementHead(std::size_t token) const;
    void findExpressions();
    void addExpression(std::size_t first, std::size_t last);
};

} // namespace tarnwick::fuzz
