#include "TarnwickMSL/Translation/Passes/Forms/Text.h"

#include "TarnwickMSL/Translation/Passes/Forms/Records.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"

#include <llvm/ADT/StringExtras.h>
#include <llvm/AsmParser/Parser.h>
#include <llvm/IR/LLVMContext.h>
#include <llvm/IR/Verifier.h>
#include <llvm/Support/SourceMgr.h>
#include <llvm/Support/raw_ostream.h>

namespace tarnwick::msl {

using namespace llvm;

// As Clang writes them for this target, and the step `describe` completes the layout.
static constexpr StringLiteral usualLayout = "e-p:64:64:64:32-i64:64-v16:16-v24:32-v32:32-v48:64-"
                                             "v96:128-v192:256-v256:256-v512:512-v1024:1024-G1"
                                             "-n8:16:32:64";
static constexpr StringLiteral usualTriple = "spir-unknown-unknown";

// Without the lines that say nothing about the code.
static std::string codeOf(const Module& module) {
    std::string printed;
    raw_string_ostream stream(printed);
    module.print(stream, nullptr);
    std::string text;
    for (StringRef line : split(StringRef(printed), '\n')) {
        const bool isUsual = line.starts_with("; ModuleID") ||
                             line.starts_with("source_filename") ||
                             line == ("target datalayout = \"" + usualLayout + "\"").str() ||
                             line == ("target triple = \"" + usualTriple + "\"").str();
        if (!isUsual)
            text += line.str() + "\n";
    }
    return StringRef(text).trim('\n').str() + "\n";
}

static std::string textOf(const EntrySignature& entry) {
    std::string text = recordLine("entry", entry);
    for (const Argument& argument : entry.arguments) {
        text += recordLine("argument", argument);
        for (const StageValue& value : argument.values)
            text += recordLine("value", value);
        for (const Argument& member : argument.members)
            text += recordLine("held", member);
    }
    for (const StageValue& value : entry.results)
        text += recordLine("result", value);
    return text;
}

static std::string textOf(const std::vector<EntrySignature>& entries, const EntrySignature* first) {
    std::string text = first ? textOf(*first) : "";
    for (const EntrySignature& entry : entries)
        if (&entry != first)
            text += textOf(entry);
    return text;
}

static std::string nameOf(const BasicBlock* block) {
    std::string name;
    raw_string_ostream stream(name);
    block->printAsOperand(stream, false);
    return name;
}

static std::string mergeLine(const BasicBlock& header, const Merge& merge) {
    return "; merge header=" + nameOf(&header) + " at=" + nameOf(merge.merge) +
           (merge.continueTarget ? " continue=" + nameOf(merge.continueTarget) : "") + "\n";
}

static std::string textOf(const std::vector<ConstantSignature>& constants) {
    std::string text;
    for (const ConstantSignature& constant : constants)
        text += recordLine("constant", constant);
    return text;
}

static std::string recordsOf(const ShaderModule& shader) {
    std::string text = recordLine("shader", shader);
    if (shader.lacks.any())
        text += recordLine("lacks", shader.lacks);
    text += textOf(shader.constants);
    for (const InterfaceVariable& variable : shader.interface)
        text += recordLine("variable", variable);
    for (const TextureVariable& texture : shader.textures)
        text += recordLine("texture", texture);
    for (const StageAttribute& attribute : shader.attributes)
        text += recordLine("attribute", attribute);
    for (std::uint32_t index : shader.samplers)
        text += "; sampler index=" + std::to_string(index) + "\n";
    for (const ArgumentMember& member : shader.members)
        text += recordLine("member", member);
    if (!shader.main)
        return text;
    for (BasicBlock& block : *shader.main)
        if (auto found = shader.structure.find(&block); found != shader.structure.end())
            text += mergeLine(block, found->second);
    return text;
}

std::string text(const Module& program, const std::vector<EntrySignature>& entries,
                 const std::vector<ConstantSignature>& constants) {
    return textOf(entries, nullptr) + textOf(constants) + codeOf(program);
}

std::string text(const ShaderModule& shader) {
    return recordsOf(shader) + codeOf(*shader.module);
}

std::string text(const Work& work) {
    if (!work.result.text.empty())
        return work.result.text;
    if (!work.result.words.empty())
        return spirvText(work.result.words);
    if (!work.shader.module)
        return text(work.program, work.entries, work.constants);
    const bool isWrapped = work.shader.main != nullptr;
    return (isWrapped ? "" : textOf(work.entries, work.entry)) +
           (work.hasDeadCode ? "; dead code\n" : "") + text(work.shader);
}

namespace {

// Reads the lines before the code.
class RecordReader {
  public:
    RecordReader(std::vector<EntrySignature>& entries, ShaderModule& shader)
        : entries_(entries), shader_(shader) {}

    void read(std::string_view line);
    void connectMerges();

    bool hasShader = false, hasDeadCode = false;

