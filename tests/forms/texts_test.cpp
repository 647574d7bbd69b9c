#include "forms/localise_form.h"
#include "forms/string_table.h"
#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/label.h"
#include "platform/controls/menu_item.h"
#include "platform/failure.h"
#include "tests/fakes/fake_platform.h"

#include <gtest/gtest.h>

namespace tessavox {
namespace {

TEST(StringTables, GiveALanguagesOwnBlockWithItsHolesElseTheNeutralOne)
{
    constexpr StringRow neutral[] = { { 1600, "a" }, { 1601, "b" }, { 1616, "c" } };
    constexpr StringRow own[] = { { 1601, "B" }, { 1632, "D" } };
    StringTable table(own, neutral);
    EXPECT_THROW(table.LoadResString(1600), Failure); // a hole in a block that it has
    EXPECT_EQ(table.LoadResString(1601), "B");
    EXPECT_EQ(table.LoadResString(1616), "c"); // it has no such block
    EXPECT_EQ(table.LoadResString(1632), "D");
    for (const int id : { 0, -1, 1599, 1615, 1617, 1633, 9999 })
        EXPECT_THROW(table.LoadResString(id), Failure) << id;
    table.set_language({});
    EXPECT_EQ(table.LoadResString(1600), "a");
}

TEST(StringTables, PutAValueIntoAText)
{
    constexpr StringRow rows[] = { { 1, "The file %1 is %1." }, { 2, "Nothing" } };
    const StringTable table({}, rows);
    EXPECT_EQ(table.with_value(1, "a%1"), "The file a%1 is %1.");
    EXPECT_EQ(table.with_value(2, "a"), "Nothing");
}

TEST(StringTables, HoldTheNeutralTextsOfTheTable)
{
    const StringTable table;
    const std::pair<int, const char*> telling[]
        = { { 1000, "&File" }, { 1106, "Speak to &File                                       " },
              { 1411, "&no scipt" }, { 2000, "Tessavox:Right click to show options" },
              { 2101, "Speaker:  " }, { 2206, "Line Number: " } };
    for (const auto& [id, text] : telling)
        EXPECT_EQ(table.LoadResString(id), text);
    for (const int id : { 1704, 2002, 2087 })
        EXPECT_THROW(table.LoadResString(id), Failure) << id;
}

struct Window : Form {
    explicit Window(Forms& forms)
        : Form(forms, "Window", FormKind::dialog, 100, 100)
    {
        Tag = "10";
        Caption = "design";
        const std::pair<Control*, const char*> tags[] = { { &label, "11" }, { &hole, "19" },
            { &wrong, "11x" }, { &button, "12 and more" }, { &plain, "" } };
        for (const auto& [control, tag] : tags) {
            control->Tag = tag;
            control->Caption = "design";
        }
        button.ToolTipText = "13";
        plain.ToolTipText = "words";
        item.Caption = "14";
        separator.Caption = "-";
    }
    Label label{ *this, "label" }, hole{ *this, "hole" }, wrong{ *this, "wrong" };
    CommandButton button{ *this, "button" }, plain{ *this, "plain" };
    MenuItem item{ *this, "item" }, separator{ *this, "separator" };
    TabStrip tabs{ *this, "tabs", { { "text", "design", "15", "16" }, { "xml", "design", "" } } };
    ToolBar bar{ *this, "bar", { { "New", "design", "17" }, {} } };
};

TEST(Localising, GivesEachKindOfControlItsTextAndLeavesTheDesignWhereThereIsNone)
{
    constexpr StringRow rows[] = { { 10, "title" }, { 11, "label" }, { 12, "button" },
        { 13, "tip" }, { 14, "item" }, { 15, "tab" }, { 16, "tab tip" }, { 17, "tool tip" } };
    FakePlatform outside;
    Forms forms(outside.windows, outside.platform.post, [] {});
    Window window(forms);
    LocaliseForm(window, StringTable({}, rows));
    const std::pair<const Property<std::string>&, const char*> expected[] = {
        { window.Caption, "title" },
        { window.label.Caption, "label" },
        { window.hole.Caption, "design" },
        { window.wrong.Caption, "design" }, // a label's number has to be all of it
        { window.button.Caption, "button" }, // a button's needn't
        { window.button.ToolTipText, "tip" },
        { window.plain.Caption, "design" },
        { window.plain.ToolTipText, "words" },
        { window.item.Caption, "item" },
        { window.separator.Caption, "-" },
        { window.tabs.Tabs()[0].Caption, "tab" },
        { window.tabs.Tabs()[0].ToolTipText, "tab tip" },
        { window.tabs.Tabs()[1].Caption, "design" },
        { window.bar.button(1).ToolTipText, "tool tip" },
        { window.bar.button(1).Caption, "design" },
    };
    for (const auto& [property, text] : expected)
        EXPECT_EQ(property.get(), text);
}

} // namespace
} // namespace tessavox
