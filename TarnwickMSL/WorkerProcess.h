// The compiler's child process, seen from its parent.
#pragma once

#include "TarnwickMSL/Wire.h"

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <utility>
#include <variant>

namespace tarnwick::msl {

enum class WorkerFault {
    missing, // its program could not be started
    gone,    // it ended before it had read the request
    stopped, // it ended while it worked on the request
    full,    // the same, because its memory was exhausted
    deep,    // the same, because its stack was exhausted
    large,   // its answer has more than mostAnswer bytes
    killed,  // the same, by SIGKILL: the system does so when its memory is exhausted
    late     // it was ended at the time limit
};

// The path of the worker's program: the value of TARNWICK_MSL_WORKER, else the installed one.
std::filesystem::path workerProgram();

// Owns at most one child. One thread at a time.
class WorkerProcess {
  public:
    // The program of the child; empty: workerProgram() at each start.
    explicit WorkerProcess(std::filesystem::path program = {}) : program(std::move(program)) {}
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    // Closes the connection; the child then ends by itself.
    ~WorkerProcess();

    // Starts a child unless one runs, without waiting for it; false if that fails.
    bool start();
    // Sends the request and waits for the answer. Takes memory only for what has come. After a
    // fault or an exception there is no child. A child that reads files for #include answers no
    // other requests, because it may read all files.
    std::variant<Compilation, WorkerFault> ask(const Request& request);
    // Ends the child, if there is one, and waits for its end. Returns its status as waitpid(2)
    // does, if there was one.
    std::optional<int> end();

  private:
    std::variant<Compilation, WorkerFault> exchange(const Request& request);

    std::filesystem::path program;
    pid_t child = -1;
    int connection = -1;
    std::optional<bool> readsFiles; // of the first request of the child
};

} // namespace tarnwick::msl
