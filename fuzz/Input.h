// The input of a target, and choices made from it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace tarnwick::fuzz {

inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

// Takes an input from its beginning. Zeros follow its end.
class Choices {
  public:
    Choices(const std::uint8_t* bytes, std::size_t size) : left_(textOf(bytes, size)) {}

    bool isOver() const { return left_.empty(); }
    std::uint8_t byte() {
        const char first = left_.empty() ? '\0' : left_.front();
        left_.remove_prefix(left_.empty() ? 0 : 1);
        return static_cast<std::uint8_t>(first);
    }
    bool flag() { return byte() % 2 == 1; }
    float share() { return static_cast<float>(byte()) / 255; } // [0, 1]
    // One of `count` numbers, [0, count); `count` in [1, 256].
    std::size_t below(std::size_t count) { return byte() % count; }
    template <class List> auto oneOf(const List& list) { return list[below(std::size(list))]; }
    // All bytes up to a byte 255, which is in no UTF-8.
    std::string text() {
        const std::size_t length = std::min(left_.find('\xff'), left_.size());
        const std::string taken(left_.substr(0, length));
        left_.remove_prefix(std::min(length + 1, left_.size()));
        return taken;
    }
    std::string rest() {
        const std::string taken(left_);
        left_ = {};
        return taken;
    }

  private:
    std::string_view left_;
};

} // namespace tarnwick::fuzz
