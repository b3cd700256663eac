// What processes take of the system over a long run: memory, handles, threads, mappings.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tarnwick {

// Of one process, or the sum over several.
struct Footprint {
    double resident = 0;     // MB, pages in memory
    double proportional = 0; // MB, of each shared page the share of this process
    double anonymous = 0;    // MB, pages of no file
    double heap = 0;         // MB that malloc has given out; of this process only
    int files = 0, threads = 0, mappings = 0;

    static Footprint present();         // of this process
    static Footprint of(pid_t process); // zeros after its end

    Footprint& operator+=(const Footprint& other);
};

// The processes that this process started and that have not been waited for.
std::vector<pid_t> childProcesses();

// The footprints of a long run. One thread.
class FootprintCourse {
  public:
    // `counted` is the head of the first column: "frames".
    explicit FootprintCourse(const std::string& counted);

    // Prints a row.
    void add(long count, const Footprint& footprint);
    // Compares medians over two halves of the run, without its first tenth, and prints both. Memory
    // may grow by 3 % or 1 MB, its part without files by 10 % because of the largest work until
    // then, mappings by 5 %, handles not at all, threads by three of the driver. Proportional
    // memory depends on other processes and is not compared.
    bool isFlat() const;

  private:
    std::vector<Footprint> course_;
};

} // namespace tarnwick
