#include "programs/Terminal/ProgressBar.h"

#include "TarnwickCore/Text/TerminalText.h"
#include "programs/Terminal/JSONText.h"

#include <nlohmann/json.hpp>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace tarnwick {
namespace {

using std::chrono::duration, std::chrono::milliseconds, std::chrono::seconds;

constexpr std::size_t longestBar = 30, shortestBar = 8; // characters
constexpr std::size_t usualWidth = 80;                  // of a terminal with unknown width

// Read for each line, because the terminal's size may change.
std::size_t terminalWidth() {
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

// A terminal that can rewrite a line.
bool isTerminal() {
    const char* kind = std::getenv("TERM");
    return isatty(STDERR_FILENO) == 1 && !(kind && std::string_view(kind) == "dumb");
}

// The part of `text`, UTF-8, that fits into that many columns: no character takes more columns than
// bytes.
std::string cut(const std::string& text, std::size_t columns) {
    std::size_t end = std::min(columns, text.size());
    while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xc0) == 0x80)
        --end;
    return text.substr(0, end);
}

bool isForPrograms() {
    const char* wanted = std::getenv("TARNWICK_PROGRESS");
    return wanted != nullptr && std::string_view(wanted) == "json";
}

double shareOf(std::int64_t done, std::int64_t goal) {
    return goal > 0 ? std::clamp(static_cast<double>(done) / static_cast<double>(goal), 0.0, 1.0)
                    : 1;
}

// "[#####.....] " if there is room for it.
std::string barText(double share, std::size_t room) {
    constexpr std::size_t around = 3;
    if (room < shortestBar + around)
        return "";
    const std::size_t length = std::min(longestBar, room - around);
    std::string bar(static_cast<std::size_t>(share * static_cast<double>(length)), '#');
    bar.resize(length, '.');
    return "[" + bar + "] ";
}

} // namespace

std::string partName(std::string_view unit, std::size_t index, std::size_t count) {
    return std::string(unit) + " " + std::to_string(index + 1) + " of " + std::to_string(count);
}

std::string clockText(double seconds) {
    const auto whole = static_cast<std::int64_t>(seconds + 0.5);
    std::array<char, 40> text{};
    if (whole == 0)
        std::snprintf(text.data(), text.size(), "%.1f s", seconds);
    else if (whole < 60)
        std::snprintf(text.data(), text.size(), "%" PRId64 " s", whole);
    else if (whole < 3600)
        std::snprintf(text.data(), text.size(), "%" PRId64 ":%02" PRId64, whole / 60, whole % 60);
    else
        std::snprintf(text.data(), text.size(), "%" PRId64 ":%02" PRId64 ":%02" PRId64,
                      whole / 3600, whole / 60 % 60, whole % 60);
    return text.data();
}

ProgressBar::ProgressBar(std::string_view unit)
    : unit_(unit), form_(form()), writer_([this](const std::stop_token& stop) { run(stop); }) {}

ProgressBar::Form ProgressBar::form() {
    if (isForPrograms())
        return Form::json;
    return isTerminal() ? Form::rewrittenLine : Form::lines;
}

ProgressBar::~ProgressBar() {
    writer_.request_stop();
    writer_.join();
    wipe();
}

void ProgressBar::part(std::string_view name) {
    const std::lock_guard lock(mutex_);
    part_ = terminalText(name);
}

void ProgressBar::doing(std::string_view what) {
    const std::lock_guard lock(mutex_);
    what_ = terminalText(what);
    more_.clear();
    count_.reset();
}

void ProgressBar::show(std::int64_t done, std::int64_t goal, std::string_view more) {
    const std::lock_guard lock(mutex_);
    what_ = unit_ + " " + std::to_string(done) + " of " + std::to_string(goal);
    more_ = more;
    count_ = {done, goal};
}

void ProgressBar::hide() {
    const std::lock_guard lock(mutex_);
    wipe();
    what_.clear();
}

double ProgressBar::elapsed() const {
    return duration<double>(Clock::now() - begin_).count();
}

std::string ProgressBar::words() const {
    const std::string part = part_.empty() ? "" : part_ + ": ";
    return part + what_ + ", " + (more_.empty() ? clockText(elapsed()) : more_);
}

std::string ProgressBar::json() const {
    nlohmann::ordered_json line;
    if (!part_.empty())
        line["part"] = part_;
    if (count_) {
        line["unit"] = unit_;
        line["done"] = count_->done;
        line["goal"] = count_->goal;
    } else {
        line["doing"] = what_;
    }
    line["seconds"] = elapsed();
    return jsonText(line, JSONForm::oneLine);
}

std::string ProgressBar::line() const {
    // Terminals start a new line after their last column.
    const std::size_t columns = terminalWidth() - 1;
    const std::string text = words();
    const std::size_t room = columns - std::min(columns, text.size());
    return (count_ ? barText(shareOf(count_->done, count_->goal), room) : "") + cut(text, columns);
}

void ProgressBar::wipe() {
    if (isShown_)
        std::fputs("\r\033[K", stderr);
    isShown_ = false;
}

void ProgressBar::write() {
    if (what_.empty())
        return;
    if (form_ == Form::json) {
        std::fprintf(stderr, "%s\n", json().c_str());
    } else if (form_ == Form::rewrittenLine) {
        std::fprintf(stderr, "\r\033[K%s", line().c_str());
        std::fflush(stderr);
        isShown_ = true;
    } else if (Clock::now() - lastLine_ >= seconds(10)) {
        lastLine_ = Clock::now();
        std::fprintf(stderr, "tarnwick: %s.\n", words().c_str());
    }
}

void ProgressBar::run(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    const auto never = [] { return false; };
    ended_.wait_for(lock, stop, form_ == Form::json ? milliseconds(50) : seconds(1), never);
    while (!stop.stop_requested()) {
        write();
        ended_.wait_for(lock, stop, milliseconds(200), never);
    }
}

} // namespace tarnwick
