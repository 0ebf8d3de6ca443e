#include "service/script/Selection.h"

#include <algorithm>

#include "service/base/Refusal.h"
#include "service/base/Text.h"

namespace service::script {

namespace {

constexpr std::size_t kMaxPaths = 200;

// True where `inner` is `outer` or lies below it.
bool liesWithin(std::string_view inner, std::string_view outer)
{
    return inner.starts_with(outer) && (inner.size() == outer.size() || inner[outer.size()] == '/');
}

void pruneBelow(xml::Node& node, const std::vector<std::string_view>& paths);

// What the paths say about a child: keep it whole, keep a part of it, or nothing.
bool keepPart(xml::Node& child, const std::vector<std::string_view>& paths)
{
    std::vector<std::string_view> below;
    for (const std::string_view path : paths) {
        if (!liesWithin(path, child.name)) continue;
        if (path.size() == child.name.size()) return true;
        below.push_back(path.substr(child.name.size() + 1));
    }
    if (below.empty()) return false;
    pruneBelow(child, below);
    return !child.children.empty();
}

void pruneBelow(xml::Node& node, const std::vector<std::string_view>& paths)
{
    node.text.clear();
    std::erase_if(node.children, [&paths](xml::Node& child) { return child.matchOnly || !keepPart(child, paths); });
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
        if (paths_.size() == kMaxPaths) throw Refusal(exceptionid::kLimitExceeded, "the select list is too long");
        whole_ = whole_ || path == "*" || path == objectName;
        paths_.emplace_back(path);
    }
}

Selection Selection::whole()
{
    Selection selection;
    selection.whole_ = true;
    return selection;
}

void Selection::add(std::string path)
{
    paths_.push_back(std::move(path));
}

bool Selection::touches(std::string_view path) const
{
    return whole_ || std::any_of(paths_.begin(), paths_.end(), [path](const std::string& wanted) {
               return liesWithin(wanted, path) || liesWithin(path, wanted);
           });
}

void Selection::prune(xml::Node& object) const
{
    if (whole_) return;
    pruneBelow(object, {paths_.begin(), paths_.end()});
}

}  // namespace service::script
