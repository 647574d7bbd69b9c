#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using enum MessageAnswer;

struct Closing : StartedProgramTest {
    DocumentTables& tables = process.tables;
};

TEST_F(Closing, AnUnchangedDocumentAsksNothingAndStopsItsVoice)
{
    document().SpeakBtn.user_press();
    asked();
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(asked(), "Speak \"\" 2");
    EXPECT_TRUE(voice().released);
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(tables.openDocumentCount, 0);
    EXPECT_FALSE(main.mnuCtl.Enabled);
}

TEST_F(Closing, AChangedDocumentAsks)
{
    const struct {
        MessageAnswer answer;
        bool goes;
        bool slot_stays_taken;
        const char* file;
    } cases[] = { { cancel, false, true, "Hello world." }, { no, true, false, "Hello world." },
        { yes, true, true, "xHello world." } };
    for (const auto& row : cases) {
        StartedProgram other;
        DocumentTables& tables_then = other.process.tables;
        other.type(u"x");
        other.document().cpvSlider1.Value = 9;
        other.main.mnuCtl.Enabled = row.goes; // what setmenu sets right in each branch
        other.boxes.answers = { row.answer };
        const std::shared_ptr<Form> kept = other.document().shared_from_this();
        EXPECT_EQ(static_cast<frmDocument&>(*kept).user_closed(), row.goes);

        const FakeMessageBoxes::Box question{
            "This document has been changed. Do you wish to save?", "Tessavox",
            MessageButtons::yes_no_cancel, MessageIcon::question
        };
        EXPECT_EQ(other.boxes.shown, std::vector{ question });
        EXPECT_EQ(tables_then.documentSlotUsed[0], row.slot_stays_taken);
        EXPECT_EQ(tables_then.documentWindows[0] != nullptr, row.slot_stays_taken);
        EXPECT_EQ(tables_then.openDocumentCount, row.goes ? 0 : 1);
        EXPECT_EQ(other.main.mnuCtl.Enabled, !row.goes);
        EXPECT_EQ(other.files.files["/app/first.txt"], row.file);
        // Whatever the answer, the settings are written and the voice has gone.
        EXPECT_NE(other.file("setting1.txt").find("\r\n 9\r\n"), std::string::npos);
        EXPECT_TRUE(other.voice().released);
    }
}

/// Three documents, of which some are changed; then the main window is closed.
TEST_F(Closing, OfTheMainWindowAsksEachChangedDocumentWhileThatIsActive)
{
    const MessageAnswer all_answers[] = { yes, no, cancel };
    const char* const paths[] = { "/app/first.txt", "/b.txt", "/c.txt" };
    for (int run = 0; run < 8 * 27; ++run) {
        SCOPED_TRACE(run);
        const bool changed[] = { (run & 1) != 0, (run & 2) != 0, (run & 4) != 0 };
        const MessageAnswer answers[]
            = { all_answers[run / 8 % 3], all_answers[run / 24 % 3], all_answers[run / 72] };
        StartedProgram other;
        for (int i = 0; i < 3; ++i) {
            if (i > 0)
                other.open_another();
            if (changed[i])
                other.type(u"x");
        }
        std::string asked;
        other.boxes.while_shown = [&] { asked += other.document().Tag.get(); };
        std::string expected_asked;
        int closed = 0;
        for (; closed < 3; ++closed) {
            if (!changed[closed])
                continue;
            expected_asked += std::to_string(closed + 1);
            other.boxes.answers.push_back(answers[closed]);
            if (answers[closed] == cancel)
                break;
            if (answers[closed] == yes && closed > 0)
                other.dialogs.answers.push_back(paths[closed]);
        }

        EXPECT_EQ(other.main.user_closed(), closed == 3);
        EXPECT_EQ(asked, expected_asked);
        EXPECT_EQ(other.has_quit, closed == 3);
        EXPECT_EQ(other.file("opened.txt"), file_of_lines({ closed == 3 ? "0" : "1" }));
        EXPECT_EQ(other.process.tables.openDocumentCount, 3 - closed);
        for (int i = 0; i < 3; ++i) {
            const bool saved = i < closed && changed[i] && answers[i] == yes;
            EXPECT_EQ(other.files.files[paths[i]].substr(0, 1), saved ? "x" : i == 0 ? "H" : "");
            if (i >= closed) {
                EXPECT_EQ(other.process.tables.documentChanged[i + 1], changed[i]);
            }
        }
    }
}

TEST_F(Closing, ComingBackToADocumentForgetsItsChangeAndThatASaveWasAClosingOne)
{
    frmDocument& first = document();
    type(u"x");
    open_another();
    type(u"y");
    boxes.answers = { yes };
    dialogs.answers = { "/docs/b.txt" };
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(files.files["/docs/b.txt"], "y");
    EXPECT_FALSE(tables.closingSave);
    first.user_activated();
    EXPECT_FALSE(tables.documentChanged[1]);
    main.mnuFileSave.run();
    EXPECT_EQ(tables.openDocumentCount, 1);
    EXPECT_TRUE(first.user_closed());
}

