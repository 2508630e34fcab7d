// The sequence reader of the full importer: message forms, activations, fragments, participants, notes and
// the decision whether a PlantUML text is a sequence diagram at all.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "orvex/diagrams/diagram_json.h"
#include "orvex/diagrams/sequence_import.h"
#include "orvex/io/json.h"

namespace Orvex {
namespace {

using E = TQVLSeqEventType;

TORXDiagramModel Import(const std::string& text, TQVLDiagramFormat format) {
    TORXDiagramModel model;
    EXPECT_TRUE(QVLImportSequence(text, format, model)) << text;
    return model;
}

std::vector<const TQVLSeqEvent*> OfType(const TORXDiagramModel& model, E type) {
    std::vector<const TQVLSeqEvent*> out;
    for (const TQVLSeqEvent& ev : model.SeqEvents())
        if (ev.EventType == type) out.push_back(&ev);
    return out;
}

std::string Codes(const TORXDiagramModel& model) {
    std::string out;
    for (const auto& d : model.Diagnostics()) out += d.Code + "@" + std::to_string(d.Line) + " ";
    return out;
}

// [SECTION] Mermaid

TEST(SequenceImportMermaid, EveryArrowFormIsAMessageWithItsHeadAndDash) {
    struct TCase {
        const char* Arrow;
        bool Dotted;
        TQVLSeqArrow Head;
        TQVLSeqArrow FromHead;
    };
    const std::vector<TCase> cases{
        {"->", false, TQVLSeqArrow::saNone, TQVLSeqArrow::saNone},
        {"-->", true, TQVLSeqArrow::saNone, TQVLSeqArrow::saNone},
        {"->>", false, TQVLSeqArrow::saFilled, TQVLSeqArrow::saNone},
        {"-->>", true, TQVLSeqArrow::saFilled, TQVLSeqArrow::saNone},
        {"-x", false, TQVLSeqArrow::saCross, TQVLSeqArrow::saNone},
        {"--x", true, TQVLSeqArrow::saCross, TQVLSeqArrow::saNone},
        {"-)", false, TQVLSeqArrow::saOpen, TQVLSeqArrow::saNone},
        {"--)", true, TQVLSeqArrow::saOpen, TQVLSeqArrow::saNone},
        {"<<->>", false, TQVLSeqArrow::saFilled, TQVLSeqArrow::saFilled},
        {"<<-->>", true, TQVLSeqArrow::saFilled, TQVLSeqArrow::saFilled},
    };
    std::string text = "sequenceDiagram\n";
    for (const TCase& c : cases)
        text += std::string("    Alice ") + c.Arrow + " Web-Server: via " + c.Arrow + "\n";
    for (const TCase& c : cases) text += std::string("    Web-Server") + c.Arrow + "+Alice: marked\n";
    const TORXDiagramModel model = Import(text, TQVLDiagramFormat::dgMermaid);
    EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
    ASSERT_EQ(model.Participants().size(), 2u);
    EXPECT_EQ(model.Participants()[1].ID, "Web-Server");
    const auto messages = OfType(model, E::seMessage);
    ASSERT_EQ(messages.size(), 2 * cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(cases[i].Arrow);
        EXPECT_EQ(messages[i]->Text, std::string("via ") + cases[i].Arrow);
        EXPECT_EQ(messages[i]->Dotted, cases[i].Dotted);
        EXPECT_EQ(messages[i]->Arrow, cases[i].Head);
        EXPECT_EQ(messages[i]->FromArrow, cases[i].FromHead);
        EXPECT_EQ(messages[cases.size() + i]->FromActor, "Web-Server");
        EXPECT_EQ(messages[cases.size() + i]->ToActor, "Alice");
    }
    EXPECT_EQ(OfType(model, E::seActivate).size(), cases.size());
}

TEST(SequenceImportMermaid, ActivationMarksActivateTheReceiverAndDeactivateTheSender) {
    const TORXDiagramModel model = Import(
        "sequenceDiagram\nAlice->>+John: Hello\nAlice->>+John: Again\nJohn-->>-Alice: Hi\nJohn-->>-Alice: "
        "Bye\n"
        "activate Alice\ndeactivate Alice\ndeactivate Alice\n",
        TQVLDiagramFormat::dgMermaid);
    std::vector<std::string> trail;
    for (const TQVLSeqEvent& ev : model.SeqEvents())
        if (ev.EventType != E::seMessage)
            trail.push_back(std::string(ev.EventType == E::seActivate ? "+" : "-") + ev.FromActor);
    EXPECT_EQ(trail, (std::vector<std::string>{"+John", "+John", "-John", "-John", "+Alice", "-Alice"}));
    ASSERT_EQ(model.Diagnostics().size(), 1u);  // the third deactivation has nothing to end
    EXPECT_EQ(model.Diagnostics()[0].Code, "SEQUENCE_NOT_ACTIVE");
    EXPECT_EQ(model.Diagnostics()[0].Line, 8);
}

TEST(SequenceImportMermaid, FragmentsNestAndMarkTheirEvents) {
    const TORXDiagramModel model = Import(R"(sequenceDiagram
    A->>B: before
    alt is sick
        B->>A: Not so good
        loop Every minute
            A->>B: ping
        end
    else is well
        B->>A: Fine
    end
    par Alice to Bob
        A->>B: one
    and Alice to John
        A->>C: two
    end
    critical Connect
        A->>C: connect
    option Timeout
        A->>A: log
    end
    rect rgb(191, 223, 255)
        break when tired
            A-xB: stop
        end
    end
    opt Extra
        B-->>A: thanks
    end
)",
                                          TQVLDiagramFormat::dgMermaid);
    EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
    std::string shape;
    for (const TQVLSeqEvent& ev : model.SeqEvents()) {
        switch (ev.EventType) {
            case E::seFragmentStart:
                shape += "<" + ev.Fragment + ":" + ev.Text + ">";
                break;
            case E::seFragmentElse:
                shape += "|" + ev.Variant + ":" + ev.Text + "|";
                break;
            case E::seFragmentEnd:
                shape += "</" + ev.Fragment + ">";
                break;
            case E::seMessage:
                shape += "m(" + ev.Fragment + ")";
                break;
            default:
                break;
        }
    }
    EXPECT_EQ(shape,
              "m()<alt:is sick>m(alt)<loop:Every minute>m(loop)</loop>|else:is well|m(alt)</alt>"
              "<par:Alice to Bob>m(par)|and:Alice to John|m(par)</par>"
              "<critical:Connect>m(critical)|option:Timeout|m(critical)</critical>"
              "<rect:><break:when tired>m(break)</break></rect><opt:Extra>m(opt)</opt>");
    const auto starts = OfType(model, E::seFragmentStart);
    ASSERT_EQ(starts.size(), 7u);
    ASSERT_TRUE(starts[4]->Style.Fill.has_value());
    EXPECT_EQ(*starts[4]->Style.Fill, 0xFFBFDFFFu);
}

TEST(SequenceImportMermaid, ParticipantsKeepAliasKindBoxAndCreation) {
    const TORXDiagramModel model = Import(R"(---
title: Shop
---
sequenceDiagram
    box Aqua Front
        actor U as User
        participant W as Web shop
    end
    box Back end
        participant D@{ "type": "database" } as Orders
    end
    U->>W: order
    create participant P as Printer
    W->>P: print
    destroy P
    W-xP: done
    W->>D: store
)",
                                          TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(model.Title(), "Shop");
    ASSERT_EQ(model.Participants().size(), 4u);
    const auto& p = model.Participants();
    EXPECT_EQ(p[0].Role, "actor");
    EXPECT_EQ(p[0].Display, "User");
    EXPECT_EQ(p[1].Display, "Web shop");
    EXPECT_EQ(p[2].ID, "D");
    EXPECT_EQ(p[2].Role, "database");
    EXPECT_EQ(p[2].Display, "Orders");
    EXPECT_EQ(p[3].Group, "");
    ASSERT_EQ(model.Groups().size(), 2u);
    EXPECT_EQ(model.Groups()[0].Text, "Front");
    ASSERT_TRUE(model.Groups()[0].Style.Fill.has_value());
    EXPECT_EQ(model.Groups()[0].Members, (std::vector<std::string>{"U", "W"}));
    EXPECT_EQ(model.Groups()[1].Text, "Back end");  // "Back" is no colour: the whole text is the title
    EXPECT_FALSE(model.Groups()[1].Style.Fill.has_value());
    EXPECT_EQ(p[1].Group, "box1");
    // create before the message that creates; destroy after the message that destroys.
    std::vector<E> types;
    for (const TQVLSeqEvent& ev : model.SeqEvents()) types.push_back(ev.EventType);
    EXPECT_EQ(types, (std::vector<E>{E::seMessage, E::seCreate, E::seMessage, E::seMessage, E::seDestroy,
                                     E::seMessage}));
}

TEST(SequenceImportMermaid, NotesAutonumberEntitiesAndStatementsOnOneLine) {
    const TORXDiagramModel model = Import(
        "sequenceDiagram\nautonumber 10 5\nA->>B: I #9829; you #35;1; B->>A: me too # a comment\n"
        "note left of A: a<br>b\nNote over A,B: both\nB->>A\n",
        TQVLDiagramFormat::dgMermaid);
    const auto messages = OfType(model, E::seMessage);
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(messages[0]->Text, "I \u2665 you #1");
    EXPECT_EQ(messages[1]->Text, "me too");
    EXPECT_EQ(messages[2]->Text, "");
    EXPECT_EQ(messages[0]->Number, "10");
    EXPECT_EQ(messages[2]->Number, "20");
    const auto notes = OfType(model, E::seNote);
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(notes[0]->Text, "a\r\nb");
    EXPECT_EQ(notes[0]->NotePosition, "left of");
    EXPECT_EQ(notes[1]->ToActor, "B");
}

TEST(SequenceImportMermaid, WhatIsNotDrawnIsReportedWithItsLine) {
    const TORXDiagramModel model = Import(
        "sequenceDiagram\nA->>B: hi\nlink A: Dashboard @ https://example.com\nthis is no "
        "statement\nend\nloop open\n",
        TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(Codes(model),
              "MERMAID_UNSUPPORTED_STATEMENT@3 MERMAID_UNRECOGNIZED_LINE@4 SEQUENCE_UNMATCHED_END@5 "
              "SEQUENCE_UNCLOSED_FRAGMENT@0 ");
    EXPECT_EQ(model.Diagnostics()[1].SourceText, "this is no statement");
    EXPECT_EQ(OfType(model, E::seFragmentEnd).size(), 1u);  // the open loop is closed at the end
}

TEST(SequenceImportMermaid, OtherDiagramsAreNotTaken) {
    TORXDiagramModel model;
    EXPECT_FALSE(QVLImportSequence("flowchart LR\nA-->B\n", TQVLDiagramFormat::dgMermaid, model));
    EXPECT_FALSE(QVLImportSequence("classDiagram\nA <|-- B\n", TQVLDiagramFormat::dgAuto, model));
}

// [SECTION] PlantUML

TEST(SequenceImportPlantUML, EveryArrowFormIsOneMessage) {
    struct TCase {
        const char* Line;
        const char* From;
        const char* To;
        bool Dotted;
        TQVLSeqArrow Head;
    };
    const std::vector<TCase> cases{
        {"A -> B : a", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A --> B : a", "A", "B", true, TQVLSeqArrow::saFilled},
        {"A <- B : a", "B", "A", false, TQVLSeqArrow::saFilled},
        {"A <-- B : a", "B", "A", true, TQVLSeqArrow::saFilled},
        {"A ->> B : a", "A", "B", false, TQVLSeqArrow::saOpen},
        {"A -\\ B : a", "A", "B", false, TQVLSeqArrow::saOpen},
        {"A -/ B : a", "A", "B", false, TQVLSeqArrow::saOpen},
        {"A ->x B : a", "A", "B", false, TQVLSeqArrow::saCross},
        {"A ->o B : a", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A o-> B : a", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A <-> B : a", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A -[#red]> B : a", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A -[#0000FF]-> B : a", "A", "B", true, TQVLSeqArrow::saFilled},
        {"A -> B", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A->B:a", "A", "B", false, TQVLSeqArrow::saFilled},
        {"A -> A : self", "A", "A", false, TQVLSeqArrow::saFilled},
        {"[-> A : found", "[", "A", false, TQVLSeqArrow::saFilled},
        {"A ->] : lost", "A", "]", false, TQVLSeqArrow::saFilled},
        {"?-> A : short", "[", "A", false, TQVLSeqArrow::saFilled},
        {"\"Long name\" -> B : quoted", "Long name", "B", false, TQVLSeqArrow::saFilled},
        {"A -> B ++ : marked", "A", "B", false, TQVLSeqArrow::saFilled},
    };
    std::string text = "@startuml\n";
    for (const TCase& c : cases) text += std::string(c.Line) + "\n";
    text += "@enduml\n";
    const TORXDiagramModel model = Import(text, TQVLDiagramFormat::dgPlantUML);
    EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
    const auto messages = OfType(model, E::seMessage);
    ASSERT_EQ(messages.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(cases[i].Line);
        EXPECT_EQ(messages[i]->FromActor, cases[i].From);
        EXPECT_EQ(messages[i]->ToActor, cases[i].To);
        EXPECT_EQ(messages[i]->Dotted, cases[i].Dotted);
        EXPECT_EQ(messages[i]->Arrow, cases[i].Head);
    }
    EXPECT_TRUE(messages[8]->ToCircle);
    EXPECT_TRUE(messages[9]->FromCircle);
    EXPECT_EQ(messages[10]->FromArrow, TQVLSeqArrow::saFilled);
    ASSERT_TRUE(messages[11]->Style.Stroke.has_value());
    EXPECT_EQ(*messages[11]->Style.Stroke, 0xFFFF0000u);
    EXPECT_EQ(messages[13]->Text, "");
    // The edges of found and lost messages are no lifelines.
    EXPECT_EQ(model.Participants().size(), 3u);
}

TEST(SequenceImportPlantUML, AnAliasGivesOneLifelineWithTheCaption) {
    const TORXDiagramModel model = Import(
        "@startuml\nparticipant \"Web Shop\" as Shop #LightBlue\nactor Bob as \"Bob the buyer\"\n"
        "database DB order 10\nBob -> Shop : order\nShop -> DB\n@enduml\n",
        TQVLDiagramFormat::dgPlantUML);
    ASSERT_EQ(model.Participants().size(), 3u);
    EXPECT_EQ(model.Participants()[0].ID, "Shop");
    EXPECT_EQ(model.Participants()[0].Display, "Web Shop");
    EXPECT_TRUE(model.Participants()[0].Style.Fill.has_value());
    EXPECT_EQ(model.Participants()[1].ID, "Bob");
    EXPECT_EQ(model.Participants()[1].Display, "Bob the buyer");
    EXPECT_EQ(model.Participants()[1].Role, "actor");
    EXPECT_EQ(model.Participants()[2].Role, "database");
    EXPECT_EQ(Codes(model), "PLANTUML_UNSUPPORTED_STATEMENT@4 ");  // the order is not followed
}

TEST(SequenceImportPlantUML, AltEndTextIsASequenceDiagramNotAnActivity) {
    const std::string text = R"(@startuml
Alice -> Bob: Authentication Request
alt successful case
    Bob -> Alice: Authentication Accepted
else some kind of failure
    Bob -> Alice: Authentication Failure
    group My own label [My own label 2]
    Alice -> Log : Log attack start
        loop 1000 times
            Alice -> Bob: DNS Attack
        end
    Alice -> Log : Log attack end
    end
else Another type of failure
   Bob -> Alice: Please repeat
end
...
== Later ==
... 5 minutes later ...
|||
||45||
@enduml
)";
    EXPECT_TRUE(QVLJudgePlantUMLSequence(text).IsSequence);
    const TORXDiagramModel model = Import(text, TQVLDiagramFormat::dgAuto);
    EXPECT_EQ(model.Kind(), TQVLDiagramKind::dkSequence);
    EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
    EXPECT_EQ(OfType(model, E::seMessage).size(), 7u);
    EXPECT_EQ(OfType(model, E::seFragmentStart).size(), 3u);
    EXPECT_EQ(OfType(model, E::seFragmentElse).size(), 2u);
    EXPECT_EQ(OfType(model, E::seFragmentEnd).size(), 3u);
    EXPECT_EQ(OfType(model, E::seFragmentStart)[1]->Text, "My own label [My own label 2]");
    EXPECT_EQ(OfType(model, E::seDivider)[0]->Text, "Later");
    const auto delays = OfType(model, E::seDelay);
    ASSERT_EQ(delays.size(), 4u);
    EXPECT_EQ(delays[1]->Text, "5 minutes later");
    EXPECT_EQ(delays[2]->Variant, "space");
    EXPECT_EQ(delays[3]->Text, "45");
}

TEST(SequenceImportPlantUML, MarksReturnAndActivationsPairUp) {
    const TORXDiagramModel model = Import(R"(@startuml
alice -> bob ++ : hello
bob -> bob ++ : self call
bob -> george ** : create
return done
return rc
bob -> george !! : delete
activate alice #gold
alice -> bob --++ : swap
return
@enduml
)",
                                          TQVLDiagramFormat::dgPlantUML);
    EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
    std::string trail;
    for (const TQVLSeqEvent& ev : model.SeqEvents()) {
        switch (ev.EventType) {
            case E::seMessage:
                trail += ev.FromActor + ">" + ev.ToActor + (ev.Dotted ? "." : "") + " ";
                break;
            case E::seActivate:
                trail += "+" + ev.FromActor + " ";
                break;
            case E::seDeactivate:
                trail += "-" + ev.FromActor + " ";
                break;
            case E::seCreate:
                trail += "*" + ev.FromActor + " ";
                break;
            case E::seDestroy:
                trail += "!" + ev.FromActor + " ";
                break;
            default:
                break;
        }
    }
    EXPECT_EQ(
        trail,
        "alice>bob +bob bob>bob +bob *george bob>george bob>bob. -bob bob>alice. -bob bob>george !george "
        "+alice alice>bob -alice +bob bob>alice. -bob ");
    ASSERT_TRUE(OfType(model, E::seActivate)[2]->Style.Fill.has_value());
}

TEST(SequenceImportPlantUML, NotesInEveryPositionShapeAndColour) {
    const TORXDiagramModel model = Import(R"(@startuml
participant A
participant B
A -> B : hi
note left : on the sender
note right of B #aqua : coloured
note over A, B
  spans
  both
end note
hnote over A : hexagon
rnote over B
  square
endrnote
note across : everyone
ref over A, B : see other diagram
@enduml
)",
                                          TQVLDiagramFormat::dgPlantUML);
    EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
    const auto notes = OfType(model, E::seNote);
    ASSERT_EQ(notes.size(), 6u);
    EXPECT_EQ(notes[0]->NotePosition, "left of");
    EXPECT_EQ(notes[0]->FromActor, "A");
    ASSERT_TRUE(notes[1]->Style.Fill.has_value());
    EXPECT_EQ(notes[2]->Text, "spans\r\nboth");
    EXPECT_EQ(notes[2]->ToActor, "B");
    EXPECT_EQ(notes[3]->Variant, "hnote");
    EXPECT_EQ(notes[4]->Variant, "rnote");
    EXPECT_EQ(notes[4]->Text, "square");
    EXPECT_EQ(notes[5]->FromActor, "A");
    EXPECT_EQ(notes[5]->ToActor, "B");
    const auto refs = OfType(model, E::seFragmentStart);
    ASSERT_EQ(refs.size(), 1u);
    EXPECT_EQ(refs[0]->Fragment, "ref");
    EXPECT_EQ(refs[0]->Text, "see other diagram");
}

TEST(SequenceImportPlantUML, AutonumberFormatsStopsAndResumes) {
    const TORXDiagramModel model = Import(
        "@startuml\nautonumber 10 10 \"<b>[000]\"\nA -> B : a\nA -> B : b\nautonumber stop\nA -> B : c\n"
        "autonumber resume\nA -> B : d\n@enduml\n",
        TQVLDiagramFormat::dgPlantUML);
    const auto messages = OfType(model, E::seMessage);
    ASSERT_EQ(messages.size(), 4u);
    EXPECT_EQ(messages[0]->Number, "[010]");
    EXPECT_EQ(messages[1]->Number, "[020]");
    EXPECT_EQ(messages[2]->Number, "");
    EXPECT_EQ(messages[3]->Number, "[030]");
}

TEST(SequenceImportPlantUML, NoMessageIsLostWithoutADiagnostic) {
    const TORXDiagramModel model = Import(
        "@startuml\nA -> B : fine\nA -> B & C : multicast\nA => B : odd\nskinparam monochrome "
        "true\n@enduml\n",
        TQVLDiagramFormat::dgPlantUML);
    EXPECT_EQ(OfType(model, E::seMessage).size(), 1u);
    EXPECT_EQ(Codes(model),
              "PLANTUML_UNRECOGNIZED_LINE@3 PLANTUML_UNRECOGNIZED_LINE@4 "
              "PLANTUML_UNSUPPORTED_STATEMENT@5 ");
    EXPECT_EQ(model.Diagnostics()[0].SourceText, "A -> B & C : multicast");
}

TEST(SequenceImportPlantUML, OtherKindsAreLeftToTheirReaders) {
    for (const char* text :
         {"@startuml\nclass A\nclass B\nA <|-- B\n@enduml\n", "@startuml\nstart\n:step;\nstop\n@enduml\n",
          "@startuml\nactor User\nUser --> (Login)\n@enduml\n",
          "@startuml\n[*] --> Idle\nIdle --> Busy\n@enduml\n", "@startmindmap\n* root\n@endmindmap\n"}) {
        SCOPED_TRACE(text);
        TORXDiagramModel model;
        EXPECT_FALSE(QVLImportSequence(text, TQVLDiagramFormat::dgPlantUML, model));
        EXPECT_TRUE(model.Participants().empty());
    }
}

TEST(SequenceImportPlantUML, AnAmbiguousTextSaysWhichKindWasTakenAndWhy) {
    const std::string text = "@startuml\nparticipant A\nA -> B : one\nactivate B\nclass Stray\n@enduml\n";
    const TQVLSequenceVerdict verdict = QVLJudgePlantUMLSequence(text);
    EXPECT_TRUE(verdict.IsSequence);
    EXPECT_TRUE(verdict.Ambiguous);
    const TORXDiagramModel model = Import(text, TQVLDiagramFormat::dgPlantUML);
    ASSERT_FALSE(model.Diagnostics().empty());
    const auto& last = model.Diagnostics().back();
    EXPECT_EQ(last.Code, "PLANTUML_KIND_AMBIGUOUS");
    EXPECT_NE(last.MessageText.find("Read as a sequence diagram"), std::string::npos);
    EXPECT_NE(last.MessageText.find("line 5"), std::string::npos);
}

// The counts mermaid's own parser gives for the bundled example (bench/peers/sequence_counts.sh).
TEST(SequenceImportExamples, BundledExamplesReadCompletelyWithoutDiagnostics) {
    struct TCase {
        const char* File;
        TQVLDiagramFormat Format;
        std::size_t Messages, Notes, Fragments, Activations, Participants;
    };
    for (const TCase& c :
         {TCase{"mermaid/sequence_rich.mmd", TQVLDiagramFormat::dgMermaid, 19, 2, 6, 2, 6},
          TCase{"plantuml/sequence_rich.puml", TQVLDiagramFormat::dgPlantUML, 16, 3, 4, 2, 7}}) {
        SCOPED_TRACE(c.File);
        std::ifstream in(std::string(ORVEX_SOURCE_DIR) + "/examples/" + c.File, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        const TORXDiagramModel model = Import(text.str(), c.Format);
        EXPECT_TRUE(model.Diagnostics().empty()) << Codes(model);
        EXPECT_EQ(OfType(model, E::seMessage).size(), c.Messages);
        EXPECT_EQ(OfType(model, E::seNote).size(), c.Notes);
        EXPECT_EQ(OfType(model, E::seFragmentStart).size(), c.Fragments);
        EXPECT_EQ(OfType(model, E::seActivate).size(), c.Activations);
        EXPECT_EQ(model.Participants().size(), c.Participants);
        EXPECT_FALSE(model.Title().empty());
    }
}

TEST(SequenceImportJson, ParseModelCarriesRolesGroupsFragmentsAndNewEventTypes) {
    const TORXDiagramModel model =
        Import("sequenceDiagram\nbox Teal Shop\nactor U\nend\nalt ok\nU->>+W: go\nelse no\nU-xW: stop\nend\n",
               TQVLDiagramFormat::dgMermaid);
    const TJSON json = QVLDiagramModelToJsonFull(model, TQVLDiagramFormat::dgMermaid);
    EXPECT_EQ(json["participants"][0]["role"], "actor");
    EXPECT_EQ(json["participants"][0]["group"], "box1");
    EXPECT_EQ(json["participants"][1]["role"], "participant");
    EXPECT_EQ(json["groups"][0]["members"][0], "U");
    std::vector<std::string> types;
    for (const auto& ev : json["events"])
        types.push_back(ev["type"].get<std::string>() + "/" + ev["fragment"].get<std::string>());
    EXPECT_EQ(types, (std::vector<std::string>{"seFragmentStart/alt", "seMessage/alt", "seActivate/alt",
                                               "seFragmentElse/alt", "seMessage/alt", "seFragmentEnd/alt"}));
    EXPECT_EQ(json["events"][3]["variant"], "else");
    EXPECT_EQ(json["events"][3]["text"], "no");
    EXPECT_EQ(json["events"][2]["from"], "W");
}

}  // namespace
}  // namespace Orvex
