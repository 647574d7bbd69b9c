// Reads the input as a text given to Speak. Its first byte chooses the options.
#include "fuzz/reading_properties.h"

#include <cstdio>
#include <cstdlib>

using namespace tessavox;
using namespace tessavox::voice;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The corpus is plain text: the letters and '<' that it begins with read it as markup.
    const ReaderOptions options{ .markup = (data[0] & 0x80) == 0,
        .speak_punctuation = data[0] == u'!' };
    ReadingCheck check(text_of_bytes({ reinterpret_cast<const char*>(data), size }), options);
    const std::string broken = check.broken();
    if (!broken.empty()) {
        std::fprintf(stderr, "%s\n", broken.c_str());
        std::abort();
    }
    return 0;
}
