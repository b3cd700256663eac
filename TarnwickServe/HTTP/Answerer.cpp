#include "TarnwickServe/HTTP/Answerer.h"

#include "TarnwickServe/HTTP/Rules.h"

#include <httplib.h>

namespace tarnwick {
namespace {

using std::chrono::steady_clock;

steady_clock::time_point after(double seconds) {
    return steady_clock::now() + std::chrono::duration_cast<steady_clock::duration>(
                                     std::chrono::duration<double>(seconds));
}

// What the library reads from and writes to.
class ConnectionStream final : public httplib::Stream {
  public:
    explicit ConnectionStream(Connection& connection) : connection_(connection) {}

    bool is_readable() const override { return connection_.isReadable(); }
    bool is_writable() const override { return !connection_.hasLeft(); }
    ssize_t read(char* bytes, std::size_t size) override { return connection_.read(bytes, size); }
    ssize_t write(const char* bytes, std::size_t size) override {
        return connection_.write({bytes, size}) ? static_cast<ssize_t>(size) : -1;
    }
    void get_remote_ip_and_port(std::string& address, int& port) const override {
        give(connection_.remote(), address, port);
    }
    void get_local_ip_and_port(std::string& address, int& port) const override {
        give(connection_.local(), address, port);
    }
    int socket() const override { return connection_.socket(); }

  private:
    static void give(const Connection::Address& from, std::string& address, int& port) {
        address = from.text;
        port = from.port;
    }

    Connection& connection_;
};

// The pages load only from here, and no other page may load or frame them.
const httplib::Headers& securityHeaders() {
    static const httplib::Headers headers{
        {"Cache-Control", "no-store"},
        {"Content-Security-Policy",
         "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src "
         "'self' data:; media-src 'self' data:; base-uri 'none'; form-action 'none'; "
         "frame-ancestors 'none'"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Referrer-Policy", "no-referrer"},
        {"X-Content-Type-Options", "nosniff"}};
    return headers;
}

// A body would need a limit and a time of its own; no request here has one. A part of an answer and
// a compressed one would only cost time on a network that is near.
void simplify(httplib::Request& request) {
    request.ranges.clear();
    for (const char* field : {"Accept-Encoding", "Expect", "Range"})
        request.headers.erase(field);
}

} // namespace

// The library's own loop of connections limits neither their number nor the time of a whole
// request; only its reading of a request and its writing of an answer are used.
struct Answerer::Parser final : httplib::Server {
    SiteNews& news;
    const std::optional<AccessToken>& token;
    const ServeLimits& limits;
    std::atomic<int> streams = 0;

    // Of the request that this thread answers.
    struct Exchange {
        Connection& connection;
        std::stop_token stop;
    };
    static thread_local const Exchange* exchange;

    Parser(SiteNews& news, const std::optional<AccessToken>& token, const ServeLimits& limits)
        : news(news), token(token), limits(limits) {
        set_default_headers(securityHeaders());
        set_pre_routing_handler([this](const auto& request, auto& response) {
            answer(request, response);
            return HandlerResponse::Handled;
        });
        // The library writes streams only while it has a socket to accept from; any number will do.
        svr_sock_ = 0;
    }

    void process(Connection& connection, std::stop_token stop) {
        const Exchange current{connection, std::move(stop)};
        exchange = &current;
        ConnectionStream stream(connection);
        bool isClosed = false;
        connection.endAt(after(limits.requestSeconds));
        process_request(stream, true, isClosed, [&](httplib::Request& request) {
            simplify(request);
            connection.endAt(after(limits.answerSeconds));
        });
        exchange = nullptr;
        connection.finish();
    }

    void answer(const httplib::Request& request, httplib::Response& response) {
        AskedRequest asked{.method = request.method, .path = request.path};
        for (auto [host, end] = request.headers.equal_range("Host"); host != end; ++host)
            asked.hosts.push_back(host->second);
        const SiteAnswer answer =
            answerOf(asked, *news.newest(), exchange->connection.local(), token);
        if (answer.status != 200)
            return refuse(answer.status, answer.sentence, response);
        if (answer.kind == AnswerKind::events)
            return streamEvents(request, response);
        response.status = answer.status;
        response.set_content(*answer.resource.bytes, std::string(answer.resource.type));
    }

    static void refuse(int status, std::string_view sentence, httplib::Response& response) {
        response.status = status;
        response.set_content(std::string(sentence) + "\n", "text/plain; charset=utf-8");
        if (status == 405)
            response.set_header("Allow", "GET, HEAD");
    }

    void streamEvents(const httplib::Request& request, httplib::Response& response) {
        // Counts until the answer is over. The function that holds it is copied.
        const std::shared_ptr<void> counted(nullptr, [this](void*) { --streams; });
        if (++streams > limits.streams)
            return refuse(503, "Too many pages follow this server.", response);
        response.status = 200;
        if (request.method == "HEAD")
            return response.set_content("", "text/event-stream");
        response.set_chunked_content_provider(
            "text/event-stream",
            [this, counted](std::size_t, httplib::DataSink& sink) { return writeEvents(sink); });
    }

    // An event is only the version of the newest site. So a page that is slow misses versions
    // instead of filling a queue, and asks for what it shows.
    bool writeEvents(httplib::DataSink& sink) {
        Connection& connection = exchange->connection;
        std::uint64_t told = 0;
        auto beat = steady_clock::now();
        while (!exchange->stop.stop_requested() && !connection.hasLeft()) {
            const auto now = steady_clock::now();
            const std::uint64_t version =
                news.waitForOther(told, exchange->stop, std::min(beat, now + lookInterval));
            const bool isNew = version != told;
            if (!isNew && steady_clock::now() < beat)
                continue;
            const std::string event = isNew ? "event: site\ndata: " + std::to_string(version)
                                            : std::string("event: beat\ndata:");
            connection.endAt(after(limits.eventSeconds));
            const std::string text = event + "\n\n";
            if (!sink.write(text.data(), text.size()))
                return false;
            told = version;
            beat = after(limits.beatSeconds);
        }
        return false;
    }

    static constexpr std::chrono::milliseconds lookInterval{500}; // for clients that have left
};

thread_local const Answerer::Parser::Exchange* Answerer::Parser::exchange = nullptr;

Answerer::Answerer(SiteNews& news, const std::optional<AccessToken>& token,
                   const ServeLimits& limits)
    : parser_(std::make_unique<Parser>(news, token, limits)) {}

Answerer::~Answerer() = default;

void Answerer::answer(Connection& connection, std::stop_token stop) {
    parser_->process(connection, std::move(stop));
}

} // namespace tarnwick
