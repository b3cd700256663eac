// The queue with children that misbehave, and with the real command line.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Exports/EpisodeOrders.h"
#include "player/Exports/ExportQueue.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QTest>
#include <algorithm>
#include <csignal>
#include <fstream>
#include <sstream>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

constexpr const char* episode =
    "// @param red 0.25 0.0 1.0\n"
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(p.red, uv, 1.0);\n"
    "}\n";

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

class ExportQueueTest : public testing::Test {
  protected:
    // A child that runs the lines of a shell script; its last word is the output.
    fs::path child(const std::string& lines) const {
        fs::path script = folder.path() / "child";
        writeWholeFile(script, "#!/bin/sh\nfor output; do :; done\n" + lines + "\n");
        fs::permissions(script, fs::perms::owner_all);
        return script;
    }
    Order order(const std::string& name = "a.mp4") const {
        return {.title = name,
                .words = {"export", OrderWord::output()},
                .output = folder.path() / "results" / name};
    }
    static bool waitFor(const ExportQueue& queue) {
        return becomesTrue([&] { return queue.unfinished() == 0; });
    }
    // What is in the folder of the results, without the job's own folders once they are removed.
    std::vector<std::string> results() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.path() / "results"))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }
    bool becomes(const std::vector<std::string>& names) const {
        return becomesTrue([&] { return results() == names; });
    }

    ExportQueueTest() { fs::create_directory(folder.path() / "results"); }

    TemporaryFolder folder;
};

TEST_F(ExportQueueTest, neverReplacesAFile) {
    writeWholeFile(folder.path() / "results" / "a.mp4", "mine");
    // While the first child works, another program takes the next name too.
    ExportQueue queue(child("echo made >\"$output\"; echo theirs >" +
                            (folder.path() / "results" / "'a 2.mp4'").string()));
    const int first = queue.add(order());
    const int second = queue.add(order());
    ASSERT_TRUE(waitFor(queue));
    EXPECT_EQ(queue.jobs().at(first).result, folder.path() / "results" / "a 3.mp4");
    EXPECT_EQ(queue.jobs().at(second).result, folder.path() / "results" / "a 4.mp4");
    EXPECT_EQ(contentOf(folder.path() / "results" / "a.mp4"), "mine");
    EXPECT_TRUE(becomes({"a 2.mp4", "a 3.mp4", "a 4.mp4", "a.mp4"}));
}

TEST_F(ExportQueueTest, showsProgressAndRunsAtMostItsLimit) {
    const fs::path busy = folder.path() / "busy";
    // The second child waits for the third.
    ExportQueue queue(child("busy=" + busy.string() +
                            "; echo >>$busy; "
                            "echo '{\"unit\":\"Frame\",\"done\":3,\"goal\":6,\"seconds\":1}' >&2; "
                            "sleep 0.2; waited=0; "
                            "while [ $(wc -l <$busy) = 2 ] && [ $waited -lt 100 ]; do "
                            "sleep 0.1; waited=$((waited + 1)); done; "
                            "wc -l <$busy >\"$output\""));
    std::vector<std::int64_t> seen;
    QObject::connect(&queue, &ExportQueue::changed, [&](int id) {
        if (queue.jobs().contains(id))
            seen.push_back(queue.jobs().at(id).progress.done);
    });
    const int first = queue.add(order()), second = queue.add(order()), third = queue.add(order());
    EXPECT_EQ(queue.unfinished(), 3);
    ASSERT_TRUE(becomesTrue([&] { return queue.jobs().at(first).isOver(); }));
    queue.setLimit(2);
    ASSERT_TRUE(waitFor(queue));
    EXPECT_EQ(std::ranges::max(seen), 3);
    EXPECT_EQ(contentOf(*queue.jobs().at(first).result), "1\n") << "one at a time";
    EXPECT_EQ(contentOf(*queue.jobs().at(second).result), "3\n") << "two at a time";
    queue.remove(third);
    EXPECT_EQ(queue.jobs().size(), 2u);
}

TEST_F(ExportQueueTest, keepsWhatAChildSaysAndRunsAnOrderAgain) {
    const fs::path attempt = folder.path() / "attempt";
    ExportQueue queue(child("[ -e " + attempt.string() + " ] || { touch " + attempt.string() +
                            "; exit 1; }; echo made >\"$output\"; "
                            "echo \"tarnwick: A file of $output is missing.\" >&2; "
                            "echo '{\"unit\":\"Frame\",\"done\":3,\"goal\":6,\"seconds\":1}' >&2"));
    const int first = queue.add(order());
    ASSERT_TRUE(waitFor(queue));
    EXPECT_EQ(queue.jobs().at(first).state, ExportState::failed);
    const int second = queue.again(first);
    ASSERT_TRUE(waitFor(queue));
    EXPECT_EQ(queue.jobs().size(), 1u);
    EXPECT_EQ(queue.jobs().at(second).state, ExportState::done);
    EXPECT_EQ(queue.jobs().at(second).remarks,
              std::vector<std::string>{"A file of a.mp4 is missing."});
}

