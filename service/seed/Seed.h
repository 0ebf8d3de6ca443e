#pragma once

#include <map>
#include <string>

#include "service/Context.h"
#include "service/base/Json.h"

// What a service begins with: organisations, users, libraries and workspaces, as JSON. docs/service-control.md says
// how it is written, and demo.json is one.
namespace service::seed {

// The hashes of what a seed's people sign in with. A seed that is used again needs none anew, which takes most of the
// time; one thread at a time uses them.
class SecretHashes {
public:
    const std::string& of(const std::string& secret);

private:
    std::map<std::string, std::string> hashes_;
};

// The seed called "demo", or the one in that file; throws std::runtime_error where there is none that can be read.
Json load(const std::string& nameOrFile);

// Puts what the seed holds into a state that holds none of it; it becomes all there, or not at all. Throws JsonError
// where the seed is none, or contradicts itself.
void fill(store::Database& database, const Settings& settings, const Json& seed, SecretHashes& hashes);
void fill(store::Database& database, const Settings& settings, const Json& seed);

// The same for a data file that may have been filled before, which is then left exactly as it is. Says what it did.
std::string fillEmpty(store::Database& database, const Settings& settings, const Json& seed, SecretHashes& hashes);

// The demo organisation, in the machine's own time.
void fillDemo(store::Database& database);

}  // namespace service::seed
