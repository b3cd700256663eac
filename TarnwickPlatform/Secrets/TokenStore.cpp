#include "TarnwickPlatform/Secrets/TokenStore.h"

namespace tarnwick {

// A file comes before the keyring: if there is a file, the keyring did not take that token, and may
// still have an older one.
std::optional<Secret> TokenStore::find(const std::string& server) const {
    if (auto token = files_.find(server))
        return token;
    return keyring_.find(server);
}

std::string TokenStore::keep(const std::string& server, const Secret& token) const {
    if (keyring_.keep(server, token)) {
        files_.forget(server);
        return "the desktop's keyring";
    }
    files_.keep(server, token);
    return files_.fileOf(server).string();
}

void TokenStore::forget(const std::string& server) const {
    keyring_.forget(server);
    files_.forget(server);
}

} // namespace tarnwick