  private:
    template <class Record> void fill(Record& record);
    Argument& lastArgument();
    BasicBlock* block(const std::string& name);

    std::vector<EntrySignature>& entries_;
    ShaderModule& shader_;
    std::string_view line_;
    std::vector<std::string> merges_;
};

} // namespace

template <class Record> void RecordReader::fill(Record& record) {
    if (auto rest = readRecord(line_, record))
        throw TextError("The field '" + *rest + "' is invalid in the line '" + std::string(line_) +
                        "'.");
}

Argument& RecordReader::lastArgument() {
    if (entries_.empty() || entries_.back().arguments.empty())
        throw TextError("The line '" + std::string(line_) + "' needs an argument before it.");
    return entries_.back().arguments.back();
}

void RecordReader::read(std::string_view line) {
    line_ = line;
    const std::string_view word = recordWord(line);
    const bool needsEntry = word == "argument" || word == "result";
    if (needsEntry && entries_.empty())
        throw TextError("The line '" + std::string(line) + "' needs an entry before it.");
    hasShader |= word == "shader";
    hasDeadCode |= word == "dead";
    if (word == "entry")
        fill(entries_.emplace_back());
    else if (word == "argument")
        fill(entries_.back().arguments.emplace_back());
    else if (word == "value")
        fill(lastArgument().values.emplace_back());
    else if (word == "held")
        fill(lastArgument().members.emplace_back());
    else if (word == "result")
        fill(entries_.back().results.emplace_back());
    else if (word == "constant")
        fill(shader_.constants.emplace_back());
    else if (word == "shader")
        fill(shader_);
    else if (word == "lacks")
        fill(shader_.lacks);
    else if (word == "variable")
        fill(shader_.interface.emplace_back());
    else if (word == "texture")
        fill(shader_.textures.emplace_back());
    else if (word == "attribute")
        fill(shader_.attributes.emplace_back());
    else if (word == "member")
        fill(shader_.members.emplace_back());
    else if (word == "sampler")
        shader_.samplers.push_back(
            static_cast<std::uint32_t>(std::strtoul(fieldOf(line, "index").c_str(), nullptr, 10)));
    else if (word == "merge")
        merges_.emplace_back(line);
}

BasicBlock* RecordReader::block(const std::string& name) {
    if (name.empty())
        return nullptr;
    for (BasicBlock& block : *shader_.main)
        if (nameOf(&block) == name)
            return &block;
    throw TextError("There is no block " + name + ".");
}

void RecordReader::connectMerges() {
    if (!shader_.main && !merges_.empty())
        throw TextError("The line '" + merges_.front() + "' needs a function 'main'.");
    for (const std::string& line : merges_) {
        BasicBlock* header = block(fieldOf(line, "header"));
        BasicBlock* merge = block(fieldOf(line, "at"));
        if (!header || !merge)
            throw TextError("The line '" + line + "' needs the fields 'header' and 'at'.");
        shader_.structure[header] = {merge, block(fieldOf(line, "continue"))};
    }
}

static std::unique_ptr<Module> moduleFrom(StringRef code, LLVMContext& context) {
    std::string whole = code.str();
    if (!code.contains("target datalayout"))
        whole = ("target datalayout = \"" + usualLayout + "\"\n").str() + whole;
    if (!code.contains("target triple"))
        whole = ("target triple = \"" + usualTriple + "\"\n").str() + whole;
    SMDiagnostic error;
    auto module = parseAssemblyString(whole, error, context);
    if (!module)
        throw TextError("The assembly is invalid: " + error.getMessage().str() + " in '" +
                        error.getLineContents().trim().str() + "'.");
    std::string faults;
    raw_string_ostream stream(faults);
    if (verifyModule(*module, &stream)) // the parser takes blocks with several ends
        throw TextError("The assembly is invalid: " + StringRef(faults).trim().str());
    return module;
}

ReadWork readWork(std::string_view text) {
    ReadWork read;
    read.context = std::make_unique<LLVMContext>();
    ShaderModule shader;
    RecordReader records(read.entries, shader);
    // In the code, a string may have lines that look like records.
    for (StringRef line : split(StringRef(text.data(), text.size()), '\n'))
        if (line.starts_with("; "))
            records.read({line.data(), line.size()});
        else if (!line.trim().empty() && !line.starts_with(";"))
            break;
    read.program = moduleFrom({text.data(), text.size()}, *read.context);
    shader.main = read.program->getFunction("main");
    if (records.hasShader || shader.main) {
        records.connectMerges();
        shader.module = std::move(read.program);
        read.program = std::make_unique<Module>("", *read.context);
    }
    read.work = std::make_unique<Work>(*read.program, read.entries);
    if (!read.entries.empty())
        read.work->entry = &read.entries.front();
    read.work->constants = shader.constants;
    read.work->shader = std::move(shader);
    read.work->hasDeadCode = records.hasDeadCode;
    return read;
}

} // namespace tarnwick::msl
