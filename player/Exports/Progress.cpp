#include "player/Exports/Progress.h"

#include "TarnwickCore/Text/OutsideJSON.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace tarnwick::player {
namespace {

constexpr double window = 10;     // seconds over which the speed is measured
constexpr double shortest = 0.15; // seconds before a speed is known

std::optional<double> numberIn(const nlohmann::json& line, const char* name) {
    const nlohmann::json& member = memberOf(line, name);
    if (!member.is_number())
        return std::nullopt;
    const auto number = member.get<double>();
    return std::isfinite(number) && number >= 0 && number < 1e15 ? std::optional(number)
                                                                 : std::nullopt;
}

std::string clockText(double seconds) {
    const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
    std::array<char, 40> text{};
    if (whole >= 3600)
        std::snprintf(text.data(), text.size(), "%" PRId64 ":%02" PRId64 ":%02" PRId64,
                      whole / 3600, whole / 60 % 60, whole % 60);
    else
        std::snprintf(text.data(), text.size(), "%" PRId64 ":%02" PRId64, whole / 60, whole % 60);
    return text.data();
}

} // namespace

double Progress::share() const {
    if (!isCounted() || goal <= 0)
        return 0;
    return std::clamp(static_cast<double>(done) / static_cast<double>(goal), 0.0, 1.0);
}

std::optional<Progress> Progress::read(std::string_view line) {
    if (!line.starts_with('{'))
        return std::nullopt;
    const auto object = objectOf(line);
    const auto seconds = object ? numberIn(*object, "seconds") : std::nullopt;
    if (!seconds)
        return std::nullopt;
    Progress progress{.part = textOf(*object, "part").value_or(""),
                      .doing = textOf(*object, "doing").value_or(""),
                      .seconds = *seconds};
    const auto unit = textOf(*object, "unit");
    const auto done = numberIn(*object, "done"), goal = numberIn(*object, "goal");
    if (unit && done && goal) {
        progress.unit = *unit;
        progress.done = static_cast<std::int64_t>(*done);
        progress.goal = static_cast<std::int64_t>(*goal);
    }
    if (progress.doing.empty() == progress.unit.empty())
        return std::nullopt;
    return progress;
}

void Pace::add(const Progress& progress) {
    const bool isOther = progress.unit != last_.unit || progress.part != last_.part ||
                         progress.done < last_.done || progress.seconds < last_.seconds;
    if (isOther)
        first_ = progress;
    else if (progress.seconds - first_.seconds > window)
        first_ = {.unit = last_.unit,
                  .done = first_.done + (last_.done - first_.done) / 2,
                  .seconds = first_.seconds + (last_.seconds - first_.seconds) / 2};
    last_ = progress;
}

std::optional<double> Pace::rate() const {
    const double seconds = last_.seconds - first_.seconds;
    const auto done = static_cast<double>(last_.done - first_.done);
    if (!last_.isCounted() || seconds < shortest || done <= 0)
        return std::nullopt;
    return done / seconds;
}

std::optional<double> Pace::remaining() const {
    const auto known = rate();
    if (!known)
        return std::nullopt;
    return static_cast<double>(std::max<std::int64_t>(0, last_.goal - last_.done)) / *known;
}

std::string progressText(const Progress& progress, const Pace& pace) {
    std::string text = progress.part.empty() ? "" : progress.part + ": ";
    if (!progress.isCounted())
        return text + progress.doing;
    if (progress.done >= progress.goal)
        return text + "finishing";
    text += std::to_string(static_cast<int>(100 * progress.share())) + "%";
    if (const auto rate = pace.rate(); rate && progress.unit == "Frame") {
        std::array<char, 40> speed{};
        std::snprintf(speed.data(), speed.size(), ", %.1f frames/s", *rate);
        text += speed.data();
    }
    if (const auto remaining = pace.remaining())
        text += ", " + clockText(*remaining) + " left";
    return text;
}

} // namespace tarnwick::player
