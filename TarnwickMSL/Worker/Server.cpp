#include "TarnwickMSL/Worker/Server.h"

#include "TarnwickMSL/Confinement/Confinement.h"
#include "TarnwickMSL/Wire.h"
#include "TarnwickMSL/Worker/Exhaustion.h"
#include "TarnwickMSL/Worker/Precompiled.h"
#include "TarnwickMSL/Worker/Translate.h"

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <thread>
#include <unistd.h>

namespace tarnwick::msl {
namespace {

bool receiveAll(int connection, char* to, std::size_t size) {
    while (size > 0) {
        const ssize_t got = recv(connection, to, size, 0);
        if (got == 0 || (got < 0 && errno != EINTR))
            return false;
        if (got > 0) {
            to += got;
            size -= static_cast<std::size_t>(got);
        }
    }
    return true;
}

bool sendAll(int connection, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EINTR)
            return false;
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

// Limits this process's memory, so that no program can exhaust the machine's. No core files.
void limitMemory() {
// The sanitizers take terabytes of addresses for their shadow memory.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    const rlimit memory{.rlim_cur = mostWorkerMemory, .rlim_max = mostWorkerMemory};
    setrlimit(RLIMIT_AS, &memory);
#endif
    const rlimit none{.rlim_cur = 0, .rlim_max = 0};
    setrlimit(RLIMIT_CORE, &none);
}

// Ends this process when its parent ends, in any way and at any time.
void endWithParent(int connection) {
    std::thread([connection] {
        pollfd gone{.fd = connection, .events = 0, .revents = 0};
        while (poll(&gone, 1, -1) < 0) {
        }
        _exit(0);
    }).detach();
}

// Ends this process by SIGPROF if its parent is gone and the work does not end. Counts processor
// time, since the clock goes on while a process is stopped.
void limitTime(std::uint32_t milliseconds) {
    const itimerval timer{
        .it_interval = {.tv_sec = 0, .tv_usec = 0},
        .it_value = {.tv_sec = static_cast<time_t>(milliseconds / 1000), .tv_usec = 0}};
    setitimer(ITIMER_PROF, &timer, nullptr);
}

bool isRequestWaiting(int connection) {
    pollfd waiting{.fd = connection, .events = POLLIN, .revents = 0};
    return poll(&waiting, 1, 0) > 0;
}

// Loads the memory and reads the parts of the library that most programs need, while nobody waits.
void rehearse(const StandardLibrary& library, const std::string& moreWarningsIn) {
    (void)translate(R"(#include <metal_stdlib>
using namespace metal;
struct Varyings { float4 position [[position]]; float2 uv; };
vertex Varyings v(uint i [[vertex_id]]) {
    return {float4(float2(i & 1, i >> 1) * 2.0 - 1.0, 0.0, 1.0), float2(0.5)};
}
fragment float4 f(Varyings in [[stage_in]], constant float& t [[buffer(0)]]) {
    float2 p = float2x2(cos(t), -sin(t), sin(t), cos(t)) * fract(in.uv) - floor(in.uv);
    float a = atan2(p.y, p.x) + length(p) + dot(p, p) + exp(-abs(p.x)) + sqrt(abs(p.y));
    float3 n = normalize(float3(p, max(a, 0.0))) * pow(clamp(t, 0.0, 1.0), 2.0);
    float3 colour = mix(float3(n.xy, min(a, 1.0)), float3(0.5), smoothstep(0.0, 1.0, a));
    return float4(cross(n, colour) + step(0.5, colour) + fmod(a, 2.0) + saturate(n), 1.0);
}
)",
                    library, {.moreWarningsIn = moreWarningsIn});
}

// What this process needs else is open or in memory. The parent sends requests that include files
// to a process of their own.
class Confined {
  public:
    void before(const Request& request) {
        const bool writesDumps = std::getenv("TARNWICK_MSL_DUMP") != nullptr; // for developers
        if (!isConfined_ && !writesDumps)
            confine(request.includes.empty() ? FileAccess::none : FileAccess::reading);
        isConfined_ = true;
    }

  private:
    bool isConfined_ = false;
};

// Sets `moreWarningsIn` to that of the request.
bool answerOne(int connection, const StandardLibrary& library, std::string& moreWarningsIn,
               Remains& remains, Confined& confined) {
    std::uint32_t size = 0;
    if (!receiveAll(connection, reinterpret_cast<char*>(&size), sizeof size))
        return false;
    std::string bytes(size, '\0');
    if (!receiveAll(connection, bytes.data(), bytes.size()))
        return false;
    const std::optional<Request> request = requestFrom(bytes);
    if (!request || !sendAll(connection, {&requestIsRead, 1}))
        return false;
    confined.before(*request);
    moreWarningsIn = request->moreWarningsIn;
    limitTime(request->limitMilliseconds + 2000);
    std::string answer = toBytes(translate(request->source, library,
                                           {.target = request->target,
                                            .moreWarningsIn = request->moreWarningsIn,
                                            .constants = request->constants,
                                            .includes = request->includes,
                                            .reflects = request->reflects,
                                            .lists = request->lists},
                                           nullptr, &remains));
    limitTime(0);
    if (answer.size() > mostAnswer)
        _exit(static_cast<int>(WorkerEnd::tooLarge));
    size = static_cast<std::uint32_t>(answer.size());
    answer.insert(0, reinterpret_cast<const char*>(&size), sizeof size);
    const bool isSent = sendAll(connection, answer); // as a whole, so that the receiver wakes once
    library.tidy();
    remains.tidy();
    return isSent;
}

} // namespace

void serve(int connection) {
    limitMemory();
    endWhenExhausted();
    endWithParent(connection);
    const StandardLibrary library = standardLibrary();
    Confined confined;
    std::string moreWarningsIn; // of the last program; the next one is likely to have the same
    Remains remains;
    do {
        if (!library.isOpen() && !isRequestWaiting(connection))
            rehearse(library, moreWarningsIn);
    } while (answerOne(connection, library, moreWarningsIn, remains, confined));
}

} // namespace tarnwick::msl
