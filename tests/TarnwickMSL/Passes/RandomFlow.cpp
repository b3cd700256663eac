#include "tests/TarnwickMSL/Passes/RandomFlow.h"

#include <random>
#include <sstream>

namespace tarnwick::msl::test {

class Flow {
  public:
    explicit Flow(std::uint32_t seed) : random_(seed), blocks_(3 + below(9)) {}

    std::string write(std::uint32_t fuel) {
        text_ << "define i32 @f(i32 %a, i32 %b) {\n  %x = alloca i32\n  %fuel = alloca i32\n"
              << "  %start = xor i32 %a, " << below(1000) << "\n  store i32 %start, ptr %x\n"
              << "  store i32 " << fuel << ", ptr %fuel\n  br label %b0\n";
        for (std::uint32_t block = 0; block < blocks_; ++block)
            writeBlock(block);
        text_ << "exit:\n  %r = load i32, ptr %x\n  ret i32 %r\n}\n";
        return text_.str();
    }

  private:
    std::uint32_t below(std::uint32_t end) { return static_cast<std::uint32_t>(random_()) % end; }

    void writeBlock(std::uint32_t n) {
        text_ << "b" << n << ":\n  %o" << n << " = load i32, ptr %x\n  %m" << n << " = mul i32 %o"
              << n << ", " << 2 * (below(50000)) + 1 << "\n  %y" << n << " = add i32 %m" << n
              << ", " << (below(2) ? "%b" : std::to_string(below(1000))) << "\n  store i32 %y" << n
              << ", ptr %x\n  %l" << n << " = load i32, ptr %fuel\n  %k" << n << " = sub i32 %l"
              << n << ", 1\n  store i32 %k" << n << ", ptr %fuel\n  %d" << n << " = icmp eq i32 %k"
              << n << ", 0\n  br i1 %d" << n << ", label %exit, label %c" << n << "\nc" << n
              << ":\n  %s" << n << " = lshr i32 %y" << n << ", " << below(28) << "\n  %t" << n
              << " = and i32 %s" << n << ", 3\n";
        writeEnd(n);
    }

    void writeEnd(std::uint32_t n) {
        switch (below(8)) {
        case 0:
            text_ << "  br label " << target() << "\n";
            break;
        case 1:
        case 2:
            text_ << "  switch i32 %t" << n << ", label " << target() << " [ i32 0, label "
                  << target() << " i32 2, label " << target() << " ]\n";
            break;
        default:
            text_ << "  %g" << n << " = icmp ult i32 %t" << n << ", " << 1 + below(3)
                  << "\n  br i1 %g" << n << ", label " << target() << ", label " << target()
                  << "\n";
        }
    }

    std::string target() {
        if (below(10) == 0)
            return "%exit";
        return "%b" + std::to_string(below(blocks_));
    }

    std::mt19937 random_;
    std::uint32_t blocks_;
    std::ostringstream text_;
};

std::string randomFlow(std::uint32_t seed, std::uint32_t fuel) {
    return Flow(seed).write(fuel);
}

} // namespace tarnwick::msl::test
