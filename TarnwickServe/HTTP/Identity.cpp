#include "TarnwickServe/HTTP/Identity.h"

#include "TarnwickServe/ServeError.h"

#include <openssl/evp.h>
#include <openssl/rand.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <array>
#include <cstdint>

namespace tarnwick {
namespace {

constexpr long validSeconds = 30L * 24 * 60 * 60;

struct Free {
    void operator()(X509* certificate) const { X509_free(certificate); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509_EXTENSION* extension) const { X509_EXTENSION_free(extension); }
};
template <class Object> using Owned = std::unique_ptr<Object, Free>;

// OpenSSL's functions give 1, or an object.
template <class Result> Result required(Result result) {
    if (!result)
        throw ServeError("The certificate of the server cannot be made.");
    return result;
}

void add(X509* certificate, int kind, const std::string& value) {
    const Owned<X509_EXTENSION> extension(
        required(X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str())));
    required(X509_add_ext(certificate, extension.get(), -1));
}

// RFC 5280, 4.1.2.2: a serial number is positive and does not recur.
void number(X509* certificate) {
    std::uint32_t serial = 0;
    required(RAND_bytes(reinterpret_cast<unsigned char*>(&serial), sizeof serial) == 1);
    required(
        ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), serial + std::uint64_t{1}));
}

void name(X509* certificate) {
    X509_NAME* name = X509_get_subject_name(certificate);
    const std::string text = "tarnwick serve";
    required(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                                        reinterpret_cast<const unsigned char*>(text.data()),
                                        static_cast<int>(text.size()), -1, 0));
    required(X509_set_issuer_name(certificate, name));
}

Owned<X509> certificateOf(EVP_PKEY* key, std::span<const std::string> addresses) {
    Owned<X509> certificate(required(X509_new()));
    required(X509_set_version(certificate.get(), X509_VERSION_3));
    number(certificate.get());
    // Clocks differ a little.
    required(X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -60L * 60));
    required(X509_gmtime_adj(X509_getm_notAfter(certificate.get()), validSeconds));
    required(X509_set_pubkey(certificate.get(), key));
    name(certificate.get());
    std::string names = "DNS:localhost";
    for (const std::string& address : addresses)
        names += ",IP:" + address;
    add(certificate.get(), NID_subject_alt_name, names);
    add(certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
    add(certificate.get(), NID_ext_key_usage, "serverAuth");
    required(X509_sign(certificate.get(), key, EVP_sha256()));
    return certificate;
}

std::string fingerprintOf(const X509* certificate) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned size = 0;
    required(X509_digest(certificate, EVP_sha256(), digest.data(), &size));
    std::string text;
    for (unsigned at = 0; at < size; ++at) {
        text += at > 0 ? ":" : "";
        text += {digits[digest[at] >> 4], digits[digest[at] & 15]};
    }
    return text;
}

} // namespace

Identity::Identity(std::span<const std::string> addresses)
    : context_(required(SSL_CTX_new(TLS_server_method())), SSL_CTX_free) {
    const Owned<EVP_PKEY> key(required(EVP_EC_gen("P-256")));
    const Owned<X509> certificate = certificateOf(key.get(), addresses);
    required(SSL_CTX_use_certificate(context_.get(), certificate.get()));
    required(SSL_CTX_use_PrivateKey(context_.get(), key.get()));
    required(SSL_CTX_set_min_proto_version(context_.get(), TLS1_2_VERSION));
    SSL_CTX_set_options(context_.get(), SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION);
    SSL_CTX_set_session_cache_mode(context_.get(), SSL_SESS_CACHE_OFF);
    SSL_CTX_set_mode(context_.get(),
                     SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    fingerprint_ = fingerprintOf(certificate.get());
}

Identity::~Identity() = default;
Identity::Identity(Identity&&) noexcept = default;

std::shared_ptr<SSL> Identity::session(int socket) const {
    std::shared_ptr<SSL> session(SSL_new(context_.get()), SSL_free);
    if (!session || SSL_set_fd(session.get(), socket) != 1)
        return nullptr;
    SSL_set_accept_state(session.get());
    return session;
}

} // namespace tarnwick
