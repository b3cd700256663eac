#include "TarnwickPlatform/Secrets/ProcessSecrecy.h"
#include "TarnwickPlatform/Secrets/TokenStore.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

const std::string server = "https://a.example:8443/b";

Secret secret(const char* text) {
    return Secret(std::string(text));
}

struct Tokens : testing::Test {
    fs::path root = fs::path(testing::TempDir()) / ("tokens" + std::to_string(getpid()));
    TokenFiles files{root / "state/tarnwick"};

    Tokens() { fs::create_directories(root); }
    ~Tokens() override { fs::remove_all(root); }

    static int modeOf(const fs::path& file) {
        return static_cast<int>(fs::status(file).permissions());
    }
    std::string refusal() const {
        try {
            files.find(server);
        } catch (const TokenError& error) {
            return error.what();
        }
        return "";
    }
};

} // namespace

TEST_F(Tokens, comeBackFromFilesThatOthersCannotRead) {
    umask(0);
    EXPECT_FALSE(files.find(server));
    files.keep(server, secret("old"));
    files.keep(server, secret("one"));
    files.keep("https://a.example", secret("two"));
    EXPECT_EQ(files.find(server)->text(), "one");
    EXPECT_EQ(files.find("https://a.example")->text(), "two");
    EXPECT_EQ(modeOf(files.fileOf(server)), 0600);
    EXPECT_EQ(modeOf(root / "state/tarnwick"), 0700);
    EXPECT_EQ(modeOf(root / "state"), 0700);
    EXPECT_EQ(std::distance(fs::directory_iterator(root / "state/tarnwick"), {}), 2);
    files.forget(server);
    files.forget(server);
    EXPECT_FALSE(files.find(server));
    EXPECT_TRUE(files.find("https://a.example"));
}

TEST_F(Tokens, areRefusedWhereOthersMayReadThemAndReplacedBySigningInAgain) {
    files.keep(server, secret("one"));
    for (const int mode : {0640, 0604, 0620, 0660}) {
        chmod(files.fileOf(server).c_str(), static_cast<mode_t>(mode));
        EXPECT_NE(refusal().find("can be read or written by others"), std::string::npos) << mode;
        EXPECT_EQ(refusal().find("one"), std::string::npos);
    }
    files.keep(server, secret("two"));
    EXPECT_EQ(files.find(server)->text(), "two");
}

TEST_F(Tokens, areNoneWhereAFileHoldsSomethingElse) {
    files.keep(server, secret("one"));
    const fs::path file = files.fileOf(server);
    std::ofstream(file, std::ios::trunc) << "\n";
    EXPECT_NE(refusal().find("does not hold a token"), std::string::npos);
    std::ofstream(file) << std::string(1 << 20, 'x');
    EXPECT_NE(refusal().find("does not hold a token"), std::string::npos);
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_NE(refusal().find("is not a regular file"), std::string::npos);
    EXPECT_THROW(files.find(std::string(300, 'x')), TokenError);
}

TEST_F(Tokens, lieInTheStateFolder) {
    setenv("HOME", "/home/someone", 1);
    setenv("XDG_STATE_HOME", "/var/state", 1);
    EXPECT_EQ(TokenFiles::usualFolder(), "/var/state/tarnwick");
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(TokenFiles::usualFolder(), "/home/someone/.local/state/tarnwick");
    unsetenv("HOME");
    EXPECT_THROW(TokenFiles::usualFolder(), TokenError);
}

TEST_F(Tokens, goToFilesWhereNoKeyringAnswers) {
    const auto works = [&] {
        const TokenStore store(files, Keyring(std::chrono::milliseconds(200)));
        EXPECT_EQ(store.keep(server, secret("one")), files.fileOf(server).string());
        EXPECT_EQ(store.find(server)->text(), "one");
        store.forget(server);
        EXPECT_FALSE(store.find(server));
    };
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR"})
        unsetenv(name);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    works();
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (root / "none").string()).c_str(), 1);
    works();
    // One that takes connections and never says a word.
    const int bus = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{.sun_family = AF_UNIX};
    (root / "bus").string().copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(bus, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_EQ(listen(bus, 8), 0);
    setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + (root / "bus").string()).c_str(), 1);
    works();
    close(bus);
}

TEST(Secret, isWipedWhereItWas) {
    std::string text = "short";
    const char* const bytes = text.data();
    Secret first(std::move(text));
    EXPECT_EQ(std::string_view(bytes, 5), std::string_view("\0\0\0\0\0", 5));
    const Secret second = std::move(first);
    EXPECT_EQ(first.text(), ""); // NOLINT: what is left behind is the point
    EXPECT_EQ(second.text(), "short");
}

TEST(ProcessSecrecy, leavesNoCoreDump) {
    hideProcessMemory();
    EXPECT_EQ(prctl(PR_GET_DUMPABLE, 0, 0, 0, 0), 0);
    rlimit limit{1, 1};
    getrlimit(RLIMIT_CORE, &limit);
    EXPECT_EQ(limit.rlim_max, 0u);
}

} // namespace tarnwick
