#include "host/Look.h"

#include <charconv>

#include "host/System.h"
#include "host/Terminal.h"

namespace host {

namespace {

std::size_t lineWidth()
{
    const std::string text = system::environment("COLUMNS");
    std::size_t width = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), width);
    const bool said = error == std::errc() && end == text.data() + text.size() && width > 0;
    return said ? width : system::terminalWidth();
}

bool isBold(const std::string& color)
{
    if (color == "never") return false;
    if (color == "always") return true;
    return system::environment("NO_COLOR").empty() && system::outputIsTerminal() && system::prepareBold();
}

}  // namespace

Look lookFor(const std::string& color)
{
    Look look;
    look.width = lineWidth();
    look.bold = isBold(color);
    return look;
}

}  // namespace host
