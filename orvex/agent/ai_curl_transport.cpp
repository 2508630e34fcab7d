// The AI client's HTTPS POST over libcurl: one easy handle per request, bounded time and size, no redirects
// (a POST must not be replayed elsewhere), and loopback never sent through a proxy. libcurl itself is
// opened on the first request (curl_library.h).
#include <cstdlib>
#include <memory>
#include <string>

#include "orvex/agent/ai_transport.h"
#include "orvex/agent/curl_library.h"

namespace Orvex {

namespace {

struct TEasyDeleter {
    const TCurlLibrary* Curl = nullptr;
    void operator()(CURL* aHandle) const { Curl->EasyCleanup(aHandle); }
};
struct TListDeleter {
    const TCurlLibrary* Curl = nullptr;
    void operator()(curl_slist* aList) const { Curl->SlistFreeAll(aList); }
};

struct TSink {
    std::string Body;
    std::size_t Limit = 0;
    bool Overflow = false;
};

std::size_t WriteBody(char* aData, std::size_t aSize, std::size_t aCount, void* aUser) {
    auto& sink = *static_cast<TSink*>(aUser);
    const std::size_t bytes = aSize * aCount;
    if (sink.Body.size() + bytes > sink.Limit) {
        sink.Overflow = true;
        return 0;  // makes curl abort the transfer
    }
    sink.Body.append(aData, bytes);
    return bytes;
}

// The user's own no-proxy list is kept; loopback is added because a local test or relay is never proxied.
std::string NoProxyList() {
    std::string list = "localhost,127.0.0.1,::1";
    for (const char* name : {"NO_PROXY", "no_proxy"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            list += ',';
            list += value;
            break;
        }
    }
    return list;
}

class TCurlTransport final : public IAIHttpTransport {
  public:
    explicit TCurlTransport(const TAIHttpOptions& aOptions) : fOptions(aOptions) {}

    TAIHttpResult Post(const std::string& aUrl, const TAIHttpHeaders& aHeaders,
                       const std::string& aBody) override {
        std::string openError;
        const TCurlLibrary* curl = OpenCurlLibrary(openError);
        if (curl == nullptr) return TAIHttpResult::Failure(QVLErr::kNoAnswer, openError);
        std::unique_ptr<CURL, TEasyDeleter> easy(curl->EasyInit(), TEasyDeleter{curl});
        if (!easy) return TAIHttpResult::Failure(QVLErr::kNoAnswer, "could not create an HTTP handle");
        std::unique_ptr<curl_slist, TListDeleter> headers(nullptr, TListDeleter{curl});
        for (const auto& [name, value] : aHeaders) {
            const std::string line = name + ": " + value;
            curl_slist* grown = curl->SlistAppend(headers.get(), line.c_str());
            if (grown == nullptr) return TAIHttpResult::Failure(QVLErr::kNoAnswer, "out of memory");
            (void)headers.release();
            headers.reset(grown);
        }
        // "Expect: 100-continue" would add a round trip to every large request.
        curl_slist* grown = curl->SlistAppend(headers.get(), "Expect:");
        if (grown != nullptr) {
            (void)headers.release();
            headers.reset(grown);
        }

        TSink sink;
        sink.Limit = fOptions.MaxResponseBytes;
        char errorText[CURL_ERROR_SIZE] = {};
        const std::string noProxy = NoProxyList();
        CURL* handle = easy.get();
        curl->EasySetopt(handle, CURLOPT_URL, aUrl.c_str());
        curl->EasySetopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
        curl->EasySetopt(handle, CURLOPT_POST, 1L);
        curl->EasySetopt(handle, CURLOPT_POSTFIELDS, aBody.data());
        curl->EasySetopt(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(aBody.size()));
        curl->EasySetopt(handle, CURLOPT_HTTPHEADER, headers.get());
        curl->EasySetopt(handle, CURLOPT_WRITEFUNCTION, &WriteBody);
        curl->EasySetopt(handle, CURLOPT_WRITEDATA, &sink);
        curl->EasySetopt(handle, CURLOPT_ERRORBUFFER, errorText);
        curl->EasySetopt(handle, CURLOPT_CONNECTTIMEOUT_MS,
                         static_cast<long>(fOptions.ConnectTimeout.count()));
        curl->EasySetopt(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(fOptions.TotalTimeout.count()));
        curl->EasySetopt(handle, CURLOPT_NOSIGNAL, 1L);  // timeouts without SIGALRM, safe on any thread
        curl->EasySetopt(handle, CURLOPT_FOLLOWLOCATION, 0L);
        curl->EasySetopt(handle, CURLOPT_NOPROXY, noProxy.c_str());
        curl->EasySetopt(handle, CURLOPT_ACCEPT_ENCODING, "");  // whatever this libcurl can decompress

        const CURLcode code = curl->EasyPerform(handle);
        if (code != CURLE_OK) {
            if (sink.Overflow)
                return TAIHttpResult::Failure(
                    QVLErr::kLimit,
                    "the answer is larger than " + std::to_string(fOptions.MaxResponseBytes) + " bytes");
            return TAIHttpResult::Failure(
                QVLErr::kNoAnswer, errorText[0] != '\0' ? std::string(errorText) : curl->EasyStrerror(code));
        }
        long status = 0;
        curl->EasyGetinfo(handle, CURLINFO_RESPONSE_CODE, &status);
        return TAIHttpResult::Success({static_cast<std::int32_t>(status), std::move(sink.Body)});
    }

  private:
    TAIHttpOptions fOptions;
};

}  // namespace

std::unique_ptr<IAIHttpTransport> MakeCurlTransport(const TAIHttpOptions& aOptions) {
    return std::make_unique<TCurlTransport>(aOptions);
}

}  // namespace Orvex
