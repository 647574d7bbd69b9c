// The way of the sound: from the engine's rate to the output format, and into a wave file.
#include "platform/voice/sound/converter.h"
#include "platform/voice/sound/wave_file.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>

namespace tessavox::voice {
namespace {

constexpr int engine_rate = 22050;
constexpr int seconds = 60;

/// Something like a voice: a few harmonics, and pauses.
std::vector<std::int16_t> speech()
{
    std::vector<std::int16_t> samples(static_cast<std::size_t>(engine_rate * seconds));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i) / engine_rate;
        const double loudness = std::max(0.0, std::sin(20 * time));
        samples[i] = static_cast<std::int16_t>(loudness
            * (6000 * std::sin(700 * time) + 4000 * std::sin(2100 * time)
                + 3000 * std::sin(9100 * time)));
    }
    return samples;
}

// In sentences, as the engine gives them. The counter is the times by which it beats real time.
void convert(benchmark::State& state)
{
    const auto format = PcmFormat::from_type(static_cast<int>(state.range(0)));
    const auto input = speech();
    const std::size_t sentence = engine_rate * 5;
    std::vector<std::byte> out;
    for (auto _ : state) {
        Converter converter(format);
        converter.begin(engine_rate, 1, out);
        for (std::size_t at = 0; at < input.size(); at += sentence) {
            out.clear();
            converter.push(std::span(input).subspan(at, sentence), out);
            benchmark::DoNotOptimize(out.data());
        }
        converter.finish(out);
    }
    state.counters["times_real_time"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * seconds, benchmark::Counter::kIsRate);
}
BENCHMARK(convert)->Arg(39)->Arg(38)->Arg(35)->Arg(26)->Arg(22)->Arg(18)->Arg(4)->Unit(
    benchmark::kMillisecond);

void gain(benchmark::State& state)
{
    Gain half({});
    half.set(0.5F);
    std::vector<std::byte> frames(static_cast<std::size_t>(48000 * 4));
    for (auto _ : state)
        half.apply(frames);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(frames.size()));
}
BENCHMARK(gain);

void write_wave_file(benchmark::State& state)
{
    const std::string path
        = (std::filesystem::temp_directory_path() / "tessavox-bench.wav").string();
    const std::vector<std::byte> piece(static_cast<std::size_t>(state.range(0)));
    constexpr std::size_t total = std::size_t(256) * 1024 * 1024;
    for (auto _ : state) {
        const auto writer = create_wave_file(path, {});
        for (std::size_t at = 0; at < total; at += piece.size())
            writer->write(piece);
        writer->close();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(total));
    std::filesystem::remove(path);
}
BENCHMARK(write_wave_file)->Arg(4096)->Arg(1 << 20)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessavox::voice

BENCHMARK_MAIN();
