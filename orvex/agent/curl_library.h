// Private to the AI client's transport: libcurl, opened when the first request is sent rather than when
// the program starts. curl brings a TLS stack, LDAP, SSH and Kerberos, whose loading and start-up code would
// cost every run of `orvex` several milliseconds although only `chat` and the AI tools ever talk HTTPS.
#pragma once

#include <curl/curl.h>

#include <string>

namespace Orvex {

// The entry points the AI transport calls, taken from the shared library with dlsym.
struct TCurlLibrary {
    CURLcode (*GlobalInit)(long flags) = nullptr;
    CURL* (*EasyInit)() = nullptr;
    void (*EasyCleanup)(CURL* handle) = nullptr;
    CURLcode (*EasySetopt)(CURL* handle, CURLoption option, ...) = nullptr;
    CURLcode (*EasyPerform)(CURL* handle) = nullptr;
    CURLcode (*EasyGetinfo)(CURL* handle, CURLINFO info, ...) = nullptr;
    const char* (*EasyStrerror)(CURLcode code) = nullptr;
    curl_slist* (*SlistAppend)(curl_slist* list, const char* text) = nullptr;
    void (*SlistFreeAll)(curl_slist* list) = nullptr;
};

// Opens libcurl once per process (later calls give the same answer) and runs its global initialisation.
// Null when the library or one of its entry points is missing; aError then says which.
const TCurlLibrary* OpenCurlLibrary(std::string& aError);

// Fills aLibrary from the named shared library without caching or initialising it; false with aError
// when the library or an entry point is missing.
bool LoadCurlLibrary(const char* aName, TCurlLibrary& aLibrary, std::string& aError);

}  // namespace Orvex
