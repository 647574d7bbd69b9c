#include "tests/platform/voice/text/reading_properties.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tessavox::voice {
namespace {

TEST(Reading, OfAnyTextIsCompleteExactAndRepeatable)
{
    for (const auto& file : std::filesystem::directory_iterator(MARKUP_CORPUS)) {
        std::ifstream bytes(file.path(), std::ios::binary);
        const std::u16string text = text_of_bytes(
            std::string(std::istreambuf_iterator<char>(bytes), std::istreambuf_iterator<char>()));
        for (const bool markup : { true, false })
            for (const bool punctuation : { true, false })
                EXPECT_EQ(ReadingCheck(text, { markup, punctuation }).broken(), "") << file.path();
    }
}

} // namespace
} // namespace tessavox::voice
