#include "TarnwickPlatform/Secrets/Keyring.h"

#include <libsecret/secret.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::chrono::seconds promptPatience{60}, cancelPatience{1};

const SecretSchema schema{.name = "tarnwick.Token",
                          .flags = SECRET_SCHEMA_NONE,
                          .attributes = {{"server", SECRET_SCHEMA_ATTRIBUTE_STRING}, {}}};

// Without this check the library would try to start a bus.
bool hasSessionBus() {
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    return runtime && std::filesystem::is_socket(std::filesystem::path(runtime) / "bus", error);
}

bool hasDisplay() {
    return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

// The state that a caller shares with the thread that calls the service. The thread may outlive the
// caller's patience, as the library may not return after it is cancelled.
class Talk {
  public:
    Talk() = default;
    ~Talk() { g_object_unref(cancellable_); }
    Talk(const Talk&) = delete;
    Talk& operator=(const Talk&) = delete;

    GCancellable* cancellable() const { return cancellable_; }

    // Runs on its own thread. Connects first, so that the caller knows whether there is a service.
    void hold(const std::function<void()>& say) {
        GError* error = nullptr;
        ::SecretService* service =
            secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, cancellable_, &error);
        isConnected_ = service != nullptr;
        if (service)
            say();
        g_clear_error(&error);
        g_clear_object(&service);
        end_.set_value();
    }

    void wait(std::chrono::milliseconds patience) {
        std::future<void> end = end_.get_future();
        const auto ends = [&](std::chrono::milliseconds within) {
            return end.wait_for(within) == std::future_status::ready;
        };
        if (ends(patience) || (isConnected_ && hasDisplay() && ends(promptPatience)))
            return;
        g_cancellable_cancel(cancellable_);
        ends(cancelPatience);
    }

  private:
    GCancellable* cancellable_ = g_cancellable_new();
    std::atomic<bool> isConnected_ = false;
    std::promise<void> end_;
};

// Calls the service by `say` on a thread, which keeps the captures of `say` alive.
void ask(std::chrono::milliseconds patience, std::function<void(GCancellable*)> say) {
    if (!hasSessionBus())
        return;
    const auto talk = std::make_shared<Talk>();
    std::thread([talk, say = std::move(say)] {
        talk->hold([&] { say(talk->cancellable()); });
    }).detach();
    talk->wait(patience);
}

// An answer that may arrive after the caller has stopped waiting.
template <class Value> struct Late {
    std::mutex mutex;
    Value value{};
};

} // namespace

bool Keyring::answers() const {
    const auto isThere = std::make_shared<std::atomic<bool>>(false);
    ask(patience_, [isThere](GCancellable*) { *isThere = true; });
    return *isThere;
}

std::optional<Secret> Keyring::find(const std::string& server) const {
    const auto found = std::make_shared<Late<std::optional<Secret>>>();
    ask(patience_, [found, server](GCancellable* cancellable) {
        GError* error = nullptr;
        gchar* token = secret_password_lookup_nonpageable_sync(&schema, cancellable, &error,
                                                               "server", server.c_str(), nullptr);
        g_clear_error(&error);
        if (!token)
            return;
        const std::scoped_lock lock(found->mutex);
        found->value.emplace(std::string(token));
        secret_password_free(token);
    });
    const std::scoped_lock lock(found->mutex);
    return std::exchange(found->value, std::nullopt);
}

bool Keyring::keep(const std::string& server, const Secret& token) const {
    const auto isKept = std::make_shared<std::atomic<bool>>(false);
    const auto text = std::make_shared<Secret>(std::string(token.text()));
    ask(patience_, [isKept, text, server](GCancellable* cancellable) {
        GError* error = nullptr;
        *isKept =
            secret_password_store_sync(&schema, SECRET_COLLECTION_DEFAULT,
                                       ("Tarnwick: " + server).c_str(), text->text().c_str(),
                                       cancellable, &error, "server", server.c_str(), nullptr) != 0;
        g_clear_error(&error);
    });
    return *isKept;
}

void Keyring::forget(const std::string& server) const {
    ask(patience_, [server](GCancellable* cancellable) {
        GError* error = nullptr;
        secret_password_clear_sync(&schema, cancellable, &error, "server", server.c_str(), nullptr);
        g_clear_error(&error);
    });
}

} // namespace tarnwick
