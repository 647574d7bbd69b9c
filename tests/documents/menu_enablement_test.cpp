#include "documents/menu_enablement.h"

#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

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

} // namespace
} // namespace tessavox::tests
