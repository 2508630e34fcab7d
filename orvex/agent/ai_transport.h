// The HTTPS POST the AI client needs, behind an interface so that tests can answer without a network.
// The libcurl implementation lives in ai_curl_transport.cpp; nothing of curl shows here.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvex/core/result.h"

namespace Orvex {

using TAIHttpHeaders = std::vector<std::pair<std::string, std::string>>;

struct TAIHttpAnswer {
    std::int32_t Status = 0;
    std::string Body;
};
// Success is an HTTP answer, whatever its status. A failure means no usable answer came: QVLErr::kNoAnswer
// (connection, timeout, transport) or kLimit (the answer outgrew MaxResponseBytes).
using TAIHttpResult = TQVLResult<TAIHttpAnswer>;

class IAIHttpTransport {
  public:
    virtual ~IAIHttpTransport() = default;
    // Must not throw for network failures; they come back as a failed result.
    virtual TAIHttpResult Post(const std::string& aUrl, const TAIHttpHeaders& aHeaders,
                               const std::string& aBody) = 0;
};

struct TAIHttpOptions {
    std::chrono::milliseconds ConnectTimeout{10000};
    // A long answer from a large model can take minutes; this bounds a stalled one.
    std::chrono::milliseconds TotalTimeout{300000};
    std::size_t MaxResponseBytes = 64U * 1024U * 1024U;  // a larger answer is cut off as an error
};

std::unique_ptr<IAIHttpTransport> MakeCurlTransport(const TAIHttpOptions& aOptions = {});

}  // namespace Orvex
