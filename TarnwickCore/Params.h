// The parameters that an episode declares in comments: `// @param name default min max
// description`.
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// One declared number, shown as a slider. Its index in the list is its index in the `Params` record
// of the episode and in the buffer of values.
struct ParamDecl {
    std::string name;       // an identifier: the name of the member of `Params`
    float defaultValue = 0; // [min, max]
    float min = 0;
    float max = 0;      // greater than min
    std::string detail; // the description; may be empty

    bool operator==(const ParamDecl&) const = default;
};

// Values of parameters by name.
using ParamValues = std::map<std::string, float, std::less<>>;

struct ParamParser {
    // The declarations in `source`, in order; if several have the same name, the first. Invalid
    // declarations (malformed number, max not greater than min) are ignored. Accepts any bytes;
    // never fails.
    static std::vector<ParamDecl> parse(std::string_view source);
    // The same for a source that is already divided into lines.
    static std::vector<ParamDecl> parse(std::span<const std::string_view> lines);
};

// The three numbers of a declaration.
struct ParamNumbers {
    float defaultValue = 0; // [min, max]
    float min = 0;
    float max = 0; // greater than min

    bool operator==(const ParamNumbers&) const = default;
};

// Bytes of a text and what replaces them.
struct ParamEdit {
    std::size_t at = 0;
    std::size_t length = 0;
    std::string replacement;

    bool operator==(const ParamEdit&) const = default;
};

// Gives the declaration of `name` in `source` other numbers: the edits in ascending order, one for
// each number that changes. All other bytes stay. A number with a decimal point keeps one. Empty if
// the source has no such declaration or `numbers` are not finite or not in order.
std::vector<ParamEdit> paramEdits(std::string_view source, std::string_view name,
                                  const ParamNumbers& numbers);

} // namespace tarnwick
