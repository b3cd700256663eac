#include "TarnwickMSL/Worker/Exhaustion.h"

#include "TarnwickMSL/Wire.h"

#include <llvm/Support/ErrorHandling.h>

#include <array>
#include <new>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

namespace tarnwick::msl {
namespace {

// The addresses of the thread's stack, those below it included that the kernel keeps free.
struct Stack {
    const char* lowest = nullptr;
    const char* end = nullptr;
};

Stack stack; // read by the handler

Stack stackOfThread() {
    constexpr std::size_t keptFree = 1u << 20; // more than the gap of 256 pages of Linux
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return {};
    void* lowest = nullptr;
    std::size_t size = 0;
    const int fault = pthread_attr_getstack(&attributes, &lowest, &size);
    pthread_attr_destroy(&attributes);
    if (fault != 0)
        return {};
    const char* first = static_cast<const char*>(lowest);
    return {.lowest = first - keptFree, .end = first + size};
}

[[noreturn]] void end(WorkerEnd how) {
    _exit(static_cast<int>(how));
}

// A fault at an address of the stack means that the stack could not grow. For all others the
// process ends by the signal when the instruction runs again, because SA_RESETHAND removed this
// handler.
void judgeFault(int, siginfo_t* fault, void*) {
    const char* address = static_cast<const char*>(fault->si_addr);
    if (address >= stack.lowest && address < stack.end)
        end(WorkerEnd::withoutStack);
}

} // namespace

void endWhenExhausted() {
    std::set_new_handler([] { end(WorkerEnd::withoutMemory); });
    llvm::install_bad_alloc_error_handler(
        [](void*, const char*, bool) { end(WorkerEnd::withoutMemory); });

    static std::array<char, 1u << 16> other; // the handler's stack
    stack = stackOfThread();
    const stack_t place{.ss_sp = other.data(), .ss_flags = 0, .ss_size = other.size()};
    sigaltstack(&place, nullptr);
    struct sigaction action {};
    action.sa_sigaction = judgeFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    sigaction(SIGSEGV, &action, nullptr);
    sigaction(SIGBUS, &action, nullptr);
}

} // namespace tarnwick::msl
