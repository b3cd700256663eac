// The progress of a command, as it reports it to programs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::player {

// One line of TARNWICK_PROGRESS=json (docs/contributing.md, "Progress for programs").
struct Progress {
    std::string part{};  // "Still 2 of 5"; empty for work of one part
    std::string doing{}; // work without a count; empty with one
    std::string unit{};  // the counted thing: "Frame"
    std::int64_t done = 0, goal = 0;
    double seconds = 0; // since this part of the work began

    bool operator==(const Progress&) const = default;

    bool isCounted() const { return !unit.empty(); }
    double share() const; // of the count, [0, 1]; 0 without a count

    // Absent for other lines. Accepts any bytes.
    static std::optional<Progress> read(std::string_view line);
};

// Speed and remaining time of counted work, over the last ten seconds of it.
class Pace {
  public:
    void add(const Progress& progress);

    std::optional<double> rate() const;      // counted things per second; absent while unknown
    std::optional<double> remaining() const; // seconds; absent while unknown

  private:
    Progress first_, last_;
};

// "42%, 18.3 frames/s, 0:12 left"; for work without a count its words.
std::string progressText(const Progress& progress, const Pace& pace);

} // namespace tarnwick::player
