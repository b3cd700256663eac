// The loops of a module, as drivers see them.
#include "TarnwickMSL/Compile.h"
#include "TarnwickSpirv/Instruction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace tarnwick {

namespace {

using spirv::Id;
using spirv::Instruction;

// The instructions of a module, and those with a result by their id. A result follows its type.
class Code {
  public:
    explicit Code(const spirv::Words& words) {
        spirv::eachInstruction(std::span(words).subspan(5), [&](const Instruction& instruction) {
            all.push_back(instruction);
            if (instruction.operands.size() > 1)
                byId_[instruction.operands[1]] = instruction;
        });
    }
    const Instruction& at(Id id) const { return byId_.at(id); }
    bool is(Id id, spv::Op op) const { return byId_.contains(id) && at(id).op == op; }

    std::vector<Instruction> all;

  private:
    std::map<Id, Instruction> byId_;
};

// Whether the phi begins with a constant and adds a constant in each round.
bool isCounter(const Code& code, Id phi) {
    if (!code.is(phi, spv::Op::OpPhi))
        return false;
    bool begins = false, goesOn = false;
    const auto operands = code.at(phi).operands;
    for (std::size_t i = 2; i < operands.size(); i += 2) {
        begins |= code.is(operands[i], spv::Op::OpConstant);
        if (!code.is(operands[i], spv::Op::OpIAdd))
            continue;
        const auto sum = code.at(operands[i]).operands;
        goesOn |= (sum[2] == phi && code.is(sum[3], spv::Op::OpConstant)) ||
                  (sum[3] == phi && code.is(sum[2], spv::Op::OpConstant));
    }
    return begins && goesOn;
}

struct Loops {
    int all = 0;
    int counted = 0;   // left from the header by the comparison of a counter and a constant
    int functions = 0; // calls of GLSL.std.450
    std::vector<std::uint32_t> controls;
};

Loops loopsOf(const std::string& statements, const std::string& declarations = "") {
    const auto compiled =
        msl::compile("#include <metal_stdlib>\nusing namespace metal;\n" + declarations +
                     "kernel void k(device float* out [[buffer(0)]], constant "
                     "int& n [[buffer(1)]]) {\n    float s = out[0];\n" +
                     statements + "\n    out[0] = s;\n}\n");
    EXPECT_FALSE(compiled.failed) << compiled.messages;
    Loops loops;
    if (compiled.failed)
        return loops;
    const Code code(compiled.entryPoints.front().words);
    for (std::size_t i = 0; i + 1 < code.all.size(); i++) {
        loops.functions += code.all[i].op == spv::Op::OpExtInst;
        if (code.all[i].op != spv::Op::OpLoopMerge)
            continue;
        loops.all++;
        loops.controls.push_back(code.all[i].operands[2]);
        const Instruction& branch = code.all[i + 1];
        const Id condition = branch.op == spv::Op::OpBranchConditional ? branch.operands[0] : 0;
        if (code.is(condition, spv::Op::OpSLessThan) ||
            code.is(condition, spv::Op::OpSGreaterThan) ||
            code.is(condition, spv::Op::OpULessThan)) {
            const auto sides = code.at(condition).operands;
            loops.counted += isCounter(code, sides[2]) && code.is(sides[3], spv::Op::OpConstant);
        }
    }
    return loops;
}

} // namespace

TEST(LoopShapes, letDriversCountLoopsOfAConstantNumberOfRounds) {
    for (const char* statements : {"for (int i = 0; i < 3000; i++) s = sin(s + i);",
                                   "for (uint i = 7; i <= 3000; i += 3) s = sin(s + i);",
                                   "for (int i = 3000; i >= 0; i--) s = sin(s + i);",
                                   "for (float i = 0; i < 3000; i++) s = sin(s + i);",
                                   "for (float t = 0; t < 300; t += 0.1f) s = sin(s + t);",
                                   "int i = 0; while (i < 3000) { s = sin(s + i); i += 2; }",
                                   "int i = 0; do { s = sin(s + i); i++; } while (i < 3000);",
                                   "for (int i = 0; i < 3000; i++) if (s > i) s = sin(s + i);"}) {
        const Loops loops = loopsOf(statements);
        EXPECT_EQ(loops.all, 1) << statements;
        EXPECT_EQ(loops.counted, 1) << statements;
    }
}

