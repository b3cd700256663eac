// Orders to the sharing service, against the one of the tests on this machine.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Service/OpenLink.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/Exports/OrderRun.h"
#include "player/Sharing/LinkOpener.h"
#include "player/Sharing/ServiceOrders.h"
#include "tests/player/QtMain.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTest>
#include <QUrl>

namespace tarnwick::player {
namespace {

namespace fs = std::filesystem;

constexpr const char* episode =
    "float4 shade(float2 uv, constant Uniforms& u, constant Params& p) {\n"
    "    return float4(uv, 0.5 + 0.5 * cos(u.time), 1.0);\n"
    "}\n";

class Sharing : public testing::Test {
  protected:
    Sharing() {
        fs::create_directories(service / "site" / "s" / "abc1");
        writeWholeFile(service / "site" / "s" / "abc1" / "source.metal", episode);
        writeWholeFile(service / "polls", "approved");
        qputenv("XDG_STATE_HOME", folder.path().c_str());
        qunsetenv("DBUS_SESSION_BUS_ADDRESS"); // no keyring
        server.start(QString::fromStdString(
                         (commandLineProgram().parent_path() / "tarnwick-local-service").string()),
                     {QString::fromStdString(service.string())});
        EXPECT_TRUE(becomesTrue([&] { return !base().empty(); }));
        qputenv("TARNWICK_SERVER", base().c_str());
    }
    ~Sharing() override {
        server.kill();
        server.waitForFinished();
    }
    std::string base() const {
        return QString::fromStdString(fileText(service / "url").value_or(""))
            .trimmed()
            .toStdString();
    }
    // Lines are kept, so that what was printed early is known.
    ChildResult run(const Order& order) {
        ChildResult result;
        bool isOver = false;
        lines.clear();
        last = std::make_unique<OrderRun>(order);
        QObject::connect(last.get(), &OrderRun::printed,
                         [&](const QByteArray& line) { lines.push_back(line.toStdString()); });
        QObject::connect(last.get(), &OrderRun::finished, [&](const ChildResult& met) {
            result = met;
            isOver = true;
        });
        last->start();
        EXPECT_TRUE(becomesTrue([&] { return isOver; }));
        return result;
    }

    TemporaryFolder folder;
    const fs::path service = folder.path() / "service";
    QProcess server;
    std::unique_ptr<OrderRun> last;
    std::vector<std::string> lines;
};

TEST_F(Sharing, sendsThePreviewOfTheSignedInAccount) {
    const ChildResult nobody = run(whoAmIOrder());
    EXPECT_TRUE(nobody.isDone) << nobody.sentence;
    EXPECT_EQ(Account::read(nobody.output), std::nullopt);
    ASSERT_TRUE(run(signInOrder()).isDone);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(SignInCode::read(lines[0])->page, base() + "/link");
    const Account ada{.email = "ada@a.example", .handle = "ada"};
    EXPECT_EQ(Account::read(lines[1]), ada);
    EXPECT_EQ(Account::read(run(whoAmIOrder()).output), ada);

    const ShareRequest request{.episode = {.title = "Plasma", .text = episode},
                               .title = "--Plasma",
                               .visibility = Visibility::unlisted};
    EXPECT_TRUE(request.upload().problems().empty());
    Order preview = previewOrder(request);
    preview.words.insert(preview.words.end(), {"--size", "48x32"}); // drawn in a second
    const ChildResult drawn = run(preview);
    ASSERT_TRUE(drawn.isDone) << drawn.sentence;
    EXPECT_FALSE(fs::exists(service / "shared" / "loop")) << "a preview sends nothing";
    const auto files = last->files();
    const ChildResult shared = run(shareOrder(request, files->path(previewFolder)));
    ASSERT_TRUE(shared.isDone) << shared.sentence;
    EXPECT_EQ(shared.output, base() + "/s/abc123\n");
    EXPECT_EQ(fileBytes(service / "shared" / "loop"),
              fileBytes(files->path(previewFolder) / "loop.mp4"));
    EXPECT_EQ(fileText(service / "shared" / "meta"), request.upload().metaJSON());
    EXPECT_TRUE(run(signOutOrder()).isDone);
    EXPECT_EQ(run(shareOrder(request, files->path(previewFolder))).sentence,
              "You are not signed in; tarnwick sign-in does that.");
}

TEST_F(Sharing, opensLinksAsNewDocumentsThatAreNotSaved) {
    Player player;
    QString told;
    QObject::connect(&player, &Player::told, [&](const QString& sentence) { told = sentence; });
    LinkOpener links(player);
    links.open(QString::fromStdString("tarnwick://open?src=" + base() + "/s/abc1/source.metal"));
    ASSERT_TRUE(becomesTrue([&] { return !player.documents().empty() || !told.isEmpty(); }));
    ASSERT_EQ(told, QString());
    const Document& opened = player.active()->document();
    EXPECT_EQ(opened.title(), "s-abc1");
    EXPECT_EQ(opened.text(), std::string("// @forked-from s/abc1\n") + episode);
    EXPECT_TRUE(opened.isTextModified());
    EXPECT_FALSE(opened.file());
    links.open("tarnwick://open?src=https://a.example/x.metal");
    ASSERT_TRUE(becomesTrue([&] { return !told.isEmpty(); }));
    EXPECT_TRUE(told.contains("a.example")) << told.toStdString();
    EXPECT_TRUE(LinkOpener::isLink("Tarnwick://open"));
    EXPECT_FALSE(LinkOpener::isLink("/home/tarnwick:/a.metal"));
    const QString site = "https://" + QString::fromStdString(std::string(OpenLink::siteHost));
    const QString file =
        "tarnwick://open?src=" +
        QString::fromLatin1(QUrl::toPercentEncoding(site + "/s/abc1/source.metal"));
    EXPECT_EQ(LinkOpener::linkOf(site + "/s/abc1/"), file);
    EXPECT_EQ(LinkOpener::linkOf(site + "/s/abc1/source.metal#top"), file);
    EXPECT_FALSE(LinkOpener::isLink(site + "/terms"));
    EXPECT_FALSE(LinkOpener::isLink("https://a.example/s/abc1"));
}

} // namespace
} // namespace tarnwick::player