TEST_F(Closing, SaveWritesTheTextOfTheActiveDocumentAlsoWhereTwoShareASlot)
{
    frmDocument& start = document();
    open_another();
    main.mnuFileClose.run(); // frees the start document's slot too
    frmDocument& other = open_another();
    ASSERT_EQ(other.Tag, start.Tag);
    EXPECT_EQ(other.Caption, "Document 1");
    type(u"other");
    start.user_activated();
    type(u"start ");
    main.mnuFileSave.run();
    EXPECT_EQ(files.files["/app/first.txt"], "start Hello world.");
    other.user_activated();
    EXPECT_TRUE(other.user_closed());
    start.user_activated();
    type(u"again ");
    main.mnuFileSave.run(); // its table entry went with the other one
    EXPECT_EQ(files.files["/app/first.txt"], "start again Hello world.");
}

TEST_F(Closing, ANewDocumentInAFreedSlotStartsUnchangedAndWithoutATitle)
{
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(open_another().Caption, "Document 2");
        EXPECT_EQ(tables.documentFileTitles[1], "");
        EXPECT_TRUE(document().user_closed());
        open_another();
        save_as("/docs/a\U0001F600.txt");
        EXPECT_EQ(tables.documentFileTitles[1], "a\U0001F600.txt");
        type(u"x");
        boxes.answers = { no };
        EXPECT_TRUE(document().user_closed());
    }
    EXPECT_EQ(boxes.shown.size(), 2u);
}

TEST_F(Closing, TheCaptionSaysWhetherSaveAsksForAPath)
{
    // The start document has its path from the load.
    type(u"x");
    main.mnuFileSave.run();
    EXPECT_EQ(files.files["/app/first.txt"], "xHello world.");
    EXPECT_FALSE(changed());
    open_another();
    type(u"a\U0001F600\n");
    dialogs.answers = { "/docs/a.txt" };
    main.mnuFileSave.run();
    EXPECT_EQ(files.files["/docs/a.txt"], "a\xF0\x9F\x98\x80\n");
    EXPECT_EQ(document().Caption, "/docs/a.txt");
    EXPECT_FALSE(changed());
    ASSERT_EQ(dialogs.requests.size(), 1u);
    EXPECT_EQ(dialogs.requests[0].FileName, "/app/first.txt"); // the path used last
    EXPECT_TRUE(dialogs.requests[0].overwrite_prompt);
    EXPECT_EQ(dialogs.requests[0].Filter,
        "RTF Files (*.rtf)|*.rtf|Text files (*.txt)|*.txt|Ini Files (*.ini)|*.ini|"
        "Registry Files (*.log)|*.log|"
        "Batch File (*.bat)|*.bat|All files (*.*)|*.*");
    // Activation brings the path of another document back.
    static_cast<Form&>(*tables.documentWindows[0]).user_activated();
    type(u"y");
    main.mnuFileSave.run();
    EXPECT_EQ(files.files["/app/first.txt"], "xyHello world.");
    // A document that is still called as the settings' first.txt asks too.
    document().Caption = "/home/conf//first.txt";
    dialogs.answers = { "/docs/b.txt" };
    main.mnuFileSave.run();
    EXPECT_EQ(document().Caption, "/docs/b.txt");
}

TEST_F(Closing, ATextThatCannotBeWrittenIsTold)
{
    const char* const path = "/app/first.txt";
    for (const bool by_save_as : { false, true }) {
        for (const bool closing : { false, true }) {
            StartedProgram other;
            if (by_save_as)
                other.open_another();
            other.type(u"x");
            other.files.refused.insert(path);
            other.dialogs.answers = { path };
            other.boxes.answers = { yes };
            const std::shared_ptr<Form> document = other.document().shared_from_this();
            const std::string caption = document->Caption;
            const std::int16_t index = other.main.file_commands.ActiveDocumentIndex();
            const std::int16_t count = other.process.tables.openDocumentCount;
            if (closing)
                document->user_closed();
            else
                (by_save_as ? other.main.mnuFileSaveAs : other.main.mnuFileSave).run();
            EXPECT_EQ(other.boxes.shown.back().text,
                other.texts.with_value(2303, path) + "\n" + other.texts.LoadResString(2352));
            EXPECT_EQ(other.files.files[path], "Hello world.");
            EXPECT_EQ(document->Caption, caption);
            EXPECT_EQ(other.process.tables.documentChanged[index], by_save_as);
            EXPECT_EQ(other.process.tables.openDocumentCount, count - closing);
        }
    }
}

} // namespace
} // namespace tessavox::tests
