// Text that nobody else is to see.
#pragma once

#include <string>

namespace tarnwick {

// Overwrites the text's bytes, then makes it empty.
void wipe(std::string& text);

// Overwrites its bytes when it goes. Copies that others make of text() are theirs to wipe.
class Secret {
  public:
    Secret() = default;
    explicit Secret(std::string&& text) : text_(text) { wipe(text); }
    ~Secret() { wipe(text_); }
    // Copied and wiped, not moved: a short string leaves its bytes behind when it is moved.
    Secret(Secret&& other) : Secret(std::move(other.text_)) {}
    Secret& operator=(Secret&& other);

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

} // namespace tarnwick
