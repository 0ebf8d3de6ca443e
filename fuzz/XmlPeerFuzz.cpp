// Well-formed texts against another parser: the texts and the events that a walk over its document gives.
#include <pugixml.hpp>

#include <algorithm>
#include <string>

#include "fuzz/Check.h"
#include "fuzz/XmlSelection.h"

namespace {

using kzn::pvutil::stringex::FromUtf8;

std::string ownText(const pugi::xml_node& element)
{
    std::string text;
    for (const pugi::xml_node& child : element.children())
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
    return text;
}

// Fills what the handler under test fills, element by element.
class Walk : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& node) override
    {
        if (node.type() != pugi::node_element) return true;
        const std::string path = node.path() + "/";
        const auto found = std::find(fuzz::kSelectedPaths.begin(), fuzz::kSelectedPaths.end(), path);
        if (found == fuzz::kSelectedPaths.end()) return true;
        texts[static_cast<std::size_t>(found - fuzz::kSelectedPaths.begin())] = FromUtf8(ownText(node));
        return true;
    }

    std::array<CStringT, fuzz::kSelectedPaths.size()> texts;
};

bool isCompared(std::string_view text)
{
    return text.find("<!DOCTYPE") == std::string_view::npos && text.find('\0') == std::string_view::npos;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
try {
    const CStringT text = FromUtf8(fuzz::bytes(data, size));
    const std::string utf8 = kzn::pvutil::stringex::ToUtf8(text);
    fuzz::XmlSelection handler;
    if (handler.ParseXML(text) == 0 || !isCompared(utf8)) return 0;

    pugi::xml_document document;
    constexpr unsigned kOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_ws_pcdata;
    const auto result = document.load_buffer(utf8.data(), utf8.size(), kOptions, pugi::encoding_utf8);
    fuzz::check(result.status == pugi::status_ok, "the peer reads it too");
    Walk walk;
    document.traverse(walk);
    fuzz::check(walk.texts == handler.texts, "the same texts");
    return 0;
} catch (const EXPAT_EX::XmlLimitPassed&) {
    return 0;  // there is nothing to compare
}
