// libcurl is opened on the AI client's first request, not when `orvex` starts.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>

#include "orvex/agent/curl_library.h"

namespace {

using Orvex::TCurlLibrary;

// What the dynamic loader would map for the command, one line per library, without running it.
std::string LoadedLibraries(const std::string& aProgram) {
    const std::string command = "LD_TRACE_LOADED_OBJECTS=1 " + aProgram + " 2>&1";
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), &::pclose);
    std::string out;
    if (!pipe) return out;
    char buffer[4096];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, pipe.get())) > 0) out.append(buffer, got);
    return out;
}

TEST(CurlLibrary, TheCommandStartsWithoutCurlAndItsTlsStack) {
    const std::string libraries = LoadedLibraries(ORVEX_CLI_PATH);
    ASSERT_NE(libraries.find("libc.so"), std::string::npos) << libraries;  // the trace did run
    for (const char* name : {"libcurl", "libgnutls", "libssh2", "libldap", "libgssapi"})
        EXPECT_EQ(libraries.find(name), std::string::npos) << name << " is loaded at start:\n" << libraries;
}

TEST(CurlLibrary, OpensOnceWithEveryEntryPoint) {
    std::string error;
    const TCurlLibrary* first = Orvex::OpenCurlLibrary(error);
    ASSERT_NE(first, nullptr) << error;
    EXPECT_EQ(Orvex::OpenCurlLibrary(error), first);
    for (const void* entry :
         {reinterpret_cast<const void*>(first->GlobalInit), reinterpret_cast<const void*>(first->EasyInit),
          reinterpret_cast<const void*>(first->EasyCleanup), reinterpret_cast<const void*>(first->EasySetopt),
          reinterpret_cast<const void*>(first->EasyPerform),
          reinterpret_cast<const void*>(first->EasyGetinfo),
          reinterpret_cast<const void*>(first->EasyStrerror),
          reinterpret_cast<const void*>(first->SlistAppend),
          reinterpret_cast<const void*>(first->SlistFreeAll)})
        EXPECT_NE(entry, nullptr);
    // A call through the table reaches the real library.
    EXPECT_STREQ(first->EasyStrerror(CURLE_OK), "No error");
}

TEST(CurlLibrary, AMissingLibraryOrEntryPointIsNamed) {
    TCurlLibrary lib;
    std::string error;
    EXPECT_FALSE(Orvex::LoadCurlLibrary("libcurl-that-is-not-there.so.4", lib, error));
    EXPECT_NE(error.find("libcurl-that-is-not-there.so.4"), std::string::npos) << error;
    EXPECT_EQ(lib.EasyInit, nullptr);

    // A real library that is not curl: loads, but lacks the entry points.
    error.clear();
    EXPECT_FALSE(Orvex::LoadCurlLibrary("libm.so.6", lib, error));
    EXPECT_NE(error.find("curl_global_init"), std::string::npos) << error;
    EXPECT_EQ(lib.EasyInit, nullptr);
}

}  // namespace
