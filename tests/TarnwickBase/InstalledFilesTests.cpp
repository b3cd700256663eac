#include "TarnwickBase/InstalledFiles.h"
#include "TarnwickBase/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

void touch(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "bytes";
}

TEST(InstalledFiles, areInTheFoldersOfAnInstalledTreeWhereverItIs) {
    const TemporaryFolder folder;
    const fs::path first = folder.path() / "first", bin = first / "bin";
    for (const char* file : {"bin/tarnwick", "libexec/tarnwick/tarnwick-msl-worker",
                             "libexec/tarnwick/metal.pch", "share/tarnwick/episodes/a.metal"})
        touch(first / file);
    EXPECT_EQ(installedFile(InstalledFile::compilerWorker, bin),
              first / "libexec/tarnwick/tarnwick-msl-worker");
    EXPECT_EQ(installedFile(InstalledFile::precompiledLibrary, first / "libexec/tarnwick"),
              first / "libexec/tarnwick/metal.pch");
    EXPECT_EQ(installedFile(InstalledFile::episodes, bin), first / "share/tarnwick/episodes");
    EXPECT_EQ(installedFile(InstalledFile::handbook, bin),
              first / "share/doc/tarnwick/html/index.html");
    const fs::path second = folder.path() / "second";
    fs::rename(first, second);
    EXPECT_EQ(installedFile(InstalledFile::compilerWorker, second / "bin"),
              second / "libexec/tarnwick/tarnwick-msl-worker");
}

TEST(InstalledFiles, areBesideTheProgramInTheBuildTree) {
    const TemporaryFolder folder;
    const fs::path bin = folder.path() / "build/release/bin";
    touch(bin / "tarnwick-msl-worker");
    touch(folder.path() / "episodes/a.metal");
    EXPECT_EQ(installedFile(InstalledFile::compilerWorker, bin), bin / "tarnwick-msl-worker");
    EXPECT_TRUE(fs::exists(installedFile(InstalledFile::compilerWorker))); // of this very program
    EXPECT_EQ(installedFile(InstalledFile::saver, bin), bin / "tarnwick-saver");
    EXPECT_EQ(installedFile(InstalledFile::player, bin), bin / "tarnwick-player");
}

TEST(InstalledFiles, namesTheInstalledPlaceOfAMissingFile) {
    EXPECT_EQ(installedFile(InstalledFile::saverBundle, "/none/bin"),
              "/none/share/tarnwick/Tarnwick.saver");
}

} // namespace
} // namespace tarnwick
