#include "orvex/agent/curl_library.h"

#include <dlfcn.h>

#include <mutex>

namespace Orvex {

namespace {

// The soname of the libcurl ABI that the header describes; a bare "libcurl.so" exists only where the
// development package is installed.
constexpr const char* kCurlSoname = "libcurl.so.4";

template <typename TFunction>
bool Take(void* aHandle, const char* aSymbol, TFunction& aSlot, std::string& aError) {
    void* address = dlsym(aHandle, aSymbol);
    if (address == nullptr) {
        aError = std::string("libcurl has no ") + aSymbol;
        return false;
    }
    aSlot = reinterpret_cast<TFunction>(address);
    return true;
}

}  // namespace

bool LoadCurlLibrary(const char* aName, TCurlLibrary& aLibrary, std::string& aError) {
    // Local: curl's symbols must not stand in for anyone else's. Now: a missing symbol shows here, not
    // in the middle of a request.
    void* handle = dlopen(aName, RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        aError = std::string("could not load ") + aName + " (the AI client needs libcurl)" +
                 (reason != nullptr ? std::string(": ") + reason : std::string());
        return false;
    }
    TCurlLibrary lib;
    const bool complete = Take(handle, "curl_global_init", lib.GlobalInit, aError) &&
                          Take(handle, "curl_easy_init", lib.EasyInit, aError) &&
                          Take(handle, "curl_easy_cleanup", lib.EasyCleanup, aError) &&
                          Take(handle, "curl_easy_setopt", lib.EasySetopt, aError) &&
                          Take(handle, "curl_easy_perform", lib.EasyPerform, aError) &&
                          Take(handle, "curl_easy_getinfo", lib.EasyGetinfo, aError) &&
                          Take(handle, "curl_easy_strerror", lib.EasyStrerror, aError) &&
                          Take(handle, "curl_slist_append", lib.SlistAppend, aError) &&
                          Take(handle, "curl_slist_free_all", lib.SlistFreeAll, aError);
    if (!complete) {
        dlclose(handle);
        return false;
    }
    // Kept open for the life of the process: handles and lists made through it may outlive any caller.
    aLibrary = lib;
    return true;
}

const TCurlLibrary* OpenCurlLibrary(std::string& aError) {
    static std::once_flag once;
    static TCurlLibrary library;
    static bool loaded = false;
    static std::string failure;
    std::call_once(once, [] {
        loaded = LoadCurlLibrary(kCurlSoname, library, failure);
        if (loaded && library.GlobalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
            loaded = false;
            failure = "libcurl could not initialise";
        }
    });
    if (!loaded) aError = failure;
    return loaded ? &library : nullptr;
}

}  // namespace Orvex
