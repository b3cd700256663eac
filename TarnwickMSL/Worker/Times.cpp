#include "TarnwickMSL/Worker/Times.h"

#include "TarnwickMSL/Worker/Translate.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <vector>

namespace tarnwick::msl {
namespace {

constexpr int rounds = 5;

using Rows = std::vector<StepTimes::Row>;

StepTimes::Row& rowOf(Rows& rows, std::string_view step) {
    auto found = std::ranges::find(rows, step, &StepTimes::Row::step);
    return found == rows.end() ? rows.emplace_back(StepTimes::Row{step}) : *found;
}

// The shortest time of each step.
Rows shortest(const std::string& program, const StandardLibrary& library) {
    Rows result;
    Remains remains;
    (void)translate(program, library, {}, nullptr, &remains);
    for (int round = 0; round < rounds; ++round) {
        StepTimes times;
        remains.tidy();
        if (translate(program, library, {}, &times, &remains).failed)
            return {};
        for (const StepTimes::Row& row : times.rows()) {
            StepTimes::Row& kept = rowOf(result, row.step);
            kept.milliseconds =
                round == 0 ? row.milliseconds : std::min(kept.milliseconds, row.milliseconds);
        }
    }
    return result;
}

} // namespace

bool printTimes(std::span<const std::string> programs, const StandardLibrary& library) {
    Rows sums;
    for (const std::string& program : programs) {
        const Rows rows = shortest(program, library);
        if (rows.empty()) {
            std::cerr << "A program of the list has errors.\n";
            return false;
        }
        for (const StepTimes::Row& row : rows)
            rowOf(sums, row.step).milliseconds += row.milliseconds;
    }
    double total = 0;
    for (const StepTimes::Row& row : sums)
        total += row.milliseconds;
    for (const StepTimes::Row& row : sums)
        std::printf("%-18s %9.2f %6.1f%%\n", std::string(row.step).c_str(), row.milliseconds,
                    row.milliseconds * 100 / total);
    std::printf("%-18s %9.2f\n", "total", total);
    return true;
}

} // namespace tarnwick::msl
