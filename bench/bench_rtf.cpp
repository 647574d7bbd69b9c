// How fast rich text of the size of a shelf of books is read and written, and what it takes in
// memory at most.
#include "platform/rtf/reader.h"
#include "platform/rtf/text_document.h"
#include "platform/rtf/writer.h"

#include <QGuiApplication>
#include <QTextDocument>

#include <benchmark/benchmark.h>

namespace tessavox::rtf {
namespace {

constexpr std::size_t ten_million = 10'000'000;
constexpr double read_limit_ms = 700;
constexpr double write_limit_ms = 500;

/// As word processors write it: a change of format every dozen words, now and then a list.
const std::string& shelf_of_books()
{
    static const std::string books = [] {
        std::string text = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 DejaVu Serif;}{\\f1 DejaVu Sans;}}"
                           "{\\colortbl;\\red192\\green0\\blue0;}\n";
        while (text.size() < ten_million)
            text += "\\pard\\qj\\fi360\\sa120 It was {\\b the best} of times, it was the {\\i "
                    "worst of "
                    "times}; and Mr. Lorry, who had walked 2.5 miles in the rain, didn\\rquote t "
                    "know "
                    "what to say about it. \\ldblquote What\\u8217?s that?\\rdblquote  he "
                    "asked.\\par\n"
                    "Nobody answered: the {\\f1\\fs28\\cf1 well-known house} was empty, and the "
                    "caf\\'e9 "
                    "next to it had been closed for {\\ul many, many} years; nobody had ever come "
                    "back "
                    "to open it again, as far as anybody could tell.\\par\n"
                    "\\pard{\\pntext\\'95\\tab}{\\*\\pn\\pnlvlblt}\\fi-360\\li720 a point of a "
                    "list\\par\n";
        return text + "}";
    }();
    return books;
}

void tell_size(benchmark::State& state, double limit_ms)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * ten_million));
    state.counters["limit"] = limit_ms;
}

void BM_Read10MBRichText(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(to_text_document(read_rich_text(shelf_of_books())));
    tell_size(state, read_limit_ms);
}

void BM_Write10MBRichText(benchmark::State& state)
{
    const auto document = to_text_document(read_rich_text(shelf_of_books()));
    for (auto _ : state)
        benchmark::DoNotOptimize(write_rich_text(from_text_document(*document)));
    tell_size(state, write_limit_ms);
}

void BM_Parse10MBRichText(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(read_rich_text(shelf_of_books()));
    tell_size(state, read_limit_ms);
}

void BM_Parse10MBOfBraces(benchmark::State& state)
{
    const std::string braces = "{\\rtf1" + std::string(ten_million, '{');
    for (auto _ : state)
        benchmark::DoNotOptimize(read_rich_text(braces));
    tell_size(state, read_limit_ms);
}

BENCHMARK(BM_Read10MBRichText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Write10MBRichText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Parse10MBRichText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Parse10MBOfBraces)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessavox::rtf

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
