// The headless family: a document and items that paint nothing, for the command line, servers without a
// screen and tests. Until the concrete item kinds take their place, every known kind is a generic point
// or box item that keeps the keys it does not understand and writes them back unchanged, so a drawing
// passes through without loss.
#pragma once

#include <string>

#include "orvex/document/document.h"
#include "orvex/document/point_items.h"

namespace Orvex {

class TORXHeadlessPoint final : public TORXBasePoint {
  public:
    TORXHeadlessPoint(TORXBaseLabel* owner, TQVLItemType type) : TORXBasePoint(owner, type, false) {}
    void Draw(TORXBaseDraw& surface) override { (void)surface; }
    void Print(TORXBaseDraw& surface) override { (void)surface; }
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;

  private:
    std::string fKindKeys = "{}";  // the kind's own keys as read, compact JSON text
};

class TORXHeadlessBox final : public TORX2DItem {
  public:
    TORXHeadlessBox(TORXBaseLabel* owner, TQVLItemType type) : TORX2DItem(owner, type, false) {}
    void Draw(TORXBaseDraw& surface) override { (void)surface; }
    void Print(TORXBaseDraw& surface) override { (void)surface; }
    TJSON WriteJson() const override;
    void ReadJson(std::int32_t version, const TJSON& obj) override;
    void UpdateBounds() override;  // texts too: without text metrics the box is their extent

  private:
    std::string fKindKeys = "{}";
};

bool IsBoxKind(TQVLItemType type);  // kinds spanned by two corners

// A concrete item of any kind that paints nothing: THeadlessItem<TORXBaseLine> and so on. The factory
// below creates these for every kind the library implements.
template <class TKind>
class THeadlessItem final : public TKind {
  public:
    using TKind::TKind;
    void Draw(TORXBaseDraw& surface) override { (void)surface; }
    void Print(TORXBaseDraw& surface) override { (void)surface; }
};

class TORXHeadlessLabel : public TORXBaseLabel {
  public:
    TORXHeadlessLabel() = default;
    std::unique_ptr<TORXBaseItem> MakeItem(TQVLItemType type) override;  // nullptr outside the known kinds
    void AssignSymbolAndFlowLinks() override;  // links find their flow elements by id
};

}  // namespace Orvex
