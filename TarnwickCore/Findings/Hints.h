// Hints for names and habits of GLSL, HLSL and shader sites, for which Metal has other names.
#pragma once

#include "TarnwickCore/Diagnostics.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// A hint for a diagnostic about `line`, its line of the source: "vec3 is float3 in Metal". Empty if
// the table has none. Only names that the compiler rejects are looked up, so an episode may define
// a mod() of its own. Accepts any bytes.
std::string hintOf(const Diagnostic& message, std::string_view line);

// The hint for a name that the compiler does not know; empty where the table has none.
std::string hintForName(std::string_view name);

// The name that a message says is unknown; empty for messages of other kinds.
std::string_view unknownName(std::string_view message);

// The table itself, for the handbook.
struct Hint {
    std::string_view name;    // of another language; in the last topic, a part of the message
    std::string_view instead; // code that replaces the name, or a sentence
    bool isSentence = false;
};
struct HintTopic {
    std::string_view title;
    std::vector<Hint> hints;
};
std::vector<HintTopic> hintTopics();

} // namespace tarnwick
