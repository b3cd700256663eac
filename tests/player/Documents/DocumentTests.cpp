#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/Model/Document.h"

#include <gtest/gtest.h>

namespace tarnwick::player {
namespace {

constexpr const char* text = "// @param speed 0.5 0.0 2.0 How fast\r\n// @param hue 0 0 1\n";

class DocumentFiles : public testing::Test {
  protected:
    std::filesystem::path file(const char* name) const { return folder.path() / name; }
    static std::string bytes(const std::filesystem::path& file) {
        return fileBytes(file).value_or("missing");
    }

    // The error, or empty.
    static std::string save(Document& document) {
        const DocumentSaved done = saved(document.saving(OtherText::isReplaced));
        document.note(done);
        return done.error;
    }

    TemporaryFolder folder;
};

TEST_F(DocumentFiles, keepTheirBytesWhenTheyAreOpenedAndSaved) {
    for (const std::string& whole : {std::string(text), "\xEF\xBB\xBF" + std::string(text),
                                     std::string(), std::string("\xC3\xA4 \xF0\x9F\x8E\xA8")}) {
        writeWholeFile(file("a.metal"), whole);
        Document document = Document::open(file("a.metal"));
        EXPECT_FALSE(document.isModified());
        EXPECT_EQ(save(document), "");
        EXPECT_EQ(bytes(file("a.metal")), whole);
        EXPECT_FALSE(std::filesystem::exists(file("a.json"))); // nothing was changed
    }
}

TEST_F(DocumentFiles, areRefusedWithASentenceIfTheyAreNotText) {
    writeWholeFile(file("bad.metal"), "\xff\xfe");
    EXPECT_THROW(Document::open(file("bad.metal")), DocumentFileError);
    EXPECT_THROW(Document::open(file("none.metal")), DocumentFileError);
    EXPECT_THROW(Document::open(folder.path()), DocumentFileError);
}

TEST_F(DocumentFiles, haveSettingsBesideThem) {
    writeWholeFile(file("a.metal"), text);
    Document document = Document::open(file("a.metal"));
    document.setValue("speed", 1.5f, 0);
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(save(document), "");
    const Document again = Document::open(file("a.metal"));
    EXPECT_EQ(again.settings(), document.settings());
    EXPECT_EQ(again.valueAt(again.episode()->params()[0], 3), 1.5f);
    EXPECT_EQ(again.valueAt(again.episode()->params()[1], 3), 0.0f);
}

// A movie's chapters may have the name of the settings.
TEST_F(DocumentFiles, neverReplaceAFileThatIsNotSettings) {
    writeWholeFile(file("a.metal"), text);
    writeWholeFile(file("a.json"), "{\"chapters\": []}");
    Document document = Document::open(file("a.metal"));
    EXPECT_FALSE(document.remark().empty());
    document.setValue("speed", 1, 0);
    document.setText("// new");
    EXPECT_NE(save(document), "");
    EXPECT_EQ(bytes(file("a.json")), "{\"chapters\": []}");
    EXPECT_EQ(bytes(file("a.metal")), "// new"); // the text is saved
    EXPECT_TRUE(document.areSettingsModified());
    EXPECT_FALSE(document.isTextModified());
}

TEST_F(DocumentFiles, areSeenToChange) {
    writeWholeFile(file("a.metal"), text);
    Document document = Document::open(file("a.metal"));
    EXPECT_FALSE(document.differsFrom(FileWatcher::stamp(file("a.metal"))));
    writeWholeFile(file("a.metal"), "// longer than before, by another program, with more text");
    EXPECT_TRUE(document.differsFrom(FileWatcher::stamp(file("a.metal"))));
    document.keepMine(FileWatcher::stamp(file("a.metal")));
    EXPECT_FALSE(document.differsFrom(FileWatcher::stamp(file("a.metal"))));
    EXPECT_EQ(document.text(), text);
    document.take(readDocumentFiles(file("a.metal")));
    EXPECT_NE(document.text(), text);
}

TEST(Document, undoesSettingsButNotText) {
    Document document(text);
    document.setValue("speed", 1, 0);
    document.setValue("speed", 1.25f, 0); // the same gesture
    document.history().endGesture();
    document.setValue("speed", 2, 0);
    document.setText("// other");
    document.history().undo();
    EXPECT_EQ(document.settings().values.at("speed"), 1.25f);
    document.history().undo();
    EXPECT_TRUE(document.settings().values.empty());
    EXPECT_EQ(document.history().redoName(), "Change speed");
    document.history().redo();
    EXPECT_EQ(document.settings().values.at("speed"), 1.25f);
    EXPECT_EQ(document.text(), "// other");
}

TEST(Document, setsAKeyWhereAParameterHasKeys) {
    Document document(text);
    KeyframeTracks keys;
    keys.set("speed", 0, 1);
    document.setKeys(keys, "Add key");
    document.setValue("speed", 2, 4);
    EXPECT_EQ(document.settings().keys.keys("speed").size(), 2u);
    EXPECT_EQ(document.valueAt(document.episode()->params()[0], 4), 2.0f);
    EXPECT_FALSE(document.settings().values.contains("speed"));
}

TEST(Document, morphsBetweenItsSnapshots) {
    Document document(text);
    document.morph(0.5f); // nothing to mix
    EXPECT_FALSE(document.isModified());
    document.keepSnapshot(0, 0);
    document.setValue("hue", 1, 0);
    document.keepSnapshot(1, 0);
    document.morph(0.25f);
    EXPECT_FLOAT_EQ(document.settings().values.at("hue"), 0.25f);
    EXPECT_FLOAT_EQ(document.settings().values.at("speed"), 0.5f);
}

TEST_F(DocumentFiles, areModifiedWhileTheirFileIsMissing) {
    writeWholeFile(file("a.metal"), text);
    Document document = Document::open(file("a.metal"));
    std::filesystem::remove(file("a.metal"));
    EXPECT_FALSE(document.noteFilePresence(false)) << "another program may be replacing it";
    EXPECT_TRUE(document.noteFilePresence(false));
    EXPECT_TRUE(document.isModified());
    EXPECT_FALSE(document.noteFilePresence(false)) << "told once";
    EXPECT_EQ(save(document), "");
    EXPECT_FALSE(document.isModified());
    EXPECT_EQ(bytes(file("a.metal")), text);
    std::filesystem::remove(file("a.metal"));
    document.noteFilePresence(false);
    document.noteFilePresence(false);
    writeWholeFile(file("a.metal"), "other");
    EXPECT_TRUE(document.noteFilePresence(true));
    EXPECT_FALSE(document.isModified());
    EXPECT_TRUE(document.differsFrom(FileWatcher::stamp(file("a.metal"))));
}

} // namespace
} // namespace tarnwick::player
