// Digests of files (FIPS 180-4, 6.2).
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace tarnwick {

// Computes SHA-256 of bytes that arrive in pieces. For one thread at a time.
class SHA256 {
  public:
    SHA256();

    void update(std::string_view bytes);
    // 64 hexadecimal digits in lower case. No call may follow.
    std::string finish();

  private:
    struct Free {
        void operator()(evp_md_ctx_st* context) const;
    };
    std::unique_ptr<evp_md_ctx_st, Free> context_;
};

} // namespace tarnwick
