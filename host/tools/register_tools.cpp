#include "host/tools/register_tools.h"

#include <mutex>
#include <utility>

#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

namespace {

// Some model APIs fill every optional parameter, with null for the ones left out: those count as absent.
bool HasNullArgument(const TJSON& aArguments) {
    if (!aArguments.is_object()) return false;
    for (const auto& [key, value] : aArguments.items())
        if (value.is_null()) return true;
    return false;
}

TJSON WithoutNulls(const TJSON& aArguments) {
    TJSON arguments = TJSON::object();
    for (const auto& [key, value] : aArguments.items())
        if (!value.is_null()) arguments[key] = value;
    return arguments;
}

}  // namespace

void TToolRegistry::Add(std::string aName, std::string aDescription, TJSON aSchema, TToolBody aBody,
                        TJSON aOutputSchema) {
    TJSON schema = aSchema;
    // add_items creates through the others and holds their table: kept in it, it would hold itself.
    if (aName.starts_with("add_") && aName != "add_items") (*fCreators)[aName.substr(4)] = {aSchema, aBody};
    fServer.RegisterTool(
        std::move(aName), std::move(aDescription), std::move(aSchema),
        [schema = std::move(schema), body = std::move(aBody)](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            // Everything is checked before the body changes anything, so a refused call leaves
            // the drawing as it was.
            try {
                // Copied only when a null must go: a call may carry a long list of points.
                if (HasNullArgument(aArgs)) {
                    const TJSON arguments = WithoutNulls(aArgs);
                    ValidateArguments(schema, arguments);
                    return body(aDoc, arguments);
                }
                ValidateArguments(schema, aArgs);
                return body(aDoc, aArgs);
            } catch (const EToolArgument& e) {
                return ErrorResult(e.what());
            }
        },
        std::move(aOutputSchema));
}

void RegisterStandardTools(TORXMCPServer& aServer, const TToolOptions& aOptions) {
    TToolRegistry registry(aServer, aOptions);
    RegisterInfoTools(registry);
    RegisterItemTools(registry);
    RegisterLayerTools(registry);
    RegisterItemEditTools(registry);
    RegisterBatchTools(registry);
    RegisterEditTools(registry);
    RegisterFileTools(registry);
    RegisterDiagramTools(registry);
    RegisterPreviewTools(registry);
}

TMCPToolsRegistration StandardToolsRegistration(TToolOptions aOptions) {
    return
        [options = std::move(aOptions)](TORXMCPServer& aServer) { RegisterStandardTools(aServer, options); };
}

namespace {

std::mutex gOptionsMutex;
TToolOptions gOptions;

void RegisterWithInstalledOptions(TORXMCPServer& aServer) {
    TToolOptions options;
    {
        std::lock_guard lock(gOptionsMutex);
        options = gOptions;
    }
    RegisterStandardTools(aServer, options);
}

}  // namespace

void InstallStandardTools(const TToolOptions& aOptions) {
    {
        std::lock_guard lock(gOptionsMutex);
        gOptions = aOptions;
    }
    MCPSetDefaultToolsRegistration(&RegisterWithInstalledOptions);
}

TMCPDocumentHooks MakeDocumentHooks() {
    return {[](TORXBaseLabel& aDoc) { aDoc.EndUpdate(); }, [](TORXBaseLabel& aDoc) { aDoc.Refresh(); }};
}

}  // namespace Orvex::Host
