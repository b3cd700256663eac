// The digest by which a file is known to be the one that was meant (FIPS 180-4).
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tarnwick {

class SHA256 {
  public:
    SHA256();
    ~SHA256();
    SHA256(const SHA256&) = delete;
    SHA256& operator=(const SHA256&) = delete;

    void add(std::string_view bytes);
    // Of all bytes added: 64 digits of base 16 in lower case. Nothing is added after it.
    std::string text();

    // Whether `text` has the form of one; capitals are taken too.
    static bool isDigest(std::string_view text);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tarnwick
