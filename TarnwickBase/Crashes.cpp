#include "TarnwickBase/Crashes.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <system_error>
#include <unistd.h>

namespace tarnwick {
namespace {

constexpr std::array numbers{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};

// Read by the handlers.
constinit const char* name = "";
constinit std::atomic<bool> isTold = false;

// Of the handlers on the main thread, whose own stack may be exhausted.
std::array<std::byte, 1 << 16> stack;

// No memory and no locks, since a handler of a signal calls it.
void write(std::string_view text) {
    [[maybe_unused]] const auto ignored = ::write(STDERR_FILENO, text.data(), text.size());
}

void tell(std::string_view sentence) {
    write(name);
    write(": ");
    write(sentence);
    write("\n");
}

// The process ends by the signal when the instruction runs again, because of SA_RESETHAND; abort()
// raises SIGABRT again.
void tellOfFault(int number) {
    if (isTold)
        return;
    if (number == SIGFPE)
        tell("The program or a driver computed what is not defined, and ends.");
    else if (number == SIGABRT) // malloc, for instance, which has said in a line what it found
        tell("The program or a library found a fault of its own, and ends. The memory may be "
             "exhausted.");
    else
        tell("The program or a driver crashed. The memory may be exhausted.");
}

[[noreturn]] void tellOfException() {
    try {
        if (const std::exception_ptr error = std::current_exception())
            std::rethrow_exception(error);
        tell("The program ends by an error of its own.");
    } catch (const std::bad_alloc&) {
        tell("There is not enough memory."); // without memory for a text
    } catch (const std::exception& error) {
        tell(sentenceOf(error));
    } catch (...) {
        tell("The program ends by an unknown error.");
    }
    isTold = true;
    std::abort();
}

} // namespace

void tellOfCrashes(const char* program) {
    name = program;
    std::set_terminate(tellOfException);
    stack_t ofHandlers{};
    ofHandlers.ss_sp = stack.data();
    ofHandlers.ss_size = stack.size();
    struct sigaction action {};
    action.sa_handler = tellOfFault;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_ONSTACK);
    for (const int number : numbers) {
        struct sigaction before {};
        sigaction(number, nullptr, &before);
        if (before.sa_handler != SIG_DFL) // a sanitizer says more
            continue;
        sigaltstack(&ofHandlers, nullptr);
        sigaction(number, &action, nullptr);
    }
}

std::string sentenceOf(const std::exception& error) {
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
        return "There is not enough memory.";
    const auto* const ofSystem = dynamic_cast<const std::system_error*>(&error);
    if (ofSystem != nullptr && ofSystem->code() == std::errc::resource_unavailable_try_again)
        return "There is not enough memory for one more thread."; // std::thread
    return error.what();
}

} // namespace tarnwick
