// How fast the engines speak 100 kB of English, sentence by sentence, alone and with helpers.
#include "platform/voice/rendering/helper_engines.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <vector>

namespace {

using namespace tessavox;
using namespace tessavox::voice;

constexpr std::size_t text_bytes = 100'000;

Utterance utterance_of(const std::u16string& text)
{
    Utterance utterance;
    utterance.text = text;
    utterance.ends_sentence = true;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(u' ', at), text.size());
        utterance.tokens.push_back(
            { static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end - at),
                static_cast<std::uint32_t>(at), static_cast<std::uint32_t>(end - at) });
        at = end + 1;
    }
    return utterance;
}

std::vector<Utterance> book()
{
    const std::u16string sentences[] = {
        u"The old lighthouse keeper climbed the winding stairs every evening to light the lamp.",
        u"Nobody in the village could remember a winter as long as that of 1947.",
        u"She asked whether the letter had arrived, but he only shook his head and went on "
        u"reading.",
        u"It's well known that ships don't sail against the tide without good reason.",
        u"Three boats, two carts and a small wooden bridge were all that the flood had left "
        u"behind.",
        u"What do you think they were looking for in the garden behind the house?",
        u"Rain fell.",
    };
    std::vector<Utterance> utterances;
    for (std::size_t bytes = 0, at = 0; bytes < text_bytes; ++at) {
        utterances.push_back(utterance_of(sentences[at % std::size(sentences)]));
        bytes += utterances.back().text.size() + 1;
    }
    return utterances;
}

const VoiceCatalog& catalog()
{
    static const std::unique_ptr<VoiceCatalog> catalog = make_installed_catalog();
    return *catalog;
}

void report(benchmark::State& state, double seconds)
{
    state.counters["times_real_time"]
        = benchmark::Counter(seconds, benchmark::Counter::kIsIterationInvariantRate);
}

void speak_here(benchmark::State& state, const char* voice_id)
{
    const std::vector<Utterance> utterances = book();
    const int voice = catalog().find(voice_id);
    const std::atomic<bool> cancelled{ false };
    double seconds = 0;
    for (auto turn : state) {
        seconds = 0;
        for (const Utterance& utterance : utterances) {
            const Rendering rendering = catalog().render(voice, 0, utterance, cancelled);
            seconds += static_cast<double>(rendering.samples.size()) / rendering.sample_rate;
        }
    }
    report(state, seconds);
}

void speak_in_helpers(benchmark::State& state, const char* voice_id)
{
    const std::vector<Utterance> utterances = book();
    const auto engines
        = start_helper_engines({ TESSAVOX_VOICE_HELPER, static_cast<int>(state.range(0)), {} });
    const int voice = engines->voices()->find(voice_id);
    double seconds = 0;
    for (auto turn : state) {
        seconds = 0;
        const auto queue = engines->file_queue(text_bytes);
        std::size_t next = 0;
        while (next < utterances.size() || queue->pending()) {
            while (next < utterances.size() && queue->wants_more())
                queue->submit(voice, 0, utterances[next++]);
            const Rendering rendering = queue->take([] { return false; })->rendering;
            seconds += static_cast<double>(rendering.samples.size()) / rendering.sample_rate;
        }
    }
    report(state, seconds);
}

BENCHMARK_CAPTURE(speak_here, espeak, "espeak:gmw/en-US")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(speak_in_helpers, espeak, "espeak:gmw/en-US")
    ->Arg(1)
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(speak_here, flite_kal16, "flite:kal16")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(speak_in_helpers, flite_kal16, "flite:kal16")
    ->Arg(2)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

BENCHMARK_MAIN();
