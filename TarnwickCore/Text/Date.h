// Points in time that outside documents name.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace tarnwick {

// Of UTC, in seconds; a double, so that no number that a document can hold overflows it.
using Date = std::chrono::sys_time<std::chrono::duration<double>>;

Date currentDate();
// Since 1970-01-01T00:00:00Z.
inline Date dateAt(double seconds) {
    return Date(std::chrono::duration<double>(seconds));
}

// What "2024-01-31T23:59:59Z" names (ISO 8601-1, 5.4.2, complete and extended): whole seconds, [0,
// 59]; a zone of Z, +HH:MM, -HH:MM, +HHMM or -HHMM; capitals. Nothing for all else, fractions of
// seconds and days that the calendar does not have included.
std::optional<Date> dateOf(std::string_view text);

} // namespace tarnwick
