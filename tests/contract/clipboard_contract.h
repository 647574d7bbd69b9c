// What every clipboard has to do. A Bed has clipboard(); other_copies(text),
// other_copies_a_picture() and other_holds_back(text) for what another program does, the last one
// without giving the text to anybody until other_gives(); and settle(), which runs the message loop
// once.
#pragma once

#include "platform/clipboard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace tessavox {

template <class Bed> class ClipboardContract : public testing::Test {
protected:
    /// What a reader gets who looks in again and again without waiting.
    TextSlice text_at_last()
    {
        const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        TextSlice text = clipboard.GetText(Patience::none);
        while (text.empty() && std::chrono::steady_clock::now() < until) {
            bed.settle();
            text = clipboard.GetText(Patience::none);
        }
        return text;
    }

    Bed bed;
    Clipboard& clipboard = bed.clipboard();
};

TYPED_TEST_SUITE_P(ClipboardContract);

TYPED_TEST_P(ClipboardContract, WhatAnotherProgramCopiesIsReadWithAndWithoutWaiting)
{
    const std::u16string texts[]
        = { u"words", u"\u00e4\u4e16\U0001F600\nline", u"words ", std::u16string(3'000'000, u'x') };
    for (const std::u16string& text : texts) {
        this->bed.other_copies(text);
        EXPECT_EQ(this->text_at_last().view(), text);
        EXPECT_TRUE(this->clipboard.has_text());
        this->bed.other_copies(text + u"!");
        EXPECT_EQ(this->clipboard.GetText().view(), text + u"!");
    }
    this->bed.other_copies_a_picture();
    EXPECT_TRUE(this->clipboard.GetText().empty());
    EXPECT_FALSE(this->clipboard.has_text());
}

TYPED_TEST_P(ClipboardContract, ATextOfOurOwnIsThereAtOnceAndGoesWhenItIsReplacedOrCleared)
{
    this->clipboard.SetText(u"ours ");
    EXPECT_EQ(this->clipboard.GetText(Patience::none).view(), u"ours ");
    EXPECT_TRUE(this->clipboard.has_text());
    this->bed.settle();
    EXPECT_EQ(this->clipboard.GetText(Patience::none).view(), u"ours ");
    this->clipboard.SetText(u"");
    EXPECT_FALSE(this->clipboard.has_text());
    this->bed.other_copies(u"theirs");
    EXPECT_EQ(this->clipboard.GetText().view(), u"theirs");
    this->clipboard.Clear();
    EXPECT_TRUE(this->clipboard.GetText().empty());
    this->bed.settle();
    EXPECT_TRUE(this->clipboard.GetText().empty());
    EXPECT_FALSE(this->clipboard.has_text());
}

TYPED_TEST_P(ClipboardContract, AnOwnerThatHoldsBackCountsAsEmptyUntilItGives)
{
    this->bed.other_copies(u"before");
    EXPECT_EQ(this->clipboard.GetText().view(), u"before");
    this->bed.other_holds_back(u"late");
    EXPECT_TRUE(this->clipboard.GetText(Patience::none).empty());
    EXPECT_TRUE(this->clipboard.GetText(Patience::some).empty());
    EXPECT_TRUE(this->clipboard.GetText(Patience::some).empty());
    this->bed.other_gives();
    EXPECT_EQ(this->text_at_last().view(), u"late");

    this->bed.other_holds_back(u"given up");
    EXPECT_TRUE(this->clipboard.GetText(Patience::some).empty());
    this->clipboard.SetText(u"ours");
    this->bed.other_gives();
    this->bed.settle();
    EXPECT_EQ(this->clipboard.GetText(Patience::none).view(), u"ours");
}

REGISTER_TYPED_TEST_SUITE_P(ClipboardContract, WhatAnotherProgramCopiesIsReadWithAndWithoutWaiting,
    ATextOfOurOwnIsThereAtOnceAndGoesWhenItIsReplacedOrCleared,
    AnOwnerThatHoldsBackCountsAsEmptyUntilItGives);

} // namespace tessavox
