// The signed-in user's configuration, and the names of others.
#pragma once

#include <vector>

#include "pvutil/StringEx.h"

/// An identity provider of the user.
struct CZelISProvider {
    CStringT ISProviderID;
    CStringT ISProviderName;
    CStringT userName;  ///< the user's name there
    CStringT namespaceID;
};

struct CUserConfigInfo {
    CStringT userID;
    CStringT userName;
    CStringT email;
    CStringT firstName;
    CStringT lastName;
    CStringT namespaceID;
    CStringT ISProviderID;  ///< of the last provider
    CStringT QueltID;       ///< the audio/video account, with the password as the service returns it
    CStringT Password;
    CStringT QueltAVToken;
    CStringT QueltDesktopShareURL;
    CStringT QueltAudioOrVisualURL;
    CStringT hostName;
    CStringT websiteURL;
    std::vector<CZelISProvider> ISProviders;
};

struct USER_PROFILE {
    CStringT userID;
    CStringT firstName;
    CStringT lastName;
    CStringT middleName;
};
