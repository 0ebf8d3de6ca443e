#include "pvutil/XmlPathTree.h"

#include "pvutil/Utf.h"

namespace EXPAT_EX {

namespace {

// Of most replies that the library reads.
constexpr std::size_t kPlaces = 32;

}  // namespace

XmlPathTree::XmlPathTree()
{
    nodes_.reserve(kPlaces);
    nodes_.emplace_back();
    links_.reserve(kPlaces);
}

XmlPathTree::Place XmlPathTree::at(Place from, std::string_view path)
{
    Place place = from;
    while (!path.empty()) {
        const std::size_t end = path.find('/');
        const std::string_view name = path.substr(0, end);
        if (!name.empty()) place = child(place, name);
        if (end == std::string_view::npos) break;
        path.remove_prefix(end + 1);
    }
    return place;
}

XmlPathTree::Place XmlPathTree::child(Place parent, std::string_view name)
{
    for (Place at = nodes_[parent].children.first; at != kNowhere; at = nodes_[at].sibling)
        if (nodes_[at].name == name) return at;
    const auto made = static_cast<Place>(nodes_.size());
    Node& node = nodes_.emplace_back();
    node.name = name;
    node.parent = parent;
    Chain& children = nodes_[parent].children;
    (children.first == kNowhere ? children.first : nodes_[children.last].sibling) = made;
    children.last = made;
    return made;
}

void XmlPathTree::append(Chain Node::*which, Place place, Link link)
{
    const auto made = static_cast<Place>(links_.size());
    links_.push_back(link);
    Chain& chain = nodes_[place].*which;
    (chain.first == kNowhere ? chain.first : links_[chain.last].next) = made;
    chain.last = made;
}

void XmlPathTree::addTarget(Place place, CStringT* target)
{
    append(&Node::targets, place, {target});
}

void XmlPathTree::addListener(Place place, unsigned id)
{
    append(&Node::listeners, place, {nullptr, id});
}

XmlPathTree::Place XmlPathTree::find(Place parent, std::string_view name) noexcept
{
    Node& node = nodes_[parent];
    const Place begin = node.next;
    const auto search = [&](Place from, Place end) {
        Place at = from;
        while (at != end && at != kNowhere && nodes_[at].name != name) at = nodes_[at].sibling;
        return at == end ? kNowhere : at;
    };
    Place found = begin == kNowhere ? kNowhere : search(begin, kNowhere);
    if (found == kNowhere) found = search(node.children.first, begin);
    if (found != kNowhere) node.next = nodes_[found].sibling;
    return found;
}

void XmlPathTree::restart() noexcept
{
    for (Node& node : nodes_) node.element = {};
}

void XmlPathTree::deliver(Place place, std::string_view utf8) const
{
    for (Place at = nodes_[place].targets.first; at != kNowhere; at = links_[at].next)
        kzn::pvutil::utf::assign(*links_[at].target, utf8);
}

}  // namespace EXPAT_EX
