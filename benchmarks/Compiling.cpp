#include "benchmarks/Compiling.h"

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/WorkerProcess.h"
#include "benchmarks/Statistics.h"
#include "benchmarks/Twin.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <regex>
#include <unistd.h>

namespace tarnwick::bench {

namespace {

double oneCompilation(const std::string& program) {
    msl::Compilation compilation;
    const double time = milliseconds([&] { compilation = msl::compile(program); });
    if (compilation.failed)
        throw ProgramError(compilation.messages);
    return time;
}

// The program with one more digit, `digit`, in the fraction in the middle of those of its code.
std::string withOtherNumber(const std::string& program, int digit) {
    static const std::regex fraction(R"((\n\s*#|//)[^\n]*|[^\w.]\d+\.\d+(?![\w.]))");
    std::vector<std::ptrdiff_t> ends;
    for (std::sregex_iterator match(program.begin(), program.end(), fraction), end; match != end;
         ++match)
        if (!(*match)[1].matched)
            ends.push_back(match->position() + match->length());
    if (ends.empty())
        return program;
    const auto place = static_cast<std::size_t>(ends[ends.size() / 2]);
    return program.substr(0, place) + std::to_string(digit) + program.substr(place);
}

} // namespace

CompileTime compileTime(const Case& one, int rounds) {
    std::vector<double> ours, otherNumber, twin;
    oneCompilation(one.program);
    const bool hasTwin = !one.twin.empty();
    if (hasTwin)
        compiledTwin(one.twin, one.values.size());
    for (int round = 0; round < rounds; round++) {
        // Another line more each time, so that the text is parsed.
        ours.push_back(
            oneCompilation(one.program + std::string(static_cast<std::size_t>(round), '\n')));
        otherNumber.push_back(oneCompilation(
            withOtherNumber(one.program + std::string(static_cast<std::size_t>(round), '\n'), 5)));
        if (hasTwin)
            twin.push_back(milliseconds([&] { compiledTwin(one.twin, one.values.size()); }));
    }
    return {median(ours), hasTwin ? median(twin) : 0, median(otherNumber)};
}

std::string stepTimes(const std::vector<Case>& all) {
    const TemporaryFolder folder;
    std::string command = "'" + msl::workerProgram().string() + "' --times";
    for (const Case& one : all) {
        std::string name = one.name;
        std::ranges::replace(name, '/', '-');
        const std::filesystem::path file = folder.path() / (name + ".metal");
        std::ofstream(file) << one.program;
        command += " '" + file.string() + "'";
    }
    FILE* process = popen(command.c_str(), "r");
    if (!process)
        throw ProgramError("The compiler's worker cannot be started.");
    std::string text;
    for (char line[256]; std::fgets(line, sizeof line, process);)
        text += "  " + std::string(line);
    if (pclose(process) != 0)
        throw ProgramError("The compiler's worker did not measure its steps.");
    return text;
}

std::vector<double> firstCompileTimes(const std::string& self, const Case& one, int rounds) {
    char file[] = "/tmp/tarnwick-bench-XXXXXX";
    const int descriptor = mkstemp(file);
    if (descriptor < 0)
        throw ProgramError("A temporary file cannot be made.");
    close(descriptor);
    std::ofstream(file) << one.program;
    std::vector<double> times;
    for (int round = 0; round < rounds; round++) {
        double time = -1;
        const std::string command = "'" + self + "' --first < " + file;
        if (FILE* process = popen(command.c_str(), "r")) {
            if (std::fscanf(process, "%lf", &time) != 1)
                time = -1;
            pclose(process);
        }
        if (time >= 0)
            times.push_back(time);
    }
    std::remove(file);
    if (times.empty())
        throw ProgramError("No process compiled " + one.name + ".");
    return times;
}

int printFirstCompileTime() {
    const std::string program{std::istreambuf_iterator<char>(std::cin), {}};
    try {
        std::printf("%f\n", oneCompilation(program));
    } catch (const ProgramError& error) {
        std::fputs(error.what(), stderr);
        return 1;
    }
    return 0;
}

} // namespace tarnwick::bench
