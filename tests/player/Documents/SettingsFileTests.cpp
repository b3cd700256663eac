#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/Model/DocumentVariations.h"
#include "player/Model/SettingsFile.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

class SettingsFiles : public testing::Test {
  protected:
    SettingsFiles() {
        settings.name = "Mine";
        settings.values["speed"] = 0.5f;
        settings.keys.set("hue", 1, 0.25f);
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "a.json";
    Settings settings;
};

TEST_F(SettingsFiles, keepEachPart) {
    Settings other;
    other.values["speed"] = 9;
    saveSettings(settings, file, SettingsPart::all);
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::all), settings);
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::values).values, settings.values);
    EXPECT_TRUE(loadedSettings(other, file, SettingsPart::values).keys.isEmpty());
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::keys).keys, settings.keys);
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::keys).values, other.values);
    saveSettings(settings, file, SettingsPart::keys); // replaces settings
    EXPECT_EQ(KeyframeTracks::decode(fileBytes(file).value()), settings.keys);
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::all).keys, settings.keys);
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::all).values, other.values);
    EXPECT_THROW(loadedSettings(other, file, SettingsPart::values), DocumentFileError);
    saveSettings(settings, file, SettingsPart::values); // replaces keys
    EXPECT_EQ(loadedSettings(other, file, SettingsPart::all).values, settings.values);
    EXPECT_TRUE(loadedSettings(settings, file, SettingsPart::all).keys.isEmpty());
}

TEST_F(SettingsFiles, neverReplaceAnotherFile) {
    for (const char* foreign : {"{\"chapters\": []}", "text", ""}) {
        writeWholeFile(file, foreign);
        for (const auto part : {SettingsPart::all, SettingsPart::values, SettingsPart::keys}) {
            EXPECT_THROW(saveSettings(settings, file, part), DocumentFileError) << foreign;
            EXPECT_THROW(loadedSettings(settings, file, part), DocumentFileError) << foreign;
        }
        EXPECT_EQ(fileBytes(file), foreign);
    }
    EXPECT_THROW(loadedSettings(settings, folder.path() / "none", SettingsPart::all),
                 DocumentFileError);
    EXPECT_THROW(saveSettings(settings, folder.path() / "none" / "a.json", SettingsPart::all),
                 DocumentFileError);
}

TEST(DocumentVariations, stayInRangeAndLeaveKeysAlone) {
    const Episode episode =
        Episode::of("// @param a 1 0 2\n// @param b 1 0 2\n// @param c 1 0 2\n");
    Settings settings;
    settings.values["a"] = 1.75f;
    settings.keys.set("b", 0, 1);
    for (const Variation& one : variationsNear(episode, settings, 7, 20, 0.2f)) {
        EXPECT_FALSE(one.values.contains("b"));
        EXPECT_NEAR(one.values.at("a"), 1.75, 0.4);
        EXPECT_LE(one.values.at("a"), 2);
    }
    EXPECT_NE(randomValues(episode, settings, 1), randomValues(episode, settings, 2));
    const Settings random = withValues(settings, randomValues(episode, settings, 1));
    EXPECT_EQ(random.keys, settings.keys);
    EXPECT_TRUE(random.values.contains("c"));
    settings.values["unknown"] = 3;
    const Settings reset = withDefaults(settings, episode);
    EXPECT_TRUE(reset.keys.isEmpty());
    EXPECT_EQ(reset.values.size(), 1u); // of no parameter: kept
    EXPECT_TRUE(randomValues(Episode::of(""), {}, 1).empty());
}

} // namespace
} // namespace tarnwick::player
