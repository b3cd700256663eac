// Points in time in outside documents.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace tarnwick {

// UTC, in seconds; a double, because a document may hold numbers that overflow an integer.
using Date = std::chrono::sys_time<std::chrono::duration<double>>;

Date currentDate();
// `seconds` since 1970-01-01T00:00:00Z.
inline Date dateAt(double seconds) {
    return Date(std::chrono::duration<double>(seconds));
}

// The date in a text such as "2024-01-31T23:59:59Z" (ISO 8601-1, 5.4.2, complete and extended):
// whole seconds [0, 59]; a zone of Z, +HH:MM, -HH:MM, +HHMM or -HHMM; capital letters. Nothing for
// any other text, including fractions of seconds and days that the calendar does not have.
std::optional<Date> dateOf(std::string_view text);

} // namespace tarnwick
