// Random programs whose values are known: the same text runs natively and on the GPU, and every
// value in it is exact, so both must agree bit for bit.
//
// What keeps a program honest:
// - unsigned arithmetic wraps; ints stay below 2^24, floats are multiples of a power of two q below
//   2^23 q, halves below 2^10 q, because each expression carries the bound of its value (of each
//   lane, where it has several) and is tamed before it could pass it;
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

// From this length on an array is in memory: the compiler makes shorter ones values.
inline constexpr std::uint32_t longArray = 9;

// The text of `uint trial(uint input)` and all that it needs, in the language that Metal and C++
// with NativeShim.h share. The same for the same seed, everywhere.
std::string randomProgram(std::uint64_t seed);

enum class Kind : std::uint8_t { unsigned_, signed_, float_, half_, ushort_, ulong_ };

// Unsigned numbers, of 32, 16 or 64 bits.
inline bool wraps(Kind kind) {
    return kind == Kind::unsigned_ || kind == Kind::ushort_ || kind == Kind::ulong_;
}

// A scalar, a vector of 2 to 4 lanes, or a matrix of floats with 2 to 4 columns of so many lanes.
struct Type {
    Kind kind = Kind::unsigned_;
    std::uint32_t lanes = 1, columns = 1;

    Type(Kind kind, std::uint32_t lanes = 1, std::uint32_t columns = 1)
        : kind(kind), lanes(lanes), columns(columns) {}
    bool operator==(const Type&) const = default;
    bool isScalar() const { return lanes == 1; }
    bool isMatrix() const { return columns > 1; }
};

std::string typeName(Type type);

// The swizzles of a vector of so many lanes that programs use; NativeShim.h has the same.
std::vector<std::string> swizzlesOf(std::uint32_t lanes);

// What a tamed value of the type is below.
inline double tameBound(Type type) {
    return type.isMatrix() ? 4 : type.kind == Kind::half_ ? 128 : 1024;
}

// Calls of the functions that a program has for its types: the value within tameBound(), within 4,
// and as bits.
std::string tamedText(Type type, const std::string& value);
std::string littleText(Type type, const std::string& value);
std::string bitsText(Type type, const std::string& value);

