#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickCore/Editor/FileWatcher.h"
#include "tests/Waiting.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <atomic>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <latch>
#include <unistd.h>
#include <vector>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr double interval = 0.004; // seconds

// A folder with a file "a", a queue, and a watcher of the file that counts its calls.
class FileWatcherTest : public testing::Test {
  protected:
    // Sets the modification time to `nanoseconds` after a fixed second.
    static void write(const fs::path& file, const std::string& text, long nanoseconds) {
        std::ofstream(file) << text;
        const timespec times[2] = {{1'700'000'000, 0}, {1'700'000'000, nanoseconds}};
        ASSERT_EQ(::utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
    }

    std::unique_ptr<FileWatcher> watcher() {
        return std::make_unique<FileWatcher>(file_, interval, queue_, [this] { calls_++; });
    }

    // Makes `change` while the queue is held, so that no poll runs at the same time, and waits for
    // some polls.
    template <class Change> int callsAfter(Change change) {
        const int before = calls_;
        queue_.sync(change);
        std::atomic<int> ticks = 0;
        const DispatchTimer timer(queue_, interval, [&] { ticks++; });
        EXPECT_TRUE(eventually([&] { return ticks >= 4; }));
        return calls_ - before;
    }

    const TemporaryFolder temporary_;
    const std::string folder_ = temporary_.path();
    fs::path file_ = temporary_.path() / "a";
    std::atomic<int> calls_ = 0;
    DispatchQueue queue_;
};

TEST_F(FileWatcherTest, callsOnceForEachChange) {
    write(file_, "one", 1);
    const auto watching = watcher();
    EXPECT_EQ(callsAfter([] {}), 0);
    EXPECT_EQ(callsAfter([&] { write(file_, "two", 2); }), 1); // same size, same second
    EXPECT_EQ(callsAfter([&] { write(file_, "longer", 2); }), 1);
    EXPECT_EQ(callsAfter([&] {
                  write(file_, "three", 3);
                  write(file_, "four", 4);
              }),
              1);
    EXPECT_EQ(callsAfter([&] { ::chmod(file_.c_str(), 0600); }), 0);
    EXPECT_EQ(callsAfter([&] { // only the inode differs
                  write(file_.string() + "~", "four", 4);
                  fs::rename(file_.string() + "~", file_);
              }),
              1);
}

TEST_F(FileWatcherTest, reportsCreationButNotRemoval) {
    const auto watching = watcher();
    EXPECT_EQ(callsAfter([] {}), 0);
    EXPECT_EQ(callsAfter([&] { write(file_, "one", 1); }), 1);
    EXPECT_EQ(callsAfter([&] { fs::remove(file_); }), 0);
    EXPECT_EQ(callsAfter([&] { write(file_, "one", 1); }), 1);
    // If a file disappears and returns between two polls, only a different stamp is a change.
    EXPECT_EQ(callsAfter([&] {
                  fs::rename(file_, file_.string() + "~");
                  fs::rename(file_.string() + "~", file_);
              }),
              0);
}

TEST_F(FileWatcherTest, followsLinksAndOddNames) {
    file_ = fs::path(folder_) / "tête \xFF\n";
    fs::create_symlink(fs::path(folder_) / "b", file_);
    const auto watching = watcher();
    EXPECT_EQ(callsAfter([&] { write(fs::path(folder_) / "b", "one", 1); }), 1);
    EXPECT_EQ(callsAfter([&] { write(fs::path(folder_) / "b", "two", 2); }), 1);
    EXPECT_EQ(callsAfter([&] { // another link to a file of the same size and time
                  write(fs::path(folder_) / "c", "two", 2);
                  fs::remove(file_);
                  fs::create_symlink("c", file_);
              }),
              1);
    EXPECT_FALSE(FileWatcher::stamp(fs::path(folder_ + std::string("/b\0c", 4))));
}

TEST_F(FileWatcherTest, reportsNothingAfterAStop) {
    write(file_, "one", 1);
    const auto watching = watcher();
    watching->stop();
    watching->stop();
    EXPECT_EQ(callsAfter([&] { write(file_, "two", 2); }), 0);

    std::unique_ptr<FileWatcher> other;
    other = std::make_unique<FileWatcher>(file_, interval, queue_, [&] {
        calls_++;
        other->stop();
    });
    EXPECT_EQ(callsAfter([&] { write(file_, "three", 3); }), 1);
    EXPECT_EQ(callsAfter([&] { write(file_, "four", 4); }), 0);
}

TEST_F(FileWatcherTest, mayBeDestroyedByItsOwnCall) {
    write(file_, "one", 1);
    const auto held = std::make_shared<int>(0);
    std::unique_ptr<FileWatcher> watching;
    watching = std::make_unique<FileWatcher>(file_, interval, queue_, [&, held] {
        watching.reset();
        calls_ += *held + 1; // the captures of the closure outlive the call
    });
    EXPECT_EQ(callsAfter([&] { write(file_, "two", 2); }), 1);
    EXPECT_TRUE(eventually([&] { return held.use_count() == 1; }));
}

TEST_F(FileWatcherTest, stopsWithoutWaitingForARunningCall) {
    write(file_, "one", 1);
    std::latch begun(1), goOn(1);
    auto watching = std::make_unique<FileWatcher>(file_, interval, queue_, [&] {
        calls_++;
        begun.count_down();
        goOn.wait();
    });
    write(file_, "two", 2);
    begun.wait();
    watching.reset();
    write(file_, "three", 3);
    goOn.count_down();
    EXPECT_EQ(callsAfter([] {}), 0);
    EXPECT_EQ(calls_, 1);
}

TEST_F(FileWatcherTest, needsNoThreadOfItsOwn) {
    const auto threads = [] {
        return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
    };
    const auto before = threads();
    std::vector<std::unique_ptr<FileWatcher>> all;
    std::atomic<int> calls = 0;
    for (int one = 0; one < 3000; one++)
        all.push_back(std::make_unique<FileWatcher>(file_, 0.05, queue_, [&] { calls++; }));
    write(file_, "one", 1);
    EXPECT_TRUE(eventually([&] { return calls >= 3000; }));
    EXPECT_EQ(threads(), before);
}

} // namespace
} // namespace tarnwick
