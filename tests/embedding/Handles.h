// Handles of the C library that end with their scope, for the tests.
#pragma once

#include <gtest/gtest.h>
#include <tarnwick/msl.h>

#include <cstdint>
#include <memory>
#include <string>

namespace tarnwick::embedding {

struct Destroy {
    void operator()(tarnwick_msl_compiler* one) const { tarnwick_msl_compiler_destroy(one); }
    void operator()(tarnwick_msl_options* one) const { tarnwick_msl_options_destroy(one); }
    void operator()(tarnwick_msl_result* one) const { tarnwick_msl_result_destroy(one); }
};
using Compiler = std::unique_ptr<tarnwick_msl_compiler, Destroy>;
using Options = std::unique_ptr<tarnwick_msl_options, Destroy>;
using Result = std::unique_ptr<tarnwick_msl_result, Destroy>;

inline Compiler compiler(uint32_t workers = 0, const char* worker = nullptr) {
    const tarnwick_msl_compiler_settings settings{sizeof settings, worker, workers};
    tarnwick_msl_compiler* made = nullptr;
    EXPECT_EQ(tarnwick_msl_compiler_create(&settings, &made), TARNWICK_MSL_DONE);
    return Compiler(made);
}

inline Options options() {
    tarnwick_msl_options* made = nullptr;
    EXPECT_EQ(tarnwick_msl_options_create(&made), TARNWICK_MSL_DONE);
    return Options(made);
}

inline Result compile(const Compiler& with, const std::string& source, tarnwick_msl_status expected,
                      const Options& options = nullptr) {
    tarnwick_msl_result* made = nullptr;
    const auto status =
        tarnwick_msl_compile(with.get(), options.get(), source.data(), source.size(), &made);
    EXPECT_EQ(status, expected) << (made ? tarnwick_msl_result_messages(made) : "no result");
    return Result(made);
}

} // namespace tarnwick::embedding
