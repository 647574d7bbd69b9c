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

/// Misspellings and blanks at the ends included; from number 2300 on the texts are ours to change.
TEST(StringTables, HoldTheNeutralTextsOfTheDesign)
{
    std::uint64_t fingerprint = 14695981039346656037U; // FNV-1a
    for (const StringRow& row : neutral_strings()) {
        for (const char letter : row.id < 2300 ? std::to_string(row.id) + row.text : "")
            fingerprint = (fingerprint ^ static_cast<unsigned char>(letter)) * 1099511628211U;
    }
    EXPECT_EQ(fingerprint, 8030155468131687533U) << "a text that the design fixes is another one";
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
    for (const int language : { 1031, 1066 }) {
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
            EXPECT_TRUE(is_first) << text << " and " << other->second;
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
