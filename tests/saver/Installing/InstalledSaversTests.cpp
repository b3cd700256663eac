#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "saver/Installing/InstalledSavers.h"
#include "saver/Installing/ProgramList.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <csignal>
#include <filesystem>
#include <set>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

class Install : public testing::Test {
  protected:
    TemporaryFolder folder;
    fs::path home = folder.path() / "it's & me";
    SaverPlaces places{.savers = home / "savers",
                       .entries = home / "entries",
                       .xscreensaver = home / ".xscreensaver",
                       .descriptions = home / "system",
                       .mateProgram = home / "engine" / "tarnwick-saver"};
    Episode episode = Episode::of("// @param speed 1 0 2 how fast it is\n// @param hue 0.5 -1 1\n");
    const std::string programs = "programs: maze \\n\\\n\nlock: False\n";

    Install() {
        for (const fs::path& made : {places.descriptions, places.mateProgram.parent_path()})
            fs::create_directories(made);
        writeWholeFile(places.mateProgram, "");
        writeWholeFile(places.xscreensaver, programs);
        fs::permissions(places.xscreensaver, fs::perms::owner_read | fs::perms::owner_write);
    }

    InstallReport install(const std::string& name, float speed = 1.5f,
                          std::vector<BundleChannel> channels = {}) {
        return installSaver({.episode = episode,
                             .settings = {.name = name, .values = {{"speed", speed}}},
                             .program = "/usr/bin/tarnwick-saver",
                             .channels = std::move(channels)},
                            places);
    }

    std::set<fs::path> files() const {
        std::set<fs::path> all;
        for (const auto& entry : fs::recursive_directory_iterator(home))
            if (!entry.is_directory())
                all.insert(entry.path());
        return all;
    }
};

TEST_F(Install, isUndoneByUninstalling) {
    const auto before = files();
    const fs::path bundle = install("Two <roses>").bundle;
    EXPECT_EQ(bundle, places.savers / "two-roses.saver");
    const auto saver = saverNamed("Two <roses>", places);
    ASSERT_TRUE(saver);
    EXPECT_TRUE(saver->isInstalled && saver->isListed && saver->hasEntry);
    const fs::path launcher = bundle / "tarnwick-two-roses";
    EXPECT_NE(fs::status(launcher).permissions() & fs::perms::owner_exec, fs::perms::none);
    const std::string description = *fileText(bundle / "tarnwick-two-roses.xml");
    EXPECT_NE(description.find("_label=\"Two &lt;roses&gt;\""), std::string::npos) << description;
    EXPECT_NE(description.find("arg=\"--param-speed %\""), std::string::npos);
    EXPECT_NE(description.find("low=\"0.0\" high=\"2.0\" default=\"1.5\""), std::string::npos);
    EXPECT_EQ(fs::status(places.xscreensaver).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);

    EXPECT_TRUE(uninstallSaver(*saver, places).remarks.empty());
    EXPECT_EQ(files(), before);
    EXPECT_EQ(fileText(places.xscreensaver), programs);
    EXPECT_FALSE(fs::exists(bundle));
}

TEST_F(Install, replacesItselfAndKeepsTheWordsOfItsLine) {
    const fs::path bundle = install("Rose").bundle;
    std::string list = *fileText(places.xscreensaver);
    list.replace(list.find("--root"), 6, "--root --param-speed 0.25");
    writeWholeFile(places.xscreensaver, list);
    install("Rose", 0.75f);
    EXPECT_EQ(fileText(places.xscreensaver), list);
    EXPECT_NE(fileText(bundle / "Shader" / "saver.json")->find("0.75"), std::string::npos);
    uninstallSaver(*saverNamed("rose", places), places);
    EXPECT_EQ(fileText(places.xscreensaver), programs);
}

// Copies: the original may go.
TEST_F(Install, hasTheFilesOfItsChannelsAndTakesThemAway) {
    const fs::path photo = home / "photo.jpg";
    writeWholeFile(photo, "pixels");
    const auto before = files();
    const fs::path channels = install("Rose", 1,
                                      {{.address = "0", .file = photo},
                                       {.address = "3", .text = "// inner", .settings = "{}"},
                                       {.address = "3.0", .file = photo}})
                                  .bundle /
                              "Channels";
    EXPECT_EQ(fileText(channels / "0.jpg"), "pixels");
    EXPECT_EQ(fileText(channels / "3.metal"), "// inner");
    EXPECT_EQ(fileText(channels / "3.json"), "{}");
    EXPECT_EQ(fileText(channels / "3.0.jpg"), "pixels");
    install("Rose", 1, {{.address = "0", .file = photo}});
    EXPECT_FALSE(fs::exists(channels / "3.metal") || fs::exists(channels / "3.0.jpg"));
    uninstallSaver(*saverNamed("rose", places), places);
    EXPECT_EQ(files(), before);
    EXPECT_FALSE(fs::exists(channels));
    EXPECT_THROW(install("Rose", 1, {{.address = "0", .file = home / "none.png"}}), InstallError);
}

