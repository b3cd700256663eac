#include "TarnwickCore/Text/SHA256.h"

#include "TarnwickBase/Precondition.h"

#include <openssl/evp.h>

#include <array>

namespace tarnwick {
namespace {

void require(int success) {
    precondition(success == 1, "OpenSSL has SHA-256");
}

} // namespace

void SHA256::Free::operator()(evp_md_ctx_st* context) const {
    EVP_MD_CTX_free(context);
}

SHA256::SHA256() : context_(EVP_MD_CTX_new()) {
    require(EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr));
}

void SHA256::update(std::string_view bytes) {
    require(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()));
}

std::string SHA256::finish() {
    std::array<unsigned char, 32> digest{};
    require(EVP_DigestFinal_ex(context_.get(), digest.data(), nullptr));
    std::string text;
    for (const unsigned char byte : digest) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

} // namespace tarnwick
