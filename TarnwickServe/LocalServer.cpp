#include "TarnwickServe/LocalServer.h"

#include "TarnwickServe/HTTP/Answerer.h"
#include "TarnwickServe/HTTP/Connection.h"
#include "TarnwickServe/HTTP/Identity.h"
#include "TarnwickServe/HTTP/Listener.h"
#include "TarnwickServe/ServeError.h"

#include <sys/eventfd.h>
#include <sys/socket.h>

#include <cerrno>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <poll.h>
#include <span>
#include <stop_token>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace tarnwick {
namespace {

// All addresses with the same port. The first must be there.
std::vector<Listener> listenersOf(const ServeOptions& options) {
    std::vector<Listener> listeners;
    for (const std::string& address : options.addresses)
        try {
            listeners.emplace_back(address,
                                   listeners.empty() ? options.port : listeners.front().port());
        } catch (const ServeError&) {
            if (listeners.empty())
                throw;
        }
    return listeners;
}

constexpr std::string_view fullAnswer = "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 2\r\n"
                                        "Connection: close\r\nContent-Length: 0\r\n\r\n";

std::optional<Identity> identityOf(const ServeOptions& options,
                                   std::span<const Listener> listeners) {
    if (!options.isEncrypted)
        return std::nullopt;
    std::vector<std::string> addresses;
    for (const Listener& listener : listeners)
        for (const std::string& address : listener.reachedAs())
            addresses.push_back(address.starts_with('[') ? address.substr(1, address.size() - 2)
                                                         : address);
    return Identity(addresses);
}

} // namespace

// One thread accepts connections. Each connection then has a thread, of which there are as many as
// connections have been open at a time.
struct LocalServer::State {
    const ServeOptions options;
    Answerer answerer;
    const std::vector<Listener> listeners;
    const std::optional<Identity> identity;
    const int wake = eventfd(0, EFD_CLOEXEC); // readable at the end
    std::stop_source stop;

    std::mutex mutex; // of all below
    std::condition_variable_any given;
    struct Client {
        int socket;
        std::string address;
    };
    std::deque<Client> waiting;
    std::map<int, std::string> open; // address by socket, also those that wait
    std::map<std::string, int> ofAddress;
    std::vector<std::thread> workers;
    int idle = 0; // workers

    std::thread acceptor;

    State(ServeOptions given_, SiteNews& news)
        : options(std::move(given_)), answerer(news, options.token, options.limits),
          listeners(listenersOf(options)), identity(identityOf(options, listeners)),
          acceptor([this] { accept(); }) {}

    ~State() {
        stop.request_stop();
        eventfd_write(wake, 1);
        acceptor.join();
        {
            const std::scoped_lock lock(mutex);
            for (const auto& [socket, address] : open)
                shutdown(socket, SHUT_RDWR);
        }
        for (std::thread& worker : workers)
            worker.join();
        for (const Client& client : waiting)
            close(client.socket);
        close(wake);
    }

    void accept() {
        std::vector<pollfd> places{{.fd = wake, .events = POLLIN, .revents = 0}};
        for (const Listener& listener : listeners)
            places.push_back({.fd = listener.socket(), .events = POLLIN, .revents = 0});
        while (!stop.stop_requested()) {
            poll(places.data(), places.size(), -1);
            for (const Listener& listener : listeners)
                acceptFrom(listener);
        }
    }

    void acceptFrom(const Listener& listener) {
        while (!stop.stop_requested()) {
            const int socket = listener.accept();
            if (socket >= 0) {
                admit(socket);
                continue;
            }
            // Without file descriptors or memory the client waits, and poll() would return at once.
            if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM)
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
            if (errno != EINTR && errno != ECONNABORTED)
                return;
        }
    }

    void admit(int socket) {
        std::string address = Connection::remoteOf(socket).text;
        const std::scoped_lock lock(mutex);
        const auto known = ofAddress.find(address);
        const int count = known == ofAddress.end() ? 0 : known->second;
        if (static_cast<int>(open.size()) >= options.limits.connections ||
            count >= options.limits.connectionsOfOne || !hasWorkerFor(waiting.size() + 1)) {
            send(socket, fullAnswer.data(), fullAnswer.size(), MSG_NOSIGNAL);
            close(socket);
            return;
        }
        ++ofAddress[address];
        open.emplace(socket, address);
        waiting.push_back({socket, std::move(address)});
        given.notify_one();
    }

    // Starts a worker if too few are idle for the clients that wait. False if there is no worker at
    // all because the system has no thread to give; otherwise a client waits for a busy one.
    // Locked.
    bool hasWorkerFor(std::size_t clients) {
        if (static_cast<std::size_t>(idle) >= clients)
            return true;
        try {
            workers.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            return !workers.empty();
        }
        return true;
    }

    void work() {
        std::unique_lock lock(mutex);
        for (;;) {
            ++idle;
            given.wait(lock, stop.get_token(), [&] { return !waiting.empty(); });
            --idle;
            if (stop.stop_requested())
                return;
            const Client client = std::move(waiting.front());
            waiting.pop_front();
            lock.unlock();
            serve(client);
            lock.lock();
        }
    }

    void serve(const Client& client) {
        auto session = identity ? identity->session(client.socket) : nullptr;
        const bool isReady = !identity || session;
        Connection connection(client.socket, options.limits.requestBytes, std::move(session));
        if (isReady)
            answerer.answer(connection, stop.get_token());
        const std::scoped_lock lock(mutex);
        leave(client);
    }

    // Before the socket is closed, because its number may then be another client's.
    void leave(const Client& client) {
        open.erase(client.socket);
        if (--ofAddress[client.address] == 0)
            ofAddress.erase(client.address);
    }
};

LocalServer::LocalServer(ServeOptions options, SiteNews& news)
    : state_(std::make_unique<State>(std::move(options), news)) {}

LocalServer::~LocalServer() = default;

int LocalServer::port() const {
    return state_->listeners.front().port();
}

std::string LocalServer::fingerprint() const {
    return state_->identity ? state_->identity->fingerprint() : "";
}

std::vector<std::string> LocalServer::links() const {
    const std::optional<AccessToken>& token = state_->options.token;
    std::vector<std::string> links;
    for (const std::string& address : state_->listeners.front().reachedAs())
        links.push_back((state_->identity ? "https://" : "http://") + address + ":" +
                        std::to_string(port()) + "/" + (token ? token->text() + "/" : ""));
    return links;
}

} // namespace tarnwick
