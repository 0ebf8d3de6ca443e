#include "service/xml/Reader.h"

#include <pugixml.hpp>

#include "service/base/Percent.h"
#include "service/base/Refusal.h"
#include "service/base/Text.h"
#include "service/xml/Markup.h"

namespace service::xml {

namespace {

// Blanks count: a name of one blank is a name.
constexpr unsigned kParseOptions = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_fragment;

[[noreturn]] void refuse(const std::string& what)
{
    throw Refusal(exceptionid::kBadXml, "the XML is not well-formed: " + what);
}

std::string decoded(std::string text, Texts texts)
{
    if (texts == Texts::plain || text.empty()) return text;
    std::optional<std::string> plain = percentDecoded(text);
    if (!plain || !isXmlText(*plain)) refuse("a percent-encoded text cannot be read");
    return std::move(*plain);
}

void readAttributes(const pugi::xml_node& from, Node& to)
{
    for (const pugi::xml_attribute& attribute : from.attributes()) {
        if (!to.attribute(attribute.name()).empty()) refuse("an attribute stands twice");
        to.attributes.emplace_back(attribute.name(), attribute.value());
    }
}

void readElement(const pugi::xml_node& from, Texts texts, Node& to)
{
    to.name = from.name();
    readAttributes(from, to);
    for (const pugi::xml_node& child : from.children()) {
        if (child.type() == pugi::node_element) {
            readElement(child, texts, to.children.emplace_back());
        } else if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            to.text += child.value();
        }
    }
    to.text = decoded(std::move(to.text), texts);
}

pugi::xml_node onlyElement(const pugi::xml_document& document)
{
    pugi::xml_node found;
    for (const pugi::xml_node& node : document.children()) {
        const bool text = node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
        if (text && !trimmed(node.value()).empty()) refuse("text stands outside of the element");
        if (node.type() != pugi::node_element) continue;
        if (found) refuse("there is more than one outer element");
        found = node;
    }
    if (!found) refuse("there is no element");
    return found;
}

}  // namespace

Node read(std::string_view text, Texts texts)
{
    if (!isXmlText(text)) refuse("it holds bytes that are no XML characters");
    checkMarkup(text);
    pugi::xml_document document;
    const pugi::xml_parse_result result =
        document.load_buffer(text.data(), text.size(), kParseOptions, pugi::encoding_utf8);
    if (!result) refuse(result.description());
    Node root;
    readElement(onlyElement(document), texts, root);
    return root;
}

}  // namespace service::xml
