#include "TarnwickPlatform/Net/Headers.h"

#include <algorithm>

namespace tarnwick {

namespace {

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

auto named(std::string_view name) {
    return [name](const Header& field) { return equalsIgnoringCase(field.name, name); };
}

} // namespace

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, lowerCase, lowerCase);
}

const std::string* Headers::find(std::string_view name) const {
    const auto found = std::ranges::find_if(fields_, named(name));
    return found == fields_.end() ? nullptr : &found->value;
}

void Headers::set(std::string_view name, std::string_view value) {
    const auto first = std::ranges::find_if(fields_, named(name));
    if (first == fields_.end())
        return add(name, value);
    *first = {std::string(name), std::string(value)};
    fields_.erase(std::remove_if(first + 1, fields_.end(), named(name)), fields_.end());
}

void Headers::add(std::string_view name, std::string_view value) {
    fields_.push_back({std::string(name), std::string(value)});
}

void Headers::remove(std::string_view name) {
    std::erase_if(fields_, named(name));
}

} // namespace tarnwick
