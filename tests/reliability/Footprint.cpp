#include "tests/reliability/Footprint.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <system_error>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t leastSamples = 10;
constexpr double anyGrowth = 1e9;

struct Column {
    const char* name;
    double (*value)(const Footprint&);
    double mostFactor; // from the first half to the second
    double most;       // growth that is not judged
};
constexpr std::array<Column, 7> columns{{
    {"RSS MB", [](const Footprint& f) { return f.resident; }, 1.03, 1},
    {"PSS MB", [](const Footprint& f) { return f.proportional; }, anyGrowth, 0},
    {"anon MB", [](const Footprint& f) { return f.anonymous; }, 1.10, 1},
    {"heap MB", [](const Footprint& f) { return f.heap; }, 1.03, 1},
    {"handles", [](const Footprint& f) { return static_cast<double>(f.files); }, 1.0, 0},
    // Mesa's cache on disk starts up to four writers.
    {"threads", [](const Footprint& f) { return static_cast<double>(f.threads); }, 1.0, 3},
    {"mappings", [](const Footprint& f) { return static_cast<double>(f.mappings); }, 1.05, 0},
}};

// The number after `word` in a file of the form "Word:  12 kB".
double numberAfter(const fs::path& file, const std::string& word) {
    std::ifstream stream(file);
    double number = 0;
    for (std::string found; stream >> found;)
        if (found == word && stream >> number)
            return number;
    return 0;
}

int entries(const fs::path& folder) {
    std::error_code error;
    int count = 0;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error))
        ++count;
    return count;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

} // namespace

Footprint Footprint::of(pid_t process) {
    const fs::path folder = fs::path("/proc") / std::to_string(process);
    std::ifstream maps(folder / "maps");
    return {.resident = numberAfter(folder / "status", "VmRSS:") / 1024,
            .proportional = numberAfter(folder / "smaps_rollup", "Pss:") / 1024,
            .anonymous = numberAfter(folder / "smaps_rollup", "Anonymous:") / 1024,
            .files = entries(folder / "fd"),
            .threads = static_cast<int>(numberAfter(folder / "status", "Threads:")),
            .mappings =
                static_cast<int>(std::count(std::istreambuf_iterator<char>(maps), {}, '\n'))};
}

Footprint Footprint::present() {
    Footprint found = of(getpid());
    const auto heap = mallinfo2();
    found.heap = static_cast<double>(heap.uordblks + heap.hblkhd) / (1 << 20);
    return found;
}

Footprint& Footprint::operator+=(const Footprint& other) {
    resident += other.resident;
    proportional += other.proportional;
    anonymous += other.anonymous;
    heap += other.heap;
    files += other.files;
    threads += other.threads;
    mappings += other.mappings;
    return *this;
}

std::vector<pid_t> childProcesses() {
    std::vector<pid_t> found;
    for (const auto& task : fs::directory_iterator("/proc/self/task")) {
        std::ifstream stream(task.path() / "children");
        for (pid_t child = 0; stream >> child;)
            found.push_back(child);
    }
    return found;
}

FootprintCourse::FootprintCourse(const std::string& counted) {
    std::printf("%9s", counted.c_str());
    for (const Column& column : columns)
        std::printf(" %9s", column.name);
    std::printf("\n");
}

void FootprintCourse::add(long count, const Footprint& footprint) {
    course_.push_back(footprint);
    std::printf("%9ld", count);
    for (const Column& column : columns)
        std::printf(" %9.1f", column.value(footprint));
    std::printf("\n");
    std::fflush(stdout);
}

bool FootprintCourse::isFlat() const {
    if (course_.size() < leastSamples) {
        std::printf("NOT FLAT: %zu samples are too few; %zu are needed\n", course_.size(),
                    leastSamples);
        return false;
    }
    const std::size_t begin = course_.size() / 10, middle = (begin + course_.size()) / 2;
    bool isFlat = true;
    for (const Column& column : columns) {
        std::vector<double> first, second;
        for (std::size_t at = begin; at < course_.size(); ++at)
            (at < middle ? first : second).push_back(column.value(course_[at]));
        const double before = median(first), after = median(second);
        const bool grows = after > before * column.mostFactor && after > before + column.most;
        std::printf("%9s %9.1f -> %.1f%s\n", column.name, before, after, grows ? ", GROWS" : "");
        isFlat = isFlat && !grows;
    }
    std::printf("%s\n", isFlat ? "flat" : "NOT FLAT");
    return isFlat;
}

} // namespace tarnwick
