#include "TarnwickBase/Crashes.h"
#include "TarnwickBase/EndSignals.h"
#include "TarnwickBase/FreedMemory.h"
#include "saver/Program.h"

#include <cstddef>
#include <iostream>

int main(int count, char** arguments) {
    tarnwick::tellOfCrashes("tarnwick-saver");
    tarnwick::keepFreedMemory();
    const tarnwick::EndSignals signals;
    const auto given = static_cast<std::size_t>(count);
    return static_cast<int>(tarnwick::runSaver({arguments + 1, given - 1}, std::cout, std::cerr));
}
