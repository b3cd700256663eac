// Prints the boxes of an MPEG-4 or QuickTime file, a line each, with what some of them say, read
// without any library, so that scripts can look at files that were written with one (ISO/IEC
// 14496-12; for QuickTime's own the QuickTime File Format). Ends with 1 where the boxes do not fit
// together.

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

// A stretch of the file, read from its front.
struct Reading {
    const Bytes& file;
    std::size_t at, end;

    std::uint64_t number(std::size_t bytes) {
        if (bytes > end - at)
            throw std::runtime_error("A field ends at " + std::to_string(at + bytes) +
                                     ", its box at " + std::to_string(end) + ".");
        std::uint64_t value = 0;
        for (; bytes > 0; --bytes)
            value = value << 8 | file[at++];
        return value;
    }
    std::string text() { // four characters
        std::string characters;
        for (int index = 0; index < 4; ++index)
            characters += static_cast<char>(number(1));
        return characters;
    }
    void skip(std::size_t bytes) {
        for (; bytes > 0; --bytes)
            number(1);
    }
};

std::string field(const char* name, std::uint64_t value) {
    return std::string(" ") + name + "=" + std::to_string(value);
}

// Box types whose content is boxes, and how many bytes of their own stand before those.
const std::map<std::string, std::size_t> containers{
    {"moov", 0}, {"trak", 0}, {"edts", 0},  {"mdia", 0},  {"minf", 0},  {"stbl", 0}, {"dinf", 0},
    {"tref", 0}, {"stsd", 8}, {"avc1", 78}, {"hvc1", 78}, {"apch", 78}, {"ap4h", 78}};

std::string times(Reading& box) {
    const std::size_t bytes = box.number(4) >> 24 == 1 ? 8 : 4;
    box.skip(2 * bytes);
    const auto timescale = box.number(4);
    return field("timescale", timescale) + field("duration", box.number(bytes));
}

std::string editList(Reading& box) {
    const std::size_t bytes = box.number(4) >> 24 == 1 ? 8 : 4;
    std::string said;
    for (auto left = box.number(4); left > 0; --left) {
        said += field("duration", box.number(bytes));
        said += field("from", box.number(bytes));
        said += field("rate", box.number(4) >> 16);
    }
    return said;
}

std::string color(Reading& box) {
    std::string said = " " + box.text();
    for (const char* name : {"primaries", "transfer", "matrix"})
        said += field(name, box.number(2));
    return box.at < box.end ? said + field("full", box.number(1) >> 7) : said;
}

std::string hevcConfiguration(Reading& box) {
    box.skip(22);
    std::string said;
    for (auto arrays = box.number(1); arrays > 0; --arrays) {
        said += field("unit", box.number(1) & 63);
        auto units = box.number(2);
        said += "x" + std::to_string(units);
        for (; units > 0; --units)
            box.skip(box.number(2));
    }
    return said;
}

// "COUNTxDURATION" for each run of samples.
std::string sampleTimes(Reading& box) {
    box.skip(4);
    std::string said;
    for (auto left = box.number(4); left > 0; --left) {
        said += " " + std::to_string(box.number(4));
        said += "x" + std::to_string(box.number(4));
    }
    return said;
}

const std::map<std::string, std::string (*)(Reading&)> readers{
    {"mvhd", times},       {"mdhd", times}, {"elst", editList},
    {"stts", sampleTimes}, {"colr", color}, {"hvcC", hevcConfiguration}};

void walk(const Bytes& file, std::size_t at, std::size_t end, const std::string& path) {
    while (at < end) {
        Reading box{file, at, end};
        std::uint64_t size = box.number(4);
        if (size == 0 && end - at == 4)
            return; // QuickTime's end of a list
        const std::string type = box.text();
        if (size == 1)
            size = box.number(8);
        if (size < box.at - at || size > end - at)
            throw std::runtime_error("The box " + path + type + " at " + std::to_string(at) +
                                     " has " + std::to_string(size) + " bytes.");
        Reading content{file, box.at, at + size};
        const auto reader = readers.find(type);
        std::printf("%s%s at=%zu%s\n", path.c_str(), type.c_str(), at,
                    reader == readers.end() ? "" : reader->second(content).c_str());
        const auto container = containers.find(type);
        if (container != containers.end())
            walk(file, box.at + container->second, at + size, path + type + "/");
        at += size;
    }
}

} // namespace

int main(int count, char** words) {
    if (count != 2)
        return 2;
    std::ifstream stream(words[1], std::ios::binary);
    const Bytes file{std::istreambuf_iterator<char>(stream), {}};
    try {
        walk(file, 0, file.size(), "");
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
