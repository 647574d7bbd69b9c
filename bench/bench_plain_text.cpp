// How fast plain text of the size of a shelf of books is brought in from a file and out to one.
#include "platform/text.h"
#include "platform/text_files/plain_text.h"

#include <benchmark/benchmark.h>

namespace tessavox {
namespace {

constexpr std::size_t ten_million = 10'000'000;
constexpr double limit_ms = 350; // of which the window gets the rest

std::string shelf_of_books(const TextFileForm& form)
{
    std::u16string text;
    while (text.size() < ten_million)
        text
            += u"It was the best of times, it was the worst of times; and Mr. Lorry, who had had a "
               u"caf\u00E9 au lait, did not know what to say about it.\n";
    return encode_plain_text(text, form).bytes;
}

void read(benchmark::State& state, const TextFileForm& form)
{
    const std::string books = shelf_of_books(form);
    for (auto _ : state)
        benchmark::DoNotOptimize(decode_plain_text(books));
    state.counters["limit"] = limit_ms;
}

void write(benchmark::State& state, const TextFileForm& form)
{
    const PlainText books = decode_plain_text(shelf_of_books(form));
    for (auto _ : state)
        benchmark::DoNotOptimize(encode_plain_text(books.text, form));
    state.counters["limit"] = limit_ms;
}

const TextFileForm utf8;
const TextFileForm western{ "windows-1252", false, LineEnd::crlf };

BENCHMARK_CAPTURE(read, BM_Decode10MBOfUtf8, utf8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(read, BM_Decode10MBOf1252, western)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, BM_Encode10MBOfUtf8, utf8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(write, BM_Encode10MBOf1252, western)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessavox

BENCHMARK_MAIN();
