#include "pvutil/posix/CurlApi.h"

#include <dlfcn.h>

#include <atomic>
#include <mutex>

namespace kzn::pvutil {

namespace {

constinit std::mutex g_mutex;
constinit std::atomic<bool> g_isLoaded = false;

template <typename Function>
bool bind(Function*& function, void* library, const char* name) noexcept
{
    function = reinterpret_cast<Function*>(::dlsym(library, name));
    return function != nullptr;
}

bool bindAll(void* library) noexcept
{
    return bind(curl.easyCleanup, library, "curl_easy_cleanup") &&
           bind(curl.easyGetinfo, library, "curl_easy_getinfo") && bind(curl.easyHeader, library, "curl_easy_header") &&
           bind(curl.easyInit, library, "curl_easy_init") && bind(curl.easySetopt, library, "curl_easy_setopt") &&
           bind(curl.easyStrerror, library, "curl_easy_strerror") &&
           bind(curl.globalInit, library, "curl_global_init") &&
           bind(curl.multiAddHandle, library, "curl_multi_add_handle") &&
           bind(curl.multiCleanup, library, "curl_multi_cleanup") &&
           bind(curl.multiInfoRead, library, "curl_multi_info_read") &&
           bind(curl.multiInit, library, "curl_multi_init") && bind(curl.multiPerform, library, "curl_multi_perform") &&
           bind(curl.multiPoll, library, "curl_multi_poll") &&
           bind(curl.multiRemoveHandle, library, "curl_multi_remove_handle") &&
           bind(curl.multiWakeup, library, "curl_multi_wakeup") &&
           bind(curl.slistAppend, library, "curl_slist_append") &&
           bind(curl.slistFreeAll, library, "curl_slist_free_all") &&
           bind(curl.versionInfo, library, "curl_version_info");
}

}  // namespace

const char* loadCurl() noexcept
{
    if (g_isLoaded) return nullptr;
    const std::lock_guard lock(g_mutex);
    if (g_isLoaded) return nullptr;
    void* const library = ::dlopen("libcurl.so.4", RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr || !bindAll(library)) {
        const char* const words = ::dlerror();
        return words == nullptr ? "libcurl cannot be loaded" : words;
    }
    g_isLoaded = curl.globalInit(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return g_isLoaded ? nullptr : "libcurl cannot begin";
}

}  // namespace kzn::pvutil
