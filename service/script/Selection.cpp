#include "service/script/Selection.h"

#include <algorithm>

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::script {

namespace {

constexpr std::size_t kMaxPaths = 200;
constexpr int kMaxSteps = 128;  // no object has so many elements in each other: what is behind them is never there

// The path's first step, which is taken from it.
std::string_view stepOf(std::string_view& path)
{
    const std::size_t slash = path.find('/');
    const std::string_view step = path.substr(0, slash);
    path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
    return step;
}

}  // namespace

Selection::Selection(std::string_view text, std::string_view objectName)
{
    for (std::string_view path : split(text, ':')) {
        path = trimmed(path);
        if (path.starts_with(objectName) && path.substr(objectName.size()).starts_with('/')) {
            path.remove_prefix(objectName.size() + 1);
        }
        if (path.empty()) throw Refusal(exceptionid::kBadScript, "the select list holds an empty path");
        if (paths_ == kMaxPaths) throw Refusal(exceptionid::kLimitExceeded, "the select list is too long");
        root_.whole = root_.whole || path == "*" || path == objectName;
        add(path);
    }
}

Selection Selection::whole()
{
    Selection selection;
    selection.root_.whole = true;
    return selection;
}

void Selection::add(std::string_view path)
{
    ++paths_;
    Branch* branch = &root_;
    bool more = true;
    for (int steps = 0; more && steps < kMaxSteps; ++steps) {
        more = path.find('/') != std::string_view::npos;
        branch = &branch->childFor(stepOf(path));
    }
    branch->whole = branch->whole || !more;
}

bool Selection::touches(std::string_view path) const
{
    const Branch* branch = &root_;
    while (branch != nullptr && !branch->whole && !path.empty()) branch = branch->child(stepOf(path));
    return branch != nullptr;
}

void Selection::prune(xml::Node& object) const
{
    if (!root_.whole) root_.prune(object);
}

const Selection::Branch* Selection::Branch::child(std::string_view childName) const
{
    const auto found = std::ranges::find(children, childName, &Branch::name);
    return found == children.end() ? nullptr : &*found;
}

Selection::Branch& Selection::Branch::childFor(std::string_view childName)
{
    const auto found = std::ranges::find(children, childName, &Branch::name);
    return found == children.end() ? children.emplace_back(Branch{std::string(childName), false, {}}) : *found;
}

void Selection::Branch::prune(xml::Node& node) const
{
    node.text.clear();
    std::erase_if(node.children, [this](xml::Node& held) {
        const Branch* const branch = held.matchOnly ? nullptr : child(held.name);
        if (branch == nullptr) return true;
        if (branch->whole) return false;
        branch->prune(held);
        return held.children.empty();
    });
}

}  // namespace service::script
