// Manual pages of commands, made from their options. The format is roff with the macros of man(7).
#pragma once

#include "TarnwickCore/CommandLine/Option.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct ManualRow {
    std::string name; // "TARNWICK_DEVICE"
    std::string text; // whole sentences
};

struct ManualSection {
    std::string title; // "ENVIRONMENT"
    std::vector<ManualRow> rows;
};

struct ManualPage {
    std::string name;    // "tarnwick-export"
    std::string command; // "tarnwick export": the words that start it
    std::string release; // "Tarnwick 0.1.0"
    std::string date;    // of the release, as in ISO 8601
    CommandForm form;
    std::string summary;                   // whole sentences; the first one is in the list of pages
    std::vector<ManualSection> sections{}; // after the options
    std::vector<std::string> related{};    // other pages of section 1
};

std::string roffOf(const ManualPage& page);

} // namespace tarnwick
