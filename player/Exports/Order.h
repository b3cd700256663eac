// What a child process of the player is asked to do: a command of `tarnwick` with copies of the
// texts that it reads.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

// A word of the command line. The paths of files are known only when the child is started.
struct OrderWord {
    enum class Kind : std::uint8_t {
        text,   // as it is
        file,   // the path of that name in the order's own folder
        output, // the path of the output
    };
    Kind kind = Kind::text;
    std::string text{};
    std::string before{}; // of a file: the part of the word before its path, "0="

    OrderWord(std::string word) : text(std::move(word)) {} // NOLINT: words are texts
    OrderWord(const char* word) : text(word) {}            // NOLINT
    static OrderWord file(std::string name, std::string before = {}) {
        return {Kind::file, std::move(name), std::move(before)};
    }
    static OrderWord output() { return {Kind::output, {}, {}}; }

    bool operator==(const OrderWord&) const = default;

  private:
    OrderWord(Kind given, std::string name, std::string part)
        : kind(given), text(std::move(name)), before(std::move(part)) {}
};

// A file in the order's own folder, which the child reads.
struct OrderInput {
    std::string name; // of the file, without a folder
    std::string text;

    bool operator==(const OrderInput&) const = default;
};

struct Order {
    std::string title;            // for people: "Turning, 1920x1080"
    std::vector<OrderWord> words; // after the name of the program
    std::vector<OrderInput> inputs{};
    // The file or folder to make; never replaces another one. Absent for an order whose results are
    // what it prints and writes into its own folder.
    std::optional<std::filesystem::path> output{};

    bool operator==(const Order&) const = default;
};

} // namespace tarnwick::player
