#include "player/Compiling/LiveCompiler.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::chrono::seconds longestEnd{1};

} // namespace

struct LiveCompiler::Shared {
    std::mutex mutex; // of all members
    std::condition_variable changed;
    std::vector<CompileRequest> waiting; // the newest last
    bool isEnd = false;
    std::mutex calling; // held during a call of `done`
    std::function<void(CompileResult)> done;
    std::promise<void> ended;

    bool take(CompileRequest& request);
    void run();
};

// False at the end.
bool LiveCompiler::Shared::take(CompileRequest& request) {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return isEnd || !waiting.empty(); });
    if (isEnd)
        return false;
    request = std::move(waiting.back());
    waiting.pop_back();
    return true;
}

void LiveCompiler::Shared::run() {
    CompileRequest request;
    while (take(request)) {
        CompileResult result = compiled(request);
        const std::lock_guard call(calling);
        if (done)
            done(std::move(result));
    }
    ended.set_value();
}

LiveCompiler::LiveCompiler(std::function<void(CompileResult)> done)
    : shared_(std::make_shared<Shared>()) {
    shared_->done = std::move(done);
    thread_ = std::thread([shared = shared_] { shared->run(); });
}

LiveCompiler::~LiveCompiler() {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->isEnd = true;
    }
    {
        const std::lock_guard call(shared_->calling);
        shared_->done = nullptr;
    }
    shared_->changed.notify_one();
    if (shared_->ended.get_future().wait_for(longestEnd) == std::future_status::ready)
        thread_.join();
    else
        thread_.detach();
}

void LiveCompiler::compile(CompileRequest request) {
    const std::lock_guard lock(shared_->mutex);
    std::erase_if(shared_->waiting,
                  [&](const CompileRequest& older) { return older.document == request.document; });
    shared_->waiting.push_back(std::move(request));
    shared_->changed.notify_one();
}

CompileResult compiled(const CompileRequest& request) {
    const Episode& episode = *request.episode;
    CompileResult result{.document = request.document,
                         .revision = request.revision,
                         .episode = request.episode,
                         .device = request.device};
    const double begin = currentMediaTime();
    try {
        const CompiledEpisode compiled = CompiledEpisode::make(episode, request.device.get());
        const double middle = currentMediaTime();
        result.compileSeconds = middle - begin;
        result.findings =
            findingsOf(episode, DiagnosticParser::parse(compiled.library->warnings()));
        if (request.device)
            result.program =
                ShaderProgram::make(compiled, *request.device, ShaderProgram::pixelFormat);
        result.pipelineSeconds = currentMediaTime() - middle;
    } catch (const ShaderError& error) {
        result.findings = findingsOf(episode, error.diagnostics);
        if (errorsAmong(result.findings).empty())
            result.failure = error.raw;
    } catch (const std::exception& error) { // the worker or the memory
        result.failure = error.what();
    }
    result.findings = withDeclarationWarnings(episode, std::move(result.findings));
    return result;
}

} // namespace tarnwick::player
