#include "documents/menu_enablement.h"

#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

const std::string menus = "mnuInsert mnuWebsite mnuFormat mnuWindow mnuEdit";
const std::string with_document_only = "mnuCtl mnuFileSave mnuFileSaveAs mnuFileClose mnuFilePrint";

struct Menus : StartedProgramTest {
    /// What setmenu makes of the main window where all was `before`.
    States after_setmenu(bool before)
    {
        enable_all(main, before);
        main.tbToolBar.button(1).Enabled = before;
        main.tbToolBar.button(2).Enabled = before;
        setmenu(process, main);
        EXPECT_EQ(main.tbToolBar.button(1).Enabled, before);
        EXPECT_EQ(main.tbToolBar.button(2).Enabled, process.tables.openDocumentCount > 0); // Save
        return states_of(main);
    }
    States all(bool before)
    {
        enable_all(main, before);
        return states_of(main);
    }
};

TEST_F(Menus, FollowTheDocumentsAndTheReading)
{
    for (const bool before : { false, true }) {
        for (const bool speaking : { false, true }) {
            document().speech.session.UpdateSpeechControls(speaking, false);
            const States expected = with(with(all(before), with_document_only, "on"),
                menus + " mnuFile tbToolBar Toolbar2", word(!speaking));
            EXPECT_EQ(after_setmenu(before), expected);
        }
    }
    document().Unload();
    for (const bool before : { false, true }) // a File menu and tool bars that are off stay so
        EXPECT_EQ(
            after_setmenu(before), with(all(before), menus + " " + with_document_only, "off"));
    // A count without an active document: the reading isn't known, so its menus stay.
    process.tables.openDocumentCount = 1;
    for (const bool before : { false, true })
        EXPECT_EQ(after_setmenu(before), with(all(before), menus + " " + with_document_only, "on"));
}

TEST_F(Menus, FollowTheSelectionAndTheClipboard)
{
    Property<bool> copy(false, nullptr), paste(false, nullptr);
    main.add_rule(copy, with_selection);
    main.add_rule(paste, with_clipboard_text);
    for (const bool selected : { true, false }) {
        for (const bool copied : { true, false }) {
            clipboard.text = copied ? u"a" : u"";
            pane().user_selects(0, 0);
            pane().user_selects(1, selected ? 2 : 0); // runs setmenu
            EXPECT_EQ(copy, selected);
            EXPECT_EQ(paste, copied);
        }
    }
    // Another window's copy doesn't count before the next change of a selection; an activation
    // does.
    clipboard.text = u"a";
    EXPECT_FALSE(paste);
    frmDocument& first = document();
    open_another();
    paste = false;
    first.user_activated();
    EXPECT_TRUE(paste);
}

} // namespace
} // namespace tessavox::tests