// The body with those functions before it that it calls.
std::string withPrelude(const std::string& body);

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
        Type type = Kind::unsigned_;
        bool writable = true;
    };
    // A bool, or a vector of them.
    struct Flag {
        std::string name;
        std::uint32_t lanes = 1;
    };
    struct Array {
        std::string name;
        Type type = Kind::unsigned_;
        std::uint32_t length = 1;
        bool writable = true;
        bool isPointer = false;  // a parameter that came as a pointer
        std::string member = ""; // of an array of records: ".m1"
    };
    // A record of the program: its members, and those that are arrays.
    struct Shape {
        std::string name;
        std::vector<Variable> members;
        std::vector<Array> arrays;
        std::vector<Variable> packed;
        std::uint32_t iterations = 0; // of its functions turned() and turn()
        bool hasFunctions = false;
    };
    struct Record {
        std::string name;
        std::size_t shape = 0;
        std::uint32_t length = 0; // of a list
    };
    struct Function {
        std::string name;
        Type result = Kind::unsigned_;
        std::vector<Type> values;      // parameters by value
        std::vector<Type> references;  // then those by reference
        std::uint32_t arrayLength = 0; // then, where not 0, an array of unsigned numbers
        bool takesPointer = false;     // to the array's first element, not the array by reference
        std::uint32_t iterations = 0;
    };
    // What can be named at some point of the text.
    struct Scope {
        std::vector<Variable> variables;
        std::vector<Variable> packed; // vectors of a packed type
        std::vector<Flag> flags;
        std::vector<Array> arrays;
        std::vector<std::string> records; // of type State
        std::vector<Record> shaped;
        std::vector<Record> lists; // arrays of records
    };

    // Chance. Own arithmetic, so that a seed means the same with every standard library.
    std::uint32_t below(std::uint32_t end);
    bool chance(std::uint32_t percent) { return below(100) < percent; }
    Kind anyKind();
    Type anyVector() { return {anyKind(), 2 + below(3)}; }
    Type anyType();
    template <class T> const T& any(const std::vector<T>& list) {
        return list[below(static_cast<std::uint32_t>(list.size()))];
    }

    // Expressions.cpp
    Expression expression(Type type, int depth);
    Expression scalarExpression(Kind kind, int depth);
    Expression unsignedExpression(int depth);
    Expression bitExpression(int depth);
    Expression narrowed(int depth);
    Expression signedExpression(int depth);
    Expression floatExpression(int depth);
    Expression rareFloatExpression(int depth);
    Expression leaf(Type type);
    Expression partOf(const Variable& variable, Type type);
    Expression partOfPacked(const Variable& variable, Type type);
    Expression literal(Kind kind);
    Expression element(const Array& array);
    Expression call(const Function& function, int depth);
    Expression within(Expression value, Type type, double bound);
    std::string tamed(Type type, int depth);
    std::string condition(int depth);
    std::string comparison(int depth);
    std::string effectfulCondition();
    std::string index(std::uint32_t length);

    // Kinds.cpp
    Expression halfExpression(Type type, int depth);
    Expression rareHalf(Type type, int depth);
    Expression small(const Expression& value, Type type);
    Expression wrappingExpression(Kind kind, int depth);
    std::string unsignedFrom(int depth);
    void declareFlag();
    void assignFlag();
    std::string flagTest();
    void declarePacked();
    void assignPacked(const Variable& packed);

    // Vectors.cpp
    Expression composite(Type type);
    Expression vectorExpression(Type type, int depth);
    Expression integerLanes(Type type, int depth);
    Expression floatLanes(Type type, int depth);
    Expression extreme(Type type, const Expression& value, int depth);
    Expression arranged(Type type, int depth);
    Expression converted(Type type, int depth);
    Expression transformed(Type type, int depth);
    Expression matrixExpression(Type type, int depth);
    Expression dotted(int depth);
    std::string lane(const std::string& vector, std::uint32_t lanes);
    std::string swizzle(std::uint32_t lanes, std::uint32_t width, bool isStore);
    std::string vectorCondition(int depth);
    void assignLanes(const Variable& vector);
    void assignElements(const Variable& matrix);

    // Statements.cpp
    void block(std::uint32_t most);
    void statement();
    void declaration();
    void assignment();
    void assignBits();
    void arrayAssignment(const Array& array);
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
    std::string writableVariable(Type type);

    // Records.cpp
    void shape();
    void turning(std::size_t shape);
    void record();
    void listOfRecords(const Record& first);
    void recordLoop(const Record& a, const Record& b);
    std::string recordValue(std::size_t shape);
    std::string initialised(const Shape& shape);
    void declareMembers(const Record& record, bool isWritable);
    Record anyRecord(std::size_t shape);

    // Program.cpp
    void tables();
    void helper();
    void main();
    std::string returned();
    std::string carrying();
    void mixAll();

    std::uint64_t state_;
    std::string text_;
    int indent_ = 0;
    Scope scope_;
    std::vector<Function> functions_;
    std::vector<Shape> shapes_;
    std::string recordResult_; // returned by the current function, if it returns a record
    std::uint32_t names_ = 0;
    std::uint32_t multiplier_ = 1; // how often the current place can run in one call
    std::uint32_t iterations_ = 0; // of the current function so far
    std::uint32_t budget_ = iterationLimit;
    int loops_ = 0;    // around the current place, in this function
    int switches_ = 0; // within the innermost loop
    int depth_ = 0;    // of blocks
    Type result_ = Kind::unsigned_;
    bool isLarge_ = false;
};

} // namespace tarnwick::trials
