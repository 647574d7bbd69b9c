#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using namespace std::string_literals;
using enum MessageAnswer;

struct Opening : StartedProgramTest {
    Opening()
    {
        files.files["/d/a.txt"] = "\xff\xfe"
                                  "a\0\r\0\n\0"s;
        files.files["/d/b.RTF"] = "{\\rtf1 b {\\b bold}}";
        word_processor.texts["/d/c.doc"] = u"text of c";
    }
    void activate(int slot)
    {
        static_cast<Form&>(*tables.documentWindows[slot - 1]).user_activated();
    }
    void recovery_is_due()
    {
        for (Control* control : document().controls()) {
            if (auto* const timer = dynamic_cast<Timer*>(control))
                timer->tick();
        }
    }
    DocumentTables& tables = process.tables;
    std::string& FileName = main.file_commands.dlgCommonDialog.FileName;
};

TEST_F(Opening, TheLastThreeLettersSayHowAFileIsOpened)
{
    const struct {
        const char* path;
        const char* text;
        std::size_t windows; // the main one among them
    } rows[] = {
        { "/d/a.txt", "a\n", 3 },
        { "/d/b.RTF", "b bold", 4 },
        { "/d/c.doc", "text of c", 4 },
        { "/d/none.rtf", "", 5 },
        { "/d/none.doc", "", 5 },
        { "/d/b.RTF", "b bold", 6 },
    };
    for (const auto& row : rows) {
        FileName = "/earlier";
        clipboard.text = u"mine";
        word_processor.while_reading = [&] {
            EXPECT_EQ(screen.pointer, MousePointer::hourglass);
            EXPECT_EQ(clipboard.text, u"");
            clipboard.text = u"anybody's";
        };
        open(row.path);
        EXPECT_EQ(text(), row.text) << row.path;
        EXPECT_EQ(document().Caption, row.path);
        EXPECT_EQ(windows.open_forms.size(), row.windows);
        EXPECT_EQ(clipboard.text, std::string(row.path).ends_with("doc") ? u"" : u"mine");
        EXPECT_EQ(screen.pointer, MousePointer::normal);
        EXPECT_TRUE(tables.fileLoading);
        EXPECT_EQ(dialogs.requests.back().FileName, "");
        EXPECT_TRUE(dialogs.requests.back().must_be_text);
        EXPECT_EQ(FileName, row.path);
    }
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(dialogs.requests[0].Filter,
        "Text files (*.txt)|*.txt|RTF Files (*.rtf)|*.rtf|Web files|*.htm*|PDF files (*.pdf)|*.pdf|"
        "All files (*.*)|*.*|");
}

TEST_F(Opening, AnOpenedDocumentCountsAsChangedAndItsNextChangeDoesnt)
{
    open("/d/a.txt");
    EXPECT_TRUE(changed());
    document().user_activated(); // it is active already
    EXPECT_TRUE(changed());
    activate(1);
    activate(2);
    EXPECT_FALSE(changed());
    type(u"x");
    EXPECT_FALSE(changed());
    type(u"y");
    EXPECT_TRUE(changed());
    EXPECT_EQ(tables.documentFileTitles[0], "a.txt"); // of the one that was active before
    EXPECT_EQ(tables.documentFileTitles[1], "");
}

TEST_F(Opening, ACancelledDialogEndsIt)
{
    dialogs.answers = { std::nullopt };
    main.mnuFileOpen.run();
    EXPECT_EQ(windows.open_forms.size(), 2u);
    EXPECT_EQ(FileName, "");
    EXPECT_FALSE(tables.fileLoading);
    main.mnuFileSave.run();
    EXPECT_EQ(boxes.shown.at(0).text, texts.LoadResString(2362));
}

