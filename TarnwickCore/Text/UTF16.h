// Positions in UTF-8 text as editors count them: in UTF-16 code units.
#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwick {

// A stretch of text, in UTF-16 code units.
struct TextRange {
    std::size_t location = 0;
    std::size_t length = 0;

    bool operator==(const TextRange&) const = default;
};

// Translates between bytes of a text and code units, fastest for places that ascend. Bytes that are
// not UTF-8 count as what wellFormedUTF8 makes of them. The text outlives it.
class UTF16Cursor {
  public:
    explicit UTF16Cursor(std::string_view text) : text_(text) {}

    // The code units before `byte`, where a character begins or the text ends.
    std::size_t unitOf(std::size_t byte);

    // The byte where the character of code unit `unit` begins, also for the second unit of two;
    // the text's end for units behind it.
    std::size_t byteOf(std::size_t unit);

  private:
    struct Character {
        std::size_t bytes, units;
    };
    Character next() const;
    bool nextEightAreASCII() const;

    std::string_view text_;
    std::size_t byte_ = 0, unit_ = 0; // where it stands: the same place
};

inline std::size_t utf16Length(std::string_view text) {
    return UTF16Cursor(text).unitOf(text.size());
}

} // namespace tarnwick
