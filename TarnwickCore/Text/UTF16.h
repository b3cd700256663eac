// Converts positions in UTF-8 text to UTF-16 code units, which editors count.
#pragma once

#include <cstddef>
#include <string_view>

namespace tarnwick {

// A range of text, in UTF-16 code units.
struct TextRange {
    std::size_t location = 0;
    std::size_t length = 0;

    bool operator==(const TextRange&) const = default;
};

// Converts between byte offsets of a text and code units; fastest if positions ascend. Invalid
// UTF-8 is counted as wellFormedUTF8() replaces it. The text must outlive it.
class UTF16Cursor {
  public:
    explicit UTF16Cursor(std::string_view text) : text_(text) {}

    // The number of code units before `byte`, which is the beginning of a character or the end of
    // the text.
    std::size_t unitOf(std::size_t byte);

    // The byte offset of the character that contains code unit `unit`, also as the second of two
    // units; the size of the text for units after the text.
    std::size_t byteOf(std::size_t unit);

  private:
    struct Character {
        std::size_t bytes, units;
    };
    Character next() const;
    bool nextEightAreASCII() const;

    std::string_view text_;
    std::size_t byte_ = 0, unit_ = 0; // the current position in both counts
};

inline std::size_t utf16Length(std::string_view text) {
    return UTF16Cursor(text).unitOf(text.size());
}

} // namespace tarnwick
