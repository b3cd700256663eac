// The saver's program, run from outside.
#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

namespace tarnwick {

class ProgramRun {
  public:
    // Starts the program. `environment` adds to this process's own, less DISPLAY and
    // XSCREENSAVER_WINDOW.
    ProgramRun(const std::vector<std::string>& arguments,
               const std::map<std::string, std::string>& environment);
    ~ProgramRun(); // kills what still runs
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;

    void signal(int number) const;
    bool isRunning();
    // The status of exiting, or 128 and the number of the signal that killed it; -1 when it still
    // runs after `seconds`.
    int waitForEnd(double seconds = 20);
    // What it wrote to both outputs. After its end.
    std::string said();

  private:
    pid_t process_ = 0;
    int output_ = -1;
    int status_ = -1;
};

} // namespace tarnwick
