// tarnwick-local-service FOLDER [CERTIFICATE KEY]
//
// A sharing service on this machine, for the scripts beside it. Writes its address into FOLDER/url
// and serves until it is killed or the shell that started it is gone. In FOLDER:
//   polls    how it answers polls, one word a poll, the last for all others: "pending", "gone",
//            "approved", "nameless" (approved, without a handle) or a status
//   expires  what the start of a sign-in says of that; nothing without it
//   refusal  the status and the body with which requests that bear a token are answered
//   hang     where it is, an upload is never answered
//   site/    files that it serves as they are
//   log      a line for each request: milliseconds, method, target, whether it bore the token
//   shared/  what was uploaded last, a file each part
#include "tests/servers/LoopbackServer.h"

#include <nlohmann/json.hpp>
#include <sys/prctl.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <iostream>
#include <mutex>
#include <sstream>
#include <unistd.h>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::string_view token = "Bearer tok-4f1d8a";

std::string contents(const fs::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
}

ServedAnswer jsonAnswer(int status, const json& document) {
    return {status, {{"Content-Type", "application/json"}}, document.dump()};
}

class LocalService {
  public:
    explicit LocalService(fs::path folder) : folder_(std::move(folder)) {}

    void setBase(const std::string& base) { base_ = base; }

    ServedAnswer answer(const ServedRequest& request) {
        const std::scoped_lock lock(mutex_);
        const std::string* authorization = request.headers.find("Authorization");
        const bool bearsToken = authorization && *authorization == token;
        log(request, bearsToken);
        if (request.target == "/api/app/link")
            return linkAnswer();
        if (request.target == "/api/app/link/poll")
            return pollAnswer(json::parse(request.body).at("device") == "device-77");
        if (request.target.starts_with("/api/"))
            return bearsToken ? accountAnswer(request)
                              : jsonAnswer(401, {{"error", "No such sign-in."}});
        const fs::path file = folder_ / "site" / request.target.substr(1);
        if (request.method == "GET" && fs::is_regular_file(file))
            return {200, {}, contents(file)};
        return {404, {}, "no such page"};
    }

  private:
    void log(const ServedRequest& request, bool bearsToken) const {
        using namespace std::chrono;
        const auto now =
            duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
        std::ofstream(folder_ / "log", std::ios::app)
            << now << ' ' << request.method << ' ' << request.target << (bearsToken ? " token" : "")
            << '\n';
    }

    ServedAnswer linkAnswer() const {
        json start{{"device", "device-77"},
                   // With what no terminal should get: an escape, and a mark that turns the line.
                   {"code", "ABCD-\x1b[31m1234\u202e"},
                   {"url", base_ + "/link"},
                   {"interval", 1}};
        if (fs::exists(folder_ / "expires"))
            start["expires"] = json::parse(contents(folder_ / "expires"));
        return jsonAnswer(200, start);
    }

    ServedAnswer pollAnswer(bool isKnown) {
        std::istringstream words(contents(folder_ / "polls"));
        std::string word;
        for (int at = 0; at <= polls_ && words >> word; ++at)
            continue;
        ++polls_;
        if (!isKnown || word == "gone")
            return jsonAnswer(410, json::object());
        if (word == "pending")
            return jsonAnswer(202, json::object());
        json account{{"token", token.substr(7)}, {"email", "ada@a.example"}};
        if (word == "approved")
            account["handle"] = "ada";
        else if (word != "nameless")
            return jsonAnswer(std::stoi(word), {{"error", "Not now."}});
        polls_ = 0;
        return jsonAnswer(200, account);
    }

    ServedAnswer accountAnswer(const ServedRequest& request) {
        if (fs::exists(folder_ / "refusal")) {
            std::istringstream refusal(contents(folder_ / "refusal"));
            ServedAnswer answer;
            refusal >> answer.status;
            std::getline(refusal, answer.body);
            return answer;
        }
        if (request.target == "/api/me")
            return jsonAnswer(200, {{"email", "ada@a.example"}, {"handle", "ada"}});
        if (request.target == "/api/account/handle")
            return jsonAnswer(200, json::parse(request.body));
        return request.target == "/api/shaders" ? sharedAnswer(request) : ServedAnswer{204, {}, ""};
    }

    ServedAnswer sharedAnswer(const ServedRequest& request) const {
        while (fs::exists(folder_ / "hang"))
            sleep(1);
        std::string names;
        for (const ServedPart& part : request.parts) {
            names += part.name + "=" + part.fileName + " ";
            std::ofstream(folder_ / "shared" / part.name, std::ios::binary) << part.data;
        }
        if (names != "meta= source=source.metal loop=loop.mp4 thumb=thumb.jpg ")
            return jsonAnswer(400, {{"error", "Not a form of meta, source, loop and thumb."}});
        return jsonAnswer(201, {{"id", "abc123"}, {"url", base_ + "/s/abc123"}});
    }

    fs::path folder_;
    std::string base_;
    std::mutex mutex_;
    int polls_ = 0;
};

void serve(const fs::path& folder, const ServerCertificate* certificate) {
    fs::create_directories(folder / "shared");
    LocalService service(folder);
    const LoopbackServer server(
        [&](const ServedRequest& request) { return service.answer(request); }, "127.0.0.1",
        certificate);
    std::string base = server.url("/").string();
    base.pop_back();
    service.setBase(base);
    std::ofstream(folder / "url.new") << base << '\n';
    fs::rename(folder / "url.new", folder / "url");
    while (true)
        pause();
}

} // namespace
} // namespace tarnwick

int main(int count, char** words) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (count != 2 && count != 4) {
        std::cerr << "usage: tarnwick-local-service FOLDER [CERTIFICATE KEY]\n";
        return 2;
    }
    if (count == 2) {
        tarnwick::serve(words[1], nullptr);
        return 0;
    }
    const tarnwick::ServerCertificate certificate{words[2], words[3]};
    tarnwick::serve(words[1], &certificate);
}
