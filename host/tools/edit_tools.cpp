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
        "Remove all items, not undoable; reset also restores the default layer, page and units. "
        "Only on the user's request.",
        ObjectSchema({{"reset", BoolProp("")}}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            *session = TToolSession{};
            return ClearDrawing(aDoc, aArgs);
        },
        ObjectResultSchema());
    aRegistry.Add(
        "begin_update",
        "Open a batch: changes until end_update undo as one step and repaint once. Always call "
        "end_update, also after an error.",
        ObjectSchema({}),
        [session](TORXBaseLabel& aDoc, const TJSON&) {
            // A second begin_update extends the batch already open.
            if (!session->BatchUndoStart) session->BatchUndoStart = aDoc.UndoCount();
            aDoc.BeginUpdate(true);
            return StructuredResult({{"updating", true}, {"batch_steps", 0}});
        },
        ObjectResultSchema());
    aRegistry.Add(
        "end_update", "Close begin_update's batch (one undo step) and repaint.", ObjectSchema({}),
        [session](TORXBaseLabel& aDoc, const TJSON&) {
            const std::size_t start = session->BatchUndoStart.value_or(aDoc.UndoCount());
            const std::int64_t recorded =
                aDoc.UndoCount() > start ? static_cast<std::int64_t>(aDoc.UndoCount() - start) : 0;
            CloseBatch(aDoc, *session);
            aDoc.EndUpdate();
            aDoc.Refresh();
            return StructuredResult({{"updating", false}, {"batch_steps", recorded > 0 ? 1 : 0}});
        },
        ObjectResultSchema());
    aRegistry.Add(
        "undo", "Undo steps (default 1); a tool call or a begin_update ... end_update batch is one step.",
        ObjectSchema({{"steps", IntegerProp("", 1, 1000)}}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            CloseBatch(aDoc, *session);
            return Steps(aDoc, aArgs, true);
        },
        ObjectResultSchema());
    aRegistry.Add(
        "redo", "Redo steps (default 1) that undo took back.",
        ObjectSchema({{"steps", IntegerProp("", 1, 1000)}}),
        [session](TORXBaseLabel& aDoc, const TJSON& aArgs) {
            CloseBatch(aDoc, *session);
            return Steps(aDoc, aArgs, false);
        },
        ObjectResultSchema());
}

}  // namespace Orvex::Host
