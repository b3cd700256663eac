// Writes a random program.
//
// What keeps a program honest:
// - unsigned and small numbers wrap; ints stay below 2^24, floats are multiples of a power of two q
//   below 2^23 q, halves below 2^10 q, because each expression carries the bound of its value (of
//   each lane, where it has several) and is tamed before it could pass it;
// - divisors are odd or constant, shifts are masked, indices are reduced, everything is
// initialised;
// - an expression has at most one side effect, or a sequence point between them;
// - the loops of a program run at most `iterationLimit` times in sum, far below the 65,535 after
//   which the packaged CPU driver ends an invocation.
//
// A feature is added as a statement or an expression with a chance of its own (statement(),
// expression()), and as something in the scope that other expressions then use. Each file of this
// folder has one subject; the list of members below names it.
#pragma once

#include "tests/TarnwickMSL/RandomPrograms/Writing/Types.h"

#include <optional>

namespace tarnwick::trials {

inline constexpr std::uint32_t iterationLimit = 6000;

// From this length on an array is in memory: the compiler makes shorter ones values.
inline constexpr std::uint32_t longArray = 9;

class Generator {
  public:
    explicit Generator(std::uint64_t seed);
    std::string program();

  private:
    // Its name may be any text of an lvalue: "(*p1)", "r2.m3".
    struct Variable {
        std::string name;
        Type type = Kind::unsigned_;
        bool writable = true;
        Space space = Space::thread;
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
        bool isPointer = false;  // to the first element
        std::string member = ""; // of an array of records: ".m1"; of one of pointers: ")"
        Space space = Space::thread;
        std::uint32_t rows = 0; // of an array of arrays of `length` elements
        // Whether it is an array of the program's own, whose name is the same at all times.
        bool isWhole() const { return member.empty() && rows == 0; }
    };
    // A member of so few bits, in [1, 31].
    struct BitField {
        std::string name;
        std::uint32_t bits = 1;
    };
    struct Pointer {
        std::string name;
        std::vector<std::string> targets; // to which it may be moved
    };
    // An object of the template Ring.
    struct Ring {
        std::string name;
        Type type = Kind::unsigned_;
    };
    // A record of the program: its members, and those that are arrays.
    struct Shape {
        std::string name;
        std::vector<Variable> members;
        std::vector<Array> arrays;
        std::vector<Variable> packed;
        std::vector<BitField> fields;
        std::uint32_t iterations = 0; // of its functions turned() and turn()
        bool hasFunctions = false;
    };
    struct Record {
        std::string name;
        std::size_t shape = 0;
        std::uint32_t length = 0; // of a list
        Space space = Space::thread;
        bool isWritable = true;
    };
    // Atomic numbers and the name of the operation that changes them here; empty: they are loaded.
    struct Atomic {
        std::string name, operation;
    };
    struct Sampler {
        std::string name;
        bool isPixel = false; // its coordinates are in texels
    };
    struct Function {
        std::string name;
        Type result = Kind::unsigned_;
        std::vector<Type> values;      // parameters by value
        std::vector<Type> references;  // then those by reference
        std::uint32_t arrayLength = 0; // then, where not 0, an array of unsigned numbers
        bool takesPointer = false;     // to the array's first element, not the array by reference
        std::uint32_t iterations = 0;
        std::uint32_t defaults = 0; // of the last parameters
        bool takesWorld = false;    // as its first parameter
        bool isProcedure = false;   // a lambda that changes what it captured
        bool isPure() const { return references.empty() && arrayLength == 0 && !isProcedure; }
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
        std::vector<BitField> fields;
        std::vector<Pointer> pointers;
        std::vector<Function> lambdas;
        std::vector<Ring> rings;
        std::vector<Atomic> atomics;
        bool hasWorld = false; // memory and textures, in `world`
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
    Expression leaf(Type type);
    Expression partOf(const Variable& variable, Type type);
    Expression partOfPacked(const Variable& variable, Type type);
    Expression literal(Kind kind);
    Expression element(const Array& array);
    Expression selected(Type type, int depth);
    Expression call(const Function& function, int depth);
    const Function* anyFunction(Type result);
    Expression within(Expression value, Type type, double bound);
    std::string tamed(Type type, int depth);
    std::string index(std::uint32_t length);
    std::string placeIn(const Array& array);

