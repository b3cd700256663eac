// random-programs --seeds A..B [--one-stage] [--words] [--native COMPILER]: runs random programs
// natively and on the GPU, and counts those that agree. With --one-stage even seeds run in a kernel
// only, odd ones in a fragment function only. The native side is compiled here, in batches, by
// COMPILER (default: the compiler that built this program). With --words the GPU's side is compiled
// as for a device without small and long types.
//
// random-programs --program FILE: the same for the text of one program, as
// `random-programs-text shared N..N` prints it.
#include "tests/TarnwickMSL/RandomPrograms/Native.h"
#include "tests/TarnwickMSL/RandomPrograms/Trial.h"
#include "tests/TarnwickMSL/RandomPrograms/Watch.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <ranges>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace tarnwick::trials;

constexpr std::uint64_t batchSize = 100;
constexpr std::chrono::seconds limit(30); // of a seed; most need half a second
constexpr int slowestPrinted = 5;

struct LibraryCloser {
    void operator()(void* library) const { dlclose(library); }
};
using NativeLibrary = std::unique_ptr<void, LibraryCloser>;

// A folder of our own that goes with us.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "random-XXXXXX").string();
        if (mkdtemp(name.data()) != nullptr)
            path_ = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        if (!path_.empty())
            std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

struct Options {
    Seeds range;
    std::filesystem::path program; // instead of seeds
    bool isOneStage = false, hasOnlyWords = false;
    std::string compiler = TARNWICK_NATIVE_COMPILER;
};

// Absent if the arguments are not understood.
std::optional<Options> optionsOf(std::span<char*> arguments) {
    Options options;
    bool hasSeeds = false;
    for (std::size_t i = 0; i < arguments.size(); i++) {
        const std::string word = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (word == "--one-stage") {
            options.isOneStage = true;
        } else if (word == "--words") {
            options.hasOnlyWords = true;
        } else if (word == "--program" && hasValue) {
            options.program = arguments[++i];
        } else if (word == "--native" && hasValue) {
            options.compiler = arguments[++i];
        } else if (const auto range =
                       word == "--seeds" && hasValue ? seeds(arguments[++i]) : std::nullopt) {
            options.range = *range;
            hasSeeds = true;
        } else {
            return std::nullopt;
        }
    }
    return hasSeeds || !options.program.empty() ? std::optional(options) : std::nullopt;
}

std::vector<std::string> programs(Seeds seeds, const Options& options) {
    if (options.program.empty())
        return bodiesOf(seeds);
    std::ifstream file(options.program);
    return {std::string(std::istreambuf_iterator<char>(file), {})};
}

NativeLibrary compiled(const std::vector<std::string>& bodies, const Options& options,
                       const std::filesystem::path& folder) {
    const std::string stem = (folder / "batch").string();
    std::ofstream(stem + ".cpp") << nativeSource(bodies);
    const std::string command = options.compiler +
                                " -std=c++20 -w -O0 -ffp-contract=off -fwrapv -shared -fPIC -I " +
                                TARNWICK_SOURCE_DIR + " " + stem + ".cpp -o " + stem + ".so";
    if (std::system(command.c_str()) != 0)
        return nullptr;
    return NativeLibrary(dlopen((stem + ".so").c_str(), RTLD_NOW | RTLD_LOCAL));
}

std::shared_ptr<Trial> trialFor(const Options& options) {
    auto trial = Trial::make();
    if (!trial || !options.hasOnlyWords)
        return trial;
    tarnwick::msl::Target target = trial->target();
    target.hasFloat16 = target.hasInt8 = target.hasInt16 = target.hasInt64 = false;
    return Trial::make(target);
}

// Runs in a child.
Check start(NativeTrial native, const std::vector<std::string>& bodies, std::uint64_t first,
            const Options& options) {
    const std::shared_ptr<Trial> trial = trialFor(options);
    return [trial, native, &bodies, first, isOneStage = options.isOneStage](std::uint64_t seed) {
        const bool isEven = seed % 2 == 0;
        const Stages stages{.kernel = isEven || !isOneStage, .fragment = !isEven || !isOneStage};
        return trial ? trial->difference(bodies[seed - first], seed - first, native, stages)
                     : "No Vulkan device is here.";
    };
}

// A seed and the time of the driver for it.
using Times = std::vector<std::pair<std::chrono::nanoseconds, std::uint64_t>>;

// How many of the seeds agree; nothing when the native side cannot be made.
std::optional<std::uint64_t> agreeing(Seeds seeds, const Options& options,
                                      const std::filesystem::path& folder, Times& slowest) {
    const std::vector<std::string> bodies = programs(seeds, options);
    const NativeLibrary library = compiled(bodies, options, folder);
    void* symbol = library ? dlsym(library.get(), "nativeTrial") : nullptr;
    if (symbol == nullptr)
        return std::nullopt;
    const auto native = reinterpret_cast<decltype(&nativeTrial)>(symbol);
    std::uint64_t count = 0;
    watch(
        seeds, limit, [&] { return start(native, bodies, seeds.first, options); },
        [&](const Heard& heard) {
            count += heard.line.empty() ? 1 : 0;
            if (!heard.line.empty())
                std::printf("seed %llu: %s\n", static_cast<unsigned long long>(heard.seed),
                            heard.line.c_str());
            std::fflush(stdout);
            slowest.push_back({heard.time, heard.seed});
        });
    return count;
}

void printSlowest(Times times) {
    std::ranges::sort(times, std::greater());
    std::puts("The slowest seeds, in seconds of the driver:");
    for (const auto& [time, seed] : times | std::views::take(slowestPrinted))
        std::printf("%8.1f  seed %llu\n", std::chrono::duration<double>(time).count(),
                    static_cast<unsigned long long>(seed));
}

int run(const Options& options) {
    const Seeds range = options.range;
    const TemporaryFolder folder;
    if (folder.path().empty()) {
        std::fputs("No temporary folder is here.\n", stderr);
        return 1;
    }
    std::uint64_t agreed = 0;
    Times times;
    for (std::uint64_t first = range.first; first <= range.last; first += batchSize) {
        const Seeds batch{first, std::min(first + batchSize - 1, range.last)};
        const auto inBatch = agreeing(batch, options, folder.path(), times);
        if (!inBatch)
            std::printf("seeds %llu..%llu: the native compiler did not take them.\n",
                        static_cast<unsigned long long>(batch.first),
                        static_cast<unsigned long long>(batch.last));
        agreed += inBatch.value_or(0);
        std::fprintf(stderr, "%llu of %llu so far\n", static_cast<unsigned long long>(agreed),
                     static_cast<unsigned long long>(batch.last - range.first + 1));
    }
    printSlowest(std::move(times));
    const std::uint64_t all = range.last - range.first + 1;
    const auto trial = Trial::make();
    std::printf("%llu of %llu programs agree on %s\n", static_cast<unsigned long long>(agreed),
                static_cast<unsigned long long>(all),
                trial ? trial->device().name.c_str() : "no device");
    return agreed == all ? 0 : 1;
}

} // namespace

int main(int count, char** arguments) {
    const auto options =
        optionsOf(std::span(arguments + 1, static_cast<std::size_t>(std::max(count - 1, 0))));
    if (!options) {
        std::fputs(
            "Use: random-programs --seeds FIRST..LAST [--one-stage] [--words] [--native COMPILER]\n"
            "     random-programs --program FILE [--one-stage] [--words] [--native COMPILER]\n",
            stderr);
        return 2;
    }
    return run(*options);
}
