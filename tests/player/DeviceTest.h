// Tests that draw.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickRender/ShaderProgram.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tarnwick::player {

// Without a device the tests are skipped, with the reason.
class DeviceTest : public testing::Test {
  protected:
    void SetUp() override {
        device = gpu::Device::systemDefault();
        if (!device)
            GTEST_SKIP() << gpu::Device::absence();
    }

    std::shared_ptr<const ShaderProgram> program(const std::string& text) const {
        return ShaderProgram::compile(Episode::of(text), *device, ShaderProgram::pixelFormat);
    }

    std::shared_ptr<gpu::Device> device;
};

} // namespace tarnwick::player
