#include "TarnwickCore/Text/Date.h"

#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickCore/Text/Pattern.h"

namespace tarnwick {
namespace {

const Pattern& datePattern() {
    static const Pattern pattern("^([0-9]{4})-([0-9]{2})-([0-9]{2})"
                                 "T([01][0-9]|2[0-3]):([0-5][0-9]):([0-5][0-9])"
                                 "(?:Z|([+-])([01][0-9]|2[0-3]):?([0-5][0-9]))\\z");
    return pattern;
}

int digits(std::string_view text) {
    return static_cast<int>(integerOf(text).value_or(0));
}

} // namespace

Date currentDate() {
    return std::chrono::system_clock::now();
}

std::optional<Date> dateOf(std::string_view text) {
    using namespace std::chrono;
    const auto part = datePattern().firstMatch(text);
    if (!part)
        return std::nullopt;
    const year_month_day date(year(digits((*part)[1])),
                              month(static_cast<unsigned>(digits((*part)[2]))),
                              day(static_cast<unsigned>(digits((*part)[3]))));
    if (!date.ok())
        return std::nullopt;
    const auto east = hours(digits((*part)[8])) + minutes(digits((*part)[9]));
    return sys_days(date) + hours(digits((*part)[4])) + minutes(digits((*part)[5])) +
           seconds(digits((*part)[6])) - ((*part)[7] == "-" ? -east : east);
}

} // namespace tarnwick
