// Exchanges packets with another implementation of OSC: the tools of liblo, over UDP on the
// loopback interface.
#include "TarnwickCore/Live/OSC.h"
#include "tests/Waiting.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <spawn.h>
#include <sstream>
#include <string>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

// A UDP socket on a loopback port chosen by the kernel.
class Socket {
  public:
    Socket() {
        const timeval patience{.tv_sec = 30, .tv_usec = 0};
        sockaddr_in address = loopback(0);
        socklen_t size = sizeof address;
        EXPECT_EQ(::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience), 0);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size), 0);
        port_ = ntohs(address.sin_port);
    }
    ~Socket() { ::close(socket_); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    std::string url() const { return "osc.udp://127.0.0.1:" + std::to_string(port_); }

    Bytes received() const {
        Bytes packet(65536);
        const ssize_t size = ::recv(socket_, packet.data(), packet.size(), 0);
        EXPECT_GT(size, 0) << "no packet came";
        packet.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        return packet;
    }

    void send(const Bytes& packet, std::uint16_t port) const {
        const sockaddr_in address = loopback(port);
        EXPECT_EQ(::sendto(socket_, packet.data(), packet.size(), 0,
                           reinterpret_cast<const sockaddr*>(&address), sizeof address),
                  static_cast<ssize_t>(packet.size()));
    }

  private:
    static sockaddr_in loopback(std::uint16_t port) {
        return {.sin_family = AF_INET,
                .sin_port = htons(port),
                .sin_addr = {htonl(INADDR_LOOPBACK)},
                .sin_zero = {}};
    }

    int socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    std::uint16_t port_ = 0;
};

// A program from PATH that the destructor ends. `output` is the descriptor of its standard output.
class Child {
  public:
    explicit Child(std::vector<std::string> words, int output = STDOUT_FILENO) {
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        EXPECT_EQ(
            ::posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ),
            0)
            << words[0] << " does not start";
        ::posix_spawn_file_actions_destroy(&actions);
    }
    ~Child() {
        if (process_ > 0) {
            ::kill(process_, SIGTERM);
            ::waitpid(process_, nullptr, 0);
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // The UDP port on which the program listens; 0 until it does.
    std::uint16_t port() const {
        const std::set<std::string> open = openFiles();
        for (const char* const table : {"/proc/net/udp", "/proc/net/udp6"}) {
            std::ifstream sockets(table);
            for (std::string line; std::getline(sockets, line);) {
                std::istringstream words(line);
                std::vector<std::string> columns(10);
                for (std::string& column : columns)
                    words >> column;
                if (open.contains("socket:[" + columns[9] + "]"))
                    return static_cast<std::uint16_t>(
                        std::stoi(columns[1].substr(columns[1].find(':') + 1), nullptr, 16));
            }
        }
        return 0;
    }

  private:
    // The targets of the descriptors of the program, which may open and close files at the same
    // time.
    std::set<std::string> openFiles() const {
        std::set<std::string> open;
        std::error_code gone;
        const std::string folder = "/proc/" + std::to_string(process_) + "/fd/";
        for (int one = 0; one < 64; one++)
            open.insert(fs::read_symlink(folder + std::to_string(one), gone).string());
        return open;
    }

    pid_t process_ = 0;
};

TEST(OSCPeer, sendsMessagesThatWeRead) {
    using Messages = std::vector<OSC::Message>;
    struct Row {
        std::vector<std::string> words;
        OSC::Message message;
    };
    const std::vector<Row> rows{
        {{"/tarnwick/speed", "f", "0.25"}, {"/tarnwick/speed", {0.25f}}},
        {{"/a", "ifi", "-7", "1e-30", "2147483647"}, {"/a", {-7, 1e-30f, 2147483648.0f}}},
        {{"/abc", "sfSf", "", "1", "four", "2"}, {"/abc", {1, 2}}},
        {{"/abcd", "hfdf", "99", "1", "1.5", "2"}, {"/abcd", {1, 2}}},
        {{"/true", "TfFNIf", "1", "2"}, {"/true", {1, 2}}},
        {{"/four", "fcm", "3", "A", "01b04a7f"}, {"/four", {3}}},
        {{"/tête/value", "sf", "träge", "4"}, {"/tête/value", {4}}},
        {{"/none"}, {"/none", {}}},
    };
    const Socket socket;
    for (const Row& row : rows) {
        std::vector<std::string> words{"oscsend", socket.url()};
        words.insert(words.end(), row.words.begin(), row.words.end());
        const Child sender(words);
        EXPECT_EQ(OSC::parse(socket.received()), Messages{row.message}) << row.message.address;
    }
}

TEST(OSCPeer, sendsBundlesThatWeRead) {
    const fs::path file = testing::TempDir() + "tarnwick-" + std::to_string(::getpid()) + ".osc";
    std::ofstream(file) << "e9000000.00000000 /tarnwick/a fi 0.25 3\n"
                           "e9000000.00000000 /tarnwick/b sf \"hello\" 1\n"
                           "e9000000.00000001 /tarnwick/c f 1.5\n";
    const Socket socket;
    const Child sender({"oscsendfile", socket.url(), file.string()});
    const Bytes first = socket.received();
    EXPECT_EQ(first.at(0), '#');
    EXPECT_EQ(OSC::parse(first),
              (std::vector<OSC::Message>{{"/tarnwick/a", {0.25f, 3}}, {"/tarnwick/b", {1}}}));
    EXPECT_EQ(OSC::parse(socket.received()), (std::vector<OSC::Message>{{"/tarnwick/c", {1.5f}}}));
    fs::remove(file);
}

// The line that oscdump prints for a message, without its time.
std::string dumped(const OSC::Message& message) {
    std::string line = message.address + " " + std::string(message.numbers.size(), 'f');
    for (const float number : message.numbers) {
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), " %f", static_cast<double>(number));
        line += text.data();
    }
    return line;
}

TEST(OSCPeer, readsMessagesThatWeSend) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
    const Child receiver({"oscdump", "-L", "0"}, pipe[1]);
    ::close(pipe[1]);
    ASSERT_TRUE(eventually([&] { return receiver.port() != 0; }));

    std::mt19937 random(3);
    std::vector<OSC::Message> messages{{"/none", {}}, {"/tête/value", {-0.0f}}};
    for (std::size_t count = 0; count < 60; count++) {
        OSC::Message& message = messages.emplace_back();
        message.address = "/tarnwick/" + std::string(count % 9, 'x');
        for (std::size_t one = 0; one < count; one++)
            message.numbers.push_back(static_cast<float>(random()) / 65536 - 1024);
    }
    const Socket socket;
    FILE* const lines = ::fdopen(pipe[0], "r");
    for (const OSC::Message& message : messages) {
        socket.send(OSC::encode(message), receiver.port());
        std::array<char, 4096> line{};
        ASSERT_NE(std::fgets(line.data(), line.size(), lines), nullptr);
        const std::string_view text = line.data();
        EXPECT_EQ(text.substr(text.find(' ') + 1), dumped(message) + "\n");
    }
    std::fclose(lines);
}

} // namespace
} // namespace tarnwick
