#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickServe/ServeError.h"
#include "TarnwickServe/SitePlace.h"
#include "tests/Thrown.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

struct Folders {
    TemporaryFolder temporary;
    fs::path inside = temporary.path() / "inside", outside = temporary.path() / "outside";

    Folders() {
        fs::create_directory(inside);
        fs::create_directory(outside);
        write(inside / "b.metal", "b");
        write(outside / "secret.metal", "secret");
    }
    static void write(const fs::path& file, const std::string& text) {
        std::ofstream(file) << text;
    }
};

TEST(SitePlace, isAnEpisodeOrAFolder) {
    const Folders folders;
    Folders::write(folders.inside / "a.txt", "");
    EXPECT_EQ(SitePlace::of(folders.inside / "b.metal").only, "b.metal");
    EXPECT_EQ(SitePlace::of(folders.inside).only, "");
    const auto sentence = [](const fs::path& path) {
        return thrownBy<ServeError>([&] { SitePlace::of(path); });
    };
    EXPECT_EQ(sentence(folders.inside / "none.metal"),
              (folders.inside / "none.metal").string() +
                  " cannot be read: No such file or directory.");
    EXPECT_NE(sentence(folders.inside / "a.txt").find("neither an episode"), std::string::npos);
}

TEST(SitePlace, listsTheFirstEpisodesOfAFolder) {
    const Folders folders;
    for (const char* name : {"a.metal", "c.METAL", ".hidden.metal", "d.metal.txt"})
        Folders::write(folders.inside / name, "");
    const SitePlace place = SitePlace::of(folders.inside);
    EXPECT_EQ(place.episodeNames(), (std::vector<std::string>{"a.metal", "b.metal"}));
    for (std::size_t count = 0; count < 3 * SitePlace::mostEpisodes; ++count)
        Folders::write(folders.inside / ("z" + std::to_string(count) + ".metal"), "");
    const std::vector<std::string> names = place.episodeNames();
    ASSERT_EQ(names.size(), SitePlace::mostEpisodes);
    EXPECT_EQ(names[1], "b.metal");
    EXPECT_EQ(names[2], "z0.metal");
}

TEST(SitePlace, readsNothingOutsideTheFolder) {
    const Folders folders;
    const SitePlace place = SitePlace::of(folders.inside);
    fs::create_symlink("b.metal", folders.inside / "relative.metal");
    fs::create_symlink(folders.inside / "b.metal", folders.inside / "absolute.metal");
    for (const char* name : {"b.metal", "relative.metal", "absolute.metal"})
        EXPECT_EQ(place.read(name, 100).bytes, "b") << name;

    fs::create_symlink("../outside/secret.metal", folders.inside / "out.metal");
    fs::create_symlink(folders.outside / "secret.metal", folders.inside / "far.metal");
    fs::create_symlink("out.metal", folders.inside / "chain.metal");
    fs::create_directory_symlink("../outside", folders.inside / "door");
    fs::create_symlink("loop.metal", folders.inside / "loop.metal");
    fs::create_directory(folders.temporary.path() / "inside-too"); // the same beginning
    Folders::write(folders.temporary.path() / "inside-too/x.metal", "x");
    fs::create_symlink("../inside-too/x.metal", folders.inside / "near.metal");
    fs::create_directory(folders.inside / "folder.metal");
    ASSERT_EQ(mkfifo((folders.inside / "pipe.metal").c_str(), 0600), 0); // would block a reader
    fs::create_symlink("/dev/zero", folders.inside / "endless.metal");
    for (const char* name :
         {"out.metal", "far.metal", "chain.metal", "door/secret.metal", "loop.metal", "near.metal",
          "folder.metal", "pipe.metal", "endless.metal", "none.metal", "../outside/secret.metal"}) {
        const SitePlace::Read read = place.read(name, 100);
        EXPECT_EQ(read.bytes, "") << name;
        EXPECT_TRUE(read.failure.starts_with(std::string(name) + " cannot be shown: "))
            << read.failure;
    }
    Folders::write(folders.inside / "long.metal", std::string(101, 'x'));
    EXPECT_EQ(place.read("long.metal", 100).failure,
              "long.metal cannot be shown: it is longer than 100 bytes.");
}

} // namespace
} // namespace tarnwick
