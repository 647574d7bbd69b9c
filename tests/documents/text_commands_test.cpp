#include "documents/speech_tags.h"
#include "forms/find_controls.h"
#include "forms/tag_controls.h"
#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using TextCommands = StartedProgramTest;

// Finding and replacing ---------------------------------------------------------------------------

struct Finding : TextCommands {
    Finding()
    {
        main.mnuEditFind.run();
        find = window<FindControls>("frmFind");
    }
    void look_for(const std::string& wanted, const std::string& replacement = {})
    {
        find->txtFind.Text = wanted;
        find->txtReplace.Text = replacement;
    }
    /// What a click leaves: the selected text and its place, the caption, and the message.
    std::string click(CommandButton& button)
    {
        button.user_press();
        std::string then = selected() + "@" + std::to_string(pane().SelStart()) + " "
            + find->cmdFind.Caption.get();
        for (const auto& box : boxes.take_shown())
            then += " [" + box.text + "]";
        return then;
    }
    FindControls* find = nullptr;
};

TEST_F(Finding, GoesForwardAndBeginsAgainOnlyByAFurtherClick)
{
    show(u"a bird and a Bird");
    look_for("bird");
    const char* const then[] = { "bird@2 &Find Next", "Bird@13 &Find Next",
        "Bird@13 &Find [The Specified Region Has Been Searched.]", "bird@2 &Find Next" };
    for (const char* expected : then)
        EXPECT_EQ(click(find->cmdFind), expected);
    EXPECT_EQ(windows.focused, &document().rtfText);
    find->chkMatchCase.Value = 1;
    look_for("Bird"); // a change doesn't begin anew
    EXPECT_EQ(click(find->cmdFind), "Bird@13 &Find Next");
    find->cmdCancel.user_press();
    main.mnuEditFind.run();
    find = window<FindControls>("frmFind");
    EXPECT_EQ(find->txtFind.Text.get() + find->cmdFind.Caption.get(), "&Find");
    look_for("fish");
    EXPECT_EQ(click(find->cmdFind), "Bird@13 &Find [Text not found]");
    look_for("");
    EXPECT_EQ(click(find->cmdFind), "Bird@13 &Find [Text not found]");
    frmDocument& first = document();
    open_another();
    show(u"no bird", 6, 0);
    look_for("bird");
    EXPECT_EQ(click(find->cmdFind), "bird@3 &Find Next");
    first.user_activated(); // the next one is searched from its own selection on
    EXPECT_EQ(click(find->cmdFind), "Bird@13 &Find [The Specified Region Has Been Searched.]");
}

TEST_F(Finding, ReplacesASelectionThatIsTheSearchedText)
{
    struct Case {
        int match_case;
        int whole_word;
        const char* text_after;
    };
    for (const Case& row :
        { Case{ 0, 0, "xfoo foo" }, Case{ 1, 0, "Foofoo foo" }, Case{ 0, 1, "xfoo foo" } }) {
        show(u"Foofoo foo", 0, 3);
        look_for("foo", "x");
        find->chkMatchCase.Value = row.match_case;
        find->chkWholeWord.Value = row.whole_word;
        click(find->cmdReplace);
        EXPECT_EQ(text(), row.text_after);
    }
    look_for("straße", "x");
    find->chkMatchCase.Value = 0;
    show(u"STRASSE", 0, 7);
    click(find->cmdReplace);
    EXPECT_EQ(text(), "x");
}

TEST_F(Finding, ReplacesAllByPlacesBeforeTheReplacement)
{
    const struct {
        const char16_t* text;
        const char* wanted;
        const char* replacement;
        const char* then;
    } cases[] = {
        { u"a cat, a hat", "at", "og",
            "a cog, a hog|@12 &Find [The Specified Region Has Been Searched.\r\n"
            "2 replacements have been made.]" },
        { u"foofoo", "foo", "f",
            "ffoo|@1 &Find [The Specified Region Has Been Searched.\r\n"
            "1 replacements have been made.]" },
        { u"abc", "x", "y", "abc|@0 &Find" },
        { u"abc", "", "y", "abc|@0 &Find" },
    };
    for (const auto& row : cases) {
        show(row.text);
        look_for(row.wanted, row.replacement);
        const std::string then = click(find->cmdReplaceAll);
        EXPECT_EQ(text() + "|" + then, row.then);
    }
}

TEST_F(Finding, CanBeEndedWhereReplacingNeverEnds)
{
    show(u"aaa");
    look_for("a", "aa");
    blocking_work.looks_until_escape = 3;
    const std::string then = click(find->cmdReplaceAll);
    EXPECT_NE(then.find("32767 replacements"), std::string::npos) << then; // 16 bits hold no more
    EXPECT_GT(text().size(), 32767u);
    EXPECT_EQ(text().find_first_not_of('a'), std::string::npos);
    EXPECT_EQ(blocking_work.shown, "The text is being replaced. Escape ends it.");
}

