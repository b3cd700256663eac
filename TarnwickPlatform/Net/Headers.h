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

// Fields in their order. Names are looked up without regard to the case of ASCII letters.
class Headers {
  public:
    Headers() = default;
    Headers(std::initializer_list<Header> fields) : fields_(fields) {}

    // The first field of that name; null when there is none.
    const std::string* find(std::string_view name) const;
    // The only field of that name from now on, at the place of the first.
    void set(std::string_view name, std::string_view value);
    void add(std::string_view name, std::string_view value); // beside others of that name
    void remove(std::string_view name);

    auto begin() const { return fields_.begin(); }
    auto end() const { return fields_.end(); }
    std::size_t size() const { return fields_.size(); }
    bool operator==(const Headers&) const = default;

  private:
    std::vector<Header> fields_;
};

// Whether two texts are the same but for the case of ASCII letters.
bool equalsIgnoringCase(std::string_view a, std::string_view b);

} // namespace tarnwick
