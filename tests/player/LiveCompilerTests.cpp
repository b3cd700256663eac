#include "player/Compiling/LiveCompiler.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tarnwick::player {
namespace {

std::shared_ptr<const Episode> episode(const std::string& body) {
    return std::make_shared<const Episode>(Episode::of(
        "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n" + body + "\n}\n"));
}

TEST(LiveCompiler, findsErrorsOnTheLinesOfTheEpisode) {
    const CompileResult result = compiled(
        {.revision = 3, .episode = episode("return float4(vec3(1.0), 1.0);"), .device = {}});
    EXPECT_EQ(result.revision, 3u);
    EXPECT_FALSE(result.program);
    ASSERT_FALSE(result.findings.empty());
    EXPECT_EQ(result.findings[0].diagnostic.line, 2);
    EXPECT_NE(result.findings[0].hint.find("float3"), std::string::npos);
}

// Of many texts that are typed while one is compiled, only the last is compiled.
TEST(LiveCompiler, skipsTextsThatAreReplacedBeforeTheyAreCompiled) {
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::uint64_t> revisions;
    LiveCompiler compiler([&](const CompileResult& result) {
        const std::lock_guard lock(mutex);
        revisions.push_back(result.revision);
        arrived.notify_all();
    });
    constexpr std::uint64_t last = 200;
    for (std::uint64_t revision = 1; revision <= last; ++revision)
        compiler.compile({.document = 7,
                          .revision = revision,
                          .episode = episode("return float4(" + std::to_string(revision) + ");")});
    std::unique_lock lock(mutex);
    ASSERT_TRUE(arrived.wait_for(lock, std::chrono::seconds(60),
                                 [&] { return !revisions.empty() && revisions.back() == last; }));
    EXPECT_LT(revisions.size(), 20u);
    EXPECT_TRUE(std::ranges::is_sorted(revisions));
}

} // namespace
} // namespace tarnwick::player
