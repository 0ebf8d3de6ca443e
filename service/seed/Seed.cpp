#include "service/seed/Seed.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "service/base/Secret.h"
#include "service/seed/Demo.h"
#include "service/seed/Filling.h"
#include "service/store/Database.h"
#include "service/store/Users.h"

namespace service::seed {

Json load(const std::string& nameOrFile)
{
    if (nameOrFile == "demo") return parseJson(demoText());
    std::ifstream file(std::filesystem::u8path(nameOrFile), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) throw std::runtime_error("the seed " + nameOrFile + " cannot be read");
    try {
        return parseJson(text);
    } catch (const JsonError& error) {
        throw JsonError("the seed " + nameOrFile + " cannot be used: " + error.what());
    }
}

const std::string& SecretHashes::of(const std::string& secret)
{
    const auto found = hashes_.find(secret);
    return found != hashes_.end() ? found->second : hashes_.emplace(secret, hashSecret(secret)).first->second;
}

void fill(store::Database& database, const Settings& settings, const Json& seed)
{
    SecretHashes hashes;
    fill(database, settings, seed, hashes);
}

void fill(store::Database& database, const Settings& settings, const Json& seed, SecretHashes& hashes)
{
    JsonObject lists(seed, "the seed");
    const Filling filling{database, settings, hashes};
    store::Savepoint savepoint(database);
    for (const Json& each : lists.list("organisations")) filling.organisation(each);
    for (const Json& each : lists.list("users")) filling.user(each);
    for (const Json& each : lists.list("libraries")) filling.library(each);
    for (const Json& each : lists.list("workspaces")) filling.workspace(each);
    lists.end();
    savepoint.keep();
}

void fillDemo(store::Database& database)
{
    fill(database, Settings(), load("demo"));
}

std::string fillEmpty(store::Database& database, const Settings& settings, const Json& seed, SecretHashes& hashes)
{
    if (store::hasUsers(database)) return "the data file holds users already: nothing was changed";
    store::Transaction transaction(database);
    fill(database, settings, seed, hashes);
    transaction.commit();
    const std::size_t users = seed.contains("users") ? seed.at("users").size() : 0;
    return "the data file was filled with " + std::to_string(users) + " users";
}

}  // namespace service::seed
