// Reads the input as a text given to Speak. The first byte chooses the options; the rest is UTF-8,
// or UTF-16 as it stands, lone surrogates included.
#include "tests/platform/voice/text/reading_properties.h"

#include <cstdio>
#include <cstdlib>

using namespace tessavox;
using namespace tessavox::voice;

namespace {

std::u16string text_of(const std::uint8_t* data, std::size_t size, bool utf16)
{
    if (!utf16)
        return to_utf16({ reinterpret_cast<const char*>(data), size });
    std::u16string text;
    for (std::size_t at = 0; at + 1 < size; at += 2)
        text.push_back(static_cast<char16_t>(data[at] | (data[at + 1] << 8)));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The corpus is plain text: the letters and '<' that it begins with read it as markup.
    const ReaderOptions options{ .markup = (data[0] & 0x80) == 0,
        .speak_punctuation = data[0] == u'!' };
    const bool utf16 = (data[0] & 0xC0) == 0xC0;
    ReadingCheck check(text_of(data + 1, size - 1, utf16), options);
    const std::string broken = check.broken();
    if (!broken.empty()) {
        std::fprintf(stderr, "%s\n", broken.c_str());
        std::abort();
    }
    return 0;
}
