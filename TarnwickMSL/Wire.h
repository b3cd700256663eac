// Requests to the compiler's worker process and its answers as bytes. Each is sent as a 32-bit
// length, then its bytes. Both ends are from one build, so numbers have the machine's form. A host
// that runs while its package is replaced would start a worker of another build; wireForm() tells
// them apart.
#pragma once

#include "TarnwickMSL/Compilation.h"
#include "TarnwickMSL/Constants.h"
#include "TarnwickMSL/IncludeFolder.h"
#include "TarnwickMSL/Target.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

struct Request {
    std::uint32_t limitMilliseconds = 0; // after this the worker ends itself
    Target target{};
    std::string moreWarningsIn;
    ConstantValues constants;
    std::vector<IncludeFolder> includes;
    bool reflects = false, lists = false; // CompileOptions
    std::string source;
};

// The byte that a worker sends as soon as it has read a request. A connection that closes after it
// means that this request ended the worker.
inline constexpr char requestIsRead = 'r';

// Bytes of addresses that a worker has at most.
inline constexpr std::uint64_t mostWorkerMemory = 3ull << 30;

// Bytes of an answer, far above those of real programs. A program that has taken its worker over
// could ask for any memory of the host otherwise.
inline constexpr std::size_t mostAnswer = 128u << 20;

// The status of a worker that ends because memory or its stack is exhausted, or because its answer
// has more bytes than mostAnswer. Any other end before the answer is a crash.
enum class WorkerEnd { withoutMemory = 40, withoutStack = 41, tooLarge = 42 };

// 16 hexadecimal digits that identify the records of this build. A worker gets those of its host as
// an argument, and ends at once if they are not its own.
const char* wireForm();

std::string toBytes(const Request& request);
std::string toBytes(const Compilation& compilation);

// Absent if the bytes are cut short or invalid.
std::optional<Request> requestFrom(std::string_view bytes);
std::optional<Compilation> compilationFrom(std::string_view bytes);

} // namespace tarnwick::msl
