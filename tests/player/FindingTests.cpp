#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "player/Finding/EpisodeTemplates.h"
#include "player/Finding/FolderListing.h"
#include "player/Finding/RecentEpisodes.h"
#include "player/Finding/WordSearch.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

class Finding : public testing::Test {
  protected:
    std::filesystem::path make(const std::string& name) const {
        writeWholeFile(folder.path() / name, "// text");
        return folder.path() / name;
    }
    static std::vector<std::string> names(const std::vector<FolderEntry>& entries) {
        std::vector<std::string> found;
        for (const FolderEntry& entry : entries)
            found.push_back(entry.path.filename().string());
        return found;
    }

    TemporaryFolder folder;
};

TEST_F(Finding, listsFoldersAndEpisodesInTheOrderOfPeople) {
    for (const char* name : {"take 10.metal", "Take 2.metal", "take 02b.METAL", "notes.txt",
                             ".hidden.metal", "z.metal"})
        make(name);
    std::filesystem::create_directory(folder.path() / "more");
    const FolderListing listing = FolderListing::of(folder.path());
    EXPECT_EQ(listing.failure, "");
    const std::vector<std::string> all{"more", "Take 2.metal", "take 02b.METAL", "take 10.metal",
                                       "z.metal"};
    EXPECT_EQ(names(arranged(listing.entries, FolderOrder::name, "")), all);
    EXPECT_EQ(names(arranged(listing.entries, FolderOrder::name, "10 TAKE")),
              std::vector<std::string>{"take 10.metal"});
    EXPECT_NE(FolderListing::of(folder.path() / "none").failure, "");
}

TEST_F(Finding, listsTheNewestFilesFirst) {
    const auto old = make("a.metal"), young = make("b.metal");
    std::filesystem::last_write_time(old, std::filesystem::last_write_time(young) -
                                              std::chrono::hours(1));
    const auto entries = FolderListing::of(folder.path()).entries;
    EXPECT_EQ(names(arranged(entries, FolderOrder::newest, "")),
              (std::vector<std::string>{"b.metal", "a.metal"}));
}

TEST_F(Finding, keepsTheRecentFilesOfSeveralPlayers) {
    const auto list = folder.path() / "state" / "recent.json";
    RecentEpisodes first(list), second(list);
    const auto a = make("a.metal"), b = make("b.metal");
    first.add(a);
    second.add(b);
    first.add(a);
    EXPECT_EQ(RecentEpisodes(list).files(), (std::vector{a, b}));
    std::filesystem::remove(a);
    EXPECT_EQ(names(existing(RecentEpisodes(list).files())), std::vector<std::string>{"b.metal"});
    second.remove(a);
    EXPECT_EQ(RecentEpisodes(list).files(), std::vector{b});
    for (std::size_t index = 0; index < RecentEpisodes::most + 5; ++index)
        first.add(folder.path() / std::to_string(index));
    EXPECT_EQ(RecentEpisodes(list).files().size(), RecentEpisodes::most);
}

TEST_F(Finding, treatsADamagedListAsEmpty) {
    for (const char* text : {"", "{", "[1]", R"({"files": 3})", R"({"files": [1, null, {}]})"}) {
        writeWholeFile(folder.path() / "recent.json", text);
        EXPECT_TRUE(RecentEpisodes(folder.path() / "recent.json").files().empty()) << text;
    }
}

TEST(WordSearch, prefersBeginningsToLetters) {
    EXPECT_EQ(fitOf("", "Save"), 0);
    EXPECT_EQ(fitOf("qx", "Save"), std::nullopt);
    const std::vector<std::string_view> falling{"Save values", "Values to save", "Autosave",
                                                "Snap a view of it"};
    for (std::size_t index = 0; index + 1 < falling.size(); ++index)
        EXPECT_GT(fitOf("save", falling[index]), fitOf("save", falling[index + 1])) << index;
    EXPECT_GT(fitOf("values save", "Save values as..."), fitOf("svas", "Save values as..."));
    EXPECT_GT(fitOf("svas", "Save as..."), fitOf("svas", "Start a view at snapshots"));
}

TEST(EpisodeTemplates, areEpisodesOfTheirTitle) {
    for (const EpisodeTemplate& one : episodeTemplates)
        EXPECT_TRUE(one.text("My title").starts_with("// My title")) << one.name;
}

} // namespace
} // namespace tarnwick::player
