// Sequence placement: lifelines in a row, events in order, texts clear of the lifelines.
#include <gtest/gtest.h>

#include "host/layout/sequence_layout.h"
#include "tests/host/layout_test_util.h"

namespace Orvex {
namespace {

using LayoutTest::ExpectNoOverlap;
using LayoutTest::ParseExample;
using LayoutTest::TestMeasure;

void ExpectSequenceShape(const TORXDiagramModel& model, const TSequenceLayout& layout) {
    ASSERT_EQ(layout.Participants.size(), model.Participants().size());
    ASSERT_EQ(layout.Lifelines.size(), model.Participants().size());
    ExpectNoOverlap(layout.Participants);
    for (std::size_t i = 1; i < layout.Participants.size(); ++i)
        EXPECT_GT(layout.Participants[i].X, layout.Participants[i - 1].Right());
    double lastY = 0;
    int lastEvent = -1;
    for (const TSeqMessageLayout& m : layout.Messages) {
        const TQVLSeqEvent& ev = model.SeqEvents()[static_cast<std::size_t>(m.Event)];
        EXPECT_GT(m.Event, lastEvent);
        lastEvent = m.Event;
        ASSERT_GE(m.Points.size(), 2u);
        const auto& from = layout.Lifelines[static_cast<std::size_t>(m.From)];
        const auto& to = layout.Lifelines[static_cast<std::size_t>(m.To)];
        EXPECT_EQ(model.Participants()[static_cast<std::size_t>(m.From)].ID, ev.FromActor);
        EXPECT_EQ(model.Participants()[static_cast<std::size_t>(m.To)].ID, ev.ToActor);
        EXPECT_DOUBLE_EQ(m.Points.front().X, from.From.X);
        EXPECT_DOUBLE_EQ(m.Points.back().X, to.From.X);
        EXPECT_GT(m.Points.front().Y, lastY) << ev.Text;
        EXPECT_GT(m.Points.front().Y, from.From.Y);
        EXPECT_LT(m.Points.back().Y, to.To.Y);
        lastY = m.Points.back().Y;
        if (m.From != m.To) {
            // The text stands between the two lifelines and above its arrow.
            EXPECT_GE(m.TextBox.X, std::min(from.From.X, to.From.X));
            EXPECT_LE(m.TextBox.Right(), std::max(from.From.X, to.From.X));
            EXPECT_LE(m.TextBox.Bottom(), m.Points.back().Y);
        }
    }
}

TEST(LayoutSequence, ExamplesRunMessagesBetweenTheRightLifelinesInOrder) {
    for (const char* name : {"mermaid/sequence.mmd", "plantuml/sequence.puml"}) {
        SCOPED_TRACE(name);
        const auto model = ParseExample(name);
        ASSERT_EQ(model->Kind(), TQVLDiagramKind::dkSequence);
        const TSequenceLayout layout = LayoutSequence(*model, TestMeasure());
        ExpectSequenceShape(*model, layout);
        std::size_t messages = 0;
        std::size_t notes = 0;
        for (const TQVLSeqEvent& ev : model->SeqEvents())
            (ev.EventType == TQVLSeqEventType::seMessage ? messages : notes) += 1;
        EXPECT_EQ(layout.Messages.size(), messages);
        EXPECT_EQ(layout.Notes.size(), notes);
    }
}

TEST(LayoutSequence, NotesStandBesideOrOverTheirLifelinesAndSelfMessagesLoop) {
    TORXDiagramModel model;
    model.AddParticipant("A", "Alice");
    model.AddParticipant("B", "Bob");
    model.AddParticipant("C", "Carol");
    auto message = [&](const char* from, const char* to, const char* text) {
        TQVLSeqEvent ev;
        ev.FromActor = from;
        ev.ToActor = to;
        ev.Text = text;
        model.AddSeqEvent(ev);
    };
    auto note = [&](const char* position, const char* from, const char* to, const char* text) {
        TQVLSeqEvent ev;
        ev.EventType = TQVLSeqEventType::seNote;
        ev.NotePosition = position;
        ev.FromActor = from;
        ev.ToActor = to;
        ev.Text = text;
        model.AddSeqEvent(ev);
    };
    message("A", "C", "a rather long message that spans the middle lifeline");
    note("left of", "A", "", "a note on the far left");
    note("right of", "B", "", "beside Bob");
    note("over", "A", "C", "x");
    message("B", "B", "think");
    message("C", "Z", "to nobody");  // an unknown actor has no lifeline
    const TSequenceLayout layout = LayoutSequence(model, TestMeasure());
    ExpectSequenceShape(model, layout);
    ASSERT_EQ(layout.Messages.size(), 2u);
    ASSERT_EQ(layout.Notes.size(), 3u);
    const double a = layout.Lifelines[0].From.X;
    const double b = layout.Lifelines[1].From.X;
    const double c = layout.Lifelines[2].From.X;
    EXPECT_LT(layout.Notes[0].Box.Right(), a);
    EXPECT_GE(layout.Notes[0].Box.X, kLayoutMargin - 1e-6);
    EXPECT_GT(layout.Notes[1].Box.X, b);
    EXPECT_LT(layout.Notes[1].Box.Right(), c);
    EXPECT_LT(layout.Notes[2].Box.X, a);
    EXPECT_GT(layout.Notes[2].Box.Right(), c);
    const TSeqMessageLayout& self = layout.Messages[1];
    ASSERT_EQ(self.Points.size(), 4u);
    EXPECT_GT(self.Points[1].X, b);
    EXPECT_DOUBLE_EQ(self.Points.back().X, b);
    EXPECT_GT(self.Points.back().Y, self.Points.front().Y);
    for (std::size_t i = 1; i < layout.Notes.size(); ++i)
        EXPECT_GE(layout.Notes[i].Box.Y, layout.Notes[i - 1].Box.Bottom());
}

}  // namespace
}  // namespace Orvex
