// The queue of exports: each is a child process with its own copies of what it reads.
#pragma once

#include "TarnwickPlatform/Pictures/Picture.h"
#include "player/Exports/OrderRun.h"
#include "player/Exports/Progress.h"

#include <QObject>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

enum class ExportState : std::uint8_t { waiting, running, done, failed, cancelled };

struct ExportJob {
    int id = 0; // from 1 on
    std::string title;
    ExportState state = ExportState::waiting;
    Progress progress{};
    Pace pace{};
    std::string sentence{};                        // of a job that failed
    std::vector<std::string> remarks{};            // what a job said that is done
    std::filesystem::path wanted{};                // the place of the result that was asked for
    std::optional<std::filesystem::path> result{}; // of a job that is done
    std::shared_ptr<const Picture> thumbnail{};    // of the result; null without one
    bool isOver() const { return state > ExportState::running; }
};

// On one thread, which it never blocks. Independent of documents: an order has copies.
class ExportQueue : public QObject {
    Q_OBJECT

  public:
    // `program` is `tarnwick`.
    explicit ExportQueue(std::filesystem::path program = commandLineProgram(),
                         QObject* parent = nullptr);
    ~ExportQueue() override;

    // Runs it when its turn comes. The order has an output. Returns the number of the job.
    int add(Order order);
    // The job ends within two seconds, and its unfinished files are removed. Ignored if it is over.
    void cancel(int id);
    // Adds the order of a job that failed or was cancelled again, in place of the job. Returns the
    // number of the new one.
    int again(int id);
    // Forgets a job that is over; its result remains.
    void remove(int id);

    const std::map<int, ExportJob>& jobs() const { return jobs_; }
    int unfinished() const; // jobs that wait or run
    int limit() const { return limit_; }
    void setLimit(int jobs); // that run at once, at least 1; default: 1

  signals:
    void changed(int id); // a job was added, changed or removed
    void ended(int id);   // a job is over

  private:
    void startNext();
    void run(int id);
    void take(int id, const ChildResult& result);
    void keepResult(int id);
    void end(int id, ExportState state, std::string sentence = {});

    std::filesystem::path program_;
    int limit_ = 1;
    int lastId_ = 0;
    std::map<int, ExportJob> jobs_;
    std::map<int, Order> orders_;                   // of all jobs
    std::map<int, std::unique_ptr<OrderRun>> runs_; // of jobs that are not over
};

} // namespace tarnwick::player