// Speech tags -------------------------------------------------------------------------------------

TEST_F(TextCommands, PutSpeechTagsAfterTheSelection)
{
    const auto press = [this](MenuItem& item, const std::string& name, auto& controls) {
        item.run();
        controls = window<std::remove_reference_t<decltype(*controls)>>(name);
        EXPECT_EQ(controls->Caption, "Tessavox");
    };
    SilenceControls* silence = nullptr;
    ChoiceControls* choice = nullptr;
    show(u"one two", 0, 3);
    pane().set_SelColor(RGB(1, 2, 3));
    press(main.menuInsertSlience, "Selectionfrm1", silence);
    silence->Command2.user_press();
    EXPECT_EQ(shell.asked.size(), 1u); // the help; the dialog stays
    silence->Command1.user_press();
    EXPECT_FALSE(window("Selectionfrm1"));
    EXPECT_EQ(text(), "one<silence msec=\"500\" /  >  two");
    EXPECT_EQ(pane().SelColor(), RGB(1, 2, 3)); // as typed next
    pane().user_selects(0, 3);
    EXPECT_EQ(pane().SelColor(), tag_color);

    show(u"");
    press(main.mnuInsertSpeed, "Selectionfrm", choice);
    EXPECT_EQ(choice->Combo1.ListCount(), 21);
    EXPECT_EQ(choice->Combo1.List(0) + choice->Combo1.List(20), "-1010");
    EXPECT_EQ(choice->Combo1.Text, "-1");
    choice->Combo1.user_edit("a\"b");
    choice->Command1.user_press();
    press(main.mnuInsertMaleReader, "SelectionVoice", choice);
    EXPECT_EQ(choice->SkinLabel1.Caption, "Speaker");
    EXPECT_EQ(choice->Combo1.Text, "Anna");
    choice->Command1.user_press();
    EXPECT_EQ(text(), "<rate speed=\"a\"b\" > <VOICE REQUIRED=\"NAME=Anna\" > ");

    speech.voices.clear();
    press(main.mnuInsertMaleReader, "SelectionVoice", choice);
    EXPECT_EQ(choice->Combo1.Text, "Please select one voice");
    process.tables.documentChanged[1] = false;
    document().Unload();
    choice->Command1.user_press(); // without a document: nothing, and it goes
    EXPECT_FALSE(window("SelectionVoice"));
}

TEST_F(TextCommands, PutSpellTagsAroundTheSelection)
{
    show(u"one two", 4, 3);
    pane().set_SelColor(RGB(1, 2, 3));
    main.mnuInsertSpell.run();
    EXPECT_EQ(text(), "one <spell>two</spell>");
    const std::pair<int, std::int32_t> colors[]
        = { { 4, tag_color }, { 11, RGB(1, 2, 3) }, { 14, tag_color } };
    for (const auto& [at, color] : colors) {
        pane().user_selects(at, 1);
        EXPECT_EQ(pane().SelColor(), color) << at;
    }
    show(u"ab", 0, 1);
    pane().set_SelColor(RGB(1, 2, 3));
    pane().user_selects(0, 2); // two colours
    main.mnuInsertSpell.run();
    EXPECT_EQ(pane().SelColor(), tag_color); // nobody knows the old one
}

// Edit and Format ---------------------------------------------------------------------------------

TEST_F(TextCommands, ChangeLettersByWayOfTheClipboard)
{
    const std::tuple<MenuItem*, const char16_t*, const char*> cases[] = {
        { &main.mnuFormatCSLower, u"ÄBC Ω", "äbc ω" },
        { &main.mnuFormatCSUpper, u"straße", "STRASSE" },
        { &main.mnuFormatCSSC, u"hello NATO.dot\tjean-PAUL's\n3rd\u000B(x",
            "Hello Nato.dot\tJean-paul's\n3rd\u000B(x" },
        { &main.mnuFormatCSSC, u"", "" },
    };
    for (const auto& [item, before, after] : cases) {
        clipboard.text = u"mine";
        show(before, 1);
        main.mnuEditSelectAll.run();
        process.tables.documentChanged[1] = false;
        item->run();
        EXPECT_EQ(process.tables.documentChanged[1], *before != 0) << after;
        EXPECT_EQ(text(), after);
        EXPECT_TRUE(clipboard.text.empty());
    }
}

