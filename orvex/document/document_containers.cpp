// Containers: flow elements that frame other items, which move, go and get copied with them. Membership is
// kept on the members (their ContainerID), so that the ordinary property commands undo it and an item's
// JSON form, which the delete command and the clipboard keep, carries it.
//
// [SECTION] Lookup   [SECTION] Grouping   [SECTION] Fitting   [SECTION] Moving and deleting
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "orvex/document/document.h"
#include "orvex/document/editor_tools.h"
#include "orvex/items/container_frame.h"
#include "orvex/items/flow_items.h"

namespace Orvex {

namespace {

constexpr TAlphaColor kFramePen = AlphaColor(0x8A, 0x94, 0xA6);
constexpr TAlphaColor kFrameFill = AlphaColor(0xF4, 0xF6, 0xFA);

using TItemsById = std::unordered_map<std::int32_t, TORXBaseItem*>;

TItemsById ItemsById(const TORXBaseLabel& doc) {
    TItemsById byId;
    byId.reserve(static_cast<std::size_t>(doc.GetItemsCount()));
    for (std::int32_t i = 0; i < doc.GetItemsCount(); ++i) {
        TORXBaseItem* item = doc.GetItem(i);
        byId.emplace(item->InID(), item);
    }
    return byId;
}

// The live container the item belongs to directly, or nullptr.
TORXBaseItem* Parent(const TItemsById& byId, const TORXBaseItem& item) {
    if (item.ContainerID() == 0 || item.ContainerID() == item.InID()) return nullptr;
    const auto it = byId.find(item.ContainerID());
    return it != byId.end() && it->second->IsContainerFrame() ? it->second : nullptr;
}

// The item's containers from the innermost outwards. A file may close a loop of containers; the walk
// stops where it would come back.
std::vector<TORXBaseItem*> Ancestors(const TItemsById& byId, const TORXBaseItem& item) {
    std::vector<TORXBaseItem*> chain;
    for (TORXBaseItem* up = Parent(byId, item); up != nullptr && up != &item; up = Parent(byId, *up)) {
        if (std::find(chain.begin(), chain.end(), up) != chain.end()) break;
        chain.push_back(up);
    }
    return chain;
}

// One undo step for a container operation, which also joins the caller's group or batch when one is open.
// Outside a batch the derived values (links, text lines) are brought up to date at the end; telling the
// observers is left to the next EndUpdate, as for any change made outside a batch.
class TBatch {
  public:
    explicit TBatch(TORXBaseLabel& doc)
        : fDoc(doc), fGroup(doc), fOwn(!doc.HasState(TOrvexState::lsUpdating)) {
        if (fOwn) fDoc.AddState(TOrvexState::lsUpdating);
    }
    ~TBatch() {
        if (!fOwn) return;
        fDoc.RemoveState(TOrvexState::lsUpdating);
        fDoc.CalcPending();
    }
    TBatch(const TBatch&) = delete;
    TBatch& operator=(const TBatch&) = delete;

