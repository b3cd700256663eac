// compilerSoak PROGRAMS [COMPILATIONS] [SEED] [WORKERS]: compiles programs of a folder, as they
// are, with other numbers, and damaged, in worker processes that stay alive. Prints what this
// process and the workers take. Exits with 1 if that grows, or if a program of the folder is
// refused that was compiled before, or a worker crashes.
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/WorkerProcess.h"
#include "tests/reliability/CompilerPrograms.h"
#include "tests/reliability/Footprint.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <thread>

namespace tarnwick {
namespace {

constexpr long rows = 100;

struct Counts {
    std::atomic<long> compiled = 0, refused = 0, faults = 0, changed = 0;
};

Footprint footprintOfAll() {
    Footprint sum = Footprint::present();
    for (const pid_t child : childProcesses())
        sum += Footprint::of(child);
    return sum;
}

// Compiles `count` programs.
void compilePart(msl::Compilers& compilers, CompilerPrograms& programs,
                 const std::vector<bool>& isValid, long count, Counts& counts) {
    for (long done = 0; done < count; ++done) {
        const CompilerPrograms::Pick pick = programs.next();
        const msl::Compilation made = compilers.compile(pick.text, {});
        ++(made.failed ? counts.refused : counts.compiled);
        if (made.isCompilersFault) {
            ++counts.faults;
            std::fprintf(stderr, "%s%s\n", made.messages.c_str(), pick.text.c_str());
        }
        if (!pick.isChanged && made.failed == isValid[pick.program])
            ++counts.changed;
    }
}

int soak(const char* folder, long compilations, unsigned seed, unsigned workers) {
    const auto begin = std::chrono::steady_clock::now();
    msl::Compilers compilers(msl::workerProgram(), workers);
    std::vector<CompilerPrograms> programs; // one a thread
    for (unsigned thread = 0; thread < workers; ++thread)
        programs.emplace_back(folder, seed + thread);
    std::vector<bool> isValid;
    for (std::size_t at = 0; at < programs[0].count(); ++at)
        isValid.push_back(!compilers.compile(programs[0].text(at), {}).failed);
    Counts counts;
    FootprintCourse course("programs");
    for (long row = 1; row <= rows; ++row) {
        std::vector<std::thread> threads;
        for (CompilerPrograms& own : programs)
            threads.emplace_back([&] {
                compilePart(compilers, own, isValid, compilations / rows / workers, counts);
            });
        for (std::thread& thread : threads)
            thread.join();
        course.add(counts.compiled + counts.refused, footprintOfAll());
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    std::printf("seed %u: %ld compiled, %ld refused, %ld crashes, %ld with another result than "
                "before, %.0f s\n",
                seed, counts.compiled.load(), counts.refused.load(), counts.faults.load(),
                counts.changed.load(), time.count());
    return course.isFlat() && counts.faults == 0 && counts.changed == 0 ? 0 : 1;
}

} // namespace
} // namespace tarnwick

int main(int count, char** words) {
    if (count < 2) {
        std::fprintf(stderr, "usage: compilerSoak PROGRAMS [COMPILATIONS] [SEED] [WORKERS]\n");
        return 2;
    }
    return tarnwick::soak(words[1], count > 2 ? std::atol(words[2]) : 20000,
                          count > 3 ? static_cast<unsigned>(std::atol(words[3])) : 1,
                          count > 4 ? static_cast<unsigned>(std::atol(words[4])) : 2);
}
