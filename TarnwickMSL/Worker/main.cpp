// The compiler as a process of its own:
//   tarnwick-msl-worker --serve                 answers requests on standard input, a socket
//   tarnwick-msl-worker --precompile FILE       writes the precompiled standard library
//   tarnwick-msl-worker --dump-ir FILE.metal    prints what the front end makes of a program
#include "TarnwickMSL/Worker/Dump.h"
#include "TarnwickMSL/Worker/Precompiled.h"
#include "TarnwickMSL/Worker/Server.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>
#include <unistd.h>

using namespace tarnwick::msl;

namespace {

int run(std::string_view command, const char* file) {
    if (command == "--serve") {
        serve(STDIN_FILENO);
        return 0;
    }
    if (command == "--precompile" && file)
        return writePrecompiled(file) ? 0 : 1;
    if (command == "--dump-ir" && file) {
        std::ifstream input(file, std::ios::binary);
        const std::string source{std::istreambuf_iterator<char>(input), {}};
        return dumpParsed(source, standardLibrary()) ? 0 : 1;
    }
    std::cerr << "tarnwick-msl-worker: --serve, --precompile FILE or --dump-ir FILE is wanted.\n";
    return 2;
}

} // namespace

int main(int count, char** words) {
    try {
        const int status = run(count > 1 ? words[1] : "", count > 2 ? words[2] : nullptr);
        std::cout.flush();
        return status;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