  private:
    TORXBaseLabel& fDoc;
    TORXBaseLabel::TUndoGroup fGroup;
    bool fOwn;
};

void Shift(TORXBaseItem* item, std::int64_t dx, std::int64_t dy) {
    TQVLPtoA points = item->Points();
    for (auto& p : points) p.BaseMove(dx, dy);
    SetPointsStep(item, points);
}

}  // namespace

// [SECTION] Lookup

bool TORXBaseLabel::IsContainer(std::int32_t aInID) const {
    const auto it = std::find_if(fItems.begin(), fItems.end(),
                                 [aInID](const auto& item) { return item->InID() == aInID; });
    return it != fItems.end() && (*it)->IsContainerFrame();
}

std::int32_t TORXBaseLabel::ContainerOf(std::int32_t aInID) const {
    // Two walks rather than a map: callers ask item by item, and most items are in no container.
    const auto it = std::find_if(fItems.begin(), fItems.end(),
                                 [aInID](const auto& item) { return item->InID() == aInID; });
    if (it == fItems.end()) return 0;
    const std::int32_t container = (*it)->ContainerID();
    return container != 0 && container != aInID && IsContainer(container) ? container : 0;
}

std::vector<std::int32_t> TORXBaseLabel::MembersOf(std::int32_t aContainerInID) const {
    std::vector<std::int32_t> members;
    if (aContainerInID == 0 || !IsContainer(aContainerInID)) return members;
    for (const auto& item : fItems)
        if (item->ContainerID() == aContainerInID && item->InID() != aContainerInID)
            members.push_back(item->InID());
    return members;
}

std::vector<TORXBaseItem*> TORXBaseLabel::WithMembers(const std::vector<TORXBaseItem*>& items) const {
    std::vector<TORXBaseItem*> out;
    std::unordered_set<const TORXBaseItem*> seen;
    for (TORXBaseItem* item : items)
        if (item != nullptr && seen.insert(item).second) out.push_back(item);
    if (std::none_of(out.begin(), out.end(), [](const TORXBaseItem* i) { return i->IsContainerFrame(); }))
        return out;
    std::unordered_map<std::int32_t, std::vector<TORXBaseItem*>> children;
    for (const auto& item : fItems)
        if (item->ContainerID() != 0) children[item->ContainerID()].push_back(item.get());
    for (std::size_t i = 0; i < out.size(); ++i) {
        if (!out[i]->IsContainerFrame()) continue;
        const auto it = children.find(out[i]->InID());
        if (it == children.end()) continue;
        for (TORXBaseItem* member : it->second)
            if (seen.insert(member).second) out.push_back(member);
    }
    return out;
}

std::vector<TORXBaseItem*> TORXBaseLabel::OutermostOf(const std::vector<TORXBaseItem*>& items) const {
    if (std::none_of(items.begin(), items.end(), [](const TORXBaseItem* i) { return i->ContainerID() != 0; }))
        return items;
    const TItemsById byId = ItemsById(*this);
    const std::unordered_set<const TORXBaseItem*> listed(items.begin(), items.end());
    std::vector<TORXBaseItem*> out;
    for (TORXBaseItem* item : items) {
        const auto chain = Ancestors(byId, *item);
        if (std::none_of(chain.begin(), chain.end(),
                         [&](const TORXBaseItem* up) { return listed.contains(up); }))
            out.push_back(item);
    }
    return out;
}

// [SECTION] Grouping

TORXBaseItem* TORXBaseLabel::GroupItems(const std::vector<std::int32_t>& aInIDs, std::string_view aCaption) {
    const TItemsById byId = ItemsById(*this);
    std::vector<TORXBaseItem*> listed;
    for (const std::int32_t id : aInIDs) {
        const auto it = byId.find(id);
        if (it != byId.end() && std::find(listed.begin(), listed.end(), it->second) == listed.end())
            listed.push_back(it->second);
    }
    if (listed.empty()) return nullptr;
    const std::vector<TORXBaseItem*> joining = OutermostOf(listed);

    // The innermost container that holds every joining item becomes the new one's own container.
    std::vector<TORXBaseItem*> common = Ancestors(byId, *joining.front());
    std::reverse(common.begin(), common.end());  // outermost first
    for (const TORXBaseItem* item : joining) {
        std::vector<TORXBaseItem*> chain = Ancestors(byId, *item);
        std::reverse(chain.begin(), chain.end());
        std::size_t same = 0;
        while (same < common.size() && same < chain.size() && common[same] == chain[same]) ++same;
        common.resize(same);
    }
    const std::int32_t parent = common.empty() ? 0 : common.back()->InID();

    const TBatch batch(*this);
    auto* frame = dynamic_cast<TORXBaseFlow*>(CreateItem(TQVLItemType::itFlow));
    if (frame == nullptr) return nullptr;  // a family without flow elements cannot frame anything
    frame->SetLayer(joining.front()->Layer());
    frame->SetContainerFrame(TQVLContainerFrame::cfPlain);
    frame->SetColor(kFramePen);
    frame->SetBackColor(kFrameFill);
    frame->SetVertAlign(TQVLVertAlign::vaTop);
    frame->SetBold(true);
    frame->SetText(std::string(aCaption));
    frame->SetContainerID(parent);
    for (TORXBaseItem* item : joining) item->SetContainerID(frame->InID());

    // Behind its members and behind the links that end at them, but in front of what it is placed in.
    std::vector<TORXBaseItem*> covered = WithMembers(joining);
    const std::vector<TORXBaseItem*> links = Orvex::LinksOf(*this, covered);
    covered.insert(covered.end(), links.begin(), links.end());
    std::int32_t first = ItemIndex(frame);
    for (const TORXBaseItem* item : covered) first = std::min(first, ItemIndex(item));
    fEditor->MoveItemTo(frame, first);
    FitContainer(frame->InID());
    return frame;
}

bool TORXBaseLabel::UngroupItems(std::int32_t aContainerInID) {
    const TItemsById byId = ItemsById(*this);
    const auto it = byId.find(aContainerInID);
    if (it == byId.end() || !it->second->IsContainerFrame()) return false;
    TORXBaseItem* frame = it->second;
    const TORXBaseItem* up = Parent(byId, *frame);
    const std::int32_t parent = up != nullptr ? up->InID() : 0;
    const TBatch batch(*this);
    for (const std::int32_t id : MembersOf(aContainerInID)) byId.at(id)->SetContainerID(parent);
    DeleteItem(frame, true);  // no members left: only the links that end at the frame go with it
    return true;
}

// [SECTION] Fitting

void TORXBaseLabel::FitContainer(std::int32_t aContainerInID) {
    const TItemsById byId = ItemsById(*this);
    const auto it = byId.find(aContainerInID);
    if (it == byId.end()) return;
    auto* frame = dynamic_cast<TORXBaseFlow*>(it->second);
    if (frame == nullptr || !frame->IsContainerFrame()) return;
    const std::vector<std::int32_t> members = MembersOf(aContainerInID);
    if (members.empty()) return;
    const TBatch batch(*this);
    bool any = false;
    TQVLRect area;
    for (const std::int32_t id : members) {
        TORXBaseItem* member = byId.at(id);
        // A loop of containers read from a file must not recurse for ever: a member that contains this
        // frame is not fitted again.
        const auto chain = Ancestors(byId, *frame);
        if (member->IsContainerFrame() && std::find(chain.begin(), chain.end(), member) == chain.end())
            FitContainer(id);
        const TQVLRect b = member->BoundsRect();
        if (!any)
            area = b, any = true;
        else
            area.Left = std::min(area.Left, b.Left), area.Top = std::min(area.Top, b.Top),
            area.Right = std::max(area.Right, b.Right), area.Bottom = std::max(area.Bottom, b.Bottom);
    }
    area.Inflate(kContainerMargin, kContainerMargin);
    area.Top -= ContainerBandHeight(*frame, area.GetWidth());
    frame->SetPointsProp({TQVLPto{area.Left, area.Top}, TQVLPto{area.Right, area.Bottom}}, kPropPoints);
    ChangeState(TOrvexState::lsCalc, frame);
}

// [SECTION] Moving and deleting

void TORXBaseLabel::MoveItems(const std::vector<std::int32_t>& aInIDs, std::int64_t dx, std::int64_t dy) {
    const TItemsById byId = ItemsById(*this);
    std::vector<TORXBaseItem*> items;
    for (const std::int32_t id : aInIDs)
        if (const auto it = byId.find(id); it != byId.end()) items.push_back(it->second);
    items = OutermostOf(items);
    if (items.empty() || (dx == 0 && dy == 0)) return;
    const TBatch batch(*this);
    for (TORXBaseItem* item : items) MoveItemBy(item, dx, dy);
    for (TORXBaseItem* link : Orvex::LinksOf(*this, WithMembers(items)))
        ChangeState(TOrvexState::lsCalc, link);
}

void TORXBaseLabel::MoveItemBy(TORXBaseItem* item, std::int64_t dx, std::int64_t dy) {
    item->CheckBaseBoundsMove(dx, dy, TQVLMoveOpt::moMove);
    if (dx == 0 && dy == 0) return;
    // Members take the container's move as it is: they lie inside its frame, so its limits hold for them.
    for (TORXBaseItem* moved : WithMembers({item})) Shift(moved, dx, dy);
}

void TORXBaseLabel::DeleteContainer(TORXBaseItem* frame, bool record) {
    const TBatch batch(*this);
    std::vector<TORXBaseItem*> doomed = WithMembers({frame});
    for (TORXBaseItem* link : Orvex::LinksOf(*this, doomed))
        if (std::find(doomed.begin(), doomed.end(), link) == doomed.end()) doomed.push_back(link);
    // Links first and the frame last, so that every deleted member's stored form still names its container.
    for (auto it = doomed.rbegin(); it != doomed.rend(); ++it) DeleteOne(*it, record);
}

}  // namespace Orvex
