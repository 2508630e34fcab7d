// One person's editor page on a document: turns the page's requests (pointer, wheel-free keyboard and
// typed text, tool choice, commands, property, layer, page and file actions) into calls of the document's
// own editor and operations, and renders what the page shows into a frame store. Everything here runs on
// the document's thread (the host's main thread); the HTTP side only hands requests over and reads frames.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>

#include "host/editor/edit_frame_store.h"
#include "host/editor/edit_overlay.h"
#include "orvex/document/document_types.h"
#include "orvex/io/json.h"

namespace Orvex {
class TORXBaseLabel;
}

namespace Orvex::Host {

// Runs one of the host's standard MCP tools by name on the document and returns its MCP result
// ({"content", "structuredContent", "isError"}): file actions go through the same code an agent uses.
using TToolCaller = std::function<TJSON(const std::string& aTool, const TJSON& aArgs)>;

struct TEditOptions {
    std::optional<std::filesystem::path> FilesRoot;  // file actions read and write only inside it
    std::string FileName;                            // the drawing's path inside the root, for Save
};

class TEditSession {
  public:
    TEditSession(TORXBaseLabel& aDocument, TToolCaller aTools, TEditOptions aOptions);

    // One request of the page, {"op": ..., ...}; the answer is {"ok": true, ...}. Throws
    // std::invalid_argument with a message for the person when the request cannot be done.
    TJSON Handle(const TJSON& aRequest);

    // Renders the drawing, the marks over it and the panels' state into the store (only what changed wakes
    // the pages). The host calls it after every task it runs on the document, agents' tools included.
    void Publish();

    TEditFrameStore& Store() { return fStore; }
    // The toolbar's tools, flow shapes, link courses, units and modes, for the page to build its controls.
    static TJSON Catalog();

  private:
    TJSON Pointer(const TJSON& aRequest);
    TJSON Key(const TJSON& aRequest);
    TJSON Tool(const TJSON& aRequest);
    TJSON Command(const std::string& aName);
    TJSON Settings(const TJSON& aRequest);
    TJSON Layer(const TJSON& aRequest);
    TJSON Page(const TJSON& aRequest);
    TJSON File(const TJSON& aRequest);

    void SetView(double aPixelsPerUnit);
    // Device pixels of the editor's draw context for a point in the SVG's unit.
    std::pair<float, float> ToDevice(double aX, double aY) const;
    void EditNewText(std::int32_t aCountBefore);  // a text tool made a text: type over its placeholder
    void BeginTextEditAt(float aX, float aY);
    void AfterEvent();
    void Settle();  // ends an edit or gesture in progress before an action that replaces the content
    void UndoPersonStep();
    TJSON CallTool(const std::string& aTool, const TJSON& aArgs);
    TJSON State() const;

    TORXBaseLabel& fDoc;
    TToolCaller fTools;
    TEditOptions fOptions;
    TEditFrameStore fStore;
    TOverlayView fView;
    double fDeviceScale = 1.0;  // device pixels per base unit
    bool fSnapOn = true;
    std::optional<TQVLEdAction> fReturnTool;  // the tool to go back to once a text edit ends
    std::string fMessage;                     // the last action's outcome, for the status line
    // The undo steps this page's person made (group ids), so that their undo takes back their own last
    // step even when an agent has worked since.
    std::set<std::int32_t> fPersonSteps;
};

}  // namespace Orvex::Host
