#include "tests/TarnwickMSL/RandomPrograms/Watch.h"

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <unistd.h>

namespace tarnwick::trials {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

constexpr int clockFactor = 20; // of the limit, where the machine is busy with other work
constexpr int glance = 100;     // milliseconds between looks at the child's clock

enum class Ending : std::uint8_t { none, late, dead };

// One child and the lines that it writes.
class Child {
  public:
    Child(Seeds seeds, const std::function<Check()>& start);
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // The next seed's line; without one, `ending` says why.
    std::optional<std::string> line(std::chrono::seconds limit);
    nanoseconds processorTime() const;
    Ending ending = Ending::none;

  private:
    bool read();

    pid_t process_ = -1;
    int lines_ = -1; // the pipe's reading end
    std::string unread_;
};

} // namespace

static void work(Seeds seeds, const std::function<Check()>& start, int lines) {
    const Check check = start();
    for (std::uint64_t seed = seeds.first; seed <= seeds.last; seed++) {
        std::string line = check(seed);
        std::replace(line.begin(), line.end(), '\n', ' ');
        line += '\n';
        for (std::size_t done = 0; done < line.size();) {
            const ssize_t written = write(lines, line.data() + done, line.size() - done);
            if (written <= 0)
                return;
            done += static_cast<std::size_t>(written);
        }
    }
}

Child::Child(Seeds seeds, const std::function<Check()>& start) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return;
    process_ = fork();
    if (process_ == 0) {
        close(ends[0]);
        work(seeds, start, ends[1]);
        _exit(0); // the driver's threads may still be at work
    }
    close(ends[1]);
    lines_ = ends[0];
}

Child::~Child() {
    if (lines_ >= 0)
        close(lines_);
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
}

nanoseconds Child::processorTime() const {
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(process_, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return {};
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

bool Child::read() {
    std::array<char, 4096> bytes{};
    const ssize_t count = ::read(lines_, bytes.data(), bytes.size());
    if (count > 0)
        unread_.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0;
}

std::optional<std::string> Child::line(std::chrono::seconds limit) {
    const nanoseconds busy = processorTime();
    const auto since = Clock::now();
    std::size_t end = unread_.find('\n');
    while (end == std::string::npos) {
        pollfd ready{lines_, POLLIN, 0};
        if (poll(&ready, 1, glance) > 0) {
            if (!read()) {
                ending = Ending::dead;
                return std::nullopt;
            }
            end = unread_.find('\n');
        } else if (processorTime() - busy > limit || Clock::now() - since > clockFactor * limit) {
            ending = Ending::late;
            return std::nullopt;
        }
    }
    std::string found = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return found;
}

void watch(Seeds seeds, std::chrono::seconds limit, const std::function<Check()>& start,
           const std::function<void(const Heard& heard)>& hear) {
    std::uint64_t next = seeds.first;
    while (next <= seeds.last) {
        Child child({next, seeds.last}, start);
        while (next <= seeds.last && child.ending == Ending::none) {
            const nanoseconds before = child.processorTime();
            const auto line = child.line(limit);
            const std::string late =
                "It is not through after " + std::to_string(limit.count()) + " s.";
            const std::string said = line                           ? *line
                                     : child.ending == Ending::late ? late
                                                                    : "Its process ended with it.";
            hear({next++, said, child.processorTime() - before});
        }
    }
}

} // namespace tarnwick::trials
