// Tools over the whole drawing's history and batching: clear_drawing, begin_update, end_update, undo, redo.
#include "host/tools/tool_args.h"
#include "host/tools/tool_registry.h"
#include "host/tools/tool_schema.h"
#include "orvex/document/document.h"

namespace Orvex::Host {

namespace {

TJSON HistoryState(const TORXBaseLabel& aDoc, std::string_view aKey, std::int64_t aSteps) {
    return {{aKey, aSteps},
            {"can_undo", !aDoc.IsUndoEmpty()},
            {"can_redo", !aDoc.IsRedoEmpty()},
            {"items_count", aDoc.GetItemsCount()}};
}

TJSON ClearDrawing(TORXBaseLabel& aDoc, const TJSON& aArgs) {
    const std::int32_t removed = aDoc.GetItemsCount();
    if (aArgs.value("reset", false)) {
        const TQVLEditorMode mode = aDoc.EditorMode();
        aDoc.New();
        aDoc.SetEditorMode(mode);
    } else {
        aDoc.Clear(TQVLClears{TQVLClear::cleItems, TQVLClear::cleSelection, TQVLClear::cleUndoRedo}, true);
    }
    aDoc.ChangeState(TOrvexState::lsUpdate);
    return StructuredResult({{"removed_items", removed}, {"layers_count", aDoc.GetLayersCount()}});
}

TJSON Steps(TORXBaseLabel& aDoc, const TJSON& aArgs, bool aUndo) {
    const std::int64_t wanted = aArgs.value("steps", std::int64_t{1});
    std::int64_t done = 0;
    while (done < wanted && !(aUndo ? aDoc.IsUndoEmpty() : aDoc.IsRedoEmpty())) {
        if (aUndo)
            aDoc.Undo();
        else
            aDoc.Redo();
        ++done;
    }
    aDoc.EndUpdate();
    aDoc.Refresh();
    return StructuredResult(HistoryState(aDoc, aUndo ? "undone" : "redone", done));
}

}  // namespace

void RegisterEditTools(TToolRegistry& aRegistry) {
    aRegistry.Add(
        "clear_drawing",
        "Remove every item from the drawing. Layers, units and page stay unless reset is true, which also "
        "restores one default layer and the default page and units (the editor mode stays). Clearing "
        "cannot be undone. Only call it when the user asked for a cleared or new drawing.",
        ObjectSchema({{"reset", BoolProp("Also reset layers, page and units. Default false.")}}),
        ClearDrawing);
    aRegistry.Add(
        "begin_update",
        "Mark the start of a batch of changes (many add_ calls): repaints wait while it is open. The "
        "server closes it after every tool that changes the drawing, so each change still undoes on its "
        "own. Always call end_update after the batch, also after an error.",
        ObjectSchema({}), [](TORXBaseLabel& aDoc, const TJSON&) {
            aDoc.BeginUpdate(true);
            return StructuredResult({{"updating", true}});
        });
    aRegistry.Add("end_update", "Close the batch begun by begin_update and repaint. Harmless without one.",
                  ObjectSchema({}), [](TORXBaseLabel& aDoc, const TJSON&) {
                      aDoc.EndUpdate();
                      aDoc.Refresh();
                      return StructuredResult({{"updating", false}});
                  });
    aRegistry.Add(
        "undo",
        "Undo the last changes to items, steps at a time (a batch counts as one step). Returns how many "
        "steps were undone and whether more undo or redo is possible.",
        ObjectSchema({{"steps", IntegerProp("Steps to undo. Default 1.", 1, 1000)}}),
        [](TORXBaseLabel& aDoc, const TJSON& aArgs) { return Steps(aDoc, aArgs, true); });
    aRegistry.Add("redo", "Redo steps that undo took back. Returns how many steps were redone.",
                  ObjectSchema({{"steps", IntegerProp("Steps to redo. Default 1.", 1, 1000)}}),
                  [](TORXBaseLabel& aDoc, const TJSON& aArgs) { return Steps(aDoc, aArgs, false); });
}

}  // namespace Orvex::Host
