// What there is to read about a command or a topic, before it becomes help on a terminal or a man page.
#pragma once

#include <string>
#include <vector>

#include "host/Command.h"

namespace host {

/// A term and what it means; without a term a paragraph.
struct Entry {
    std::string term;
    std::string text;
};

struct Section {
    std::string heading;
    std::vector<Entry> entries;
};

struct Page {
    std::string name;  ///< the words behind the program's name; none for the program itself
    std::string summary;
    std::vector<std::string> usages;
    std::vector<Section> sections;
};

/// The command of this path; null where there is none.
const Command* commandAt(const Commands& all, const std::string& path);

/// The commands that begin with this path and have one word more. The empty path is the program's own.
std::vector<const Command*> commandsUnder(const Commands& all, const std::string& path);

/// The last word of its path.
std::string lastWord(const Command& command);

/// "pvwapi spaces create [options] <name>".
std::string usageOf(const Command& command);

/// The term that an argument has in a list: "--format table|json", "<name>".
std::string termOf(const Argument& argument);

bool isOption(const Argument& argument);

/// The program, or the command of this path.
Page pageOf(const Commands& all, const std::string& path);

/// A topic with all of its commands, for a page of its own.
Page wholePageOf(const Commands& all, const std::string& topic);

/// The section of the options that every command takes.
Section commonOptions();

}  // namespace host
