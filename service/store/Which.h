#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace service::store {

// What belongs to several workspaces, by the workspace's ID.
template <class Item>
using ByWorkspace = std::map<std::string, std::vector<Item>>;

// Which workspaces are meant: one, or all that a user is a member of.
class Which {
public:
    static Which one(std::string workspaceID) { return {std::move(workspaceID), false}; }
    static Which ofMember(std::string userID) { return {std::move(userID), true}; }

    // One of two statements whose one value is the ID.
    std::string_view sql(std::string_view ofOne, std::string_view ofMember) const
    {
        return isOfMember_ ? ofMember : ofOne;
    }
    const std::string& id() const { return id_; }

private:
    Which(std::string id, bool isOfMember) : id_(std::move(id)), isOfMember_(isOfMember) {}

    std::string id_;
    bool isOfMember_;
};

}  // namespace service::store
