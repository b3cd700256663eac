#include "TarnwickGPU/Points/PointConstants.h"

#include "TarnwickSpirv/IdOperands.h"
#include "TarnwickSpirv/Interface.h"

#include <spirv/unified1/GLSL.std.450.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace tarnwick::gpu {

using namespace spirv;

namespace {

using enum spv::Op;

constexpr std::size_t mostVariables = 6; // each needs a location between the stages

bool isArithmetic(const Instruction& each) {
    const auto within = [&](spv::Op first, spv::Op last) {
        return each.op >= first && each.op <= last;
    };
    if (each.op == OpExtInst) // neither modf and frexp, which store, nor interpolation
        return each.operands[3] != GLSLstd450Modf && each.operands[3] != GLSLstd450Frexp &&
               (each.operands[3] < GLSLstd450InterpolateAtCentroid ||
                each.operands[3] > GLSLstd450InterpolateAtOffset);
    return within(OpVectorExtractDynamic, OpCompositeInsert) || within(OpConvertFToU, OpBitcast) ||
           within(OpSNegate, OpSMulExtended) || within(OpAny, OpFUnordGreaterThanEqual) ||
           within(OpShiftRightLogical, OpBitCount) || each.op == OpAccessChain ||
           each.op == OpInBoundsAccessChain;
}

// The instructions of one function, and the ones to move.
class Parting {
  public:
    explicit Parting(Module& code) : code_(code) {
        eachInstruction(code.functions,
                        [this](const Instruction& each) { instructions_.push_back(each); });
    }

    std::optional<PointConstants> run() {
        const auto isFunction = [](const Instruction& each) { return each.op == OpFunction; };
        if (std::count_if(instructions_.begin(), instructions_.end(), isFunction) != 1)
            return std::nullopt;
        findRoots();
        findConstants();
        if (!keepUsed() || !savesLoad() || crossing_.empty() || crossing_.size() > mostVariables)
            return std::nullopt;
        return write();
    }

  private:
    void findRoots();
    void findConstants();
    bool keepUsed();
    bool savesLoad() const;
    bool crosses(Id type) const;
    PointConstants write();
    void writeFunction(const PointConstants& constants);

