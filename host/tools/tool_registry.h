// How the tool files add their tools: a name, a description for the model, an argument schema and a body.
// The registry checks the arguments against the schema before the body runs.
#pragma once

#include <functional>
#include <string>

#include "host/tools/register_tools.h"
#include "orvex/io/json.h"

namespace Orvex::Host {

using TToolBody = std::function<TJSON(TORXBaseLabel& aDoc, const TJSON& aArgs)>;

class TToolRegistry {
  public:
    TToolRegistry(TORXMCPServer& aServer, const TToolOptions& aOptions)
        : fServer(aServer), fOptions(aOptions) {}

    void Add(std::string aName, std::string aDescription, TJSON aSchema, TToolBody aBody);
    const TToolOptions& Options() const { return fOptions; }

  private:
    TORXMCPServer& fServer;
    TToolOptions fOptions;
};

// One per file, in catalogue order.
void RegisterInfoTools(TToolRegistry& aRegistry);
void RegisterItemTools(TToolRegistry& aRegistry);      // the add_ tools
void RegisterItemEditTools(TToolRegistry& aRegistry);  // modify_item, delete_item
void RegisterLayerTools(TToolRegistry& aRegistry);
void RegisterFileTools(TToolRegistry& aRegistry);
void RegisterEditTools(TToolRegistry& aRegistry);     // clear, batching, undo and redo
void RegisterPreviewTools(TToolRegistry& aRegistry);  // render_preview

}  // namespace Orvex::Host
