// Random programs whose values are known: the same text runs natively and on the GPU, and every
// value in it is exact, so both must agree bit for bit.
//
// What keeps a program honest:
// - unsigned arithmetic wraps; ints stay below 2^24 and floats are multiples of 1/16 below 2^23 /
// 16,
//   because each expression carries the bound of its value and is tamed before it could pass it;
// - divisors are odd or constant, shifts are masked, indices are reduced, everything is
// initialised;
// - an expression has at most one side effect, or a sequence point between them;
// - the loops of a program run at most `iterationLimit` times in sum, far below the 65,535 after
//   which the packaged CPU driver ends an invocation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarnwick::trials {

inline constexpr std::uint32_t iterationLimit = 6000;

// The text of `uint trial(uint input)` and all that it needs, in the language that Metal and C++
// with NativeShim.h share. The same for the same seed, everywhere.
std::string randomProgram(std::uint64_t seed);

enum class Kind : std::uint8_t { unsigned_, signed_, float_ };

const char* typeName(Kind kind);

// Text and the bound of its value (for unsigned numbers without meaning).
struct Expression {
    std::string text;
    double bound = 0;   // |value| <= bound
    double quantum = 1; // floats: value is a multiple of this power of two
};

class Generator {
  public:
    explicit Generator(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15u + 1) {}
    std::string program();

  private:
    struct Variable {
        std::string name;
        Kind kind = Kind::unsigned_;
        bool writable = true;
    };
    struct Array {
        std::string name;
        Kind kind = Kind::unsigned_;
        std::uint32_t length = 1;
        bool writable = true;
        bool isPointer = false; // a parameter that came as a pointer
    };
    struct Function {
        std::string name;
        Kind result = Kind::unsigned_;
        std::vector<Kind> values;      // parameters by value
        std::vector<Kind> references;  // then those by reference
        std::uint32_t arrayLength = 0; // then, where not 0, an array of unsigned numbers
        bool takesPointer = false;     // to the array's first element, not the array by reference
        std::uint32_t iterations = 0;
    };
    // What can be named at some point of the text.
    struct Scope {
        std::vector<Variable> variables;
        std::vector<Array> arrays;
        std::vector<std::string> records; // of type State
        std::vector<std::string> vectors; // of type uint4
    };

    // Chance. Own arithmetic, so that a seed means the same with every standard library.
    std::uint32_t below(std::uint32_t end);
    bool chance(std::uint32_t percent) { return below(100) < percent; }
    Kind anyKind() { return static_cast<Kind>(below(3)); }
    template <class T> const T& any(const std::vector<T>& list) {
        return list[below(static_cast<std::uint32_t>(list.size()))];
    }

    // Expressions.cpp
    Expression expression(Kind kind, int depth);
    Expression unsignedExpression(int depth);
    Expression signedExpression(int depth);
    Expression floatExpression(int depth);
    Expression leaf(Kind kind);
    Expression literal(Kind kind);
    Expression element(const Array& array);
    Expression call(const Function& function, int depth);
    Expression within(Expression value, Kind kind, double bound);
    std::string tamed(Kind kind, int depth);
    std::string condition(int depth);
    std::string comparison(int depth);
    std::string effectfulCondition();
    std::string index(std::uint32_t length);

    // Statements.cpp
    void block(int statements);
    void statement();
    void declaration();
    void assignment();
    void vectorAssignment(const std::string& vector);
    void conditional();
    void loop();
    void countedLoop(std::uint32_t trips);
    void guardedLoop(std::uint32_t trips);
    void searchLoop(std::uint32_t trips);
    void twoLevelLoop();
    void openLoop();
    void stateLoop(std::uint32_t trips);
    void multiway();
    void jump();
    void stir();
    void effect();
    void open(const std::string& head);
    void close(const std::string& tail = "}");
    void line(const std::string& text);
    bool affords(std::uint32_t trips) const;
    std::string fresh(const char* stem);
    std::string writableVariable(Kind kind);

    // Program.cpp
    void tables();
    void helper();
    void main();
    std::string returned();

    std::uint64_t state_;
    std::string text_;
    int indent_ = 0;
    Scope scope_;
    std::vector<Function> functions_;
    std::uint32_t names_ = 0;
    std::uint32_t multiplier_ = 1; // how often the current place can run in one call
    std::uint32_t iterations_ = 0; // of the current function so far
    std::uint32_t budget_ = iterationLimit;
    int loops_ = 0;    // around the current place, in this function
    int switches_ = 0; // within the innermost loop
    int depth_ = 0;    // of blocks
    Kind result_ = Kind::unsigned_;
};

} // namespace tarnwick::trials
