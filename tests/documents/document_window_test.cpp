#include "documents/menu_enablement.h"
#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using Documents = ProgramTest;

TEST_F(Documents, HostileSettingsAreSteppedOverOneByOne)
{
    std::string history = "\"\r\n";
    for (int i = 0; i < 100; ++i)
        history += "h.example\r\n";
    struct Case {
        const char* what;
        const char* file;
        std::string bytes;
        const char* then; // voice, format, speed, automatic reading, and the font
    };
    // What a line doesn't give stays as it is by design, and the lines after it still count.
    const Case cases[] = { { "nothing", "setting1.txt", "", "-1 -1 0 1 Serif 20 1" },
        { "one quote", "setting1.txt", "\"", "-1 -1 0 1 Serif 20 1" },
        { "no numbers", "setting1.txt", file_of_lines({ "a", "b", "c", "d" }),
            "-1 -1 0 1 Serif 20 1" },
        { "too large", "setting1.txt", file_of_lines({ "", "2", "11", "3" }),
            "-1 -1 0 1 Serif 20 1" },
        { "huge", "setting1.txt", file_of_lines({ "", "99999", "-1e9", "1e99" }),
            "-1 -1 0 1 Serif 20 1" },
        { "one bad line", "setting1.txt", file_of_lines({ "8kHz 16Bit Mono", "x", "-9", " 2" }),
            "-1 2 -9 2 Serif 20 1" },
        { "binary", "setting1.txt", std::string("\xFF\xFE\0\0\x80\r\r\r\r", 9),
            "-1 -1 0 1 Serif 20 1" },
        { "no font", "setting2.txt", file_of_lines({ "", "-1", "maybe" }),
            "1 3 5 0 Comic Sans MS 12 0" },
        { "no size", "setting2.txt", file_of_lines({ "Mono", "big", "True" }),
            "1 3 5 0 Mono 12 1" },
        { "a long history", "setting3.txt", history + "\"\r\n", "1 3 5 0 Serif 20 1" } };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.what);
        RunningProgram other;
        other.file("setting1.txt") = file_of_lines({ "8kHz 16Bit Stereo", " 1", " 5", " 0", "" });
        other.file("setting2.txt") = file_of_lines({ "Serif", " 20", "True" });
        other.file(row.file) = row.bytes;
        other.start();
        const frmDocument& shown = other.document();
        std::ostringstream then;
        then << shown.VoiceCB.ListIndex << ' ' << shown.FormatCB.ListIndex << ' '
             << shown.cpvSlider1.Value << ' ' << shown.Check1.Value << ' ' << other.pane().font_name
             << ' ' << other.pane().font_size << ' ' << other.pane().font_bold;
        EXPECT_EQ(then.str(), row.then);
        EXPECT_TRUE(other.boxes.shown.empty());
        EXPECT_TRUE(other.main.Unload());
    }
}

TEST_F(Documents, AreNumberedByTheLowestFreeSlotUpToThirty)
{
    start();
    frmDocument& second = open_another();
    EXPECT_EQ(open_another().Caption, "Document 3");
    EXPECT_EQ(document().Tag, "3");
    second.Unload();
    EXPECT_EQ(open_another().Caption, "Document 2");
    for (int i = 0; i < 40; ++i)
        open_another();
    EXPECT_EQ(windows.open_forms.size(), 31u); // with the main window
    EXPECT_EQ(document().Caption, "Document 30");
    EXPECT_TRUE(boxes.shown.empty());
}

const std::string menus = "mnuInsert mnuWebsite mnuFormat mnuWindow mnuEdit";
const std::string with_document_only = "mnuCtl mnuFileSave mnuFileSaveAs mnuFileClose mnuFilePrint "
                                       "tbToolBar.3 tbToolBar.5";
const std::string on_selection = "tbToolBar.7 tbToolBar.8";
const std::string on_clipboard = "tbToolBar.9";

struct Menus : StartedProgramTest {
    /// What setmenu makes of the main window where all was `before`.
    States after_setmenu(bool before)
    {
        enable_all(main, before);
        setmenu(process, main);
        return states_of(main);
    }
    States all(bool before)
    {
        enable_all(main, before);
        return states_of(main);
    }
};

TEST_F(Menus, FollowTheDocumentsTheReadingTheSelectionAndTheClipboard)
{
    for (int bits = 0; bits < 16; ++bits) {
        const bool before = bits & 1, speaking = bits & 2, selected = bits & 4, copied = bits & 8;
        document().speech.session.UpdateSpeechControls(speaking, false);
        pane().user_selects(0, selected ? 2 : 0);
        clipboard.text = copied ? u"a" : u"";
        States expected = with(all(before), with_document_only, "on");
        expected = with(expected, menus + " mnuFile tbToolBar Toolbar2", word(!speaking));
        expected = with(expected, on_selection + " mnuPopCopy mnuPopCut mnuEditCopy mnuEditCut",
            word(selected));
        expected = with(expected, on_clipboard + " mnuPopPaste mnuEditPaste", word(copied));
        EXPECT_EQ(after_setmenu(before), expected) << bits;
    }
    const std::string needs_document
        = menus + " " + with_document_only + " " + on_selection + " " + on_clipboard;
    document().Unload();
    for (const bool before : { false, true }) // a File menu and tool bars that are off stay so
        EXPECT_EQ(after_setmenu(before), with(all(before), needs_document, "off"));
    // A count without an active document: neither the reading nor the selection is known.
    process.tables.openDocumentCount = 1;
    for (const bool before : { false, true })
        EXPECT_EQ(after_setmenu(before),
            with(with(all(before), needs_document, "on"), "mnuPopPaste mnuEditPaste", "on"));
}

TEST_F(Menus, AreAskedAtASelectionAndAnActivationAndNotAtACopy)
{
    clipboard.text = u"a";
    EXPECT_FALSE(main.mnuPopPaste.Enabled);
    pane().user_selects(1, 2);
    EXPECT_TRUE(main.mnuPopPaste.Enabled);
    frmDocument& first = document();
    open_another();
    clipboard.text.clear();
    EXPECT_TRUE(main.mnuPopPaste.Enabled);
    first.user_activated();
    EXPECT_FALSE(main.mnuPopPaste.Enabled);
}

using Printing = StartedProgramTest;

TEST_F(Printing, GoesPageAfterPageToTheEndWhateverIsSelected)
{
    const std::pair<const char16_t*, const char*> rows[] = { { u"", "[]" }, { u"a", "[a]" },
        { u"exact", "[exact]" }, { u"exactly", "[exact|ly]" }, { u"ten units!", "[ten u|nits!]" } };
    int released = 0;
    for (const auto& [text, printed] : rows) {
        pane().set_Text(text);
        pane().user_selects(1, 2);
        printer.printed.clear();
        main.tbToolBar.user_press(5);
        EXPECT_EQ(printer.printed, std::string("first.txt") + printed);
        EXPECT_EQ(pane().formats_released, ++released);
    }
    // Half an inch from each edge of the paper, less what can't be printed on.
    EXPECT_EQ(pane().print_area.left, 360);
    EXPECT_EQ(pane().print_area.top, 540);
    EXPECT_EQ(pane().print_area.right, 11906 - 720 - 360);
    EXPECT_EQ(pane().print_area.bottom, 16838 - 720 - 180);
}

TEST_F(Printing, NeedsADocument)
{
    main.mnuFileClose.run();
    main.mnuFilePrint.run();
    const auto shown = boxes.take_shown();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title + ": " + shown[0].text, "Tessavox: No open documents !");
    EXPECT_EQ(printer.printed, "");
}

} // namespace
} // namespace tessavox::tests
