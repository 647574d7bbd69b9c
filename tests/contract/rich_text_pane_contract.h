// What every text pane has to do. A Bed has pane(), user_types(text) over the selection,
// user_selects(start, length), and the files() of the pane with a path(name) for them.
#pragma once

#include "platform/failure.h"
#include "platform/file_store.h"
#include "platform/rich_text_pane.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace tessavox {

using namespace std::string_literals;

template <class Bed> struct RichTextPaneContract : testing::Test {
    RichTextPaneContract()
    {
        pane.Change = [this] {
            ++changes;
            text_at_change = pane.Text().view();
        };
        pane.SelChange = [this] {
            ++selection_changes;
            selected_at_change = pane.SelText().view();
        };
    }
    void forget_events() { changes = selection_changes = 0; }

    Bed bed;
    RichTextPane& pane = bed.pane();
    int changes = 0;
    int selection_changes = 0;
    std::u16string text_at_change, selected_at_change;
};

TYPED_TEST_SUITE_P(RichTextPaneContract);

TYPED_TEST_P(RichTextPaneContract, TextComesBackWithSingleLineEndsAndNothingUnholdable)
{
    const std::pair<std::u16string, std::u16string> rows[] = {
        { u"", u"" },
        { u"one\r\ntwo\rthree\nfour\r\r\n", u"one\ntwo\nthree\nfour\n\n" },
        { u"hard\u00a0blank\tand tab\n", u"hard\u00a0blank\tand tab\n" },
        { u"\U0001F600 and e\u0301", u"\U0001F600 and e\u0301" },
        { std::u16string(u"nul\0s", 5), u"nul\ufffds" },
        { u"\ufdd0\ufdd1\ufffc\ufffd", u"\ufffd\ufffd\ufffd\ufffd" },
        { u"<b>&amp;</b>", u"<b>&amp;</b>" },
    };
    for (const auto& [in, out] : rows) {
        this->pane.set_Text(in);
        EXPECT_EQ(this->pane.Text().view(), out);
    }
}

TYPED_TEST_P(RichTextPaneContract, AnEditIsOneChangeThatTheEventsFindDone)
{
    RichTextPane& pane = this->pane;
    const struct {
        std::function<void()> edit; // of "two" in "one two three"
        std::u16string text;
        std::int32_t caret;
    } rows[] = {
        { [&] { pane.set_Text(u"other words"); }, u"other words", 0 },
        { [&] { this->bed.user_types(u"2"); }, u"one 2 three", 5 },
        { [&] { pane.set_SelText(u"2\r\n2"); }, u"one 2\n2 three", 7 },
        { [&] { pane.set_SelText(u""); }, u"one  three", 4 },
        { [&] { pane.set_SelRTF(u"{\\rtf1\\ansi 2 {\\b 2}}"); }, u"one 2 2 three", 7 },
        { [&] { pane.set_SelRTF(u"{2}\u4e2d"); }, u"one {2}\u4e2d three", 8 }, // as it is
    };
    for (const auto& row : rows) {
        pane.set_Text(u"one two three");
        this->bed.user_selects(4, 3);
        EXPECT_EQ(this->selected_at_change, u"two");
        this->forget_events();
        row.edit();
        EXPECT_EQ(this->text_at_change, row.text);
        EXPECT_EQ(this->selected_at_change, u"");
        EXPECT_EQ(pane.SelStart(), row.caret) << to_utf8(row.text);
        EXPECT_EQ(this->changes, 1) << to_utf8(row.text);
        EXPECT_EQ(this->selection_changes, 1) << to_utf8(row.text);
        pane.set_SelText(u""); // nothing in the place of nothing
        EXPECT_EQ(this->changes, 1);
    }
}

TYPED_TEST_P(RichTextPaneContract, OffsetsCountAlikeInTextAndSelectionAtEveryPlace)
{
    const std::u16string text = u"a\n\nb\U0001F600c\n\u00e4\u0323 d\n";
    this->pane.set_Text(text);
    const auto size = static_cast<std::int32_t>(text.size());
    for (std::int32_t start = 0; start <= size; ++start) {
        for (std::int32_t length = 0; start + length <= size; ++length) {
            this->pane.set_SelStart(start);
            this->pane.set_SelLength(length);
            ASSERT_EQ(this->pane.SelStart(), start);
            ASSERT_EQ(this->pane.SelLength(), length);
            ASSERT_EQ(this->pane.SelText().view(),
                text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length)));
        }
    }
}

