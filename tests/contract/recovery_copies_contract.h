// What everything that keeps copies of unsaved texts has to do. A Bed has copies(), kept(), the
// texts that lie there in the end, path(name) of a new file, and foreign_files(), how many
// of those are kept.
#pragma once

#include "platform/recovery_copies.h"

#include <gtest/gtest.h>

#include <vector>

namespace tessavox {

template <class Bed> struct RecoveryCopiesContract : testing::Test {
    Bed bed;
};

TYPED_TEST_SUITE_P(RecoveryCopiesContract);

TYPED_TEST_P(RecoveryCopiesContract, TheNewestTextOfADocumentIsKeptUntilItIsDropped)
{
    const auto first = this->bed.copies().create(), second = this->bed.copies().create();
    for (int i = 0; i < 50; ++i)
        first->keep("Document 1", u"old");
    first->keep("/home/\u00fc.rtf", u"new \u00e4");
    first->keep("/home/\u00fc.rtf", u"");
    second->keep("Document 2", u"saved");
    second->drop();
    EXPECT_EQ(this->bed.kept(), std::vector<std::u16string>{ u"new \u00e4" });
}

TYPED_TEST_P(RecoveryCopiesContract, AFileIsKeptThatTheDocumentDoesNotKnow)
{
    const auto copy = this->bed.copies().create();
    const std::string known = this->bed.path("known.rtf");
    copy->note_file(known);
    copy->keep_foreign_file(known);
    EXPECT_EQ(this->bed.foreign_files(), 0u);
    copy->keep_foreign_file(this->bed.path("other.rtf"));
    EXPECT_EQ(this->bed.foreign_files(), 1u);
}

REGISTER_TYPED_TEST_SUITE_P(RecoveryCopiesContract, TheNewestTextOfADocumentIsKeptUntilItIsDropped,
    AFileIsKeptThatTheDocumentDoesNotKnow);

} // namespace tessavox
