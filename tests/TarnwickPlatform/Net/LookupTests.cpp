// A look-up of a host that takes its time. The library calls this program's getaddrinfo.
#include "tests/TarnwickPlatform/Net/Kinds.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <netdb.h>
#include <semaphore>

namespace tarnwick {
namespace {

std::counting_semaphore<> answered(0); // one for each look-up of "slow.example"
std::atomic<int> asked = 0, givenUp = 0;

} // namespace
} // namespace tarnwick

extern "C" int getaddrinfo(const char* host, const char* port, const addrinfo* hints,
                           addrinfo** found) noexcept(false) {
    static const auto next =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    if (!host || host != std::string_view("slow.example"))
        return next(host, port, hints, found);
    ++tarnwick::asked;
    if (!tarnwick::answered.try_acquire_for(std::chrono::seconds(30)))
        ++tarnwick::givenUp;
    return EAI_NONAME;
}

namespace tarnwick {
namespace {

TEST(URLSession, neverWaitsForALookUpOfAHost) {
    const URL url = *URL::parse("http://slow.example/");
    auto session = std::make_unique<URLSession>(SessionConfiguration{.timeout = 0.05});
    EXPECT_EQ(kindOf(session->data({.url = url})), NetError::Kind::timedOut);
    auto other = session->data({.url = url, .timeout = 60});
    session.reset();
    EXPECT_EQ(kindOf(std::move(other)), NetError::Kind::cancelled);
    EXPECT_EQ(givenUp, 0);
    answered.release(asked);
}

} // namespace
} // namespace tarnwick
