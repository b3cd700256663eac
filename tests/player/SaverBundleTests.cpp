#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/Exports/SaverBundle.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

TEST(SaverBundle, hasTheDocumentAsItIsNowAndReplacesNothing) {
    const TemporaryFolder folder;
    const EpisodeCopy episode{
        .title = "Rings", .text = "// unsaved", .settings = {.values = {{"red", 0.5f}}}};
    const auto wanted = folder.path() / "new" / "Rings.saver";
    EXPECT_EQ(makeSaver(episode, "My rings", wanted), wanted);
    EXPECT_EQ(makeSaver(episode, "Again", wanted), folder.path() / "new" / "Rings 2.saver");
    EXPECT_EQ(fileText(wanted / "Shader" / "shader.metal"), episode.text);
    const Settings settings = Settings::decode(*fileText(wanted / "Shader" / "saver.json"));
    EXPECT_EQ(settings.name, "My rings");
    EXPECT_EQ(settings.values, episode.settings.values);
    writeWholeFile(folder.path() / "file", "");
    EXPECT_THROW(makeSaver(episode, "No", folder.path() / "file" / "A.saver"), SaverBundleError);
}

TEST(SaverBundle, isInstalledAsTheDocumentIsNow) {
    const TemporaryFolder folder;
    const SaverPlaces places{.savers = folder.path() / "savers",
                             .entries = folder.path() / "entries",
                             .xscreensaver = folder.path() / ".xscreensaver",
                             .descriptions = folder.path(),
                             .mateProgram = folder.path() / "missing"};
    const auto picture = folder.path() / "sky.png";
    writeWholeFile(picture, "pixels");
    const EpisodeCopy episode{.title = "Rings",
                              .text = "// @param red 0 0 1\n// unsaved",
                              .settings = {.values = {{"red", 0.5f}}},
                              .inputs = {.channels = {{.address = "0", .file = picture}}}};
    const auto bundle = installEpisode(episode, "My Rings", places).bundle;
    EXPECT_EQ(bundle, places.savers / "my-rings.saver");
    EXPECT_EQ(fileText(bundle / "Shader" / "shader.metal"), episode.text);
    EXPECT_EQ(fileText(bundle / "Channels" / "0.png"), "pixels");
    const auto saver = saverNamed("My Rings", places);
    ASSERT_TRUE(saver);
    EXPECT_TRUE(saver->isInstalled && saver->isListed);
}

} // namespace
} // namespace tarnwick::player
