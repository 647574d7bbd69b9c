#include "forms/localise_form.h"
#include "forms/string_table.h"
#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/label.h"
#include "platform/controls/menu_item.h"
#include "platform/failure.h"
#include "platform/number_text.h"
#include "tests/fakes/running_program.h"

#include <gtest/gtest.h>

#include <set>

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

/// The texts by design, misspellings and blanks at the ends included.
constexpr StringRow by_design[] = { { 1000, "&File" }, { 1001, "&New" }, { 1002, "&Open..." },
    { 1003, "&Save" }, { 1004, "Save &As..." }, { 1005, "&Print..." }, { 1006, "&Close" },
    { 1007, "E&xit" }, { 1018, "New" }, { 1019, "Open" }, { 1020, "Save" }, { 1021, "Save As..." },
    { 1022, "Print" }, { 1023, "Exit" }, { 1101, "&Control" },
    { 1102, "&Speak                                " },
    { 1103, "S&top                                 " },
    { 1104, "&Pause                                " },
    { 1105, "Read &Clipboard                  " },
    { 1106, "Speak to &File                                       " },
    { 1107, "P&lay                                    " }, { 1108, "Save Clipboard to &Wav" },
    { 1129, "Read" }, { 1130, "Stop" }, { 1131, "Pause" }, { 1132, "Read Clipboard" },
    { 1133, "Read to File" }, { 1134, "Play File" }, { 1135, "Save Clipboard to File" },
    { 1201, "&Edit" }, { 1202, "Cu&t                           " },
    { 1203, "&Copy                        " }, { 1204, "&Paste                         " },
    { 1205, "&Select All                    " }, { 1206, "&Find and Replace" }, { 1207, "Cut" },
    { 1208, "Copy" }, { 1209, "Paste" }, { 1210, "Select All" }, { 1401, "&Format" },
    { 1402, "F&ont" }, { 1403, "&Bullets" }, { 1404, "&Change Case" }, { 1405, "&lower case" },
    { 1406, "&UPPERCASE" }, { 1407, "&Sentence Case" }, { 1408, "&Script" }, { 1409, "su&bScript" },
    { 1410, "su&perScripte" }, { 1411, "&no scipt" }, { 1421, "Font" }, { 1501, "&Insert" },
    { 1502, "&Voice tag" }, { 1503, "&Speed tag" }, { 1504, "S&pell tag" },
    { 1505, "S&ilence tag" }, { 1601, "&Window" }, { 1602, "&New Window" }, { 1603, "&Cascade" },
    { 1604, "Tile &Vertical" }, { 1605, "Tile &Horizontal" }, { 1606, "&Arrange Icons" },
    { 1701, "&Help" }, { 1702, "Help &File" }, { 1703, "&Email to us" },
    { 1705, "View Our Website" }, { 1706, "&About " }, { 1707, "About " }, { 1710, "Help File" },
    { 1800, "&Website" }, { 1900, "Popmenu" }, { 1901, "Show Software" }, { 1921, "Close" },
    { 1927, "Stop" }, { 1928, "Read Clipboard" }, { 1929, "Pause" }, { 1930, "Read To File" },
    { 1931, "Play File" }, { 1932, "Main Windows" }, { 1936, "Status:" }, { 1937, "Stopped" },
    { 1938, "File Location" }, { 1939, "Record" }, { 1940, "Stop" },
    { 2000, "Tessavox:Right click to show options" }, { 2001, "No opened documents!" },
    { 2013, "Version:3.5.1" }, { 2014, "&Close" }, { 2056, "Text not found" },
    { 2057, "The Specified Region Has Been Searched." }, { 2058, " replacements have been made." },
    { 2059, "&Find Next" }, { 2060, "&Find" }, { 2061, "&Replace.." }, { 2062, "Replace &All" },
    { 2063, "Replace with" }, { 2064, "Find Whole Word Only" }, { 2065, "Match Case" },
    { 2066, "&Cancel" }, { 2067, "Find" }, { 2070, "Tessavox has been opened." }, { 2071, "Close" },
    { 2072, "Open a new window >>>" }, { 2080, "Speed" }, { 2081, "Silence Time" },
    { 2082, "Milliseconds" }, { 2084, "Help" }, { 2085, "Please select one voice" }, { 2086, "OK" },
    { 2100, "Speaking Speed: " }, { 2101, "Speaker:  " },
    { 2102, "This document has been changed. Do you wish to save?" },
    { 2103, "Save to a Wave File" }, { 2104, "WAV file successfully written!" },
    { 2105, "Save to Wave file Error:" }, { 2106, "Speak a Wave File" }, { 2107, "Resume" },
    { 2109, "Speaker" }, { 2110, "Format" }, { 2111, "Speed" }, { 2112, "Volume" },
    { 2113, "Read clipboard Automatically" }, { 2114, "Reset" }, { 2116, "Text" }, { 2117, "Web" },
    { 2118, "Dock" }, { 2119, "Read the selected text" }, { 2120, "Stop Reading" },
    { 2121, "Pause/reasume reading" }, { 2122, "Select one voice" },
    { 2123, "Select voice format" }, { 2124, "Check to read the text in clipboard automatically" },
    { 2125, "Reset setting into default value" }, { 2126, "Read and Save the text into Wav file" },
    { 2127, "Play a wav file" }, { 2128, "Read the text in clipboard" },
    { 2129, "Dock software windows" }, { 2130, "View in Rich Text Format" },
    { 2131, "View in web format" }, { 2200, "Back" }, { 2201, "Forward" }, { 2202, "Refresh" },
    { 2203, "Search" }, { 2204, "Stop" }, { 2205, "Tessavox" }, { 2206, "Line Number: " } };
