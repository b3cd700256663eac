#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Pictures/Composing.h"
#include "player/Thumbnails/ThumbnailStore.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace tarnwick::player {
namespace {

TEST(ThumbnailStore, namesAPictureByAllThatItDependsOn) {
    const Episode episode = Episode::of("// @param speed 1 0 2\n");
    const Episode other = Episode::of("// @param speed 1 0 2\n ");
    Settings changed;
    changed.values["speed"] = 0.5f;
    Settings infinite;
    infinite.values["speed"] = std::numeric_limits<float>::quiet_NaN();
    const PixelSize size{320, 180};
    const std::set<std::string> names{
        thumbnailName(episode, {}, size, 1),      thumbnailName(other, {}, size, 1),
        thumbnailName(episode, changed, size, 1), thumbnailName(episode, {}, {180, 320}, 1),
        thumbnailName(episode, {}, size, 1.1),
    };
    EXPECT_EQ(names.size(), 5u);
    Settings unknown; // of no parameter
    unknown.values["other"] = 1;
    EXPECT_EQ(thumbnailName(episode, unknown, size, 1), thumbnailName(episode, {}, size, 1));
    EXPECT_FALSE(thumbnailName(episode, infinite, size, 1).empty());
}

TEST(ThumbnailStore, keepsPicturesWithinItsBudget) {
    const TemporaryFolder folder;
    const ThumbnailStore store(folder.path() / "deep" / "thumbnails");
    const Picture picture = filledPicture(8, 4, {1, 2, 3});
    EXPECT_FALSE(store.find("a"));
    for (const char* name : {"a", "b", "c"})
        store.keep(name, picture);
    ASSERT_TRUE(store.find("b"));
    EXPECT_EQ(store.find("b")->width, 8u);
    const auto file = folder.path() / "deep" / "thumbnails" / "a.png";
    const auto old = std::filesystem::last_write_time(file) - std::chrono::hours(1);
    std::filesystem::last_write_time(file, old);
    store.prune(2 * std::filesystem::file_size(file));
    EXPECT_FALSE(store.find("a"));
    EXPECT_TRUE(store.find("b"));
    EXPECT_TRUE(store.find("c"));
}

TEST(ThumbnailStore, ignoresFoldersThatCannotBeWritten) {
    const ThumbnailStore none(""), wrong("/proc/none");
    for (const ThumbnailStore* store : {&none, &wrong}) {
        store->keep("a", filledPicture(2, 2, {}));
        EXPECT_FALSE(store->find("a"));
        store->prune();
    }
}

} // namespace
} // namespace tarnwick::player
