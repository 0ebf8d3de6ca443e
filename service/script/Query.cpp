#include "service/script/Query.h"

#include <algorithm>

namespace service::script {

namespace {

// What is true of every object of the type need not be looked at.
bool isGiven(const Context& context, const Query& query)
{
    return query.type.isGiven != nullptr && query.where->isGiven([&](std::string_view path, std::string_view value) {
        return query.type.isGiven(context, path, value);
    });
}

std::vector<xml::Node> candidates(const Context& context, const Query& query, bool conditioned)
{
    Selection wanted = query.select;
    if (conditioned) query.where->addPaths(wanted);
    if (query.id.empty()) return query.type.list(context, wanted);
    std::vector<xml::Node> nodes;
    if (std::optional<xml::Node> node = query.type.find(context, query.id, wanted)) nodes.push_back(std::move(*node));
    return nodes;
}

void keepPage(std::vector<xml::Node>& nodes, std::size_t page, std::size_t pageSize)
{
    const std::size_t first = std::min(nodes.size(), (page - 1) * pageSize);
    const std::size_t last = std::min(nodes.size(), first + pageSize);
    nodes.erase(nodes.begin() + static_cast<std::ptrdiff_t>(last), nodes.end());
    nodes.erase(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(first));
}

}  // namespace

std::vector<xml::Node> answer(const Context& context, const Query& query)
{
    const bool conditioned = query.where && !isGiven(context, query);
    std::vector<xml::Node> nodes = candidates(context, query, conditioned);
    if (conditioned) std::erase_if(nodes, [&query](const xml::Node& node) { return !query.where->holds(node); });
    keepPage(nodes, query.page, query.pageSize);
    if (query.type.shown != nullptr) query.type.shown(context, nodes);
    for (xml::Node& node : nodes) query.select.prune(node);
    return nodes;
}

}  // namespace service::script
