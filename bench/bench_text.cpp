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

constexpr std::size_t ten_million = 10'000'000;

void BM_ParseProse100kB(benchmark::State& state)
{
    read_all(state, repeated(prose, 100'000));
}
void BM_Parse10MBProse(benchmark::State& state)
{
    read_all(state, repeated(prose, ten_million));
}
void BM_ParseTags(benchmark::State& state)
{
    read_all(state, repeated(tagged, 100'000));
}
void BM_ParseChinese(benchmark::State& state)
{
    read_all(state, repeated(chinese, 100'000));
}

void BM_HundredThousandLessThan(benchmark::State& state)
{
    read_all(state, std::u16string(100'000, u'<'));
}
void BM_UnfinishedTags(benchmark::State& state)
{
    read_all(state, repeated(u"<a b=\"", ten_million / 10));
}
void BM_UnfinishedComments(benchmark::State& state)
{
    read_all(state, repeated(u"<!-- ", ten_million / 10));
}
void BM_OneEndlessWord(benchmark::State& state)
{
    read_all(state, std::u16string(ten_million / 10, u'a'));
}
void BM_BlanksOnly(benchmark::State& state)
{
    read_all(state, std::u16string(ten_million / 10, u' '));
}

/// The way from Speak to the first utterance of a book.
void BM_FirstUtteranceOf10MB(benchmark::State& state)
{
    const NoVoices voices;
    const TextSlice slice(repeated(prose, ten_million));
    for (auto _ : state) {
        TextReader reader(slice, {}, voices);
        benchmark::DoNotOptimize(reader.next());
    }
}

BENCHMARK(BM_ParseProse100kB);
BENCHMARK(BM_Parse10MBProse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseTags);
BENCHMARK(BM_ParseChinese);
BENCHMARK(BM_HundredThousandLessThan);
BENCHMARK(BM_UnfinishedTags);
BENCHMARK(BM_UnfinishedComments);
BENCHMARK(BM_OneEndlessWord);
BENCHMARK(BM_BlanksOnly);
BENCHMARK(BM_FirstUtteranceOf10MB);

} // namespace
} // namespace tessavox::voice

BENCHMARK_MAIN();
