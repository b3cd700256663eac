#include "TarnwickBase/OutputFile.h"
#include "TarnwickPlatform/Bundle/Bundle.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

class BundleFiles : public testing::Test {
  protected:
    fs::path root = fs::path(testing::TempDir()) / ("bundle" + std::to_string(getpid()));

    void SetUp() override { fs::create_directories(root); }
    void TearDown() override { fs::remove_all(root); }

    fs::path write(const fs::path& name, std::string_view bytes) const {
        fs::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << bytes;
        return root / name;
    }
};

TEST(TextFile, knowsWellFormedUTF8) {
    for (const std::string_view good : {"", "plain", "\xC3\xA9", "\xE2\x8B\xAF", "\xF0\x9F\x8C\x80",
                                        "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(isUTF8(good)) << good;
    for (const std::string_view bad :
         {"\x80", "\xC0\x80", "\xC3", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xFF"})
        EXPECT_FALSE(isUTF8(bad)) << bad;
}

TEST_F(BundleFiles, areFoundByNameExtensionAndSubdirectory) {
    write("Shader/shader.metal", "x");
    fs::create_directories(root / "Shader/folder.metal");
    const Bundle bundle(root);
    EXPECT_EQ(bundle.pathForResource("shader", "metal", "Shader"), root / "Shader/shader.metal");
    EXPECT_FALSE(bundle.pathForResource("shader", "json", "Shader"));
    EXPECT_FALSE(bundle.pathForResource("folder", "metal", "Shader"));
    EXPECT_FALSE(fileText(root / "Shader/folder.metal"));
}

TEST_F(BundleFiles, areMadeFromAnEpisodeAndItsSettings) {
    const fs::path plain = write("plain.metal", "one");
    const fs::path tuned = write("tuned.metal", "two");
    write("tuned.json", "{}");
    const fs::path folder = root / "made/bundle";

    makeBundle(folder, plain, settingsBeside(plain));
    EXPECT_EQ(fileText(folder / "Shader/shader.metal"), "one");
    EXPECT_NE(fileText(folder / "Shader/saver.json")->find("\"name\": \"plain\""),
              std::string::npos);

    EXPECT_FALSE(settingsBeside(root / "tuned.json"));
    makeBundle(folder, tuned, settingsBeside(tuned));
    EXPECT_EQ(fileText(folder / "Shader/shader.metal"), "two");
    EXPECT_EQ(fileText(folder / "Shader/saver.json"), "{}");
}

TEST_F(BundleFiles, areNotMadeOverWhatAPersonChanged) {
    const fs::path plain = write("plain.metal", "one");
    makeBundle(root / "made", plain, {});
    write("plain.metal", "two");
    makeBundle(root / "made", plain, {});
    write("made/Shader/saver.json", R"({"name": "By hand"})");
    write("plain.metal", "three");
    EXPECT_THROW(makeBundle(root / "made", plain, {}), OutputNameError);
    EXPECT_EQ(fileText(root / "made/Shader/saver.json"), R"({"name": "By hand"})");
    EXPECT_EQ(fileText(root / "made/Shader/shader.metal"), "two");
}

TEST_F(BundleFiles, areNotMadeFromWhatCannotBeRead) {
    EXPECT_THROW(makeBundle(root / "made", root / "missing.metal", {}), BundleError);
    EXPECT_THROW(makeBundle(root / "made", root, {}), BundleError);
    const fs::path good = write("good.metal", "x");
    EXPECT_THROW(makeBundle(root / "made", good, root / "missing.json"), BundleError);
    EXPECT_FALSE(fs::exists(root / "made"));
    write("file", "");
    EXPECT_THROW(makeBundle(root / "file", good, {}), BundleError);
}

} // namespace
} // namespace tarnwick
