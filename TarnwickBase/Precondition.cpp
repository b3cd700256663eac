#include "TarnwickBase/Precondition.h"

#include <cstdio>
#include <cstdlib>

namespace tarnwick {
namespace {

// The compiler gives the path that the build passed. The path of this file has the same root.
std::string_view fromTheRoot(std::string_view path) {
    constexpr std::string_view address = "TarnwickBase/Precondition.cpp";
    std::string_view root = std::source_location::current().file_name();
    if (!root.ends_with(address))
        return path;
    root.remove_suffix(address.size());
    if (path.starts_with(root))
        path.remove_prefix(root.size());
    return path;
}

} // namespace

std::string valueText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

void reportViolation(const Rule& rule, std::initializer_list<std::string> described) {
    std::string values;
    bool isName = true;
    for (const std::string& word : described) {
        if (isName)
            values += values.empty() ? "" : ", ";
        else
            values += ' ';
        values += word;
        isName = !isName;
    }
    const std::string_view file = fromTheRoot(rule.place.file_name());
    std::fprintf(stderr, "Violated: %.*s%s%s%s, %.*s:%u\n", static_cast<int>(rule.text.size()),
                 rule.text.data(), values.empty() ? "" : " (", values.c_str(),
                 values.empty() ? "" : ")", static_cast<int>(file.size()), file.data(),
                 static_cast<unsigned>(rule.place.line()));
    std::abort();
}

} // namespace tarnwick