TEST_F(ExportQueueTest, saysWhyAChildFailed) {
    struct Case {
        const char* lines;
        const char* sentence;
    };
    for (const auto& [lines, sentence] :
         {Case{"echo 'a.metal:1:2: error: no' >&2; echo \"tarnwick: $output is bad.\" >&2; exit 1",
               "a.mp4 is bad."},
          Case{"printf 'no line break' >&2; exit 3", "no line break"},
          Case{"exit 3", "The child process ended with status 3."},
          Case{"echo 'tarnwick: Last words' >&2; kill -SEGV $$",
               "The child process ended unexpectedly (Segmentation fault). Its last line: Last "
               "words"},
          Case{"exit 0", "cannot be written: No such file or directory."}}) {
        ExportQueue queue(child(lines));
        const int id = queue.add(order());
        ASSERT_TRUE(waitFor(queue));
        EXPECT_EQ(queue.jobs().at(id).state, ExportState::failed);
        EXPECT_TRUE(queue.jobs().at(id).sentence.ends_with(sentence))
            << queue.jobs().at(id).sentence;
    }
    ExportQueue queue(folder.path() / "none");
    const int id = queue.add(order());
    ASSERT_TRUE(waitFor(queue));
    EXPECT_NE(queue.jobs().at(id).sentence.find("none cannot be run: "), std::string::npos);
    Order nowhere = order();
    nowhere.output = folder.path() / "no folder" / "a.mp4";
    const int second = queue.add(nowhere);
    ASSERT_TRUE(waitFor(queue));
    EXPECT_NE(queue.jobs().at(second).sentence.find("cannot be written"), std::string::npos);
    EXPECT_TRUE(becomes({}));
}

TEST_F(ExportQueueTest, cancelsWithinTwoSecondsEvenAChildThatDoesNotListen) {
    ExportQueue queue(child("trap '' TERM; echo half >\"$output\"; "
                            "while :; do sleep 0.05; done"));
    const int first = queue.add(order()), second = queue.add(order());
    ASSERT_TRUE(becomesTrue([&] {
        return std::ranges::any_of(results(), [&](const std::string& name) {
            return fs::exists(folder.path() / "results" / name / "a.mp4");
        });
    }));
    queue.cancel(second);
    EXPECT_EQ(queue.jobs().at(second).state, ExportState::cancelled);
    QElapsedTimer timer;
    timer.start();
    queue.cancel(first);
    ASSERT_TRUE(waitFor(queue));
    EXPECT_LT(timer.elapsed(), 2000 * patience());
    EXPECT_EQ(queue.jobs().at(first).state, ExportState::cancelled);
    EXPECT_TRUE(becomes({}));
}

TEST_F(ExportQueueTest, writesTheMovieOfADocumentWithItsThumbnail) {
    ExportQueue queue;
    MovieRequest request{.episode = {.title = "Red", .text = episode},
                         .format = {.preset = "site", .size = PixelSize{320, 180}},
                         .duration = 1,
                         .output = folder.path() / "results" / "red.mp4"};
    request.episode.settings.values["red"] = 1;
    const int done = queue.add(movieOrder(request));
    request.episode.text += "float x = y;\n";
    const int broken = queue.add(movieOrder(request));
    request.episode.text = episode;
    request.duration = 4000;
    const int cancelled = queue.add(movieOrder(request));
    ASSERT_TRUE(becomesTrue([&] { return queue.jobs().at(cancelled).progress.done > 0; }));
    QElapsedTimer timer;
    timer.start();
    queue.cancel(cancelled);
    ASSERT_TRUE(waitFor(queue));
    EXPECT_LT(timer.elapsed(), 2000 * patience());
    const ExportJob& job = queue.jobs().at(done);
    ASSERT_EQ(job.state, ExportState::done) << job.sentence;
    ASSERT_NE(job.thumbnail, nullptr);
    EXPECT_EQ(job.thumbnail->width, 320u);
    EXPECT_GT(job.thumbnail->bytes.at(2), 240) << "red, as the value of the document says";
    EXPECT_EQ(queue.jobs().at(broken).state, ExportState::failed);
    EXPECT_EQ(queue.jobs().at(broken).sentence.find("/"), std::string::npos)
        << queue.jobs().at(broken).sentence;
    EXPECT_EQ(queue.jobs().at(cancelled).state, ExportState::cancelled);
    EXPECT_TRUE(becomes({"red.mp4"}));
}

} // namespace
} // namespace tarnwick::player
