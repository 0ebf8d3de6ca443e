// From a call that got no reply to the end of its command.
#pragma once

#include <string>

#include "client/WapiClient.h"
#include "host/Errors.h"

namespace host {

/// The failure that the client's last request met; nothing where it got a reply.
Failure networkFailure(CWapiClient& client);

/// Whether a user, with a password or without, stands before the host.
bool namesUser(const std::string& url);

/// Whether both are addresses of one scheme, host and port. What cannot be read for certain is no address.
bool haveOneOrigin(const CStringT& one, const CStringT& other);

}  // namespace host
