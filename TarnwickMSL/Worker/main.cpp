// The compiler as a process of its own:
//   tarnwick-msl-worker --serve FORM            answers requests on standard input, a socket; FORM
//                                               is that of the other end (Wire.h)
//   tarnwick-msl-worker --precompile FILE       writes the precompiled standard library
//   tarnwick-msl-worker --dump-ir FILE.metal    prints the front end's module and signatures
//   tarnwick-msl-worker --step NAME FILE.ll     runs one step on a text and prints the result
//   tarnwick-msl-worker --steps                 prints the table of the steps
//   tarnwick-msl-worker --version               prints the release of Clang and LLVM
//   tarnwick-msl-worker --confine               confines itself as --serve does; prints whether it
//   could tarnwick-msl-worker --times FILE.metal...   prints the time of each step
#include "TarnwickMSL/Confinement/Confinement.h"
#include "TarnwickMSL/Translation/Passes.h"
#include "TarnwickMSL/Wire.h"
#include "TarnwickMSL/Worker/Dump.h"
#include "TarnwickMSL/Worker/Precompiled.h"
#include "TarnwickMSL/Worker/Server.h"
#include "TarnwickMSL/Worker/Times.h"

#include <clang/Basic/Version.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

using namespace tarnwick::msl;

namespace {

std::string textOf(const char* file) {
    std::ifstream input(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(input), {}};
}

int run(std::string_view command, const char* file, const char* second,
        std::span<char* const> files) {
    if (command == "--serve" && file) {
        if (file != std::string_view(wireForm()))
            return 3; // of another build
        serve(STDIN_FILENO);
        return 0;
    }
    if (command == "--precompile" && file)
        return writePrecompiled(file) ? 0 : 1;
    if (command == "--dump-ir" && file)
        return dumpParsed(textOf(file), standardLibrary()) ? 0 : 1;
    if (command == "--step" && file && second)
        return dumpStep(file, textOf(second)) ? 0 : 1;
    if (command == "--times" && file) {
        std::vector<std::string> texts;
        for (const char* one : files)
            texts.push_back(textOf(one));
        return printTimes(texts, standardLibrary()) ? 0 : 1;
    }
    if (command == "--version") {
        std::cout << clang::getClangFullVersion() << '\n';
        return 0;
    }
    if (command == "--confine") {
        std::cout << (confine(FileAccess::none) ? "confined\n" : "not confined\n");
        return 0;
    }
    if (command == "--steps") {
        std::cout << stepTable();
        return 0;
    }
    std::cerr << "tarnwick-msl-worker: requires --serve FORM, --precompile FILE, --dump-ir FILE, "
                 "--step NAME FILE, --steps, --version, --confine or --times FILE....\n";
    return 2;
}

} // namespace

int main(int count, char** words) {
    try {
        const int status =
            run(count > 1 ? words[1] : "", count > 2 ? words[2] : nullptr,
                count > 3 ? words[3] : nullptr,
                std::span(words, static_cast<std::size_t>(count))
                    .subspan(std::min<std::size_t>(2, static_cast<std::size_t>(count))));
        std::cout.flush();
        return status;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
