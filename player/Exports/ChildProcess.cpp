#include "player/Exports/ChildProcess.h"

#include "TarnwickBase/InstalledFiles.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#include <QProcessEnvironment>
#include <csignal>
#include <cstring>

namespace tarnwick::player {
namespace {

constexpr int longestFarewell = 1700; // milliseconds from the request to end to the kill
constexpr int longestKill = 500;      // milliseconds
constexpr int niceness = 10;
constexpr qint64 longestLine = 1 << 16; // bytes
constexpr std::size_t mostRemarks = 20;
constexpr std::size_t longestOutput = 1 << 20;     // bytes
constexpr std::string_view speaker = "tarnwick: "; // before sentences

QProcessEnvironment environment() {
    QProcessEnvironment made = QProcessEnvironment::systemEnvironment();
    made.insert(QStringLiteral("TARNWICK_PROGRESS"), QStringLiteral("json"));
    return made;
}

std::string withoutLineBreak(QByteArray line) {
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    return line.toStdString();
}

} // namespace

std::filesystem::path commandLineProgram() {
    return installedFile(InstalledFile::commandLine);
}

ChildProcess::ChildProcess(QObject* parent) : QObject(parent) {
    process_.setProcessEnvironment(environment());
    process_.setStandardInputFile(QProcess::nullDevice());
    // In the child, between fork and exec.
    process_.setChildProcessModifier([] {
        setpriority(PRIO_PROCESS, 0, niceness);
        prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    patience_.setSingleShot(true);
    patience_.setInterval(longestFarewell);
    connect(&patience_, &QTimer::timeout, &process_, &QProcess::kill);
    connect(&process_, &QProcess::readyReadStandardError, this, &ChildProcess::readErrors);
    connect(&process_, &QProcess::readyReadStandardOutput, this, &ChildProcess::readOutput);
    connect(&process_, &QProcess::finished, this,
            [this](int status, QProcess::ExitStatus how) { end(how, status); });
    connect(&process_, &QProcess::errorOccurred, this, &ChildProcess::failToStart);
}

ChildProcess::~ChildProcess() {
    process_.disconnect(this);
    if (process_.state() == QProcess::NotRunning)
        return;
    process_.kill();
    process_.waitForFinished(longestKill);
}

void ChildProcess::start(const std::filesystem::path& program,
                         const std::vector<std::string>& words) {
    QStringList arguments;
    for (const std::string& word : words)
        arguments.push_back(QString::fromStdString(word));
    process_.start(QString::fromStdString(program.string()), arguments);
}

void ChildProcess::cancel() {
    result_.isCancelled = true;
    process_.terminate();
    patience_.start();
}

void ChildProcess::readErrors() {
    process_.setReadChannel(QProcess::StandardError);
    while (process_.canReadLine() || process_.bytesAvailable() > longestLine)
        takeErrorLine(process_.readLine(longestLine));
}

void ChildProcess::readOutput() {
    process_.setReadChannel(QProcess::StandardOutput);
    while (process_.canReadLine() || process_.bytesAvailable() > longestLine) {
        const QByteArray line = process_.readLine(longestLine);
        if (result_.output.size() + static_cast<std::size_t>(line.size()) <= longestOutput)
            result_.output += line.toStdString();
        emit printed(line);
    }
}

void ChildProcess::takeErrorLine(const QByteArray& line) {
    std::string text = withoutLineBreak(line);
    if (const auto progress = Progress::read(text)) {
        emit progressed(*progress);
        return;
    }
    if (text.starts_with(speaker))
        text.erase(0, speaker.size());
    if (text.empty())
        return;
    if (result_.remarks.size() < mostRemarks)
        result_.remarks.push_back(text);
    lastSentence_ = std::move(text);
}

void ChildProcess::end(QProcess::ExitStatus how, int status) {
    readErrors();
    takeErrorLine(process_.readAllStandardError()); // without a line break at its end
    readOutput();
    isOver_ = true;
    patience_.stop();
    result_.isDone = how == QProcess::NormalExit && status == 0;
    if (result_.isDone)
        result_.isCancelled = false;
    else if (result_.isCancelled)
        result_.sentence = "Cancelled.";
    else if (how == QProcess::CrashExit)
        result_.sentence = "The child process ended unexpectedly (" +
                           std::string(strsignal(status)) + ")." +
                           (lastSentence_.empty() ? "" : " Its last line: " + lastSentence_);
    else
        result_.sentence = lastSentence_.empty() ? "The child process ended with status " +
                                                       std::to_string(status) + "."
                                                 : lastSentence_;
    emit finished(result_);
}

// Other errors are followed by the end of the process.
void ChildProcess::failToStart(QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart || isOver_)
        return;
    isOver_ = true;
    result_.sentence = process_.program().toStdString() +
                       " cannot be run: " + process_.errorString().toStdString() + ".";
    emit finished(result_);
}

} // namespace tarnwick::player
