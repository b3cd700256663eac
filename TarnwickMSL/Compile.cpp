#include "TarnwickMSL/Compile.h"

#include "TarnwickMSL/WorkerProcess.h"

#include <mutex>

namespace tarnwick::msl {

struct SeparateWorker::Process {
    std::mutex mutex;
    WorkerProcess worker;
};

namespace {

// Bytes, far above any real program. For more the compiler would need gigabytes.
constexpr std::size_t longestSource = 16u << 20;

using Process = SeparateWorker::Process;

thread_local Process* separate = nullptr;

// One worker serves all threads without a separate one: starting it costs as much as ten
// compilations.
Process& process() {
    static Process shared;
    return separate != nullptr ? *separate : shared;
}

Compilation failure(const std::string& sentence) {
    return {.failed = true,
            .isCompilersFault = true,
            .entryPoints = {},
            .messages = "program_source:1:1: error: " + sentence + "\n1 error generated.\n"};
}

Compilation failure(WorkerFault fault, const CompileOptions& options) {
    switch (fault) {
    case WorkerFault::missing:
    case WorkerFault::gone:
        return failure("the compiler 'tarnwick-msl-worker' could not be started");
    case WorkerFault::stopped:
        return failure("the compiler crashed on this program");
    case WorkerFault::late:
        break;
    }
    std::string seconds = std::to_string(static_cast<double>(options.limit.count()) / 1000);
    seconds.erase(seconds.find_last_not_of('0') + 1);
    if (seconds.back() == '.')
        seconds.pop_back();
    return failure("the compiler ran out of time (" + seconds + " s)");
}

} // namespace

SeparateWorker::SeparateWorker() : process_(std::make_unique<Process>()), outer_(separate) {
    separate = process_.get();
}

SeparateWorker::~SeparateWorker() {
    separate = outer_;
}

Compilation compile(std::string_view source, const CompileOptions& options) {
    if (source.size() > longestSource)
        return failure("the program has " + std::to_string(source.size()) +
                       " bytes; the maximum is " + std::to_string(longestSource));
    const Request request{.limitMilliseconds = static_cast<std::uint32_t>(options.limit.count()),
                          .target = options.target,
                          .moreWarningsIn = options.moreWarningsIn,
                          .constants = options.constants,
                          .source = std::string(source)};
    Process& common = process();
    const std::lock_guard lock(common.mutex);
    auto answer = common.worker.ask(request);
    if (const auto* fault = std::get_if<WorkerFault>(&answer); fault && *fault == WorkerFault::gone)
        answer = common.worker.ask(request); // it had ended by itself, between two requests
    if (auto* compilation = std::get_if<Compilation>(&answer))
        return std::move(*compilation);
    common.worker.start(); // a fresh one, for the next program
    return failure(std::get<WorkerFault>(answer), options);
}

void warmUp() {
    Process& common = process();
    if (const std::unique_lock lock(common.mutex, std::try_to_lock); lock)
        common.worker.start();
}

} // namespace tarnwick::msl
