#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickMSL/WorkerProcess.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace tarnwick::msl {
namespace {

namespace fs = std::filesystem;

// What a host makes of a worker that says it has read the request, then sends `bytes`, as printf(1)
// writes them, and remains.
WorkerFault faultOf(const std::string& bytes, std::uint32_t limitMilliseconds) {
    const TemporaryFolder folder;
    const fs::path program = folder.path() / "worker";
    std::ofstream(program) << "#!/bin/sh\nprintf 'r" << bytes << "' >&0\nexec sleep 60\n";
    fs::permissions(program, fs::perms::owner_all);
    WorkerProcess worker(program);
    const auto answer = worker.ask({.limitMilliseconds = limitMilliseconds, .source = "x"});
    const auto* fault = std::get_if<WorkerFault>(&answer);
    EXPECT_NE(fault, nullptr);
    return fault != nullptr ? *fault : WorkerFault::missing;
}

long mostMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss >> 10;
}

TEST(WorkerProcess, takesMemoryOnlyForWhatComes) {
    EXPECT_EQ(faultOf("\\377\\377\\377\\377abc", 20'000), WorkerFault::stopped); // 4 GiB
    static_assert(mostAnswer == 0x8000000);
    const long before = mostMegabytes();
    EXPECT_EQ(faultOf("\\0\\0\\0\\10abc", 300), WorkerFault::late); // mostAnswer
    EXPECT_LT(mostMegabytes(), before + 16);
    EXPECT_EQ(faultOf("\\2\\0\\0\\0abc", 20'000), WorkerFault::stopped); // not an answer
}

} // namespace
} // namespace tarnwick::msl
