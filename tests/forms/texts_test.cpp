#include "forms/localise_form.h"
#include "forms/string_table.h"
#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/label.h"
#include "tests/fakes/fake_platform.h"

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

/// A control of each kind that takes its texts in another way, and one of a kind that nobody names.
struct SomeControls : Form {
    explicit SomeControls(Forms& forms)
        : Form(forms, "Some", FormKind::dialog, 100, 100)
    {
    }
    Label label{ *this, "label" };
    Control skin_label{ *this, "skin label", "SkinLabel" };
    Control button{ *this, "button", "Button" };
    MenuItem menu{ *this, "menu" };
    CommandButton command{ *this, "command" };
    Control lower_case{ *this, "lower case", "label" };
    TabStrip tabs{ *this, "tabs", { { "a", "A", "1600", "1601" }, { "b", "B", "1602", "tip" } } };
    ToolBar bar{ *this, "bar", { { "c", "C", "1600", "1601" }, { "", "D", "", "tip" } } };
};

TEST(LocaliseForm, TakesTextsByTheKindOfControlAndStepsOverWhatIsNoNumber)
{
    FakePlatform outside;
    constexpr StringRow own[] = { { 1600, "Eins" }, { 1601, "Zwei" } }; // and no 1602
    outside.texts.set_language(own);
    Forms forms(outside.windows, outside.platform.post, [] {});
    SomeControls form(forms);
    const struct {
        const char* number;
        const char* strict; // the text where the number has to be the whole of it
        const char* careful; // and where leading digits count
    } cases[]
        = { { "1600", "Eins", "Eins" }, { "1600x", "-", "Eins" }, { " 1600 ", "Eins", "Eins" },
              { "", "-", "-" }, { "x1600", "-", "-" }, { "0", "-", "-" }, { "-1600", "-", "-" },
              { "1602", "-", "-" }, { "67136", "-", "-" }, { "99999999999", "-", "-" } };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.number);
        for (Control* control : form.controls()) {
            control->Caption = control == &form.menu ? row.number : "-";
            control->Tag = row.number;
            control->ToolTipText = row.number;
        }
        form.Caption = "-";
        form.Tag = row.number;
        LocaliseForm(form, outside.texts);
        EXPECT_EQ(form.Caption, row.strict);
        for (const Control* control :
            { static_cast<Control*>(&form.label), &form.skin_label, &form.button }) {
            EXPECT_EQ(control->Caption, row.strict) << control->name();
            EXPECT_EQ(control->ToolTipText, row.number) << control->name();
        }
        EXPECT_EQ(form.menu.Caption, *row.strict == '-' ? row.number : row.strict);
        for (const Control* control : { static_cast<Control*>(&form.command), &form.lower_case }) {
            EXPECT_EQ(control->Caption, row.careful) << control->name();
            EXPECT_EQ(control->ToolTipText, *row.careful == '-' ? row.number : row.careful);
        }
    }
    const auto texts_of = [](const std::deque<BarMember>& members) {
        std::string all;
        for (const BarMember& member : members)
            all += member.Caption.get() + " " + member.ToolTipText.get() + "; ";
        return all;
    };
    EXPECT_EQ(texts_of(form.tabs.Tabs()), "Eins Zwei; B tip; ");
    EXPECT_EQ(texts_of(form.bar.Buttons()), "C Eins; D tip; ");
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

} // namespace
} // namespace tessavox
