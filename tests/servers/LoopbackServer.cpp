#include "tests/servers/LoopbackServer.h"

#include "TarnwickBase/Precondition.h"
#include "tests/Waiting.h"

#include <httplib.h>
#include <mutex>
#include <thread>

namespace tarnwick {
namespace {

ServedRequest bodyRead(const httplib::ContentReader& read) {
    ServedRequest request;
    read([&](const char* bytes, std::size_t size) {
        request.body.append(bytes, size);
        return true;
    });
    return request;
}

ServedRequest formRead(const httplib::ContentReader& read) {
    ServedRequest request;
    read(
        [&](const httplib::MultipartFormData& part) {
            request.parts.push_back(
                {.name = part.name, .fileName = part.filename, .contentType = part.content_type});
            return true;
        },
        [&](const char* bytes, std::size_t size) {
            request.parts.back().data.append(bytes, size);
            return true;
        });
    return request;
}

} // namespace

struct LoopbackServer::State {
    Handler handler;
    std::string base;
    std::unique_ptr<httplib::Server> server;
    int port = 0;
    mutable std::mutex mutex; // of requests
    std::vector<ServedRequest> requests;
    std::thread thread;

    void serve(const httplib::Request& request, httplib::Response& response,
               ServedRequest served = {}) {
        served.method = request.method;
        served.target = request.target;
        for (const auto& [name, value] : request.headers)
            served.headers.add(name, value);
        {
            const std::scoped_lock lock(mutex);
            requests.push_back(served);
        }
        const ServedAnswer answer = handler(served);
        response.status = answer.status;
        for (const Header& field : answer.headers)
            response.headers.emplace(field.name, field.value);
        response.body = answer.body;
    }
};

LoopbackServer::LoopbackServer(Handler handler, const std::string& address,
                               const ServerCertificate* certificate)
    : state_(std::make_unique<State>()) {
    State& state = *state_;
    state.handler = std::move(handler);
    if (certificate)
        state.server = std::make_unique<httplib::SSLServer>(certificate->certificate.c_str(),
                                                            certificate->key.c_str());
    else
        state.server = std::make_unique<httplib::Server>();
    state.server->new_task_queue = [] { return new httplib::ThreadPool(32); };
    state.server->set_tcp_nodelay(true);
    // Handlers of methods read bodies; other requests are answered before them.
    state.server->set_pre_routing_handler(
        [&state](const httplib::Request& request, httplib::Response& response) {
            if (request.has_header("Content-Length") || request.has_header("Transfer-Encoding"))
                return httplib::Server::HandlerResponse::Unhandled;
            state.serve(request, response);
            return httplib::Server::HandlerResponse::Handled;
        });
    const auto withBody = [&state](const httplib::Request& request, httplib::Response& response,
                                   const httplib::ContentReader& read) {
        state.serve(request, response,
                    request.is_multipart_form_data() ? formRead(read) : bodyRead(read));
    };
    state.server->Post(".*", withBody).Put(".*", withBody).Patch(".*", withBody);
    state.server->Delete(".*", withBody);
    state.port = state.server->bind_to_any_port(address.c_str());
    precondition(state.port > 0, "A loopback address has a free port.");
    const std::string host = address.find(':') == std::string::npos ? address : "[" + address + "]";
    state.base = (certificate ? "https://" : "http://") + host + ":" + std::to_string(state.port);
    state.thread = std::thread([&state] { state.server->listen_after_bind(); });
    precondition(eventually([&] { return state.server->is_running(); }), "The server starts.");
}

LoopbackServer::~LoopbackServer() {
    state_->server->stop();
    state_->thread.join();
}

int LoopbackServer::port() const {
    return state_->port;
}

URL LoopbackServer::url(std::string_view target) const {
    const auto url = URL::parse(state_->base + std::string(target));
    precondition(url.has_value(), "Tests ask for addresses that are some.");
    return *url;
}

std::vector<ServedRequest> LoopbackServer::requests() const {
    const std::scoped_lock lock(state_->mutex);
    return state_->requests;
}

} // namespace tarnwick
