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

} // namespace
} // namespace tarnwick::player