    Module& code_;
    std::vector<Instruction> instructions_;
    Words instructionWords_; // a copy of the code that they point into
    std::set<Id> inputs_, buffers_,
        chains_;                     // pointers to inputs, to read-only variables, and into both
    std::set<std::size_t> constant_; // instructions with the same result at each pixel
    std::set<std::size_t> moved_;    // of constant_: those moved out of main()
    std::map<std::size_t, Id>
        crossing_; // of moved_: those whose results main() reads, with their types
};

void Parting::findRoots() {
    for (const auto& [location, variable] : locations(code_, spv::StorageClass::Input))
        inputs_.insert(variable);
    for (const Id variable : variables(code_, spv::StorageClass::Uniform))
        buffers_.insert(variable);
    eachInstruction(code_.annotations, [this](const Instruction& each) {
        if (each.op == OpDecorate &&
            each.operands[1] == static_cast<std::uint32_t>(spv::Decoration::NonWritable))
            buffers_.insert(each.operands[0]);
    });
}

// Only of the first block, which every pixel runs.
void Parting::findConstants() {
    std::set<Id> results, varying; // of instructions
    for (const Instruction& each : instructions_)
        if (const auto result = resultOf(each))
            varying.insert(*result);
    for (std::size_t at = 0; at < instructions_.size(); ++at) {
        const Instruction& each = instructions_[at];
        if (each.op == OpBranch || each.op == OpBranchConditional || each.op == OpReturn)
            return;
        const auto ids = idsOf(each);
        const auto isPointer = [this](Id id) {
            return inputs_.contains(id) || buffers_.contains(id) || chains_.contains(id);
        };
        const bool isLoad = each.op == OpLoad && isPointer(each.operands[2]);
        const bool isChain = each.op == OpAccessChain || each.op == OpInBoundsAccessChain;
        if (!ids || !(isLoad || isArithmetic(each)) || (isChain && !isPointer(each.operands[2])) ||
            std::any_of(ids->begin(), ids->end(), [&](Id id) { return varying.contains(id); }))
            continue;
        constant_.insert(at);
        varying.erase(*resultOf(each));
        if (isChain)
            chains_.insert(*resultOf(each));
    }
}

// Numbers of 32 bits, alone or in vectors.
bool Parting::crosses(Id type) const {
    bool does = false;
    eachInstruction(code_.declarations(), [&](const Instruction& each) {
        if (each.operands[0] != type)
            return;
        if (each.op == OpTypeFloat || each.op == OpTypeInt)
            does = each.operands[1] == 32;
        else if (each.op == OpTypeVector)
            does = crosses(each.operands[1]);
    });
    return does;
}

// From the last instruction to the first: the result of a moved instruction is used only by moved
// ones, or it crosses. False if the code has an unknown instruction.
bool Parting::keepUsed() {
    std::set<Id> needed; // by instructions that stay in main()
    for (std::size_t at = instructions_.size(); at-- > 0;) {
        const Instruction& each = instructions_[at];
        const auto ids = idsOf(each);
        if (!ids)
            return false;
        const bool isConstant = constant_.contains(at);
        const bool isNeeded = isConstant && needed.contains(*resultOf(each));
        const bool isInput = each.op == OpLoad && inputs_.contains(each.operands[2]);
        if (isConstant && (!isNeeded || (!isInput && crosses(each.operands[0])))) {
            moved_.insert(at);
            if (isNeeded)
                crossing_[at] = each.operands[0];
        } else {
            needed.insert(ids->begin(), ids->end());
        }
    }
    return true;
}

bool Parting::savesLoad() const {
    return std::any_of(moved_.begin(), moved_.end(), [this](std::size_t at) {
        return instructions_[at].op == OpLoad && !inputs_.contains(instructions_[at].operands[2]);
    });
}

// The moved instructions with new ids, in a function of their own.
void Parting::writeFunction(const PointConstants& constants) {
    const Id nothing = code_.type(OpTypeVoid, {});
    Words words;
    append(words, OpFunction,
           {nothing, constants.function, 0, code_.type(OpTypeFunction, {nothing})});
    append(words, OpLabel, {code_.newId()});
    std::map<Id, Id> renamed;
    for (const std::size_t at : constant_) {
        Words operands(instructions_[at].operands.begin(), instructions_[at].operands.end());
        renamed[operands[1]] = code_.newId();
        for (std::size_t operand = 1; operand < operands.size(); ++operand)
            if (operand == 1 || isIdOperand(instructions_[at].op, operand))
                if (const auto found = renamed.find(operands[operand]); found != renamed.end())
                    operands[operand] = found->second;
        append(words, instructions_[at].op, operands);
    }
    std::size_t next = 0;
    for (const auto& [at, type] : crossing_)
        append(words, OpStore,
               {constants.variables[next++], renamed.at(*resultOf(instructions_[at]))});
    append(words, OpReturn, {});
    append(words, OpFunctionEnd, {});
    code_.functions.insert(code_.functions.end(), words.begin(), words.end());
    Words decorations;
    eachInstruction(code_.annotations, [&](const Instruction& each) {
        if (const auto found = renamed.find(each.operands[0]); found != renamed.end()) {
            Words operands(each.operands.begin(), each.operands.end());
            operands[0] = found->second;
            append(decorations, each.op, operands);
        }
    });
    code_.annotations.insert(code_.annotations.end(), decorations.begin(), decorations.end());
}

PointConstants Parting::write() {
    PointConstants constants{.function = code_.newId()};
    Words loads;
    for (const auto& [at, type] : crossing_) {
        constants.variables.push_back(code_.variable(spv::StorageClass::Private, type));
        append(loads, OpLoad, {type, *resultOf(instructions_[at]), constants.variables.back()});
    }
    Words kept;
    bool hasLoads = false;
    for (std::size_t at = 0; at < instructions_.size(); ++at) {
        const spv::Op op = instructions_[at].op;
        const bool isHead = op == OpFunction || op == OpLabel || op == OpVariable;
        if (!isHead && !std::exchange(hasLoads, true))
            kept.insert(kept.end(), loads.begin(), loads.end());
        if (!moved_.contains(at))
            append(kept, op, instructions_[at].operands);
    }
    instructionWords_ = std::exchange(code_.functions, std::move(kept));
    writeFunction(constants);
    return constants;
}

} // namespace

std::optional<PointConstants> partConstants(Module& fragment) {
    return Parting(fragment).run();
}

} // namespace tarnwick::gpu
