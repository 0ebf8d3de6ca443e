#include "host/Help.h"

#include <algorithm>

#include "host/Table.h"
#include "host/Text.h"

namespace host {

namespace {

constexpr std::size_t kUsual = 80;
constexpr std::size_t kLeast = 40;
constexpr std::size_t kMost = 100;  // longer lines are hard to read
constexpr std::size_t kIndent = 2;
constexpr std::size_t kGap = 2;
constexpr std::size_t kWidestTerms = 26;
constexpr std::size_t kRoomForTerms = 60;  // on narrower lines the terms give way

/// The words of the text in lines; those behind the first line begin `indent` columns from the left, and of the first
/// `at` columns are taken already. A word is never cut.
std::string wrapped(const std::string& text, std::size_t at, std::size_t indent, std::size_t width)
{
    std::string lines;
    bool begun = false;
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t end = std::min(text.find(' ', from), text.size());
        const std::string word = text.substr(from, end - from);
        from = end + 1;
        const std::size_t size = displayWidth(word);
        if (begun && at + 1 + size > width) {
            lines.append("\n").append(indent, ' ');
            at = indent;
        } else if (begun) {
            lines += ' ';
            ++at;
        }
        lines += word;
        at += size;
        begun = true;
    }
    return lines + '\n';
}

std::size_t termsWidth(const Section& section, std::size_t width)
{
    std::size_t widest = 0;
    const std::size_t most = width < kRoomForTerms ? width / 5 : kWidestTerms;
    for (const Entry& entry : section.entries) {
        const std::size_t size = displayWidth(entry.term);
        if (size <= most) widest = std::max(widest, size);
    }
    return widest;
}

std::string entryLines(const Entry& entry, std::size_t terms, std::size_t width)
{
    const std::string margin(kIndent, ' ');
    if (entry.term.empty()) return margin + wrapped(entry.text, kIndent, kIndent, width);
    const std::size_t indent = kIndent + terms + kGap;
    const std::size_t size = displayWidth(entry.term);
    std::string lines = margin + entry.term;
    if (size <= terms) {
        lines.append(terms - size + kGap, ' ');
    } else {
        lines.append("\n").append(indent, ' ');
    }
    return lines + wrapped(entry.text, indent, indent, width);
}

std::string sectionLines(const Section& section, std::size_t width, const Look& look)
{
    std::string lines = heading(section.heading + ":", look) + "\n";
    const std::size_t terms = termsWidth(section, width);
    bool first = true;
    for (const Entry& entry : section.entries) {
        if (!first && entry.term.empty()) lines += '\n';
        lines += entryLines(entry, terms, width);
        first = false;
    }
    return lines;
}

}  // namespace

std::string helpText(const Page& page, const Look& look)
{
    const std::size_t width = std::clamp(look.width == 0 ? kUsual : look.width, kLeast, kMost);
    std::string text = wrapped(page.summary + ".", 0, 0, width);
    std::string label = "Usage:";
    for (const std::string& usage : page.usages) {
        if (label == "Usage:") text += '\n';
        text += heading(label, look) + " " + wrapped(usage, label.size() + 1, label.size() + 3, width);
        label.assign(label.size(), ' ');
    }
    for (const Section& section : page.sections) text += '\n' + sectionLines(section, width, look);
    return text;
}

}  // namespace host
