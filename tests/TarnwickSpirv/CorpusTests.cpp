// Laws of modules that are taken apart, linked and finished, on all modules of the compiler's
// corpus.
#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickSpirv/FunctionBody.h"
#include "TarnwickSpirv/IdOperands.h"
#include "TarnwickSpirv/Interface.h"
#include "TarnwickSpirv/Link.h"
#include "TarnwickSpirv/Rewriting.h"
#include "tests/TarnwickMSL/ProgramTexts.h"

#include <gtest/gtest.h>
#include <spirv-tools/libspirv.h>

#include <algorithm>

namespace tarnwick::spirv {
namespace {

const std::vector<msl::EntryPoint>& corpus() {
    static const std::vector<msl::EntryPoint> all = [] {
        std::vector<msl::EntryPoint> made;
        for (const ProgramText& program : programTexts(TARNWICK_CORPUS))
            for (msl::EntryPoint& entry : msl::compile(program.text).entryPoints)
                made.push_back(std::move(entry));
        return made;
    }();
    return all;
}

spv::ExecutionModel modelOf(const msl::EntryPoint& entry) {
    if (entry.patch != msl::PatchKind::none)
        return spv::ExecutionModel::TessellationEvaluation;
    return entry.stage == msl::Stage::vertex     ? spv::ExecutionModel::Vertex
           : entry.stage == msl::Stage::fragment ? spv::ExecutionModel::Fragment
           : entry.stage == msl::Stage::object   ? spv::ExecutionModel::TaskEXT
           : entry.stage == msl::Stage::mesh     ? spv::ExecutionModel::MeshEXT
                                                 : spv::ExecutionModel::GLCompute;
}

// The ids of an instruction that IdOperands knows, as SPIRV-Tools' grammar has them.
spv_result_t compare(void* known, const spv_parsed_instruction_t* parsed) {
    const auto op = static_cast<spv::Op>(parsed->opcode);
    if (!isKnown(op))
        return SPV_SUCCESS;
    ++*static_cast<int*>(known);
    const Instruction instruction{
        op, Operands(std::span(parsed->words + 1, parsed->words + parsed->num_words))};
    Words ids;
    for (std::uint16_t at = 0; at < parsed->num_operands; ++at) {
        const spv_parsed_operand_t& operand = parsed->operands[at];
        const bool isResult = operand.type == SPV_OPERAND_TYPE_RESULT_ID;
        const bool isUse = operand.type == SPV_OPERAND_TYPE_ID ||
                           operand.type == SPV_OPERAND_TYPE_TYPE_ID ||
                           operand.type == SPV_OPERAND_TYPE_SCOPE_ID ||
                           operand.type == SPV_OPERAND_TYPE_MEMORY_SEMANTICS_ID;
        if (isUse)
            ids.push_back(parsed->words[operand.offset]);
        EXPECT_EQ(isIdOperand(op, operand.offset - 1U), isUse || isResult)
            << spvOpcodeString(parsed->opcode);
    }
    EXPECT_EQ(idsOf(instruction), ids) << spvOpcodeString(parsed->opcode);
    EXPECT_EQ(resultOf(instruction).value_or(0), parsed->result_id)
        << spvOpcodeString(parsed->opcode);
    return SPV_SUCCESS;
}

} // namespace

TEST(Module, isTheSameTakenApartAndFinished) {
    ASSERT_GT(corpus().size(), 150U);
    for (const msl::EntryPoint& entry : corpus())
        EXPECT_EQ(Module(entry.words).finish(modelOf(entry)), entry.words) << entry.name;
}

TEST(IdOperands, areThoseOfTheGrammar) {
    const std::unique_ptr<spv_context_t, decltype(&spvContextDestroy)> context(
        spvContextCreate(SPV_ENV_VULKAN_1_3), spvContextDestroy);
    int known = 0;
    for (const msl::EntryPoint& entry : corpus())
        EXPECT_EQ(spvBinaryParse(context.get(), &known, entry.words.data(), entry.words.size(),
                                 nullptr, compare, nullptr),
                  SPV_SUCCESS);
    EXPECT_GT(known, 10000);
}

// As a function that nobody calls, without inputs and outputs, in a fragment function.
TEST(Link, givesValidModules) {
    int linked = 0;
    for (const msl::EntryPoint& entry : corpus()) {
        Module from(entry.words), into;
        if (std::ranges::count(from.capabilities, spv::Capability::InterpolationFunction))
            continue; // interpolates its inputs, which would be private
        for (const auto storage : {spv::StorageClass::Input, spv::StorageClass::Output})
            for (const Id variable : variables(from, storage))
                makePrivate(from, variable);
        FunctionBody body(into);
        body.act(spv::Op::OpReturn, {});
        body.finish(into.main());
        into.executionMode(spv::ExecutionMode::OriginUpperLeft);
        const Words before = into.finish(spv::ExecutionModel::Fragment);
        const auto ids = link(into, from);
        const Words after = into.finish(spv::ExecutionModel::Fragment);
        linked += ids.has_value();
        EXPECT_EQ(ids.has_value(), after != before) << entry.name;
        EXPECT_EQ(msl::spirvFaults(after), "") << entry.name;
    }
    EXPECT_GT(linked, 50);
}

} // namespace tarnwick::spirv
