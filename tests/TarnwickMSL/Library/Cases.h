// What the standard library's functions are held to: a table of calls, the same in long double, and
// the error that the language grants (Metal Shading Language 3.1, 8.4).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarnwick::trials {

enum class Element : std::uint8_t { float_, half };

// Values of one argument.
struct Inputs {
    enum class Shape : std::uint8_t {
        unused,
        linear,
        logarithmic,
        signedLogarithmic,
        whole,
        everyHalf
    };
    Shape shape = Shape::unused;
    double low = 0, high = 0;
};
inline Inputs linear(double low, double high) {
    return {Inputs::Shape::linear, low, high};
}
inline Inputs logarithmic(double low, double high) {
    return {Inputs::Shape::logarithmic, low, high};
}
// Magnitudes spread evenly over the exponents, of both signs.
inline Inputs bothSigns(double low, double high) {
    return {Inputs::Shape::signedLogarithmic, low, high};
}
inline Inputs whole(double low, double high) {
    return {Inputs::Shape::whole, low, high};
}
inline Inputs everyHalf() {
    return {Inputs::Shape::everyHalf, 0, 0};
}

// The error granted for arguments (x, y) and true result, besides `ulps` units in the last place.
struct Bound {
    std::string text; // as the table of docs/library.md shows it
    double ulps = 0;
    double absolute = 0;
    double (*further)(double x, double y, double result) = nullptr;
};
inline Bound exactly() {
    return {"exact", 0};
}
inline Bound rounded() {
    return {"correctly rounded", 0.5};
}
Bound ulps(int count);

// Whether zeros, infinities, NaNs and the like belong to the arguments.
enum class Specials : std::uint8_t { none, all };

struct Case {
    std::string name;
    std::string lowering; // how the library does it
    std::string body;     // statements that set `r` from x, y and z; T is the type of them all,
                          // I the integers of as many lanes
    std::vector<Inputs> arguments;
    long double (*reference)(long double x, long double y, long double z);
    Bound bound;
    Specials specials = Specials::none;
    Element element = Element::float_;
    bool scalarOnly = false; // the body makes vectors of x, y and z itself
};

std::vector<Case> preciseCases();
std::vector<Case> fastCases();
std::vector<Case> commonCases(); // the same in fast and precise math
std::vector<Case> halfCases();
std::vector<Case> geometricCases(); // and relational, matrix and packing functions

// The calls of integer functions that IntegerTests.cpp compares, "mulhi(x, y)" for instance.
std::vector<std::string> integerCalls();

// Arguments as the element's bits; all of one length, a multiple of 12.
using Columns = std::vector<std::vector<std::uint32_t>>;
Columns columns(const Case& row, std::size_t count);

// An MSL kernel `name` that evaluates the case on vectors of `width` lanes: buffers 0 to 2 hold the
// arguments' bits, buffer 3 takes the results'.
std::string kernelText(const Case& row, const std::string& name, int width);

struct Verdict {
    std::size_t misses = 0;
    std::string firstMiss;
    double worstUlps = 0, worstAbsolute = 0; // over results of normal size
    void add(const Verdict& other);
};
Verdict judge(const Case& row, const Columns& arguments, std::span<const std::uint32_t> results);

} // namespace tarnwick::trials
