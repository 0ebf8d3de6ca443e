#pragma once

#include <string>

#include "service/Context.h"
#include "service/base/Json.h"
#include "service/seed/Seed.h"

namespace service::seed {

// Puts the parts of a seed into the data file, one at a time; what one names has come before it. People act through the
// same rules as by a request.
class Filling {
public:
    Filling(store::Database& database, const Settings& settings, SecretHashes& hashes)
        : database_(database), settings_(settings), hashes_(hashes)
    {
    }

    void organisation(const Json& json) const;
    void user(const Json& json) const;
    void library(const Json& json) const;
    void workspace(const Json& json) const;

private:
    Context contextOf(const std::string& userName, const std::string& where) const;
    void application(const std::string& libraryID, const Json& json) const;
    void members(Context& creator, const std::string& workspaceID, JsonObject& workspace) const;
    void invitations(Context& creator, const std::string& workspaceID, JsonObject& workspace) const;

    store::Database& database_;
    const Settings& settings_;
    SecretHashes& hashes_;
};

}  // namespace service::seed