// The loop of seven rounds becomes straight code, the one around it is too long. Copies of its
// first rounds, in which the comparisons with 2 and 4 are known, made a picture take three times as
// long.
TEST(LoopShapes, peelNoRounds) {
    const Loops loops = loopsOf("for (int i = 0; i < 6; i++) {\n"
                                "    float x = i < 2 ? s : i < 4 ? 2 * s + 1 : s - n;\n"
                                "    for (int j = 0; j < 7; j++)\n"
                                "        if ((n >> j) & 1)\n"
                                "            s = min(s, length(sin(float3(x - j, x * j, s)) * x +\n"
                                "                              cos(float3(s, j, x * s)) * j));\n"
                                "}");
    EXPECT_EQ(loops.all, 1);
    EXPECT_EQ(loops.functions, 7 * 4); // sin, cos, sqrt, min
}

// Most of a round is computed from the counter, or moves values between elements of a local array;
// whole, neither fits the limit.
TEST(LoopShapes, disappearWhereLittleIsLeftOfThem) {
    for (const char* statements :
         {"for (int i = 0; i < 14; i++) {\n"
          "    float f = i, g = fract(sin(f * 12.9f) * 437.5f) + exp(f * 0.1f) * log(f + 1);\n"
          "    if (i % 3 == 1) g += cos(g) * sqrt(f); else g -= pow(f, 1.3f) + exp2(sin(g * f));\n"
          "    s = sin(s * g + smoothstep(0.0f, 9.0f, g)) + floor(g * 7) * cos(f * g + 2);\n"
          "}",
          "float4 p[16];\n"
          "for (int i = 0; i < 16; i++) p[i] = float4(s + i, s * i, i - s, i);\n"
          "for (int i = 0; i < 16; i++)\n"
          "    for (int axis = 0; axis < 4; axis++) {\n"
          "        int j = i ^ (1 << axis);\n"
          "        if (j < i) continue;\n"
          "        s += length(p[i] - p[j]) * dot(p[i], p[j]) + axis * sin(p[i].x);\n"
          "    }"})
        EXPECT_EQ(loopsOf(statements).all, 0) << statements;
}

// A round calls a function of six parts, of which it needs one. With the whole function in each
// round the loop seems to be too long.
TEST(LoopShapes, disappearWhereEachRoundNeedsAPartOfALongFunction) {
    std::string part = "float part(float x, int i) {\n    switch (i) {\n";
    for (int i = 0; i < 6; i++) {
        part += "    case " + std::to_string(i) + ":\n";
        for (int line = 0; line < 36; line++)
            part += "        x = x * " + std::to_string(line + 3) + ".5f + " +
                    std::to_string(i + 2) + ".25f;\n";
        part += "        return x;\n";
    }
    part += "    }\n    return x;\n}\n";
    const std::string all = "float all(float x) {\n"
                            "    float sum = 0;\n"
                            "    for (int i = 0; i < 6; i++) sum += part(x, i);\n"
                            "    return sum;\n"
                            "}\n";
    EXPECT_EQ(loopsOf("s = all(s);", part + all).all, 0);
}

TEST(LoopShapes, followTheHintsOfTheProgram) {
    const std::string few = "for (int i = 0; i < 8; i++) s = sin(s + i);";
    const std::string unknown = "for (int i = 0; i < n; i++) s = sin(s + i);";
    EXPECT_EQ(loopsOf(few).all, 0);
    EXPECT_EQ(loopsOf("#pragma nounroll\n" + few).controls, std::vector{2u}); // DontUnroll
    EXPECT_EQ(loopsOf("[[nounroll]] " + few).controls, std::vector{2u});
    EXPECT_EQ(loopsOf(unknown).controls, std::vector{0u});
    EXPECT_EQ(loopsOf("#pragma unroll\n" + unknown).controls, std::vector{1u}); // Unroll
    const std::string many = "for (int i = 0; i < 500; i++) s = s * 1.5 + i;";
    EXPECT_EQ(loopsOf(many).all, 1);
    EXPECT_EQ(loopsOf("#pragma unroll\n" + many).all, 0);
    EXPECT_EQ(loopsOf("[[unroll]] " + many).all, 0);
    // Too long for any hint: neither here nor, by request, in the driver.
    EXPECT_EQ(loopsOf("#pragma unroll\nfor (int i = 0; i < 60000; i++) s = s * 1.5 + i;").controls,
              std::vector{0u});
}

} // namespace tarnwick
