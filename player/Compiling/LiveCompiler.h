// Compiles the newest text of each document on a thread of its own.
#pragma once

#include "TarnwickCore/Findings.h"
#include "TarnwickGPU/Device.h"
#include "TarnwickRender/ShaderProgram.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace tarnwick::player {

struct CompileRequest {
    std::uint64_t document = 0; // its number; a later request of the same document replaces this
    std::uint64_t revision = 0; // of the text
    std::shared_ptr<const Episode> episode;
    std::shared_ptr<gpu::Device> device; // null: only errors are found
};

struct CompileResult {
    std::uint64_t document = 0, revision = 0;
    std::shared_ptr<const Episode> episode;
    std::shared_ptr<gpu::Device> device;
    std::shared_ptr<const ShaderProgram> program; // null if there are errors or no device
    std::vector<Finding> findings;                // for the author, warnings too
    std::string failure;        // one sentence if the program fails without findings; or empty
    double compileSeconds = 0;  // from the text to SPIR-V
    double pipelineSeconds = 0; // of the driver
};

// The worker process compiles; the thread waits for it and makes the pipelines. Functions may be
// called from any thread and do not wait.
class LiveCompiler {
  public:
    // `done` is called on the compiling thread.
    explicit LiveCompiler(std::function<void(CompileResult)> done);
    // No call of `done` begins afterwards. Waits at most a second: then the thread is left behind,
    // and the process must end.
    ~LiveCompiler();
    LiveCompiler(const LiveCompiler&) = delete;
    LiveCompiler& operator=(const LiveCompiler&) = delete;

    // The newest request is compiled first.
    void compile(CompileRequest request);

  private:
    struct Shared;

    std::shared_ptr<Shared> shared_; // shared with the thread, which may be left behind
    std::thread thread_;
};

// Compiles one request. Blocks; any thread.
CompileResult compiled(const CompileRequest& request);

} // namespace tarnwick::player
