#include "player/Writing/SourceNames.h"

#include <algorithm>
#include <ranges>

namespace tarnwick::player {

const SourceRecord* SourceNames::record(std::string_view name) const {
    const auto found = std::ranges::find(records, name, &SourceRecord::name);
    return found == records.end() ? nullptr : &*found;
}

const SourceFunction* SourceNames::function(std::string_view name) const {
    const auto found = std::ranges::find(functions, name, &SourceFunction::name);
    return found == functions.end() ? nullptr : &*found;
}

const SourceVariable* SourceNames::variable(std::string_view name, std::size_t at) const {
    for (const SourceVariable& one : variables | std::views::reverse)
        if (one.name == name && one.from <= at && at <= one.to)
            return &one;
    return nullptr;
}

} // namespace tarnwick::player
