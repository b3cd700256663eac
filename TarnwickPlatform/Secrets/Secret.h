// A secret text, which is overwritten after use.
#pragma once

#include <string>

namespace tarnwick {

// Overwrites the text's bytes, then makes it empty.
void wipe(std::string& text);

// Overwrites its bytes when it is destroyed. A caller that copies text() must wipe the copy.
class Secret {
  public:
    Secret() = default;
    explicit Secret(std::string&& text) : text_(text) { wipe(text); }
    ~Secret() { wipe(text_); }
    // Copies and wipes instead of moving: a short string keeps its bytes when it is moved.
    Secret(Secret&& other) : Secret(std::move(other.text_)) {}
    Secret& operator=(Secret&& other);

    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

} // namespace tarnwick