    // Integers.cpp
    Expression unsignedExpression(int depth);
    Expression signedExpression(int depth);
    Expression wrappingExpression(Kind kind, int depth);
    Expression integerFunction(Type type, int depth);
    Expression reinterpreted(Type type, int depth);
    Expression narrowed(int depth);
    std::string unsignedFrom(int depth);
    Kind anyInteger();

    // Floats.cpp
    Expression floatExpression(int depth);
    Expression rareFloatExpression(int depth);
    Expression halfExpression(Type type, int depth);
    Expression rareHalf(Type type, int depth);
    Expression small(const Expression& value, Type type);

    // Conditions.cpp
    std::string condition(int depth);
    std::string comparison(int depth);
    std::string effectfulCondition();
    std::string lanewise(std::uint32_t lanes, int depth);
    std::string vectorCondition(int depth);
    std::string flagTest();
    void declareFlag();
    void assignFlag();

    // Packed.cpp
    void declarePacked();
    void assignPacked(const Variable& packed);

    // Pointers.cpp
    std::vector<Variable> places(Type type);
    void pointer();
    void pointerTo(Type type);
    void pointers(Type type);
    void span();
    void recordPointer();
    void movePointer();
    void walk();

    // Lambdas.cpp
    void lambda();
    void function();
    void procedure();
    void repetition(std::uint32_t trips);

    // Templates.cpp
    void generic();
    void genericHelper();
    void genericCall();
    void ring();
    void folded();

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
    Expression dotted(Kind kind, int depth);
    Expression factor(Type type, int depth, double bound);
    std::string lane(const std::string& vector, std::uint32_t lanes);
    std::string swizzle(std::uint32_t lanes, std::uint32_t width, bool isStore);
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
    void multiway();
    void effectOf(const Function& function);
    void declareArray(Type type);
    void jump();
    void stir();
    void effect();
    void open(const std::string& head);
    void close(const std::string& tail = "}");
    void line(const std::string& text);
    bool affords(std::uint32_t trips) const;
    std::string fresh(const char* stem);
    std::string writableVariable(Type type, std::optional<Space> space = {});

    // Loops.cpp
    void loop();
    void countedLoop(std::uint32_t trips);
    void guardedLoop(std::uint32_t trips);
    void searchLoop(std::uint32_t trips);
    void twoLevelLoop();
    void openLoop();
    void stateLoop(std::uint32_t trips);

    // Records.cpp
    void shape();
    void turning(std::size_t shape);
    void record();
    void bitFields(Shape& shape);
    void assignField();
    void listOfRecords(const Record& first);
    void recordLoop(const Record& a, const Record& b);
    std::string recordValue(std::size_t shape);
    std::string initialised(const Shape& shape);
    void declareMembers(const Record& record, bool isWritable);
    Record anyRecord(std::size_t shape);

    // World.cpp
    void samplers();
    void enterWorld();
    std::string coordinate(std::uint32_t size, bool isPixel);
    bool hasTexels(Kind kind) const;
    std::string texel(Kind kind);
    Expression texture(Type type);
    void world();

    // Groups.cpp
    void groupProgram();
    void groupRecords();
    void enterPhase(std::size_t written);
    std::string phase(bool isFirst);
    std::string lastPhase();
    void atomic();
    void simdGroup();

    // Program.cpp
    void tables();
    void helper();
    void main();
    std::string returned();
    std::string carrying();
    std::string nameOfHelper(const Function& made);
    void mixArray(const Array& array);
    void mixAll();

    std::uint64_t state_;
    std::string text_;
    int indent_ = 0;
    Scope scope_;
    std::vector<Function> functions_;
    std::vector<std::string> generics_; // function templates of the program
    std::vector<Shape> shapes_;
    std::vector<Sampler> samplers_;
    std::vector<Variable> locals_; // members of the record of a thread of a group
    std::vector<Array> shared_;    // arrays of a group
    bool isWorld_ = false;         // of the form Form::world
    std::string recordResult_;     // returned by the current function, if it returns a record
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
