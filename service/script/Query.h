#pragma once

#include <optional>
#include <string>
#include <vector>

#include "service/Context.h"
#include "service/objects/ObjectTypes.h"
#include "service/script/Condition.h"
#include "service/script/Selection.h"

namespace service::script {

// One question about the objects of one type: which, what of them, and which page of the answer.
struct Query {
    const objects::ObjectType& type;
    std::string id;  // empty: all that meet the condition
    std::optional<Condition> where;
    Selection select = Selection::whole();
    std::size_t page = 1;
    std::size_t pageSize = kMaxPageSize;

    static constexpr std::size_t kMaxPageSize = 10000;
};

// The objects with nothing but the selected fields. An `id` that the caller cannot see gives none.
std::vector<xml::Node> answer(const Context& context, const Query& query);

}  // namespace service::script
