#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace service::xml {

// One element of a request or of a reply: its name, its own character data, and what stands in it.
struct Node {
    Node() = default;
    explicit Node(std::string_view elementName, std::string_view elementText = {})
        : name(elementName), text(elementText)
    {
    }

    std::string name;
    std::string text;
    std::vector<Node> children;
    std::vector<std::pair<std::string, std::string>> attributes;
    bool matchOnly = false;  // a condition may find it, a reply never shows it

    // The reference lives until the next add() on the same node.
    Node& add(std::string_view childName, std::string_view childText = {});

    // An element that conditions can find and no reply shows.
    void addAlias(std::string_view childName, std::string_view childText);

    const Node* child(std::string_view childName) const;
    const Node* at(std::string_view path) const;

    // The text at a path such as "ext/KZN/hostName"; empty where there is no such element.
    const std::string& textAt(std::string_view path) const;

    const std::string& attribute(std::string_view attributeName) const;
};

// True where an element at `path` below `node` has exactly this text.
bool anyTextEquals(const Node& node, std::string_view path, std::string_view text);

// The texts of all elements at `path` below `node`, in document order.
std::vector<std::string> textsAt(const Node& node, std::string_view path);

}  // namespace service::xml
