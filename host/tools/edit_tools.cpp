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

// Everything recorded since begin_update becomes one undo step, however many calls the batch took.
void CloseBatch(TORXBaseLabel& aDoc, TToolSession& aSession) {
    if (aSession.BatchUndoStart) aDoc.JoinUndoSince(*aSession.BatchUndoStart);
    aSession.BatchUndoStart.reset();
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
    const std::shared_ptr<TToolSession> session = aRegistry.Session();
    aRegistry.Add(
        "clear_drawing",
        "Remove every item from the drawing. Layers, units and page stay unless reset is true, which also "
        "restores one default layer and the default page and units (the editor mode stays). Clearing "
        "cannot be undone. Only call it when the user asked for a cleared or new drawing.",
        ObjectSchema({{"reset", BoolProp("Also reset layers, page and units. Default false.")}}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            *session = TToolSession{};
            return ClearDrawing(aDoc, aArgs);
        },
        OutputSchema({{"removed_items", "integer"}, {"layers_count", "integer"}}));
    const TJSON updating = OutputSchema({{"updating", "boolean"}, {"batch_steps", "integer"}});
    aRegistry.Add(
        "begin_update",
        "Open a batch: every change until end_update undoes as one step, and repaints wait. Always call "
        "end_update after the batch, also after an error; undo closes an open batch first.",
        ObjectSchema({}),
        [session](TORXBaseLabel& aDoc, const TJSON&) {
            // A second begin_update extends the batch already open.
            if (!session->BatchUndoStart) session->BatchUndoStart = aDoc.UndoCount();
            aDoc.BeginUpdate(true);
            return StructuredResult({{"updating", true}, {"batch_steps", 0}});
        },
        updating);
    aRegistry.Add(
        "end_update",
        "Close the batch begun by begin_update (its changes become one undo step) and repaint. Harmless "
        "without one.",
        ObjectSchema({}),
        [session](TORXBaseLabel& aDoc, const TJSON&) {
            const std::size_t start = session->BatchUndoStart.value_or(aDoc.UndoCount());
            const std::int64_t recorded =
                aDoc.UndoCount() > start ? static_cast<std::int64_t>(aDoc.UndoCount() - start) : 0;
            CloseBatch(aDoc, *session);
            aDoc.EndUpdate();
            aDoc.Refresh();
            return StructuredResult({{"updating", false}, {"batch_steps", recorded > 0 ? 1 : 0}});
        },
        updating);
    const TJSON history =
        OutputSchema({{"can_undo", "boolean"}, {"can_redo", "boolean"}, {"items_count", "integer"}});
    aRegistry.Add(
        "undo",
        "Undo the last changes, steps at a time. One tool call is one step; a begin_update ... end_update "
        "batch is one step. Returns how many steps were undone and whether more undo or redo is possible.",
        ObjectSchema({{"steps", IntegerProp("Steps to undo. Default 1.", 1, 1000)}}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            CloseBatch(aDoc, *session);
            return Steps(aDoc, aArgs, true);
        },
        WithOutputProperties(history, {{"undone", "integer"}}));
    aRegistry.Add(
        "redo", "Redo steps that undo took back. Returns how many steps were redone.",
        ObjectSchema({{"steps", IntegerProp("Steps to redo. Default 1.", 1, 1000)}}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            CloseBatch(aDoc, *session);
            return Steps(aDoc, aArgs, false);
        },
        WithOutputProperties(history, {{"redone", "integer"}}));
}

}  // namespace Orvex::Host
