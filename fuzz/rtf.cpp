// Reads the input as rich text, and what the writer makes of that once more.
#include "tests/platform/rtf/described.h"

#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/writer.h"

#include <cstdio>
#include <cstdlib>

using namespace tessavox;
using namespace tessavox::rtf;

namespace {

void expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string beginning = "{\\rtf"; // so that no time is lost in finding it out
    const std::string bytes = beginning + std::string(reinterpret_cast<const char*>(data), size);
    const auto last
        = size > 0 && data[size - 1] == '}' ? LastParagraph::closed : LastParagraph::open;
    attempt([&] {
        const Document document = read_rich_text(bytes, last);
        expect(flaw_of(document).empty(), flaw_of(document).c_str());
        const Document again = read_rich_text(write_rich_text(document, last), last);
        expect(described(again) == described(document), "what was written reads differently");
    });
    return 0;
}
