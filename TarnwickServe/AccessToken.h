// The secret part of the link to a server that other machines can reach.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

class AccessToken {
  public:
    // 128 random bits of the system as 26 letters and digits that are told apart when they are read
    // aloud (the alphabet of Crockford's Base32, in lower case). Throws ServeError without random
    // bits.
    static AccessToken make();

    const std::string& text() const { return text_; }

    // Takes the same time for all texts of one length.
    bool equals(std::string_view text) const;

  private:
    explicit AccessToken(std::string text) : text_(std::move(text)) {}

    std::string text_;
};

} // namespace tarnwick
