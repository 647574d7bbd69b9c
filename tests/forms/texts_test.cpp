#include "forms/string_table.h"
#include "platform/failure.h"

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
