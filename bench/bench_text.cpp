// How fast a text is taken apart into utterances, in bytes of UTF-16 a second.
#include "platform/voice/text/text_reader.h"

#include <benchmark/benchmark.h>

namespace tessavox::voice {
namespace {

class NoVoices : public VoiceChooser {
public:
    std::optional<int> choose(std::string_view, std::string_view, int) const override
    {
        return std::nullopt;
    }
};

constexpr std::u16string_view prose
    = u"It was the best of times, it was the worst of times; and Mr. Lorry, who had walked "
      u"2.5 miles in the rain, didn't know what to say about it. \u201CWhat's that?\u201D he "
      u"asked. Nobody answered: the well-known house was empty.\nThe door stood open, and a "
      u"letter of 20 May lay on the floor \u2014 unread, by all appearances. He picked it up!\n\n";
constexpr std::u16string_view tagged
    = u"It was <emph>the best</emph> of times, <rate speed=\"-2\">it was the worst</rate> of "
      u"times &amp; so on.<silence msec=\"500\" /  > <bookmark mark=\"here\"/>Then "
      u"<pitch middle=\"3\">Mr. Lorry</pitch> went <b>home</b> <!-- at last -->early. "
      u"<spell>OK</spell> said <volume level=\"50\">he</volume>.\n";
constexpr std::u16string_view chinese
    = u"\u6211\u4EEC\u5728\u8FD9\u91CC\u7B49\u4ED6\uFF0C\u4F46\u662F\u4ED6\u6CA1\u6709\u6765"
      u"\u3002\u660E\u5929\u6211\u4EEC\u518D\u53BB\u5317\u4EAC\u770B\u4ED6\u3002";

std::u16string repeated(std::u16string_view part, std::size_t size)
{
    std::u16string text;
    text.reserve(size + part.size());
    while (text.size() < size)
        text.append(part);
    return text;
}

void read_all(benchmark::State& state, std::u16string text)
{
    const NoVoices voices;
    const TextSlice slice(std::move(text));
    std::size_t tokens = 0;
    for (auto _ : state) {
        TextReader reader(slice, {}, voices);
        while (const auto item = reader.next()) {
            if (const auto* utterance = std::get_if<Utterance>(&*item))
                tokens += utterance->tokens.size();
        }
    }
    benchmark::DoNotOptimize(tokens);
    state.SetBytesProcessed(
        static_cast<std::int64_t>(state.iterations() * slice.size() * sizeof(char16_t)));
}

constexpr std::size_t one_megabyte = 1'000'000 / sizeof(char16_t);
constexpr std::size_t ten_million = 10'000'000;

/// Prose in two scripts, one of which needs a dictionary to find its words.
void ReadingProse(benchmark::State& state)
{
    read_all(state, repeated(prose, one_megabyte / 2) + repeated(chinese, one_megabyte / 2));
}

/// Tags everywhere, and signs that could begin one but don't.
void ReadingDenseMarkup(benchmark::State& state)
{
    read_all(state,
        repeated(tagged, one_megabyte / 2) + std::u16string(one_megabyte / 4, u'<')
            + repeated(u"<a b=\"", one_megabyte / 8) + repeated(u"<!-- ", one_megabyte / 8));
}

/// The way from Speak to the first utterance of a book.
void FirstUtteranceOfABook(benchmark::State& state)
{
    const NoVoices voices;
    const TextSlice slice(repeated(prose, ten_million));
    for (auto _ : state) {
        TextReader reader(slice, {}, voices);
        benchmark::DoNotOptimize(reader.next());
    }
}

BENCHMARK(ReadingProse)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadingDenseMarkup)->Unit(benchmark::kMillisecond);
BENCHMARK(FirstUtteranceOfABook)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tessavox::voice

BENCHMARK_MAIN();
