// One command at work: its arguments, its client, and what it shows.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "client/WapiClient.h"
#include "host/Command.h"
#include "host/Credentials.h"
#include "host/Output.h"

namespace host {

/// What holds for every command.
struct Settings {
    Format format = Format::table;
    Look look;
    bool agreed = false;  ///< --yes: nothing is asked
    std::string baseUrl;
    std::string credentialsFile;
};

class Call {
public:
    Call(const Settings& settings, Values values);
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Signs out of the session that cred() began, never of one that was given.
    ~Call();

    bool given(const std::string& name) const;
    CStringT text(const std::string& name) const;
    int number(const std::string& name, int otherwise) const;
    std::vector<CStringT> list(const std::string& name) const;

    CWapiClient& client() { return client_; }
    const Credentials& credentials() const { return credentials_; }

    /// The credential of the session: the one that was given, else the one of a sign-in that is made now.
    const CStringT& cred();

    /// Signs in with user and password or token. The session outlives the command.
    void signIn();

    /// Ends the command with the client's last message unless `result` is 1; with `refusal` where the client has none.
    void check(int result, const std::string& refusal = {});

    /// The refusal of a call for which none of these arguments may be empty: names the first that is, if one is.
    std::string emptyOne(std::initializer_list<const char*> names) const;

    /// The user's ID that --user gives, else the ID of who is signed in.
    CStringT userID();

    /// What goes to standard output once everything has succeeded.
    void show(const Json& value, const Columns& columns = {})
    {
        output_ += render(value, columns, settings_.format, settings_.look);
    }
    void showParts(const Parts& parts) { output_ += renderParts(parts, settings_.format, settings_.look); }
    /// A text that stands for itself in a table's place; JSON shows it as the member `name`.
    void showText(const std::string& name, const CStringT& text);
    const std::string& output() const { return output_; }

private:
    const std::vector<std::string>& values(const std::string& name) const;

    const Settings& settings_;
    Values values_;
    Credentials credentials_;
    CWapiClient client_;
    bool ownSession_ = false;
    std::string output_;
};

}  // namespace host
