#pragma once

#include <string>
#include <string_view>

#include "service/http/Message.h"

namespace service::control {

// A page in a browser can make it send requests here, and a name that it owns can be made to lead here. What such
// requests cannot help is to say where they come from: these look at it.

// True for a name or an address of this machine's own with this port.
bool isOwnHost(std::string_view host, unsigned short port);

// True where there is no origin, or it is this service.
bool isOwnOrigin(std::string_view origin, unsigned short port);

// True where the browser says nothing of its own, or that no other site is behind the request.
bool isOwnSite(std::string_view fetchSite);

// Why a request is none for the service at this port; empty where it may be one.
std::string whyForeign(const http::RequestHead& head, unsigned short port);

// True where the header holds "Bearer" and the token.
bool bearsToken(std::string_view authorization, std::string_view token);

}  // namespace service::control
