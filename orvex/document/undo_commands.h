// Undo and redo commands. Each command keeps the state of one property of one item from before a change;
// restoring it goes through the item's recording setters, so the inverse command lands on the other stack
// (the redo stack while undoing) and redo needs no store of its own.
//
// Contracts:
// - Nothing is recorded unless the document's options hold loUndoRedo.
// - Merging: a command whose kind, item and property equal those of the top of the active stack is not
//   recorded, so a run of edits of one property is one undo step that restores the value before the run.
// - Groups: commands recorded between BeginUpdate and EndUpdate share one group id; Undo and Redo take a
//   whole group at once. Outside a batch every command is its own group.
// - A command recorded outside Undo and Redo clears the redo stack, as editors do: redoing after a new
//   edit would replay changes onto a state they were not made from.
// - The delete command keeps the item's JSON form; undoing or redoing it re-creates the item and re-binds
//   every command of the stack it restores to the new object (matched by internal id).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orvex/core/types.h"
#include "orvex/document/base_item.h"

namespace Orvex {

class TORXBaseLabel;

class TORXCmd {
  public:
    TORXCmd(std::int32_t kind, TORXBaseItem* item, std::uint16_t property);
    virtual ~TORXCmd() = default;

    virtual void RestoreState() = 0;
    virtual void Undo();  // RestoreState with the document's undoing mark set
    virtual void Redo();  // RestoreState with the redoing mark set

    // The active stack's top covers this kind, item and property (false when recording is off).
    static bool CheckLastProp(std::int32_t kind, const TORXBaseItem* item, std::uint16_t property);

    std::int32_t Kind() const { return fKind; }
    std::uint16_t Property() const { return fProperty; }
    std::int32_t Group() const { return fGroup; }
    std::int32_t ItemID() const { return fItemID; }
    TORXBaseItem* Item() const { return fItem; }
    void Rebind(TORXBaseItem* item) { fItem = item, fItemID = item->InID(); }
    void SetGroup(std::int32_t group) { fGroup = group; }  // the document joins steps into one

  protected:
    virtual void StoreState() {}
    // Shared recording steps: checks, construction by the caller, push, notification, StoreState.
    static bool CanRecord(std::int32_t kind, TORXBaseItem* item, std::uint16_t property);
    static void Push(std::unique_ptr<TORXCmd> cmd);
    TORXBaseLabel* Document() const { return fDocument; }

    TORXBaseLabel* fDocument;  // not owned
    std::int32_t fKind;
    std::uint16_t fProperty;
    std::int32_t fGroup = 0;
    std::int32_t fItemID;
    TORXBaseItem* fItem;  // not owned; re-bound when the item is re-created
};

inline constexpr std::int32_t kCmdColor = 1;
inline constexpr std::int32_t kCmdCreate = 2;
inline constexpr std::int32_t kCmdDelete = 3;
inline constexpr std::int32_t kCmdBaseValue = 4;
inline constexpr std::int32_t kCmdBool = 5;
inline constexpr std::int32_t kCmdEnumValue = 6;
inline constexpr std::int32_t kCmdPos = 7;
inline constexpr std::int32_t kCmdBasePos = 8;
inline constexpr std::int32_t kCmdElePos = 9;
inline constexpr std::int32_t kCmdTxt = 10;
inline constexpr std::int32_t kCmdFloat = 12;

// One stored value of type T, read and written through the item's property accessors.
template <class T, std::int32_t K>
class TORXValueCmd : public TORXCmd {
  public:
    TORXValueCmd(TORXBaseItem* item, std::uint16_t property) : TORXCmd(K, item, property) {}
    static void AddCommand(TORXBaseItem* item, std::uint16_t property);
    void RestoreState() override;

  protected:
    void StoreState() override;
    T fValue{};
};

using TORXColorCmd = TORXValueCmd<TAlphaColor, kCmdColor>;  // AddCommand also marks the document lsUpdate
using TORXBaseValueCmd = TORXValueCmd<std::int64_t, kCmdBaseValue>;
using TORXBoolCmd = TORXValueCmd<bool, kCmdBool>;
using TORXEnumValueCmd = TORXValueCmd<std::int64_t, kCmdEnumValue>;
using TORXTxtCmd = TORXValueCmd<std::string, kCmdTxt>;
using TORXFloatCmd = TORXValueCmd<double, kCmdFloat>;

// One coordinate or both of a point; widths, heights and radii keep every point, since resizing moves
// several of them.
class TORXPosCmd : public TORXCmd {
  public:
    TORXPosCmd(TORXBaseItem* item, std::int32_t index, TQVLPosType posType);
    static void AddCommand(TORXBaseItem* item, std::int32_t index, TQVLPosType posType);
    void RestoreState() override;

  protected:
    void StoreState() override;
    std::int32_t fIndex;
    TQVLPosType fPosType;
    TQVLPto fPoint;
    TQVLPtoA fPoints;
};

// A point by index; the property tells runs on different points apart.
class TORXBasePosCmd : public TORXCmd {
  public:
    TORXBasePosCmd(TORXBaseItem* item, std::int32_t index, std::uint16_t property);
    static void AddCommand(TORXBaseItem* item, std::int32_t index, std::uint16_t property);
    void RestoreState() override;

  protected:
    void StoreState() override;
    std::int32_t fIndex;
    TQVLPto fPoint;
};

// The item's position: every point, so moves, rotations and point insertions undo as one.
class TORXElePosCmd : public TORXCmd {
  public:
    TORXElePosCmd(TORXBaseItem* item, std::uint16_t property) : TORXCmd(kCmdElePos, item, property) {}
    static void AddCommand(TORXBaseItem* item, std::uint16_t property);
    void RestoreState() override;

  protected:
    void StoreState() override;
    TQVLPtoA fPoints;
};

// Recorded by every new item: undoing it deletes the item (which records a delete command).
class TORXCreateCmd : public TORXCmd {
  public:
    explicit TORXCreateCmd(TORXBaseItem* item) : TORXCmd(kCmdCreate, item, kPropNone) {}
    static void AddCommand(TORXBaseItem* item);
    void RestoreState() override;
};

// Recorded before an item is deleted: keeps the item's JSON text and layer index; restoring re-creates it.
class TORXDeleteCmd : public TORXCmd {
  public:
    explicit TORXDeleteCmd(TORXBaseItem* item);
    static void AddCommand(TORXBaseItem* item);
    void RestoreState() override;

  protected:
    void StoreState() override;
    std::string fJsonText;
    std::int32_t fIndex = -1;  // place in the item list, so the re-created item is painted where it was
};

}  // namespace Orvex
