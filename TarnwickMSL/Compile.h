// Compiles the Metal Shading Language to SPIR-V with its bindings.
#pragma once

#include "TarnwickMSL/Compilation.h"
#include "TarnwickMSL/Constants.h"
#include "TarnwickMSL/Preamble.h"
#include "TarnwickMSL/Target.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

struct CompileOptions {
    // Maximum wall time of one compilation; after it the compilation is ended and `failed` is set.
    std::chrono::milliseconds limit{8000};
    Target target; // default: code for any device
    // The name that #line gives to a part of the source. That part then gets warnings that are off
    // by default: unused variables, unused parameters of functions that only it calls, variables
    // that are read before they are set, integer divisions that drop a fraction. No other part gets
    // any warning. Empty: the default warnings, in all parts.
    std::string moreWarningsIn;
    // Function constants with these values become constants of the program: conditions and loops
    // that depend on them fold, arguments with a false [[function_constant(condition)]] are absent,
    // and they may be the index of an argument or a colour. A name that is no function constant of
    // the program is an error.
    ConstantValues constants;
    // The name of the source in messages. Empty: "program_source".
    std::string name;
    std::vector<Define> defines; // all valid
    std::uint32_t version = newestVersion;
    // Folders of files for #include, in the order in which they are searched. They are read when
    // the program is compiled. Files outside them are refused, also through ".." and links; so are
    // all without a folder.
    std::vector<std::filesystem::path> includes;
    bool reflects = false; // sets Compilation::reflection
    bool lists = false;    // sets Compilation::listings
};

// Compiles a whole program's text. Never throws on invalid source: the compiler's messages are
// data.
//
// A child process does the work and stays warm between calls. A crash or an endless loop in the
// compiler's libraries ends that child only and becomes a `failed` compilation. Blocks its caller;
// may be called from any thread, one compilation at a time (calls wait for each other).
Compilation compile(std::string_view source, const CompileOptions& options = {});

// While it exists, programs that its thread compiles use a child of their own: it has the priority
// of the thread, and other threads do not wait for it. Destroyed on the thread that made it, in
// reverse order of making. The child ends with it.
class SeparateWorker {
  public:
    SeparateWorker();
    ~SeparateWorker();
    SeparateWorker(const SeparateWorker&) = delete;
    SeparateWorker& operator=(const SeparateWorker&) = delete;

    struct Process;

  private:
    std::unique_ptr<Process> process_;
    Process* outer_; // of the thread before
};

// Several children for the threads of a host that wants no state of the process: unlike `compile`,
// it has no shared child.
class Compilers {
  public:
    // `worker` is the program of the children. At most `most` of them, from 1, exist at a time;
    // each takes up to 3 GiB of memory for a program that needs it, and about 0.1 GiB for others.
    Compilers(std::filesystem::path worker, unsigned most);
    // Ends the children and waits for their end. No compilation may run.
    ~Compilers();
    Compilers(const Compilers&) = delete;
    Compilers& operator=(const Compilers&) = delete;

    // As the function `compile`, with a child that no other thread uses at the time. Any thread;
    // waits while all children work. Throws std::bad_alloc.
    Compilation compile(std::string_view source, const CompileOptions& options);

  private:
    struct Pool;
    std::unique_ptr<Pool> pool;
};

// Starts the child before the first compilation, without waiting for it.
void warmUp();

} // namespace tarnwick::msl
