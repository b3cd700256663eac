// A command of `tarnwick`, run in a child process.
#pragma once

#include "player/Exports/Progress.h"

#include <QObject>
#include <QProcess>
#include <QTimer>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

struct ChildResult {
    bool isDone = false;      // it ended with status 0
    bool isCancelled = false; // by cancel()
    std::string sentence{};   // why it is not done; empty if it is
    std::string output{};     // its standard output, at most a mebibyte
    // What it said beside its progress, in order; the first sentences if there are many.
    std::vector<std::string> remarks{};
};

// The program `tarnwick` that comes with this one.
std::filesystem::path commandLineProgram();

// On the thread that made it, which it never blocks. The child has a lower priority (nice 10) and
// ends when this process does.
class ChildProcess : public QObject {
    Q_OBJECT

  public:
    explicit ChildProcess(QObject* parent = nullptr);
    ~ChildProcess() override; // kills a running child, which takes milliseconds

    // Once. `finished` follows, also if the program cannot be started.
    void start(const std::filesystem::path& program, const std::vector<std::string>& words);
    // Asks the child to end and clean up; after 1.7 seconds it is killed.
    void cancel();

  signals:
    void progressed(const tarnwick::player::Progress& progress);
    void printed(const QByteArray& line); // a line of its standard output, as soon as it is there
    void finished(const tarnwick::player::ChildResult& result);

  private:
    void readErrors();
    void readOutput();
    void takeErrorLine(const QByteArray& line);
    void end(QProcess::ExitStatus how, int status);
    void failToStart(QProcess::ProcessError error);

    QProcess process_;
    QTimer patience_; // after cancel()
    std::string lastSentence_;
    ChildResult result_;
    bool isOver_ = false;
};

} // namespace tarnwick::player
