#pragma once

#include <string>
#include <vector>

#include "tests/service/Talk.h"

namespace service::test {

// Signs in as one of the demo people; the credential, or empty.
std::string signIn(unsigned short port, const std::string& name);

// One of the demo people: signs in and posts forms whose credential it adds.
class User {
public:
    User(unsigned short port, const std::string& name);

    const std::string& cred() const { return cred_; }

    // The reply to "cmd=...": the credential goes behind.
    std::string call(const std::string& body);
    std::string execute(const std::string& task, const std::string& xml);
    std::string script(const std::string& steps);

    // Makes a workspace with the two fixed tabs; its ID.
    std::string makeSpace(const std::string& name);

    // The ID of the workspace of this name; empty where the user sees none.
    std::string spaceNamed(const std::string& name);

    // The reply with all fields of a workspace.
    std::string fieldsOf(const std::string& spaceID);

    // Puts a plain tab there; the reply.
    std::string addTab(const std::string& spaceID, const std::string& name, int order);

    // Invites somebody as a plain member; the reply.
    std::string invite(const std::string& spaceID, const std::string& user);

    // Answers an invitation with "accept" or "reject"; the reply.
    std::string answer(const std::string& spaceID, const std::string& action);

    // The IDs of the workspaces that are favourites.
    std::vector<std::string> favourites();

    // Waits for no reply any more.
    void hangUp() { talk_.hangUp(); }

private:
    Talk talk_;
    std::string cred_;
};

inline constexpr const char* kSpaceID = "/kznapi/return/workspace/workspaceID";

// Sends a workspace's icon as a host does, byte for byte.
HttpReply uploadIcon(unsigned short port, const std::string& cred, const std::string& spaceID,
                     const std::string& picture);

// What stands between the parts of that upload.
inline constexpr const char* kBoundary = "---------------------------7d73d42312zelkor";

}  // namespace service::test
