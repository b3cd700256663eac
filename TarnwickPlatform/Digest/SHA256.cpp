#include "TarnwickPlatform/Digest/SHA256.h"

#include <algorithm>
#include <glib.h>

namespace tarnwick {

struct SHA256::State {
    GChecksum* sum = g_checksum_new(G_CHECKSUM_SHA256);
    ~State() { g_checksum_free(sum); }
};

SHA256::SHA256() : state_(std::make_unique<State>()) {}

SHA256::~SHA256() = default;

void SHA256::add(std::string_view bytes) {
    g_checksum_update(state_->sum, reinterpret_cast<const guchar*>(bytes.data()),
                      static_cast<gssize>(bytes.size()));
}

std::string SHA256::text() {
    return g_checksum_get_string(state_->sum);
}

bool SHA256::isDigest(std::string_view text) {
    return text.size() == 64 &&
           std::ranges::all_of(text, [](char digit) { return g_ascii_isxdigit(digit); });
}

} // namespace tarnwick
