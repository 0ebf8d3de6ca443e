#include "host/Profile.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include "host/CommandLine.h"
#include "host/Encoding.h"
#include "host/Errors.h"
#include "host/Suggest.h"
#include "host/System.h"
#include "host/Text.h"

namespace host {

namespace {

constexpr std::streamsize kFileLimit = 65'536;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The parser names these as items where a section begins and where it ends.
constexpr const char* kBegin = "++";
constexpr const char* kEnd = "--";

using Items = std::vector<CLI::ConfigItem>;

std::filesystem::path pathOf(const std::string& utf8)
{
    return {FromUtf8(utf8)};
}

/// The file's text; nothing where the user's own is not there.
std::string textOf(const std::string& file, bool mustBeThere)
{
    errno = 0;
    std::ifstream stream(pathOf(file), std::ios::binary);
    if (!stream && !mustBeThere) return {};
    std::string text(static_cast<std::size_t>(kFileLimit) + 1, '\0');
    if (!stream || stream.read(text.data(), kFileLimit + 1).bad() || (stream.gcount() == 0 && !stream.eof())) {
        const std::string why = errno != 0 ? ": " + std::generic_category().message(errno) : "";
        throw LocalProblem(file + ": cannot be read" + why);
    }
    if (stream.gcount() > kFileLimit) throw LocalProblem(file + ": too large for a configuration file");
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (!isUtf8(text)) throw LocalProblem(file + ": not UTF-8");
    if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
    return text;
}

Items itemsOf(const std::string& text, const std::string& file)
{
    std::istringstream stream(text);
    try {
        return CLI::ConfigBase().from_config(stream);
    } catch (const CLI::Error&) {
        throw LocalProblem(file + ": not a configuration file");
    }
}

std::string sectionOf(const CLI::ConfigItem& item)
{
    std::string section;
    for (const std::string& parent : item.parents) section += (section.empty() ? "" : ".") + parent;
    return section;
}

std::vector<std::string> sectionNames(const Items& items)
{
    std::vector<std::string> names;
    for (const CLI::ConfigItem& item : items) {
        if (item.name == kBegin) names.push_back(sectionOf(item));
    }
    return names;
}

/// The value itself never gets into a message: somebody may have written a password there.
const Argument& argumentOf(const CLI::ConfigItem& item, const std::vector<Argument>& arguments, const std::string& file)
{
    std::vector<std::string> keys;
    for (const Argument& argument : arguments) {
        if (!argument.inProfile) continue;
        keys.push_back(argument.name.substr(argument.name.rfind("--") + 2));
        if (keys.back() != item.name) continue;
        if (item.inputs.size() == 1) return argument;
        throw LocalProblem(file + ": " + item.name + " takes one value; one with blanks or commas stands in quotes");
    }
    const std::string section = sectionOf(item);
    throw LocalProblem(file + ": '" + item.name + "' is no key of a profile" +
                       (section.empty() ? "" : ", in [" + section + "]") + didYouMean(item.name, keys) +
                       (nearest(item.name, keys).empty() ? "; see" : " See") + " pvwapi help profiles");
}

bool saidByEnvironment(const Argument& argument)
{
    return std::ranges::any_of(argument.variables,
                               [](const std::string& name) { return !system::environment(name).empty(); });
}

std::string beside(const std::string& file, const std::string& other)
{
    const std::u8string path = (pathOf(file).parent_path() / pathOf(other)).u8string();
    return {path.begin(), path.end()};
}

/// What the item says, if the argument can have that; a file is beside the configuration file.
std::string valueOf(const CLI::ConfigItem& item, const Argument& argument, const std::string& file)
{
    const std::string& value = item.inputs.front();
    std::string problem = problemWith(argument, value);
    if (!problem.empty()) throw LocalProblem(file + ": " + item.name + ": " + problem);
    return argument.kind == Kind::file ? beside(file, value) : value;
}

/// Every line is looked at, be it of another profile, so that a slip shows at once.
Values valuesIn(const Items& items, const std::string& name, const std::vector<Argument>& arguments,
                const std::string& file)
{
    Values common;
    Values own;
    for (const CLI::ConfigItem& item : items) {
        const Argument& argument = argumentOf(item, arguments, file);
        const std::string value = valueOf(item, argument, file);
        const std::string section = sectionOf(item);
        if (saidByEnvironment(argument)) continue;
        if (section.empty()) common[argument.name] = {value};
        else if (section == name) own[argument.name] = {value};
    }
    own.merge(common);
    return own;
}

}  // namespace

Values readProfile(const std::string& file, const std::string& name, const std::vector<Argument>& arguments)
{
    const std::string folder = system::configFolder();
    if (file.empty() && folder.empty() && name.empty()) return {};
    const std::string path = file.empty() ? folder + "/pvwapi/config" : file;
    Items items = itemsOf(textOf(path, !file.empty() || !name.empty()), path);
    const std::vector<std::string> known = sectionNames(items);
    if (!name.empty() && std::ranges::find(known, name) == known.end()) {
        throw LocalProblem(path + ": there is no profile '" + name + "'" + didYouMean(name, known));
    }
    std::erase_if(items, [](const CLI::ConfigItem& item) { return item.name == kBegin || item.name == kEnd; });
    return valuesIn(items, name, arguments, path);
}

}  // namespace host
