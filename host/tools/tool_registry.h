// How the tool files add their tools: a name, a description for the model, an argument schema and a body.
// The registry checks the arguments against the schema before the body runs.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/tools/register_tools.h"
#include "orvex/io/json.h"

namespace Orvex::Host {

using TToolBody = std::function<TJSON(TORXBaseLabel& aDoc, const TJSON& aArgs)>;

// What the tools of one server remember between calls, on the main thread only.
struct TToolSession {
    std::optional<std::size_t> BatchUndoStart;  // the undo stack's size when begin_update opened a batch
    std::vector<std::int32_t> LastLoadIDs;      // the items load_diagram created, sorted
};

// An add_ tool as add_items calls it: its argument schema and its body.
struct TToolCreator {
    TJSON Schema;
    TToolBody Body;
};
using TToolCreators = std::map<std::string, TToolCreator, std::less<>>;

class TToolRegistry {
  public:
    TToolRegistry(TORXMCPServer& aServer, const TToolOptions& aOptions)
        : fServer(aServer), fOptions(aOptions), fSession(std::make_shared<TToolSession>()) {}

    // aOutputSchema describes the tool's structuredContent; a null value leaves it to the server, which
    // states the schemas of the tools it knows by name (get_item, list_items, render_preview...).
    void Add(std::string aName, std::string aDescription, TJSON aSchema, TToolBody aBody,
             TJSON aOutputSchema = nullptr);
    const TToolOptions& Options() const { return fOptions; }
    const std::shared_ptr<TToolSession>& Session() const { return fSession; }
    // The add_ tools registered so far, by kind ("flow" for add_flow).
    const std::shared_ptr<TToolCreators>& Creators() const { return fCreators; }

  private:
    TORXMCPServer& fServer;
    TToolOptions fOptions;
    std::shared_ptr<TToolSession> fSession;
    std::shared_ptr<TToolCreators> fCreators = std::make_shared<TToolCreators>();
};

// One per file, in catalogue order.
void RegisterInfoTools(TToolRegistry& aRegistry);
void RegisterItemTools(TToolRegistry& aRegistry);  // add_flow, add_link, add_shape
// The kinds add_shape makes ("line", "rectangle", "text"...), which add_items takes as kinds of their own.
const std::vector<std::string_view>& ShapeKindNames();
void RegisterItemEditTools(TToolRegistry& aRegistry);  // modify_item, delete_item
void RegisterLayerTools(TToolRegistry& aRegistry);
void RegisterFileTools(TToolRegistry& aRegistry);
void RegisterEditTools(TToolRegistry& aRegistry);     // clear, batching, undo and redo
void RegisterPreviewTools(TToolRegistry& aRegistry);  // render_preview
void RegisterDiagramTools(TToolRegistry& aRegistry);  // load_diagram
void RegisterBatchTools(TToolRegistry& aRegistry);    // add_items, align, distribute, duplicate, groups

}  // namespace Orvex::Host
