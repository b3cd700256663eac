#include "programs/Doctor/Checks.h"

#include "TarnwickGPU/Device.h"
#include "TarnwickGPU/DeviceReport.h"
#include "TarnwickMSL/Compile.h"
#include "programs/Doctor/CodecChecks.h"
#include "programs/Doctor/CompilerProgram.h"
#include "programs/Doctor/DesktopChecks.h"
#include "programs/Doctor/FolderChecks.h"

#include <array>
#include <chrono>

namespace tarnwick {
namespace {

std::string list(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

Check checkOf(const gpu::DeviceReport& report) {
    Check check{.subject = "device",
                .name = report.info.name,
                .text = report.info.driver + ", Vulkan " + report.vulkan +
                        (report.info.isCPU ? ", on the CPU." : ".")};
    if (!report.lacking.empty())
        check.text += " It lacks " + list(report.lacking) + ".";
    if (!report.missing.empty()) {
        check.result = CheckResult::absent;
        check.text += " It cannot be used, because it lacks " + list(report.missing) + ".";
    }
    return check;
}

Checks compilerChecks() {
    using Clock = std::chrono::steady_clock;
    Check check{.subject = "compiler", .name = compilerRelease().value_or("tarnwick-msl-worker")};
    const auto start = Clock::now();
    const msl::Compilation made = msl::compile("kernel void nothing() {}\n");
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    if (made.failed || made.entryPoints.empty()) {
        check.result = CheckResult::fails;
        check.text =
            "A program cannot be compiled: " + made.messages.substr(0, made.messages.find('\n'));
        check.package = "libtarnwick-msl1";
    } else {
        check.text = "The first program was compiled in " + std::to_string(time.count()) + " ms.";
    }
    return {check};
}

// Programs are compiled without it, too.
Checks confinementChecks() {
    Check check{.subject = "compiler", .name = "confinement"};
    if (isCompilerConfined()) {
        check.text = "It cannot open files, use the network or see other processes.";
    } else {
        check.result = CheckResult::absent;
        check.text = "The kernel has no filters of system calls (seccomp), so the compiler has the "
                     "rights of its user.";
    }
    return {check};
}

// An unusable device beside a usable one is no fault.
Checks deviceChecks() {
    Checks checks;
    for (const gpu::DeviceReport& report : gpu::deviceReports())
        checks.push_back(checkOf(report));
    const bool hasNone = checks.empty();
    if (!gpu::Device::systemDefault())
        checks.push_back({.result = CheckResult::fails,
                          .subject = "device",
                          .name = hasNone ? "none" : "choice",
                          .text = hasNone ? "No driver of Vulkan is installed; Mesa has one for "
                                            "most GPUs and one for the CPU."
                                          : gpu::Device::absence(),
                          .package = "mesa-vulkan-drivers"});
    return checks;
}

} // namespace

std::string rawValue(CheckResult result) {
    switch (result) {
    case CheckResult::works:
        return "works";
    case CheckResult::absent:
        return "absent";
    case CheckResult::fails:
        return "fails";
    }
    return {};
}

Checks allChecks() {
    Checks all;
    for (Checks (*checks)() :
         {compilerChecks, confinementChecks, deviceChecks, codecChecks, fontChecks, displayChecks,
          soundChecks, keyringChecks, folderChecks, programChecks})
        for (Check& check : checks())
            all.push_back(std::move(check));
    return all;
}

} // namespace tarnwick
