// The header fields of a request or an answer (RFC 9110, 5).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Header {
    std::string name, value;

    bool operator==(const Header&) const = default;
};

// Fields in their order. The case of ASCII letters in names is ignored.
class Headers {
  public:
    Headers() = default;
    Headers(std::initializer_list<Header> fields) : fields_(fields) {}

    // The value of the first field with that name; null without one.
    const std::string* find(std::string_view name) const;
    // Replaces all fields of that name by one, at the place of the first.
    void set(std::string_view name, std::string_view value);
    void add(std::string_view name, std::string_view value); // keeps others of that name
    void remove(std::string_view name);

    auto begin() const { return fields_.begin(); }
    auto end() const { return fields_.end(); }
    std::size_t size() const { return fields_.size(); }
    bool operator==(const Headers&) const = default;

  private:
    std::vector<Header> fields_;
};

// Whether two texts are equal if the case of ASCII letters is ignored.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

} // namespace tarnwick
