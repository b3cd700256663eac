// The threads that receive and send: OSC over UDP with another implementation of it, and MIDI ports
// that come and go.
#include "player/Control/MIDIInput.h"
#include "player/Control/NetworkAddresses.h"
#include "player/Control/OSCReceiver.h"
#include "player/Control/OSCSender.h"
#include "tests/Waiting.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace tarnwick::player {
namespace {

// What threads pass to a test.
template <typename Value> class Received {
  public:
    void add(Value value) {
        const std::lock_guard lock(mutex_);
        values_.push_back(std::move(value));
    }
    std::vector<Value> all() const {
        const std::lock_guard lock(mutex_);
        return values_;
    }

  private:
    mutable std::mutex mutex_;
    std::vector<Value> values_;
};

class OSCPorts : public testing::Test {
  protected:
    std::unique_ptr<OSCReceiver> receiver(std::uint16_t port = 0) {
        return OSCReceiver::make(loopbackAddress, port, [this](ControlArrival arrival) {
            received.add(std::move(arrival));
        });
    }
    std::vector<std::string> labels() const {
        std::vector<std::string> found;
        for (const ControlArrival& arrival : received.all())
            found.push_back(labelOf(arrival.source));
        return found;
    }

    Received<ControlArrival> received;
};

TEST_F(OSCPorts, receiveMessagesAndBundlesOfLiblo) {
    if (std::system("command -v oscsend oscsendfile >/dev/null") != 0)
        GTEST_SKIP() << "oscsend of liblo-tools is missing.";
    const auto open = receiver();
    const std::string port = std::to_string(open->port());
    // By name, which may be an address of IPv6; and a bundle for a time that is long over.
    const std::string file = testing::TempDir() + "tarnwick-" + port + ".osc";
    ASSERT_EQ(
        std::system(
            ("oscsend localhost " + port + " /tarnwick/speed f 0.25; oscsend 127.0.0.1 " + port +
             " /xy ii 3 4; printf 'e9000000.00000000 /b f 1\\n"
             "e9000000.00000000 /c T\\n' >" +
             file + "; oscsendfile osc.udp://127.0.0.1:" + port + "/ " + file + "; rm " + file)
                .c_str()),
        0);
    ASSERT_TRUE(eventually([&] { return labels().size() == 4; })) << labels().size();
    EXPECT_EQ(labels(), (std::vector<std::string>{"/tarnwick/speed", "/xy", "/b", "/c"}));
    EXPECT_EQ(received.all()[1].numbers, (std::vector<float>{3, 4}));
    EXPECT_EQ(received.all()[1].from, "127.0.0.1");
}

TEST_F(OSCPorts, sayThatAPortIsInUse) {
    const auto first = receiver();
    try {
        receiver(first->port());
        FAIL();
    } catch (const OSCPortError& error) {
        EXPECT_EQ(std::string(error.what()), "Port " + std::to_string(first->port()) +
                                                 " of 127.0.0.1 is in use by another program.");
    }
    EXPECT_THROW(OSCReceiver::make("192.0.2.1", 0, {}), OSCPortError) << "not of this machine";
    EXPECT_THROW(OSCReceiver::make("nonsense", 0, {}), OSCPortError);
}

TEST_F(OSCPorts, sendTheNewestOfAFlood) {
    const auto open = receiver();
    OSCSender sender("localhost", open->port(), {});
    for (int count = 1; count <= 10000; ++count)
        sender.send({{"/a", {static_cast<float>(count)}}});
    ASSERT_TRUE(eventually([&] {
        const auto all = received.all();
        return !all.empty() && all.back().numbers.at(0) == 10000;
    }));
    EXPECT_LT(received.all().size(), 1000u);
    EXPECT_TRUE(sender.isHost("127.0.0.1"));
    EXPECT_FALSE(sender.isHost("192.0.2.1"));
}

TEST_F(OSCPorts, sayThatAHostIsNotFound) {
    Received<std::string> sentences;
    OSCSender sender("host.invalid", 9000, [&](std::string one) { sentences.add(std::move(one)); });
    ASSERT_TRUE(eventually([&] { return !sentences.all().empty(); }));
    EXPECT_EQ(sentences.all()[0], "The host \"host.invalid\" of the OSC output is not found.");
}

// A MIDI system whose ports a test plugs in and out.
struct Bench {
    std::mutex mutex;
    std::vector<std::string> names;
    std::map<std::string, MIDIPorts::Listener> open;

    void set(std::vector<std::string> next) {
        const std::lock_guard lock(mutex);
        names = std::move(next);
    }
    void send(const std::string& name, std::vector<std::uint8_t> bytes) {
        const std::lock_guard lock(mutex);
        open.at(name)(bytes);
    }
    bool isOpen(const std::string& name) {
        const std::lock_guard lock(mutex);
        return open.contains(name);
    }
};

struct BenchConnection : MIDIConnection {
    BenchConnection(Bench& bench, std::string name) : bench(bench), name(std::move(name)) {}
    ~BenchConnection() override {
        const std::lock_guard lock(bench.mutex);
        bench.open.erase(name);
    }
    Bench& bench;
    std::string name;
};

struct BenchPorts : MIDIPorts {
    explicit BenchPorts(Bench& bench) : bench(bench) {}
    std::vector<std::string> names() override {
        const std::lock_guard lock(bench.mutex);
        return bench.names;
    }
    std::unique_ptr<MIDIConnection> open(const std::string& name, Listener listener) override {
        if (name == "Busy")
            throw MIDIPortError("The MIDI port Busy cannot be opened.");
        const std::lock_guard lock(bench.mutex);
        bench.open[name] = std::move(listener);
        return std::make_unique<BenchConnection>(bench, name);
    }
    Bench& bench;
};

TEST(MIDIInput, hearsPortsThatComeAndGo) {
    Bench bench;
    bench.set({"Keys", "Busy"});
    Received<ControlArrival> arrived;
    Received<MIDIState> states;
    bool hasSystem = false; // on the thread of the input
    MIDIInput input({.system = [&]() -> std::unique_ptr<MIDIPorts> {
                         if (!std::exchange(hasSystem, true))
                             return nullptr;
                         return std::make_unique<BenchPorts>(bench);
                     },
                     .arrived = [&](ControlArrival one) { arrived.add(std::move(one)); },
                     .changed = [&](MIDIState state) { states.add(std::move(state)); }},
                    0.01);
    ASSERT_TRUE(eventually([&] { return states.all().size() == 2; }));
    EXPECT_FALSE(states.all()[0].hasSystem);
    EXPECT_EQ(states.all()[1].ports,
              (std::vector<MIDIPortState>{
                  {"Keys", true, ""}, {"Busy", false, "The MIDI port Busy cannot be opened."}}));
    bench.send("Keys", {0xB0, 1, 127});
    bench.send("Keys", {0xFE}); // active sensing
    ASSERT_EQ(arrived.all().size(), 1u);
    EXPECT_EQ(arrived.all()[0].from, "Keys");
    bench.set({"Pads"});
    ASSERT_TRUE(eventually([&] { return bench.isOpen("Pads") && !bench.isOpen("Keys"); }));
    input.ignore({"Pads"});
    EXPECT_TRUE(eventually([&] { return !bench.isOpen("Pads"); }));
}

} // namespace
} // namespace tarnwick::player