TYPED_TEST_P(RichTextPaneContract, ASelectionIsCutAtTheEndAndRefusedBeforeTheStart)
{
    this->pane.set_Text(u"12345");
    this->pane.set_SelStart(99);
    EXPECT_EQ(this->pane.SelStart(), 5);
    this->pane.set_SelStart(3);
    this->pane.set_SelLength(std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(this->pane.SelLength(), 2);
    EXPECT_THROW(this->pane.set_SelStart(-1), Failure);
    EXPECT_THROW(this->pane.set_SelLength(-1), Failure);
    EXPECT_EQ(this->pane.SelStart(), 3);
    EXPECT_EQ(this->pane.SelLength(), 2);
    this->pane.set_SelStart(4);
    EXPECT_EQ(this->pane.SelLength(), 0);
}

TYPED_TEST_P(RichTextPaneContract, ASelectionThatDiffersIsReportedOnceWhoeverMakesIt)
{
    this->pane.set_Text(u"one two three");
    this->forget_events();
    this->pane.set_SelStart(4);
    EXPECT_EQ(this->selection_changes, 1);
    this->pane.set_SelLength(3);
    EXPECT_EQ(this->selection_changes, 2);
    this->pane.set_SelLength(3);
    this->bed.user_selects(4, 3);
    EXPECT_EQ(this->selection_changes, 2);
    this->bed.user_selects(0, 3);
    EXPECT_EQ(this->selection_changes, 3);
    EXPECT_EQ(this->pane.SelText().view(), u"one");
    EXPECT_EQ(this->changes, 0);
}

TYPED_TEST_P(RichTextPaneContract, TextPutInTheSelectionsPlaceIsFormattedAsThatWas)
{
    this->pane.set_Text(u"one two three");
    this->bed.user_selects(4, 2);
    this->pane.set_SelColor(RGB(149, 32, 19));
    this->pane.set_SelBold(true);
    this->bed.user_selects(4, 3);
    EXPECT_EQ(this->pane.SelBold(), std::nullopt); // of its three letters the last one isn't
    this->pane.set_SelText(u"2\n2");
    this->bed.user_selects(4, 3);
    EXPECT_EQ(this->pane.SelBold(), true);
    EXPECT_EQ(this->pane.SelColor(), RGB(149, 32, 19));
    this->bed.user_selects(7, 0);
    this->pane.set_SelColor(automatic_color); // of what comes next
    this->pane.set_SelText(u"!");
    this->bed.user_selects(7, 1);
    EXPECT_EQ(this->pane.SelColor(), automatic_color);
}

TYPED_TEST_P(RichTextPaneContract, EveryFormatIsReadAsSetAndAsNothingWhereItIsMixed)
{
    RichTextPane& pane = this->pane;
    const auto check = [&](auto get, auto set, auto value) {
        pane.set_Text(u"one\ntwo");
        this->bed.user_selects(1, 1);
        const auto before = (pane.*get)();
        EXPECT_NE(before, value);
        this->forget_events();
        (pane.*set)(value);
        EXPECT_EQ(this->changes, 1);
        EXPECT_EQ((pane.*get)(), value);
        this->bed.user_selects(0, 7);
        EXPECT_EQ((pane.*get)(), std::nullopt);
        this->bed.user_selects(5, 2);
        EXPECT_EQ((pane.*get)(), before);
        EXPECT_EQ(pane.Text().view(), u"one\ntwo");
    };
    using P = RichTextPane;
    check(&P::SelBold, &P::set_SelBold, true);
    check(&P::SelItalic, &P::set_SelItalic, true);
    check(&P::SelUnderline, &P::set_SelUnderline, true);
    check(&P::SelStrikeThru, &P::set_SelStrikeThru, true);
    check(&P::SelFontName, &P::set_SelFontName, std::string("DejaVu Serif"));
    check(&P::SelFontSize, &P::set_SelFontSize, 17.5);
    check(&P::SelColor, &P::set_SelColor, RGB(1, 2, 3));
    check(&P::SelCharOffset, &P::set_SelCharOffset, -55);
    check(&P::SelBullet, &P::set_SelBullet, true);
    check(&P::SelHangingIndent, &P::set_SelHangingIndent, 360);
}

TYPED_TEST_P(RichTextPaneContract, ASearchSelectsWhatItFindsAndElseNothing)
{
    const std::tuple<const char16_t*, const char16_t*, std::int32_t, int, std::int32_t> rows[] = {
        { u"foo Foo", u"FOO", 0, 0, 0 },
        { u"foo Foo", u"foo", 1, 0, 4 },
        { u"foo Foo", u"Foo", 0, find_match_case, 4 },
        { u"foo Foo", u"foo", 5, 0, -1 },
        { u"foo", u"foo", 99, 0, -1 },
        { u"foo", u"", 0, 0, -1 },
        { u"foobar bar", u"bar", 0, find_whole_word, 7 },
        { u"it's its", u"it", 0, find_whole_word, -1 },
        { u"3.14 and 14", u"14", 0, find_whole_word, 9 },
        { u"(bar), e\u0301", u"BAR", 0, find_whole_word, 1 },
        { u"e\u0301t\u00e9 et", u"e", 0, find_whole_word, -1 },
        { u"a b\nfoo", u"b\nfoo", 0, find_whole_word, 2 },
        { u"\u0416\u0443\u043a", u"\u0436\u0423\u041a", 0, 0, 0 },
        { u"stra\u00dfe STRASSE", u"strasse", 0, 0, 7 }, // lengths stay
        { u"\u03c3\u03c2\u03a3", u"\u03c2\u03c2\u03c2", 0, 0, 0 },
        { u"\U0001F600\U00010428 x", u"\U00010400", 0, 0, 2 },
        { u"12 Kelvin \u212a", u"k ", 0, 0, -1 },
        { u"12 \u212aelvin", u"kel", 0, 0, 3 },
    };
    for (const auto& [text, wanted, start, options, found] : rows) {
        this->pane.set_Text(text);
        this->bed.user_selects(1, 1);
        this->forget_events();
        EXPECT_EQ(this->pane.Find(wanted, start, options), found)
            << to_utf8(text) << " | " << to_utf8(wanted);
        const auto length = static_cast<std::int32_t>(std::u16string(wanted).size());
        EXPECT_EQ(this->pane.SelStart(), found < 0 ? 1 : found);
        EXPECT_EQ(this->pane.SelLength(), found < 0 ? 1 : length);
        EXPECT_EQ(this->selection_changes, found < 0 ? 0 : 1);
    }
    EXPECT_THROW(this->pane.Find(u"x", -1, 0), Failure);
}

TYPED_TEST_P(RichTextPaneContract, AStepOfManyChangesIsToldOnceAndSearchedAsItStands)
{
    std::u16string text, expected;
    for (int i = 0; i < 500; ++i) {
        text += u"a cat, concatenated\n";
        expected += u"a horse, concatenated\n";
    }
    this->pane.set_Text(text);
    this->forget_events();
    {
        const OneStep step(this->pane);
        std::int32_t at = 0;
        while ((at = this->pane.Find(u"cat", at, find_whole_word)) >= 0) {
            EXPECT_EQ(this->pane.SelText().view(), u"cat");
            this->pane.set_SelText(u"horse");
            at = this->pane.SelStart();
        }
        EXPECT_EQ(this->pane.Find(u"horse", 0, 0), 2); // and backwards
        this->pane.set_SelText(u"cat");
        EXPECT_EQ(this->pane.Text().view().substr(0, 8), u"a cat, c");
        this->pane.set_SelColor(7); // of what comes next
        EXPECT_EQ(this->changes + this->selection_changes, 0);
    }
    expected.replace(2, 5, u"cat");
    EXPECT_EQ(this->pane.Text().view(), expected);
    EXPECT_EQ(this->pane.SelStart(), 5);
    EXPECT_EQ(this->pane.SelColor(), 7);
    EXPECT_EQ(this->changes, 1);
    EXPECT_EQ(this->selection_changes, 1);
}

TYPED_TEST_P(RichTextPaneContract, AFileIsWrittenAsItWasReadAndLeavesAllAsItWasIfItCantBeRead)
{
    FileStore& files = this->bed.files();
    const auto path = [&](const char* name) { return this->bed.path(name); };
    files.write(path("in.txt"), "\xff\xfe\x61\0\xe4\0\r\0\n\0"s, Durability::durable);
    this->pane.LoadFile(path("in.txt"), TextKind::plain);
    EXPECT_EQ(this->changes, 1);
    EXPECT_EQ(this->pane.Text().view(), u"a\u00e4\n");
    this->pane.set_SelText(u"-");
    this->pane.SaveFile(path("out.txt"), TextKind::plain);
    EXPECT_EQ(files.read(path("out.txt")), "\xff\xfe-\0\x61\0\xe4\0\r\0\n\0"s);

    this->pane.SaveFile(path("out.rtf"), TextKind::rich);
    this->forget_events();
    for (const auto& [name, kind] : { std::pair("none", TextKind::plain),
             { "none", TextKind::rich }, { "in.txt", TextKind::rich } }) {
        EXPECT_THROW(this->pane.LoadFile(path(name), kind), Failure) << name;
        EXPECT_THROW(this->pane.SaveFile("", kind), Failure);
    }
    EXPECT_EQ(this->changes, 0);
    EXPECT_EQ(this->pane.Text().view(), u"-a\u00e4\n");

    this->pane.LoadFile(path("out.rtf"), TextKind::rich);
    EXPECT_EQ(this->pane.Text().view(), u"-a\u00e4\n");
    EXPECT_EQ(this->pane.SelStart(), 0);
    this->pane.SaveFile(path("new.txt"), TextKind::plain); // what was rich has no old form
    EXPECT_EQ(files.read(path("new.txt")), "-a\xc3\xa4\n");
}

REGISTER_TYPED_TEST_SUITE_P(RichTextPaneContract,
    TextComesBackWithSingleLineEndsAndNothingUnholdable, AnEditIsOneChangeThatTheEventsFindDone,
    OffsetsCountAlikeInTextAndSelectionAtEveryPlace,
    ASelectionIsCutAtTheEndAndRefusedBeforeTheStart,
    ASelectionThatDiffersIsReportedOnceWhoeverMakesIt,
    TextPutInTheSelectionsPlaceIsFormattedAsThatWas,
    EveryFormatIsReadAsSetAndAsNothingWhereItIsMixed, ASearchSelectsWhatItFindsAndElseNothing,
    AStepOfManyChangesIsToldOnceAndSearchedAsItStands,
    AFileIsWrittenAsItWasReadAndLeavesAllAsItWasIfItCantBeRead);

} // namespace tessavox
