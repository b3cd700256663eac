// Included by one file of each test binary that uses the GPU. Switches the validation layer on, and
// fails every test during which it reports a message.
#pragma once

#include "TarnwickGPU/Device.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

namespace tarnwick::tests {

class ValidationListener : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        before_ = gpu::Device::validationMessages();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        EXPECT_EQ(gpu::Device::validationMessages(), before_) << "The validation layer complains.";
    }

    std::uint64_t before_ = 0;
};

inline const bool validationListens = [] {
    setenv("TARNWICK_VALIDATION", "1", 0);
    testing::UnitTest::GetInstance()->listeners().Append(new ValidationListener); // it owns it
    return true;
}();

} // namespace tarnwick::tests