TEST_F(TextCommands, FormatParagraphsAndScripts)
{
    show(u"a\nb");
    main.mnuFormatBullets.run();
    main.mnuEditSelectAll.run();
    EXPECT_EQ(pane().SelBullet(), std::nullopt);
    main.mnuFormatBullets.run(); // mixed: on for all
    EXPECT_EQ(pane().SelBullet(), true);
    pane().set_SelHangingIndent(200);
    main.mnuFormatBullets.run();
    EXPECT_EQ(pane().SelBullet(), false);
    EXPECT_EQ(pane().SelHangingIndent(), 0);
    const std::pair<MenuItem*, int> scripts[] = { { &main.mnuFormatSubScript, -55 },
        { &main.mnuFormatSuperScript, 55 }, { &main.mnuFormatNoScript, 0 } };
    for (const auto& [item, offset] : scripts) {
        item->run();
        EXPECT_EQ(pane().SelCharOffset(), offset);
    }
    for (MenuItem* item : { &main.mnuWindowCascade, &main.mnuWindowTileHorizontal,
             &main.mnuWindowTileVertical, &main.mnuWindowArrangeIcons })
        item->run();
    EXPECT_EQ(arrangement.asked, "0123");
    process.tables.documentChanged[1] = false;
    document().Unload();
    main.mnuFormatSuperScript.run(); // makes a document
    EXPECT_EQ(pane().SelCharOffset(), 55);
}

/// Nothing arms it yet.
TEST_F(TextCommands, CopyFormatsByTwoClicksOnceThatIsArmed)
{
    const auto formats = [this] {
        std::ostringstream all;
        all << *pane().SelBold() << *pane().SelItalic() << *pane().SelUnderline()
            << *pane().SelStrikeThru() << ' ' << *pane().SelFontName() << ' '
            << *pane().SelFontSize() << ' ' << *pane().SelColor();
        return all.str();
    };
    const auto click = [this](int button) {
        pane().MouseUp(button, 0);
        return process.format_copy.FormatCopyState;
    };
    FakePane& first = pane();
    show(u"ab", 0, 1);
    pane().set_SelBold(true);
    pane().set_SelUnderline(true);
    pane().set_SelFontName("Mono");
    pane().set_SelFontSize(10.5);
    pane().set_SelColor(RGB(1, 2, 3));
    open_another();
    show(u"cd", 0, 1);
    pane().set_SelItalic(true);
    const std::string before = formats();
    EXPECT_EQ(click(1), 0);
    EXPECT_EQ(formats() + " " + selected(), before + " c");
    process.format_copy.FormatCopyState = 1;
    EXPECT_EQ(click(2), 1);
    EXPECT_EQ(windows.popped_up, "mnuPopUp");

    process.tables.documentWindows[0]->user_activated();
    EXPECT_EQ(click(1), 2);
    EXPECT_EQ(pane().SelLength(), 0);
    process.tables.documentWindows[1]->user_activated();
    EXPECT_EQ(first.mouse_pointer, 99);
    EXPECT_EQ(pane().mouse_pointer, 99);
    EXPECT_EQ(click(1), 3);
    EXPECT_EQ(formats(), "1010 Mono 10 197121");
    EXPECT_EQ(first.mouse_pointer, 0);
    EXPECT_EQ(pane().mouse_pointer, 0);
    pane().set_SelBold(false);
    EXPECT_EQ(click(1), 3);
    EXPECT_EQ(pane().SelBold(), false);

    pane().user_selects(0, 2); // what it mixes stays as copied before
    process.format_copy.FormatCopyState = 1;
    click(1);
    pane().user_selects(1, 1);
    click(1);
    EXPECT_EQ(formats(), "0010 Mono 10 197121");
}

TEST_F(TextCommands, ChooseAFontAndRememberItAlsoWhenCancelled)
{
    show(u"ab", 0, 2);
    pane().set_SelFontName("Serif");
    pane().set_SelFontSize(10.5);
    pane().set_SelStrikeThru(true);
    pane().user_selects(0, 1);
    pane().set_SelBold(true);
    pane().user_selects(0, 2);
    main.mnuFormatFont.run();
    EXPECT_EQ(font_dialogs.asked.Flags, 259);
    EXPECT_EQ(font_dialogs.asked.FontName, "Serif");
    EXPECT_EQ(file("setting2.txt"), file_of_lines({ "Serif", " 10.5", "False" }));
    EXPECT_EQ(pane().SelBold(), false); // mixed before: the dialog's own value is given back
    EXPECT_EQ(pane().SelStrikeThru(), false); // never fed in
    font_dialogs.answer = FontChoice{ 259, "Sans", 14, true, true, true, true, RGB(9, 8, 7) };
    main.mnuPopFont.run();
    EXPECT_EQ(pane().SelFontName(), "Sans");
    EXPECT_EQ(pane().SelFontSize(), 14);
    EXPECT_TRUE(*pane().SelItalic() && *pane().SelUnderline() && *pane().SelStrikeThru());
    EXPECT_EQ(pane().SelColor(), RGB(9, 8, 7));
    EXPECT_EQ(file("setting2.txt"), file_of_lines({ "Sans", " 14", "True" }));
}

} // namespace
} // namespace tessavox::tests
