// A document driven like a host drives it: pointer events in device pixels of a 254 dpi, 1:1 edit
// surface, so that one millimetre is exactly ten pixels and positions read back as round numbers.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orvex/document/editor_tools.h"
#include "orvex/document/headless.h"
#include "orvex/document/point_items.h"
#include "orvex/io/json.h"

namespace Orvex::Testing {

using TPts = std::vector<std::pair<double, double>>;  // points in millimetres

class TEditorTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ed.fDraw.fDpix = ed.fDraw.fDpiy = 254;
        ed.fSnap = {};  // each test turns on the snaps it is about
        ed.fRefLines = false;
        ed.fAlignLines = false;
    }

    static float Px(double mm) { return static_cast<float>(mm * 10.0); }
    static std::int64_t B(double mm) { return static_cast<std::int64_t>(mm * 1000.0); }

    bool Down(double x, double y, TQVLShiftState s = {}) { return doc.PickEditor(Px(x), Px(y), s); }
    bool MoveTo(double x, double y, TQVLShiftState s = {}) { return doc.MoveEditor(Px(x), Px(y), s); }
    bool Up(double x, double y, TQVLShiftState s = {}) { return doc.UpEditor(Px(x), Px(y), s); }
    void Click(double x, double y, TQVLShiftState s = {}) {
        Down(x, y, s);
        Up(x, y, s);
    }
    void Drag(double x1, double y1, double x2, double y2, TQVLShiftState s = {}) {
        Down(x1, y1, s);
        MoveTo((x1 + x2) / 2, (y1 + y2) / 2, s);
        MoveTo(x2, y2, s);
        Up(x2, y2, s);
    }
    bool Key(TQVLEdKey key, TQVLShiftState s = {}) { return doc.KeyEditor(key, s); }

    std::string Json() const { return doc.GetJsonString(); }
    TJSON Items() const { return doc.GetJson()["Items"]; }
    // The item's points in millimetres, as pairs.
    static std::vector<std::pair<double, double>> Points(const TJSON& item) {
        std::vector<std::pair<double, double>> out;
        for (const auto& p : item["Points"]) out.emplace_back(p["X"].get<double>(), p["Y"].get<double>());
        return out;
    }

    TORXBaseItem* Add(TQVLItemType type, TPts points) {
        TORXBaseItem* item = doc.CreateItem(type);
        TQVLPtoA pts;
        for (const auto& [x, y] : points) pts.push_back(TQVLPto{B(x), B(y)});
        item->SetPointsProp(pts, kPropPoints);
        doc.ChangeState(TOrvexState::lsCalc, item);
        doc.EndUpdate();
        return item;
    }
    TORXBaseItem* Line(double x1, double y1, double x2, double y2) {
        return Add(TQVLItemType::itLine, {{x1, y1}, {x2, y2}});
    }
    // Filled, so that a click inside takes it (an empty box is picked on its outline only).
    TORXBaseItem* Rect(double x1, double y1, double x2, double y2,
                       TQVLItemType type = TQVLItemType::itRectangle) {
        TORXBaseItem* item = Add(type, {{x1, y1}, {x2, y2}});
        if (auto* box = dynamic_cast<TORX2DItem*>(item)) box->SetFilled(true);
        doc.EndUpdate();
        return item;
    }

    TORXHeadlessLabel doc;
    TORXEditor& ed = doc.Editor();
};

}  // namespace Orvex::Testing
