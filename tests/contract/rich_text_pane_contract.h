// What every text pane has to do. A Bed has pane(), user_types(text) over the selection, and
// user_selects(start, length).
#pragma once

#include "platform/failure.h"
#include "platform/rich_text_pane.h"

#include <gtest/gtest.h>

#include <limits>

namespace tessavox {

template <class Bed> class RichTextPaneContract : public testing::Test {
protected:
    RichTextPaneContract()
    {
        pane.Change = [this] { ++changes; };
        pane.SelChange = [this] { ++selection_changes; };
    }
    void forget_events() { changes = selection_changes = 0; }

    Bed bed;
    RichTextPane& pane = bed.pane();
    int changes = 0;
    int selection_changes = 0;
};

TYPED_TEST_SUITE_P(RichTextPaneContract);

TYPED_TEST_P(RichTextPaneContract, TextComesBackWithSingleLineEndsAndNothingUnholdable)
{
    const struct {
        std::u16string in;
        std::u16string out;
    } rows[] = {
        { u"", u"" },
        { u"one\r\ntwo\rthree\nfour\r\r\n", u"one\ntwo\nthree\nfour\n\n" },
        { u"hard\u00a0blank\tand tab\n", u"hard\u00a0blank\tand tab\n" },
        { u"\U0001F600 and e\u0301", u"\U0001F600 and e\u0301" },
        { std::u16string(u"nul\0s", 5), u"nul\ufffds" },
        { u"\ufdd0\ufdd1\ufffc\ufffd", u"\ufffd\ufffd\ufffd\ufffd" },
        { u"<b>&amp;</b>", u"<b>&amp;</b>" },
    };
    for (const auto& row : rows) {
        this->pane.set_Text(row.in);
        EXPECT_EQ(this->pane.Text().view(), row.out);
    }
}

TYPED_TEST_P(RichTextPaneContract, ANewTextIsOneChangeAndPutsTheCaretAtItsStart)
{
    this->pane.set_Text(u"some words");
    this->pane.set_SelStart(5);
    this->pane.set_SelLength(3);
    this->forget_events();
    this->pane.set_Text(u"other words");
    EXPECT_EQ(this->changes, 1);
    EXPECT_EQ(this->selection_changes, 1);
    EXPECT_EQ(this->pane.SelStart(), 0);
    EXPECT_EQ(this->pane.SelLength(), 0);
}

TYPED_TEST_P(RichTextPaneContract, TheTextIsCopiedOnceBetweenTwoChanges)
{
    this->pane.set_Text(u"words to share");
    const TextSlice before = this->pane.Text();
    this->pane.set_SelStart(6);
    this->pane.set_SelLength(2);
    EXPECT_EQ(this->pane.Text().view().data(), before.view().data());
    EXPECT_EQ(this->pane.SelText().view().data(), before.view().data() + 6);
    this->bed.user_types(u"for");
    EXPECT_EQ(this->pane.Text().view(), u"words for share");
    EXPECT_EQ(before.view(), u"words to share"); // whoever still reads it keeps what there was
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

TYPED_TEST_P(RichTextPaneContract, TypingReplacesTheSelectionAndIsOneChange)
{
    this->pane.set_Text(u"one two three");
    this->pane.set_SelStart(4);
    this->pane.set_SelLength(3);
    this->forget_events();
    this->bed.user_types(u"2");
    EXPECT_EQ(this->pane.Text().view(), u"one 2 three");
    EXPECT_EQ(this->pane.SelStart(), 5);
    EXPECT_EQ(this->changes, 1);
    EXPECT_EQ(this->selection_changes, 1);
}

TYPED_TEST_P(RichTextPaneContract, AnEventFindsThePaneAlreadyChanged)
{
    this->pane.set_Text(u"one two three");
    std::u16string selected, text;
    this->pane.SelChange = [&] { selected = this->pane.SelText().view(); };
    this->pane.Change = [&] { text = this->pane.Text().view(); };
    this->bed.user_selects(4, 3);
    EXPECT_EQ(selected, u"two");
    this->bed.user_types(u"2");
    EXPECT_EQ(text, u"one 2 three");
    this->pane.set_Text(u"new");
    EXPECT_EQ(text, u"new");
}

TYPED_TEST_P(RichTextPaneContract, ShortLinesAreCountedFromZero)
{
    this->pane.set_Text(u"a\nb\n\nc");
    const int lines[] = { 0, 0, 1, 1, 2, 3, 3 };
    for (std::int32_t offset = 0; offset < 7; ++offset)
        EXPECT_EQ(this->pane.GetLineFromChar(offset), lines[offset]) << offset;
    this->pane.set_SelStart(2);
    this->bed.user_types(u"x\ny"); // the lines after it move on
    EXPECT_EQ(this->pane.GetLineFromChar(8), 4);
}

TYPED_TEST_P(RichTextPaneContract, FormatsLeaveTheTextAloneAndImpossibleOnesAreRefused)
{
    this->pane.set_Text(u"words");
    this->pane.set_SelLength(3);
    this->forget_events();
    this->pane.set_FontName("DejaVu Sans");
    this->pane.set_FontSize(14);
    this->pane.set_FontBold(true);
    this->pane.set_SelFontSize(12);
    this->pane.set_HideSelection(false);
    this->pane.set_RightMargin(3000);
    this->pane.set_RightMargin(0);
    EXPECT_EQ(this->changes, 0);
    EXPECT_EQ(this->selection_changes, 0);
    EXPECT_EQ(this->pane.Text().view(), u"words");
    EXPECT_THROW(this->pane.set_FontName(""), Failure);
    EXPECT_THROW(this->pane.set_FontSize(0), Failure);
    EXPECT_THROW(this->pane.set_SelFontSize(-1), Failure);
    EXPECT_THROW(this->pane.set_RightMargin(-15), Failure);
}

REGISTER_TYPED_TEST_SUITE_P(RichTextPaneContract,
    TextComesBackWithSingleLineEndsAndNothingUnholdable,
    ANewTextIsOneChangeAndPutsTheCaretAtItsStart, TheTextIsCopiedOnceBetweenTwoChanges,
    OffsetsCountAlikeInTextAndSelectionAtEveryPlace,
    ASelectionIsCutAtTheEndAndRefusedBeforeTheStart,
    ASelectionThatDiffersIsReportedOnceWhoeverMakesIt, TypingReplacesTheSelectionAndIsOneChange,
    AnEventFindsThePaneAlreadyChanged, ShortLinesAreCountedFromZero,
    FormatsLeaveTheTextAloneAndImpossibleOnesAreRefused);

} // namespace tessavox
