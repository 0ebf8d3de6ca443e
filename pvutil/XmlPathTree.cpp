#include "pvutil/XmlPathTree.h"

namespace EXPAT_EX {

using kzn::pvutil::stringex::CharT;
using kzn::pvutil::stringex::CStringView;

namespace {

bool isSame(const CStringT& name, const CharT* other) noexcept
{
    const CharT* mine = name.c_str();
    while (*mine == *other && *mine != 0) ++mine, ++other;
    return *mine == *other;
}

}  // namespace

XmlPathNode& XmlPathNode::at(CStringView path)
{
    XmlPathNode* node = this;
    while (!path.empty()) {
        const std::size_t end = path.find(CharT{'/'});
        const CStringView name = path.substr(0, end);
        if (!name.empty()) node = &node->child(name);
        if (end == CStringView::npos) break;
        path.remove_prefix(end + 1);
    }
    return *node;
}

XmlPathNode& XmlPathNode::child(CStringView name)
{
    for (const auto& child : children_)
        if (child->name_ == name) return *child;
    return *children_.emplace_back(std::make_unique<XmlPathNode>(CStringT(name), this));
}

XmlPathNode* XmlPathNode::find(const CharT* name) noexcept
{
    for (std::size_t tried = 0; tried < children_.size(); ++tried) {
        if (next_ == children_.size()) next_ = 0;
        XmlPathNode& child = *children_[next_++];
        if (isSame(child.name_, name)) return &child;
    }
    return nullptr;
}

void XmlPathNode::restart() noexcept
{
    items = 0;
    for (const auto& child : children_) child->restart();
}

void XmlPathNode::deliver()
{
    if (targets.empty()) return;
    for (std::size_t i = 1; i < targets.size(); ++i) *targets[i] = text;
    targets.front()->swap(text);
}

}  // namespace EXPAT_EX
