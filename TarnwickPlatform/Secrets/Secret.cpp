#include "TarnwickPlatform/Secrets/Secret.h"

#include <string.h> // explicit_bzero

namespace tarnwick {

void wipe(std::string& text) {
    explicit_bzero(text.data(), text.size());
    text.clear();
}

Secret& Secret::operator=(Secret&& other) {
    if (this == &other)
        return *this;
    wipe(text_);
    text_ = other.text_;
    wipe(other.text_);
    return *this;
}

} // namespace tarnwick
