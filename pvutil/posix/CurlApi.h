// libcurl, loaded when the first request needs it: a program that sends nothing does without it and the thirty
// libraries that it stands on.
#pragma once

#include <curl/curl.h>

namespace kzn::pvutil {

/// What is called of libcurl, under its own names.
struct CurlApi {
    decltype(&::curl_easy_cleanup) easyCleanup;
    decltype(&::curl_easy_getinfo) easyGetinfo;
    decltype(&::curl_easy_header) easyHeader;
    decltype(&::curl_easy_init) easyInit;
    decltype(&::curl_easy_setopt) easySetopt;
    decltype(&::curl_easy_strerror) easyStrerror;
    decltype(&::curl_global_init) globalInit;
    decltype(&::curl_multi_add_handle) multiAddHandle;
    decltype(&::curl_multi_cleanup) multiCleanup;
    decltype(&::curl_multi_info_read) multiInfoRead;
    decltype(&::curl_multi_init) multiInit;
    decltype(&::curl_multi_perform) multiPerform;
    decltype(&::curl_multi_poll) multiPoll;
    decltype(&::curl_multi_remove_handle) multiRemoveHandle;
    decltype(&::curl_multi_wakeup) multiWakeup;
    decltype(&::curl_slist_append) slistAppend;
    decltype(&::curl_slist_free_all) slistFreeAll;
    decltype(&::curl_version_info) versionInfo;
};

/// Of no use before `loadCurl`.
inline constinit CurlApi curl{};

/// Null, or why libcurl cannot be loaded now, in the system's words. It stays for the rest of the process: a look-up
/// that nobody waits for any more goes on in its code, and nobody can tell when that ends.
const char* loadCurl() noexcept;

}  // namespace kzn::pvutil
