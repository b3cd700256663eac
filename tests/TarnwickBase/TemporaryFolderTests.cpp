#include "TarnwickBase/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <fstream>
#include <memory>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// The folder that a process in `parent` leaves when it ends without destructors.
fs::path left(const fs::path& parent) {
    const pid_t child = fork();
    if (child == 0) {
        const auto folder = std::make_unique<TemporaryFolder>(parent, "a");
        std::ofstream(folder->path() / "file") << "bytes";
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    return parent / ("a." + std::to_string(child) + ".partial");
}

TEST(TemporaryFolder, removesFoldersOfDeadProcessesOnly) {
    const TemporaryFolder parent;
    const fs::path dead = left(parent.path());
    ASSERT_TRUE(fs::exists(dead / "file"));
    const TemporaryFolder living(parent.path(), "a");
    EXPECT_FALSE(fs::exists(dead));
    // Similar names, not made by this class.
    fs::create_directories(parent.path() / "mine.partial/folder");
    std::ofstream(parent.path() / "text.partial") << "bytes";
    const fs::path again = left(parent.path());
    fs::create_directory_symlink(again, parent.path() / "link.partial");
    const TemporaryFolder other(parent.path(), "a");
    EXPECT_FALSE(fs::exists(again));
    EXPECT_TRUE(fs::exists(living.path()));
    EXPECT_NE(living.path(), other.path());
    EXPECT_TRUE(fs::exists(parent.path() / "mine.partial/folder"));
    EXPECT_TRUE(fs::exists(parent.path() / "text.partial"));
    EXPECT_TRUE(fs::is_symlink(parent.path() / "link.partial"));
}

TEST(TemporaryFolder, leavesNothing) {
    const TemporaryFolder parent;
    {
        const TemporaryFolder folder(parent.path(), std::string(250, 'a'));
        std::ofstream(folder.path() / "file") << "bytes";
    }
    EXPECT_EQ(fs::directory_iterator(parent.path())->path().filename(), ".tarnwick-owner");
}

} // namespace
} // namespace tarnwick
