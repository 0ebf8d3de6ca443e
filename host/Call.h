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
#include "host/System.h"
#include "host/Wire.h"

namespace host {

/// What holds for every command.
struct Settings {
    Format format = Format::table;
    Look look;
    bool agreed = false;  ///< --yes: nothing is asked
    std::string baseUrl;
    std::string credentialsFile;
    unsigned int timeout = 0;  ///< milliseconds for each call; 0 is no limit
    Sight sight;
};

class Call {
public:
    Call(const Settings& settings, Values values);
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Signs out of the session that cred() began, never of one that was given.
    ~Call();

    bool given(const std::string& name) const;
    /// Ends the command where the text holds a character that XML cannot carry, and so no request.
    CStringT text(const std::string& name) const;
    /// The same for what is sent as it stands, or is no part of a request.
    CStringT asTyped(const std::string& name) const;
    int number(const std::string& name, int otherwise) const;
    std::vector<CStringT> list(const std::string& name) const;
    std::vector<CStringT> listAsTyped(const std::string& name) const;

    /// The same for the places of a request that the library fills with a text as it stands: as the content of an
    /// element, and as that of a CDATA section.
    CStringT xml(const std::string& name) const;
    CStringT cdata(const std::string& name) const;
    std::vector<CStringT> xmlList(const std::string& name) const;
    std::vector<CStringT> cdataList(const std::string& name) const;

    CWapiClient& client() { return client_; }
    const Credentials& credentials() const { return credentials_; }
    const Wire& wire() const { return wire_; }

    /// The credential of the session: the one that was given, else the one of a sign-in that is made now.
    const CStringT& cred();
    /// The same, encoded for the operations that put it into a form or an address as it stands.
    CStringT formCred();

    /// Signs in with user and password or token. The session outlives the command.
    void signIn();

    /// The user with what proves who it is, asked for where somebody can be asked. Ends the command without.
    const Credentials& identity();

    /// Ends the command with the client's last message unless `result` is 1; with `refusal` where the client has none.
    void check(int result, const std::string& refusal = {});
    /// Ends the command where the last request got no reply.
    void checkNetwork();

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
    std::vector<CStringT> carried(const std::string& name, CStringT (*as)(const CStringT& text)) const;

    void stop();

    const Settings& settings_;
    Values values_;
    CWapiClient client_;
    Wire wire_;
    system::Interrupts interrupts_;
    Credentials credentials_;
    bool ownSession_ = false;
    std::string output_;
};

}  // namespace host
