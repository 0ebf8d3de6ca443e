#include "service/xml/Node.h"

#include <algorithm>

namespace service::xml {

namespace {

const std::string& nothing()
{
    static const std::string kNothing;
    return kNothing;
}

// Calls `visit` for every element at `path` until it returns false.
template <class Visit>
bool walk(const Node& node, std::string_view path, const Visit& visit)
{
    const std::size_t slash = path.find('/');
    const std::string_view step = path.substr(0, slash);
    const bool last = slash == std::string_view::npos;
    return std::ranges::all_of(node.children, [&](const Node& child) {
        if (child.name != step) return true;
        return last ? visit(child) : walk(child, path.substr(slash + 1), visit);
    });
}

}  // namespace

Node& Node::add(std::string_view childName, std::string_view childText)
{
    return children.emplace_back(childName, childText);
}

void Node::addAlias(std::string_view childName, std::string_view childText)
{
    add(childName, childText).matchOnly = true;
}

const Node* Node::child(std::string_view childName) const
{
    return at(childName);
}

const Node* Node::at(std::string_view path) const
{
    const Node* found = nullptr;
    walk(*this, path, [&found](const Node& node) {
        found = &node;
        return false;
    });
    return found;
}

const std::string& Node::textAt(std::string_view path) const
{
    const Node* const found = at(path);
    return found == nullptr ? nothing() : found->text;
}

const std::string& Node::attribute(std::string_view attributeName) const
{
    for (const auto& [key, value] : attributes) {
        if (key == attributeName) return value;
    }
    return nothing();
}

bool anyTextEquals(const Node& node, std::string_view path, std::string_view text)
{
    return !walk(node, path, [text](const Node& found) { return found.text != text; });
}

std::vector<std::string> textsAt(const Node& node, std::string_view path)
{
    std::vector<std::string> texts;
    walk(node, path, [&texts](const Node& found) {
        if (!found.matchOnly) texts.push_back(found.text);
        return true;
    });
    return texts;
}

}  // namespace service::xml