TEST(StringTables, HoldTheNeutralTextsOfTheDesign)
{
    const std::span<const StringRow> rows = neutral_strings();
    ASSERT_GT(rows.size(), std::size(by_design));
    for (std::size_t i = 0; i < std::size(by_design); ++i) {
        EXPECT_EQ(rows[i].id, by_design[i].id);
        EXPECT_STREQ(rows[i].text, by_design[i].text);
    }
    EXPECT_EQ(rows[std::size(by_design)].id, 2300); // from here on they are ours
}

/// The ids of a set without those of other blocks and holes.
std::set<int> ids_of(std::span<const StringRow> rows)
{
    std::set<int> ids;
    for (const StringRow& row : rows)
        ids.insert(row.id);
    EXPECT_EQ(ids.size(), rows.size());
    EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(),
        [](const StringRow& left, const StringRow& right) { return left.id < right.id; }));
    return ids;
}

TEST(Languages, HaveAllTextsButTheGermanHoles)
{
    std::set<int> expected = ids_of(neutral_strings());
    expected.insert(2087); // of the translated sets only
    EXPECT_EQ(ids_of(strings_1066()), expected);
    std::erase_if(expected, [](int id) {
        const int block = id / 16 * 16;
        return block == 1792 || block == 2048 || block == 2128 || (id >= 2064 && id <= 2067);
    });
    EXPECT_EQ(ids_of(german_strings()), expected);
    const StringTable german(strings_of_language(1031));
    EXPECT_EQ(german.LoadResString(1206), "&Suchen oder Ersetzen");
    EXPECT_EQ(german.LoadResString(2060), "&Find"); // no such block
    EXPECT_THROW(german.LoadResString(2064), Failure); // a hole
    EXPECT_EQ(StringTable(strings_of_language(1066)).LoadResString(2060), "查找");
}

TEST(Languages, AreChosenByTheUsersLanguageWhateverTheCountry)
{
    for (const int german : { 1031, 3079 })
        EXPECT_EQ(strings_of_language(german).data(), german_strings().data());
    EXPECT_EQ(strings_of_language(1066).data(), strings_1066().data());
    for (const int other : { 0, 1033, 2052, 1028, 1041 }) // Chinese ones too
        EXPECT_TRUE(strings_of_language(other).empty()) << other;
}

/// No two entries of a menu, nor two menus of the bar, answer to the same letter.
TEST(Languages, GiveEachMenuItsLetters)
{
    RunningProgram program;
    for (const int language : { 0, 1031, 1066 }) {
        const StringTable texts(strings_of_language(language));
        std::map<std::pair<const Control*, char>, std::string> letters;
        for (const Control* control : program.main.controls()) {
            const int id = leading_number(control->Caption.get());
            const bool pops_up = control->container() == &program.main.mnuPopUp
                || control->container() == &program.main.Popmenu;
            if (control->TypeName() != "Menu" || id == 0 || pops_up)
                continue;
            const std::string text = texts.LoadResString(id);
            const auto at = text.find('&');
            if (at == std::string::npos)
                continue;
            const char letter = static_cast<char>(std::tolower(text[at + 1]));
            const auto [other, is_first]
                = letters.emplace(std::pair(control->container(), letter), text);
            EXPECT_TRUE(is_first || language == 0) << text << " and " << other->second;
        }
    }
}

struct Window : Form {
    explicit Window(Forms& forms)
        : Form(forms, "Window", FormKind::dialog, 100, 100)
    {
        Tag = "10";
        Caption = "design";
        const std::pair<Control*, const char*> tags[]
            = { { &label, "11" }, { &hole, "19" }, { &wrong, "11x" }, { &skin_label, "11" },
                  { &button, "12 and more" }, { &plain, "" }, { &zero, "0" } };
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
    Control skin_label{ *this, "skin_label", "SkinLabel" };
    CommandButton button{ *this, "button" }, plain{ *this, "plain" }, zero{ *this, "zero" };
    MenuItem item{ *this, "item" }, separator{ *this, "separator" };
    TabStrip tabs{ *this, "tabs", { { "text", "design", "15", "16" }, { "xml", "design", "" } } };
    ToolBar bar{ *this, "bar", { { "New", "design", "17" }, {} } };
};

TEST(Localising, GivesEachKindOfControlItsTextAndLeavesTheDesignWhereThereIsNone)
{
    constexpr StringRow rows[]
        = { { 0, "none" }, { 10, "title" }, { 11, "label" }, { 12, "button" }, { 13, "tip" },
              { 14, "item" }, { 15, "tab" }, { 16, "tab tip" }, { 17, "tool tip" } };
    FakePlatform outside;
    Forms forms(outside.windows, outside.platform.post, [] {});
    Window window(forms);
    LocaliseForm(window, StringTable({}, rows));
    const std::pair<const Property<std::string>&, const char*> expected[] = {
        { window.Caption, "title" }, { window.label.Caption, "label" },
        { window.hole.Caption, "design" },
        { window.wrong.Caption, "design" }, // a label's number has to be all of it
        { window.skin_label.Caption, "label" },
        { window.button.Caption, "button" }, // a button's needn't
        { window.button.ToolTipText, "tip" }, { window.plain.Caption, "design" },
        { window.plain.ToolTipText, "words" }, { window.zero.Caption, "design" },
        { window.item.Caption, "item" }, { window.separator.Caption, "-" },
        { window.tabs.Tabs()[0].Caption, "tab" }, { window.tabs.Tabs()[0].ToolTipText, "tab tip" },
        { window.tabs.Tabs()[1].Caption, "design" },
        { window.bar.button(1).ToolTipText, "tool tip" }, { window.bar.button(1).Caption, "design" }
    };
    for (const auto& [property, text] : expected)
        EXPECT_EQ(property.get(), text);
}

} // namespace
} // namespace tessavox