TEST_F(Install, replacesAndRemovesNothingThatAPersonMade) {
    fs::create_directories(places.savers / "mine.saver" / "Shader");
    EXPECT_THROW(install("Mine"), InstallError);
    EXPECT_THROW(uninstallSaver(*saverNamed("mine", places), places), InstallError);

    const fs::path bundle = install("Rose").bundle;
    const fs::path shader = bundle / "Shader" / "shader.metal", note = bundle / "note.txt";
    writeWholeFile(shader, "// better");
    writeWholeFile(note, "mine");
    EXPECT_THROW(install("Rose"), InstallError);
    const InstallReport report = uninstallSaver(*saverNamed("Rose", places), places);
    EXPECT_EQ(report.remarks, std::vector{shader.string() + " was changed and is kept."});
    EXPECT_EQ(fileText(shader), "// better");
    EXPECT_EQ(fileText(note), "mine");

    writeWholeFile(places.entries / "tarnwick-lake.desktop", "mine");
    EXPECT_THROW(install("Lake"), InstallError);
    EXPECT_FALSE(fs::exists(places.savers / "lake.saver"));
}

TEST_F(Install, makesNoProgramListThatItDoesNotTakeAway) {
    fs::remove(places.xscreensaver);
    for (const char* name : {"Rose", "Lake"})
        install(name);
    install("Rose"); // its own list is not the one before
    EXPECT_FALSE(fs::exists(places.savers / "rose.saver" / "xscreensaver.before"));
    for (const char* name : {"Rose", "Lake"}) {
        EXPECT_TRUE(fs::exists(places.xscreensaver));
        uninstallSaver(*saverNamed(name, places), places);
    }
    EXPECT_FALSE(fs::exists(places.xscreensaver));
    fs::remove(places.descriptions); // without XScreenSaver
    install("Rose");
    EXPECT_FALSE(fs::exists(places.xscreensaver));
}

TEST_F(Install, keepsTheSaverOfAnotherNameWithTheSameLetters) {
    const auto before = files();
    EXPECT_EQ(install("\xe6\x97\xa5").bundle.filename(), "saver.saver");
    EXPECT_EQ(install("\xe6\x9c\x88").bundle.filename(), "saver-2.saver");
    EXPECT_EQ(install("!").bundle.filename(), "saver-3.saver");
    EXPECT_EQ(install("\xe6\x9c\x88").bundle.filename(), "saver-2.saver");
    uninstallSaver(*saverNamed("\xe6\x97\xa5", places), places);
    EXPECT_EQ(saverNamed("saver-2", places)->name, "\xe6\x9c\x88");
    for (const char* id : {"saver-2", "saver-3"})
        uninstallSaver(*saverNamed(id, places), places);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(fileText(places.xscreensaver), programs);
}

TEST_F(Install, leavesNothingOfANewSaverThatCannotBeInstalled) {
    writeWholeFile(places.entries, "a file, not a folder");
    const auto before = files();
    EXPECT_THROW(install("Rose"), InstallError);
    EXPECT_EQ(files(), before);
    EXPECT_EQ(fileText(places.xscreensaver), programs);
}

// Killed at some time: the same installation completes it, another one replaces it, and removing
// leaves nothing.
TEST_F(Install, listsBothOfTwoThatAreInstalledAtTheSameTime) {
    for (int time = 0; time < 8; ++time) {
        std::thread other([&] { install("Lake"); });
        install("Rose");
        other.join();
        const std::string list = *fileText(places.xscreensaver);
        for (const char* name : {"Rose", "Lake"}) {
            ASSERT_TRUE(saverNamed(name, places)->isListed) << list;
            uninstallSaver(*saverNamed(name, places), places);
        }
    }
    EXPECT_EQ(fileText(places.xscreensaver), programs);
}

TEST_F(Install, goesOnAfterItWasKilled) {
    const fs::path photo = home / "photo.jpg";
    writeWholeFile(photo, std::string(100'000, 'x'));
    const auto before = files();
    const auto killed = [&](int microseconds, const auto& work) {
        const pid_t child = fork();
        if (child == 0) {
            work();
            _exit(0);
        }
        usleep(static_cast<useconds_t>(microseconds));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    };
    for (int round = 0; round < 12; ++round) {
        const int microseconds = 300 + round * 700; // an installation takes some milliseconds
        killed(microseconds, [&] { install("Rose", 1, {{.address = "0", .file = photo}}); });
        killed(microseconds, [&] { install("Rose", 0.5); });
        ASSERT_NO_THROW(install("Rose", 0.25)) << microseconds;
        killed(microseconds, [&] { uninstallSaver(*saverNamed("Rose", places), places); });
        ASSERT_NO_THROW(install("Rose", 0.25)) << microseconds;
        EXPECT_TRUE(uninstallSaver(*saverNamed("Rose", places), places).remarks.empty());
        ASSERT_EQ(files(), before) << microseconds;
        ASSERT_EQ(fileText(places.xscreensaver), programs);
        ASSERT_EQ(fs::status(places.xscreensaver).permissions(),
                  fs::perms::owner_read | fs::perms::owner_write);
    }
}

TEST(SaverId, isAFileNameForEveryName) {
    EXPECT_EQ(saverId("My Rings"), "my-rings");
    EXPECT_EQ(saverId("../..//etc"), "etc");
    EXPECT_EQ(saverId("\xc3\xa9t\xc3\xa9"), "t");
    EXPECT_EQ(saverId("!"), "saver");
    EXPECT_EQ(saverId(std::string(59, 'a') + " b").size(), 59u);
}

} // namespace
} // namespace tarnwick
