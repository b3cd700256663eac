// Reads the declarations of a text.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::player {

struct SourceFunction;
struct SourceNames;
struct SourceRecord;
struct SourceVariable;

class DeclarationReader {
  public:
    // Fills `names`, which are empty. Accepts any bytes.
    static void read(std::string_view text, SourceNames& names);

  private:
    DeclarationReader(std::string_view text, SourceNames& names) : text_(text), names_(names) {}

    // Where declarations are: [first, last) tokens, and the byte where their names end.
    struct Scope {
        std::size_t last = 0;
        std::size_t end = 0;
        bool isBody = false;
        SourceRecord* record = nullptr; // the members of a record
    };
    struct Type {
        std::string text;
        std::size_t next = 0; // the token after it
    };

    void block(std::size_t first, const Scope& scope);
    std::size_t statement(std::size_t at, const Scope& scope);
    std::size_t record(std::size_t at, const Scope& scope);
    void enumerators(std::size_t at, std::size_t last, std::size_t end, SourceRecord& made);
    std::size_t header(std::size_t at, const Scope& scope);
    std::size_t alias(std::size_t at, const Scope& scope);
    std::optional<std::size_t> declaration(std::size_t at, const Scope& scope);
    std::size_t function(std::size_t at, const Type& type, const Scope& scope);
    std::size_t variables(const Type& type, const Scope& scope);
    void parameters(std::size_t first, std::size_t last, std::size_t end);
    std::optional<Type> type(std::size_t at, std::size_t last) const;
    std::string sentenceAbove(std::size_t at) const;
    std::string joined(std::size_t begin, std::size_t end) const;

    bool is(std::size_t at, std::string_view mark) const;
    bool isWord(std::size_t at) const;
    std::string_view word(std::size_t at) const;
    std::size_t pair(std::size_t at) const;
    std::size_t byte(std::size_t at) const; // where token `at` begins
    std::size_t afterStatement(std::size_t at, std::size_t last) const;
    std::size_t afterAngles(std::size_t at, std::size_t last) const;
    std::size_t afterAttributes(std::size_t at, std::size_t last) const;

    std::string_view text_;
    SourceNames& names_;
};

} // namespace tarnwick::player
