#include "TarnwickMSL/Compile.h"

#include "TarnwickMSL/WorkerProcess.h"

#include <algorithm>
#include <condition_variable>
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

Compilation failure(const std::string& sentence, const CompileOptions& options) {
    const std::string name = options.name.empty() ? "program_source" : options.name;
    return {.failed = true,
            .isCompilersFault = true,
            .entryPoints = {},
            .messages = name + ":1:1: error: " + sentence + "\n1 error generated.\n",
            .diagnostics = {{.file = name, .line = 1, .column = 1, .length = 1, .text = sentence}}};
}

Compilation failure(WorkerFault fault, const CompileOptions& options) {
    switch (fault) {
    case WorkerFault::missing:
    case WorkerFault::gone:
        return failure("the compiler 'tarnwick-msl-worker' could not be started", options);
    case WorkerFault::stopped:
        return failure("the compiler crashed on this program", options);
    case WorkerFault::full:
        return failure("the compiler ran out of memory (" + std::to_string(mostWorkerMemory >> 30) +
                           " GiB) on this program",
                       options);
    case WorkerFault::deep:
        return failure("the program nests too deeply for the compiler, in its blocks or in an "
                       "expression",
                       options);
    case WorkerFault::large:
        return failure("the compiled program has more than " + std::to_string(mostAnswer >> 20) +
                           " MiB, the maximum",
                       options);
    case WorkerFault::killed:
        return failure("the compiler was killed by another program, or by the system because its "
                       "memory is exhausted",
                       options);
    case WorkerFault::late:
        break;
    }
    std::string seconds = std::to_string(static_cast<double>(options.limit.count()) / 1000);
    seconds.erase(seconds.find_last_not_of('0') + 1);
    if (seconds.back() == '.')
        seconds.pop_back();
    return failure("the compiler ran out of time (" + seconds + " s)", options);
}

// Relative folders are those of this process, at this time.
std::vector<IncludeFolder> foldersOf(const CompileOptions& options) {
    std::vector<IncludeFolder> folders;
    for (const std::filesystem::path& folder : options.includes) {
        std::error_code error;
        const std::filesystem::path whole = std::filesystem::absolute(folder, error);
        folders.push_back({.name = folder.string(), .path = whole.string()});
    }
    return folders;
}

Compilation compileIn(WorkerProcess& worker, std::string_view source,
                      const CompileOptions& options) {
    if (source.size() > longestSource)
        return failure("the program has " + std::to_string(source.size()) +
                           " bytes; the maximum is " + std::to_string(longestSource),
                       options);
    const Request request{
        .limitMilliseconds = static_cast<std::uint32_t>(options.limit.count()),
        .target = options.target,
        .moreWarningsIn = options.moreWarningsIn,
        .constants = options.constants,
        .includes = foldersOf(options),
        .reflects = options.reflects,
        .lists = options.lists,
        .source = preamble(options.defines, options.version, options.name).append(source)};
    auto answer = worker.ask(request);
    // It had ended by itself, between two requests, or was killed, which says nothing of the
    // program.
    if (const auto* fault = std::get_if<WorkerFault>(&answer);
        fault && (*fault == WorkerFault::gone || *fault == WorkerFault::killed))
        answer = worker.ask(request);
    if (auto* compilation = std::get_if<Compilation>(&answer))
        return std::move(*compilation);
    worker.start(); // a fresh one, for the next program
    return failure(std::get<WorkerFault>(answer), options);
}

} // namespace

SeparateWorker::SeparateWorker() : process_(std::make_unique<Process>()), outer_(separate) {
    separate = process_.get();
}

SeparateWorker::~SeparateWorker() {
    separate = outer_;
}

Compilation compile(std::string_view source, const CompileOptions& options) {
    Process& common = process();
    const std::lock_guard lock(common.mutex);
    return compileIn(common.worker, source, options);
}

void warmUp() {
    Process& common = process();
    if (const std::unique_lock lock(common.mutex, std::try_to_lock); lock)
        common.worker.start();
}

struct Compilers::Pool {
    std::filesystem::path program;
    unsigned most;
    std::mutex mutex;
    std::condition_variable isFreed;
    std::vector<std::unique_ptr<WorkerProcess>> idle; // the last one was used last, so it is warm
    unsigned made = 0;

    std::unique_ptr<WorkerProcess> take() {
        std::unique_lock lock(mutex);
        isFreed.wait(lock, [&] { return !idle.empty() || made < most; });
        if (idle.empty()) {
            auto fresh = std::make_unique<WorkerProcess>(program);
            idle.reserve(made + 1); // so that giving it back needs no memory
            ++made;
            return fresh;
        }
        std::unique_ptr<WorkerProcess> last = std::move(idle.back());
        idle.pop_back();
        return last;
    }
    void giveBack(std::unique_ptr<WorkerProcess> worker) {
        {
            const std::lock_guard lock(mutex);
            idle.push_back(std::move(worker));
        }
        isFreed.notify_one();
    }
};

Compilers::Compilers(std::filesystem::path worker, unsigned most) : pool(std::make_unique<Pool>()) {
    pool->program = std::move(worker);
    pool->most = std::max(most, 1u);
}

Compilers::~Compilers() {
    for (const std::unique_ptr<WorkerProcess>& worker : pool->idle)
        worker->end();
}

Compilation Compilers::compile(std::string_view source, const CompileOptions& options) {
    // Gives the worker back even if there is no memory for a request or an answer.
    struct Loan {
        Pool& pool;
        std::unique_ptr<WorkerProcess> worker;
        ~Loan() { pool.giveBack(std::move(worker)); }
    } loan{*pool, pool->take()};
    return compileIn(*loan.worker, source, options);
}

} // namespace tarnwick::msl
