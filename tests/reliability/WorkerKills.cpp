// workerKills PROGRAMS [KILLS] [SEED]: compiles programs of a folder while the compiler's worker is
// killed at random points: while it starts, reads, compiles, answers, and waits. A compilation
// gives the same modules as before, or one sentence; the next one works. Prints a row of figures.
// Exits with 1 if that is not so, or if a process or a handle is left.
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Wire.h"
#include "TarnwickMSL/WorkerProcess.h"
#include "tests/reliability/CompilerPrograms.h"
#include "tests/reliability/Footprint.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace tarnwick {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr std::size_t mostPrograms = 40;

class Kills {
  public:
    Kills(const char* folder, unsigned seed) : programs_(folder, seed), random_(seed) {
        for (std::size_t at = 0; at < programs_.count() && usual_.size() < mostPrograms; at += 5) {
            kill();
            const Seconds cold = timeOf(at), warm = timeOf(at);
            usual_.push_back({at, msl::toBytes(msl::compile(programs_.text(at))), cold, warm});
        }
        handles_ = Footprint::present().files;
    }

    // One kill. The worker may be starting, because the kill before ended the last one.
    void trial() {
        const Usual& usual = usual_[random_() % usual_.size()];
        const bool isIdle = random_() % 4 == 0;
        const Seconds wait = (random_() % 4 == 0 ? usual.cold : usual.warm) * 1.1 *
                             std::uniform_real_distribution<double>()(random_);
        if (isIdle) {
            std::this_thread::sleep_for(wait);
            kill();
        }
        std::thread killer;
        if (!isIdle)
            killer = std::thread([&] {
                std::this_thread::sleep_for(wait);
                kill();
            });
        const auto begin = std::chrono::steady_clock::now();
        const msl::Compilation made = msl::compile(programs_.text(usual.program));
        slowest_ = std::max<Seconds>(slowest_, std::chrono::steady_clock::now() - begin);
        judge(usual, made, isIdle ? Expected::result : Expected::resultOrSentence);
        if (killer.joinable())
            killer.join();
        judge(usual, msl::compile(programs_.text(usual.program)), Expected::result);
    }

    int report(int kills) {
        const auto children = childProcesses();
        const int handles = Footprint::present().files;
        if (children.size() > 1 || handles > handles_)
            complain("There are " + std::to_string(children.size()) + " children and " +
                     std::to_string(handles) + " handles, " + std::to_string(handles_) + " before");
        std::printf("| worker: SIGKILL | %d | %d | %.1f s | %d met a compilation |\n", kills,
                    failures_, slowest_.count(), sentences_);
        return failures_ == 0 ? 0 : 1;
    }

  private:
    struct Usual {
        std::size_t program;
        std::string answer;
        Seconds cold, warm; // of a compilation, in a worker that starts and in one that waits
    };
    enum class Expected { result, resultOrSentence };

    Seconds timeOf(std::size_t program) const {
        const auto begin = std::chrono::steady_clock::now();
        (void)msl::compile(programs_.text(program));
        return std::chrono::steady_clock::now() - begin;
    }
    static void kill() {
        for (const pid_t child : childProcesses())
            ::kill(child, SIGKILL);
    }
    void judge(const Usual& usual, const msl::Compilation& made, Expected expected) {
        if (msl::toBytes(made) == usual.answer)
            return;
        const bool isSentence =
            made.failed && made.isCompilersFault && made.diagnostics.size() == 1;
        if (!isSentence || expected == Expected::result)
            return complain("program " + std::to_string(usual.program) +
                            (made.failed ? " fails: " + made.messages : " has other modules"));
        ++sentences_;
    }
    void complain(const std::string& reason) {
        ++failures_;
        std::printf("%s\n", reason.c_str());
    }

    CompilerPrograms programs_;
    std::mt19937 random_;
    std::vector<Usual> usual_; // of workers that live
    Seconds slowest_{};
    int handles_ = 0, sentences_ = 0, failures_ = 0;
};

} // namespace
} // namespace tarnwick

int main(int count, char** words) {
    if (count < 2) {
        std::fprintf(stderr, "usage: workerKills PROGRAMS [KILLS] [SEED]\n");
        return 2;
    }
    const int kills = count > 2 ? std::atoi(words[2]) : 1000;
    const unsigned seed =
        count > 3 ? static_cast<unsigned>(std::atol(words[3])) : std::random_device()();
    std::printf("seed %u\n", seed);
    tarnwick::Kills trials(words[1], seed);
    for (int kill = 0; kill < kills; ++kill)
        trials.trial();
    return trials.report(kills);
}
