// A server with the standard tools bound to a headless drawing, called through the JSON-RPC layer.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "host/tools/register_tools.h"
#include "orvex/agent/mcp_server.h"
#include "orvex/agent/mcp_tools.h"
#include "orvex/document/headless.h"
#include "orvex/io/json.h"

namespace Orvex::Testing {

class ToolsTest : public ::testing::Test {
  protected:
    explicit ToolsTest(Host::TToolOptions aOptions = {}) {
        fServer.SetLabel(&fDoc);
        fServer.SetDocumentHooks(Host::MakeDocumentHooks());
        Host::RegisterStandardTools(fServer, aOptions);
    }

    // The tool result of a call; fails the test when the JSON-RPC layer itself refuses the call.
    TJSON Call(const std::string& aName, TJSON aArguments = TJSON::object()) {
        TJSON request = {{"jsonrpc", "2.0"},
                         {"id", ++fNextId},
                         {"method", "tools/call"},
                         {"params", {{"name", aName}, {"arguments", std::move(aArguments)}}}};
        const auto response = fServer.ProcessJsonRpc(request, false);
        EXPECT_TRUE(response.has_value());
        if (!response || !response->contains("result")) {
            ADD_FAILURE() << "no result: " << (response ? response->dump() : "none");
            return TJSON::object();
        }
        return (*response)["result"];
    }

    // The structured content of a successful call, checked against the tool's declared output schema as
    // an MCP client checks it: required members present, listed members of the declared type.
    TJSON Ok(const std::string& aName, TJSON aArguments = TJSON::object()) {
        TJSON result = Call(aName, std::move(aArguments));
        EXPECT_FALSE(result.value("isError", false)) << aName << ": " << result.dump();
        const TJSON structured = result.value("structuredContent", TJSON::object());
        for (const auto& tool : fServer.Tools()) {
            if (tool.Name != aName) continue;
            // The host's own schema, or the one the server states for the tools it knows by name.
            const TJSON schema =
                tool.OutputSchema.is_null() ? BuildToolOutputSchema(aName) : tool.OutputSchema;
            EXPECT_EQ(result.contains("structuredContent"), schema.is_object())
                << aName << ": structured content and an output schema go together";
            if (schema.is_object()) ExpectMatches(aName, schema, structured);
        }
        return structured;
    }

    static bool OfType(const TJSON& aValue, const TJSON& aType) {
        if (aType.is_array()) {
            for (const auto& type : aType)
                if (OfType(aValue, type)) return true;
            return false;
        }
        const std::string type = aType.get<std::string>();
        if (type == "integer") return aValue.is_number_integer();
        if (type == "number") return aValue.is_number();
        if (type == "string") return aValue.is_string();
        if (type == "boolean") return aValue.is_boolean();
        if (type == "array") return aValue.is_array();
        if (type == "null") return aValue.is_null();
        return aValue.is_object();
    }

    static void ExpectMatches(const std::string& aName, const TJSON& aSchema, const TJSON& aValue) {
        for (const auto& key : aSchema.value("required", TJSON::array())) {
            EXPECT_TRUE(aValue.contains(key.get<std::string>())) << aName << " lacks " << key;
        }
        const TJSON properties = aSchema.value("properties", TJSON::object());
        for (const auto& [key, property] : properties.items()) {
            if (!aValue.contains(key) || !property.contains("type")) continue;
            EXPECT_TRUE(OfType(aValue[key], property["type"])) << aName << "." << key << " = " << aValue[key];
        }
    }

    // The text of a refused call, "Error: " taken off.
    std::string Refused(const std::string& aName, TJSON aArguments) {
        const TJSON result = Call(aName, std::move(aArguments));
        EXPECT_TRUE(result.value("isError", false)) << aName << " was accepted: " << result.dump();
        std::string text = result["content"][0].value("text", "");
        return text.rfind("Error: ", 0) == 0 ? text.substr(7) : text;
    }

    static std::string Text(const TJSON& aResult) { return aResult["content"][0].value("text", ""); }

    TORXHeadlessLabel fDoc;
    TORXMCPServer fServer;
    int fNextId = 0;
};

}  // namespace Orvex::Testing
