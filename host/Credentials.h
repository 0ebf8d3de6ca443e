// Who is asking: from the environment or from a file that only its owner can read, never from the command line, which
// every user of the machine can see.
#pragma once

#include <string>

#include "client/WapiClient.h"

namespace host {

/// What a sign-in needs, or the credential of a session that stands already.
struct Credentials {
    CStringT user;
    CStringT password;
    CStringT token;
    CStringT isp;  ///< the identity provider; empty for the service's own
    CStringT cred;
};

/// From PVWAPI_USER, PVWAPI_PASSWORD, PVWAPI_TOKEN, PVWAPI_ISP and PVWAPI_CRED where `file` is empty; else from the
/// file alone, whose lines are user=, password=, token=, isp= and cred=, blank, or a comment behind "#".
Credentials readCredentials(const std::string& file);

/// Writes a file that readCredentials reads, with nothing but the credential of a session.
void saveSession(const std::string& file, const CStringT& cred);

}  // namespace host
