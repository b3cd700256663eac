// The sentence of an error that a test expects.
#pragma once

#include <string>

namespace tarnwick {

// what() of the Error that `work` throws; empty if it throws none.
template <class Error, class Work> std::string thrownBy(Work work) {
    try {
        work();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

} // namespace tarnwick
