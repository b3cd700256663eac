// The names that a text declares: functions, records, variables with their scopes. A simple reading
// that accepts unfinished and wrong text, for completion and help.
#pragma once

#include "player/Writing/CodeTokens.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::player {

struct SourceVariable {
    std::string type; // "float3", "texture2d<float>", "float[]" for arrays, "auto"
    std::string name;
    std::size_t from = 0, to = 0; // the bytes of the text where it is visible
    // The tokens of the first value of an `auto` variable.
    std::size_t valueBegin = 0, valueEnd = 0;
};

struct SourceFunction {
    std::string name;
    std::string result;    // its type
    std::string signature; // "float hash(float2 p)"
    std::string sentence;  // the first one of the comment above it; may be empty
};

struct SourceRecord {
    std::string name;
    std::vector<SourceVariable> variables;
    std::vector<SourceFunction> functions;
    bool isEnumeration = false; // the variables are its constants
};

struct SourceNames {
    std::string code; // the text without comments and strings
    std::vector<CodeToken> tokens;
    std::vector<std::size_t> pairs; // bracketPairs of the tokens
    std::vector<SourceFunction> functions;
    std::vector<SourceRecord> records;
    std::vector<SourceVariable> variables; // parameters of functions too, in the order of the text
    std::vector<std::string> macros;
    std::map<std::string, std::string, std::less<>> aliases; // the types that names stand for

    SourceNames() = default;
    SourceNames(const SourceNames&) = delete; // the tokens refer to `code`
    SourceNames& operator=(const SourceNames&) = delete;

    const SourceRecord* record(std::string_view name) const;
    const SourceFunction* function(std::string_view name) const;
    // The innermost variable of that name that is visible at the byte `at`.
    const SourceVariable* variable(std::string_view name, std::size_t at) const;
};

} // namespace tarnwick::player
