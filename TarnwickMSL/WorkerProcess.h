// The compiler's child process, seen from its parent.
#pragma once

#include "TarnwickMSL/Wire.h"

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <variant>

namespace tarnwick::msl {

enum class WorkerFault {
    missing, // its program could not be started
    gone,    // it ended before it had read the request
    stopped, // it ended while it worked on the request
    late     // it was ended at the time limit
};

// Where the worker's program is: what TARNWICK_MSL_WORKER names, or beside this process's program,
// or in ../libexec of there. Empty where there is none.
std::filesystem::path workerProgram();

// Owns one child at most. Not for several threads at a time.
class WorkerProcess {
  public:
    WorkerProcess() = default;
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    // Lets the child go: it ends when it finds the connection closed.
    ~WorkerProcess();

    // Starts a child if there is none, without waiting for it; false where that fails.
    bool start();
    // Sends the request and waits for the answer. After a fault there is no child any more.
    std::variant<Compilation, WorkerFault> ask(const Request& request);

  private:
    pid_t child = -1;
    int connection = -1;

    void end();
};

} // namespace tarnwick::msl