TEST_F(Opening, PagesGoToThePaneForThem)
{
    open("/d/e.Pdf");
    EXPECT_EQ(document().speech.place.view_status, 2);
    EXPECT_TRUE(document().WebBrowser1.Visible);
    main.mnuEdit.Enabled = true;
    open("/d/a.txt");
    EXPECT_TRUE(main.mnuEdit.Enabled);
    open("/d/e.Pdf"); // alone lays the window out for it
    EXPECT_FALSE(main.mnuEdit.Enabled);
    main.mnuFileSave.run();
    EXPECT_EQ(page().calls, "show /d/e.Pdf; show /d/a.txt; show /d/e.Pdf; 3; ");
    EXPECT_EQ(document().Caption, "/app/first.txt");
    EXPECT_EQ(windows.open_forms.size(), 2u);
    EXPECT_EQ(windows.focused, &document().WebBrowser1);
}

TEST_F(Opening, AFileIsSavedAsItsNameSays)
{
    const std::tuple<const char*, bool, bool> rows[]
        = { { "/d/n.txt", false, false }, { "/d/n.Rtf", true, true }, { "/d/n.doc", false, true },
              { "/d/nrtf", true, true }, { "/d/n.docx", false, false } };
    const auto is_rich = [&](const char* path) { return files.files[path].starts_with("{\\rtf"); };
    for (const auto& [path, rich_by_save_as, rich_by_save] : rows) {
        open_another();
        type(u"x");
        save_as(path);
        EXPECT_EQ(is_rich(path), rich_by_save_as) << path;
        EXPECT_EQ(
            tables.documentFileTitles[main.file_commands.ActiveDocumentIndex() - 1], path + 3);
        type(u"y");
        main.mnuFileSave.run();
        EXPECT_EQ(is_rich(path), rich_by_save) << path;
        EXPECT_FALSE(changed());
    }
    open("/d/a.txt");
    type(u"-");
    main.mnuFileSave.run();
    EXPECT_EQ(files.files["/d/a.txt"], "\xff\xfe-\0a\0\r\0\n\0"s);
}

TEST_F(Opening, WhatIsntSavedIsKeptUntilItIsOrItsLossIsAccepted)
{
    recovery_is_due();
    EXPECT_TRUE(recovery.kept.empty()) << "only loaded";
    type(u"x");
    type(u"y");
    EXPECT_TRUE(recovery.kept.empty()) << "not with every key";
    recovery_is_due();
    EXPECT_EQ(recovery.kept["/app/first.txt"], u"xyHello world.");
    main.mnuFileSave.run();
    EXPECT_TRUE(recovery.kept.empty());

    open_another();
    type(u"lost");
    recovery_is_due();
    boxes.answers = { no };
    EXPECT_TRUE(document().user_closed());
    EXPECT_TRUE(recovery.kept.empty());

    // A document that has forgotten its change goes without a question.
    open_another();
    type(u"forgotten");
    activate(1);
    activate(2);
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(recovery.kept["Document 2"], u"forgotten");

    type(u"refused");
    files.refused.insert("/app/first.txt");
    boxes.answers = { yes };
    EXPECT_TRUE(document().user_closed());
    EXPECT_EQ(recovery.kept["/app/first.txt"], u"xyrefusedHello world.");
}

TEST_F(Opening, AFileThatHoldsSomethingElseIsKeptBeforeItIsWrittenOver)
{
    main.mnuFileSave.run();
    open("/d/a.txt");
    main.mnuFileSave.run();
    EXPECT_TRUE(recovery.foreign_files.empty());
    open("/d/none.txt"); // couldn't be read, and would now be emptied
    main.mnuFileSave.run();
    open("/d/c.doc");
    main.mnuFileSave.run();
    open_another();
    FileName = "/d/other.txt";
    dialogs.answers = { std::nullopt };
    main.mnuFileSaveAs.run();
    const std::vector<std::string> kept{ "/d/none.txt", "/d/c.doc", "/d/other.txt" };
    EXPECT_EQ(recovery.foreign_files, kept);
}

} // namespace
} // namespace tessavox::tests
