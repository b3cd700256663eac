#include "TarnwickCore/CommandLine/ManualPage.h"

#include "TarnwickCore/CommandLine/Help.h"

#include <cctype>

namespace tarnwick {
namespace {

// Printed as it is: no request of roff, no escape, no hyphen in place of "-" (groff_char(7)).
std::string escaped(std::string_view text) {
    std::string out = text.starts_with('.') || text.starts_with('\'') ? "\\&" : "";
    for (const char c : text)
        switch (c) {
        case '\\':
            out += "\\e";
            break;
        case '-':
            out += "\\-";
            break;
        case '\'':
            out += "\\(aq";
            break;
        case '`':
            out += "\\(ga";
            break;
        case '^':
            out += "\\(ha";
            break;
        case '~':
            out += "\\(ti";
            break;
        case '"':
            out += "\\(dq";
            break;
        default:
            out += c;
        }
    return out;
}

std::string bold(std::string_view text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + escaped(text) + "\\fR";
}

// "size of the picture" as a sentence.
std::string sentence(std::string text) {
    text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    return text + (text.ends_with('.') ? "" : ".");
}

// The first sentence without its full stop, as in the list of pages (man-pages(7)).
std::string title(std::string_view summary) {
    std::string first(summary.substr(0, summary.find(". ")));
    if (first.ends_with('.'))
        first.pop_back();
    first.front() = static_cast<char>(std::tolower(static_cast<unsigned char>(first.front())));
    return first;
}

std::string paragraph(const std::string& tag, const std::string& text) {
    return ".TP\n" + tag + "\n" + text + "\n";
}

std::string optionsOf(const CommandForm& form) {
    std::string text = ".SH OPTIONS\n";
    bool hasHelp = false;
    for (const Option& option : form.options) {
        const std::string value = takesValue(option) ? " " + italic(option.value) : "";
        text += paragraph(bold(option.name) + value, escaped(sentence(optionDetails(option))));
        hasHelp = hasHelp || option.name == "--help";
    }
    return hasHelp ? text : text + paragraph(bold("--help"), "Print a short help.");
}

std::string relatedOf(const std::vector<std::string>& pages) {
    std::string text;
    for (const std::string& page : pages)
        text += (text.empty() ? ".SH SEE ALSO\n" : ",\n") + bold(page) + "(1)";
    return text.empty() ? text : text + "\n";
}

} // namespace

std::string roffOf(const ManualPage& page) {
    std::string text = ".TH " + escaped(page.name) + " 1 " + page.date + " \"" +
                       escaped(page.release) + "\" \"Tarnwick\"\n.SH NAME\n" + escaped(page.name) +
                       " \\- " + escaped(title(page.summary)) + "\n.SH SYNOPSIS\n" +
                       bold(page.command);
    if (!page.form.options.empty())
        text += " [" + italic("OPTION") + "]...";
    if (!page.form.operands.empty())
        text += " " + italic(page.form.operands);
    text += "\n.SH DESCRIPTION\n" + escaped(page.summary) + "\n" + optionsOf(page.form);
    for (const ManualSection& section : page.sections) {
        text += ".SH " + escaped(section.title) + "\n";
        for (const ManualRow& row : section.rows)
            text += paragraph(bold(row.name), escaped(row.text));
    }
    return text + relatedOf(page.related);
}

} // namespace tarnwick
