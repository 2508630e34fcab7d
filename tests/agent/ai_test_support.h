// Shared pieces of the AI client tests: a scripted transport that records what was posted.
#pragma once

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "orvex/agent/ai_client.h"
#include "orvex/agent/ai_transport.h"
#include "orvex/io/json.h"

namespace Orvex::Testing {

struct TPosted {
    std::string Url;
    TAIHttpHeaders Headers;
    std::string Body;
};

// Answers from a script, one per request; the last answer repeats. A failure with the message "throw" makes
// the transport throw instead, as a transport that breaks its contract would.
class TScriptedTransport final : public IAIHttpTransport {
  public:
    TAIHttpResult Post(const std::string& aUrl, const TAIHttpHeaders& aHeaders,
                       const std::string& aBody) override {
        Posted.push_back({aUrl, aHeaders, aBody});
        if (Answers.empty()) throw std::logic_error("no answer scripted");
        const TAIHttpResult& answer = Answers[std::min(Posted.size(), Answers.size()) - 1];
        if (answer.Message == "throw") throw std::runtime_error("socket exploded");
        return answer;
    }

    std::vector<TAIHttpResult> Answers;
    std::vector<TPosted> Posted;
};

inline TAIHttpResult Answer(std::int32_t aStatus, std::string aBody) {
    return TAIHttpResult::Success({aStatus, std::move(aBody)});
}

inline TAIHttpResult Ok(const TJSON& aBody) {
    return Answer(200, aBody.dump());
}

inline TAIHttpResult NoAnswer(std::string aWhy) {
    return TAIHttpResult::Failure(QVLErr::kNoAnswer, std::move(aWhy));
}

// Installs a scripted transport on aClient and returns it (owned by the client).
inline TScriptedTransport& Script(TMCPAIClient& aClient, std::vector<TAIHttpResult> aAnswers) {
    auto transport = std::make_unique<TScriptedTransport>();
    transport->Answers = std::move(aAnswers);
    TScriptedTransport& raw = *transport;
    aClient.SetTransport(std::move(transport));
    return raw;
}

}  // namespace Orvex::Testing
