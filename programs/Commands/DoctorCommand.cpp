// tarnwick doctor: what works on this system, and what is missing.
#include "programs/Commands/Command.h"
#include "programs/Doctor/Checks.h"
#include "programs/Terminal/JSONText.h"
#include "programs/Terminal/TextTable.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;

std::string tableOf(const Checks& checks) {
    std::vector<std::vector<std::string>> table;
    for (const Check& check : checks)
        table.push_back(
            {rawValue(check.result), check.subject, check.name,
             check.text +
                 (check.package.empty() ? "" : " Debian's package: " + check.package + ".")});
    return textTable(table);
}

std::string jsonOf(const Checks& checks, bool isWell) {
    ordered_json document{{"works", isWell}, {"checks", ordered_json::array()}};
    for (const Check& check : checks) {
        ordered_json object{{"result", rawValue(check.result)},
                            {"subject", check.subject},
                            {"name", check.name},
                            {"text", check.text}};
        if (!check.package.empty())
            object["package"] = check.package;
        document["checks"].push_back(std::move(object));
    }
    return jsonText(document) + "\n";
}

Status doctor(const Arguments& arguments) {
    const Checks checks = allChecks();
    const auto failing = std::ranges::count(checks, CheckResult::fails,
                                            [](const Check& check) { return check.result; });
    if (arguments.has("--json"))
        print(jsonOf(checks, failing == 0));
    else
        print(tableOf(checks) +
              (failing == 0 ? "\nAll that Tarnwick requires works.\n"
                            : "\nRequired and not working: " + std::to_string(failing) + ".\n"));
    return failing == 0 ? Status::done : Status::failed;
}

constexpr std::array<Option, 1> doctorOptions{{
    {.name = "--json", .help = "print JSON"},
}};

} // namespace

const Command doctorCommand{
    .name = "doctor",
    .operands = "",
    .summary = "Checks what works on this system: the compiler, devices, codecs, fonts, display, "
               "sound, keyring and folders. Names the Debian packages of what is missing; status 1 "
               "if something required does not work.",
    .options = doctorOptions,
    .run = doctor};

} // namespace tarnwick
