#include "TarnwickCore/APIClient.h"
#include "tests/servers/HostileServer.h"
#include "tests/servers/LoopbackServer.h"

#include <gtest/gtest.h>

namespace tarnwick {
namespace {

using Kind = ServiceFailure::Kind;

// A service whose every answer is `answer`.
struct Service {
    explicit Service(int status, std::string body)
        : server([=](const ServedRequest&) {
              return ServedAnswer{.status = status, .headers = {}, .body = body};
          }) {}

    LoopbackServer server;
    APIClient client{server.url("/root"), "Test/1"};
};

template <typename Result> ServiceFailure failureOf(std::future<Result> call) {
    try {
        call.get();
    } catch (const ServiceFailure& failure) {
        return failure;
    }
    throw std::runtime_error("The call gives a result.");
}

TEST(APIClient, asksForCodesAndTheirApproval) {
    const Service start(201, R"({"device":"d","code":"AB-12","url":"https://a.example/l"})");
    EXPECT_EQ(start.client.startLink().get().code, "AB-12");
    EXPECT_EQ(start.server.requests().at(0).target, "/root/api/app/link");
    EXPECT_EQ(start.server.requests().at(0).body, "{}");
    EXPECT_EQ(start.server.requests().at(0).headers.find("Authorization"), nullptr);

    const Service approved(200, R"({"token":"t","email":"e"})");
    EXPECT_EQ(approved.client.pollLink("d").get(), LinkPoll(Approved{"t", "e", std::nullopt}));
    EXPECT_EQ(approved.server.requests().at(0).body, R"({"device":"d"})");
    EXPECT_EQ(Service(202, "").client.pollLink("d").get(), LinkPoll(LinkPending()));
    EXPECT_EQ(failureOf(Service(200, "{}").client.startLink()), ServiceFailure::badAnswer());
    EXPECT_EQ(failureOf(Service(503, "").client.startLink()).status(), 503);
}

} // namespace
} // namespace tarnwick
