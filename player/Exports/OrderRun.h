// An order while it is carried out: its files are written, its child process runs.
#pragma once

#include "player/Exports/ChildProcess.h"
#include "player/Exports/OrderFiles.h"

#include <QObject>
#include <filesystem>
#include <memory>

namespace tarnwick::player {

// On the thread that made it, which it never blocks: files are written and removed on another.
class OrderRun : public QObject {
    Q_OBJECT

  public:
    // `program` is `tarnwick`.
    explicit OrderRun(Order order, std::filesystem::path program = commandLineProgram(),
                      QObject* parent = nullptr);
    ~OrderRun() override; // kills a running child

    void start(); // once; `finished` follows
    void cancel();

    // Null if they cannot be written, and before they are. The files live as long as a copy.
    const std::shared_ptr<OrderFiles>& files() const { return files_; }

  signals:
    void progressed(const tarnwick::player::Progress& progress);
    void printed(const QByteArray& line);
    // The sentence names no temporary folders.
    void finished(const tarnwick::player::ChildResult& result);

  private:
    Order order_;
    std::filesystem::path program_;
    std::shared_ptr<OrderFiles> files_;
    ChildProcess child_;
    bool isCancelled_ = false;
};

} // namespace tarnwick::player
