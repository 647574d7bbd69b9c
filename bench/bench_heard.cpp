// What is heard, and when: the voice speaks to the sound server, and its events and changes are
// compared with a recording of the server's output. Run it inside with_desktop.
// Prints one figure a line: its name and its value.

#include "platform/failure.h"
#include "platform/text.h"
#include "platform/voice/rendering/helper_engines.h"
#include "platform/voice/speech_service.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <mutex>
#include <numeric>
#include <span>
#include <string>
#include <thread>
#include <vector>

using namespace tessavox;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

namespace {

constexpr int sample_rate = 48000; // that of the virtual output, so that nothing is resampled
constexpr int quiet_peak = 200; // of 32767; espeak-ng's speech peaks lie far above
// A virtual output that nobody has listened to runs ahead of its clock, and settles in this time.
constexpr auto settling_time = std::chrono::seconds(3);
constexpr auto patience = std::chrono::seconds(60);

/// The samples that were heard, each with its time.
class Monitor {
public:
    Monitor()
    {
        pa_threaded_mainloop_start(m_loop);
        pa_threaded_mainloop_lock(m_loop);
        pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
        while (pa_context_get_state(m_context) != PA_CONTEXT_READY) {
            if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context)))
                throw Failure("no sound server");
            wait_for_loop();
        }
        const pa_sample_spec spec{ PA_SAMPLE_S16LE, sample_rate, 1 };
        m_stream = pa_stream_new(m_context, "monitor", &spec, nullptr);
        pa_stream_set_read_callback(m_stream, on_read, this);
        pa_buffer_attr buffer{};
        buffer.maxlength = static_cast<std::uint32_t>(-1);
        buffer.fragsize = sample_rate / 200 * sizeof(std::int16_t);
        const auto flags = static_cast<pa_stream_flags_t>(
            PA_STREAM_ADJUST_LATENCY | PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE);
        pa_stream_connect_record(m_stream, "@DEFAULT_MONITOR@", &buffer, flags);
        pa_threaded_mainloop_unlock(m_loop);
    }
    ~Monitor()
    {
        pa_threaded_mainloop_stop(m_loop);
        if (m_stream)
            pa_stream_unref(m_stream);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        pa_threaded_mainloop_free(m_loop);
    }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    struct Heard {
        Clock::time_point time;
        int peak; // of one millisecond
    };
    /// What was heard since `begin`, a millisecond an element.
    std::vector<Heard> since(Clock::time_point begin) const
    {
        const std::lock_guard lock(m_mutex);
        const auto first = std::lower_bound(m_heard.begin(), m_heard.end(), begin,
            [](const Heard& heard, Clock::time_point time) { return heard.time < time; });
        return { first, m_heard.end() };
    }

private:
    void wait_for_loop()
    {
        pa_threaded_mainloop_unlock(m_loop);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        pa_threaded_mainloop_lock(m_loop);
    }

    static void on_read(pa_stream* stream, std::size_t, void* self)
    {
        static_cast<Monitor*>(self)->read(stream);
    }
    void read(pa_stream* stream)
    {
        const void* data = nullptr;
        std::size_t bytes = 0;
        while (pa_stream_readable_size(stream) > 0 && pa_stream_peek(stream, &data, &bytes) == 0) {
            pa_usec_t latency = 0;
            int negative = 0;
            if (data && pa_stream_get_latency(stream, &latency, &negative) == 0) {
                const auto age = std::chrono::microseconds(latency);
                const auto now = Clock::now();
                keep({ static_cast<const std::int16_t*>(data), bytes / sizeof(std::int16_t) },
                    negative ? now + age : now - age);
            }
            if (bytes > 0)
                pa_stream_drop(stream);
        }
    }
    void keep(std::span<const std::int16_t> samples, Clock::time_point time)
    {
        constexpr std::size_t millisecond = sample_rate / 1000;
        const std::lock_guard lock(m_mutex);
        for (std::size_t i = 0; i < samples.size(); i += millisecond) {
            const auto part = samples.subspan(i, std::min(millisecond, samples.size() - i));
            int peak = 0;
            for (const int sample : part)
                peak = std::max(peak, std::abs(sample));
            m_heard.push_back({ time + std::chrono::microseconds(i * 1000 / millisecond), peak });
        }
    }

    pa_threaded_mainloop* const m_loop = pa_threaded_mainloop_new();
    pa_context* const m_context
        = pa_context_new(pa_threaded_mainloop_get_api(m_loop), "Tessavox benchmark");
    pa_stream* m_stream = nullptr;
    mutable std::mutex m_mutex;
    std::vector<Heard> m_heard;
};

/// The interface thread's message loop.
class Loop {
public:
    void post(std::function<void()> call)
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
        m_ready.notify_one();
    }
    /// Runs what comes until `done` is true; @throws Failure if that takes too long.
    void run_until(const std::function<bool()>& done)
    {
        const auto end = Clock::now() + patience;
        while (!done()) {
            std::unique_lock lock(m_mutex);
            m_ready.wait_for(
                lock, std::chrono::milliseconds(5), [this] { return !m_calls.empty(); });
            if (!m_calls.empty()) {
                const auto call = std::move(m_calls.front());
                m_calls.pop_front();
                lock.unlock();
                call();
            } else if (Clock::now() > end) {
                throw Failure("what was waited for did not happen");
            }
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_ready;
    std::deque<std::function<void()>> m_calls;
};

class Listener : public SpeechVoiceEvents {
public:
    std::vector<Clock::time_point> words;
    bool ended = false;
    std::function<void()> at_word = [] {};

    void Voice_Word(std::int32_t, std::int64_t, std::int32_t, std::int32_t) override
    {
        words.push_back(Clock::now());
        at_word();
    }
    void Voice_EndStream(std::int32_t, std::int64_t) override { ended = true; }
};

struct Bench {
    Monitor monitor;
    Loop loop;
    Listener listener;
    std::unique_ptr<SpeechService> service;
    std::unique_ptr<SpeechVoice> voice;

    Bench()
    {
        voice::SpeechServiceOptions options;
        options.post = [this](std::function<void()> call) { loop.post(std::move(call)); };
        service = voice::make_speech_service(
            std::move(options), voice::start_helper_engines({ TESSAVOX_VOICE_HELPER, 0, {} }));
        voice = service->create_voice(listener);
        choose_english();
        wait(settling_time);
    }
    void choose_english()
    {
        const auto voices = voice->GetVoices("Language=409", "");
        if (voices.Count() > 0)
            voice->set_Voice(voices.Item(0));
    }
    void speak(const std::string& text)
    {
        listener.words.clear();
        listener.ended = false;
        voice->Speak(to_utf16(text), SVSFlagsAsync | SVSFPurgeBeforeSpeak | SVSFIsXML);
    }
    void wait(std::chrono::milliseconds time)
    {
        const auto end = Clock::now() + time;
        loop.run_until([&] { return Clock::now() >= end; });
    }
    bool loud_since(Clock::time_point begin) const
    {
        const auto heard = monitor.since(begin);
        return std::any_of(
            heard.begin(), heard.end(), [](const auto& part) { return part.peak > quiet_peak; });
    }
};

/// When sound begins after at least 150 ms of quiet.
std::vector<Clock::time_point> onsets(const std::vector<Monitor::Heard>& heard)
{
    std::vector<Clock::time_point> found;
    int quiet = 1000;
    for (const auto& part : heard) {
        if (part.peak <= quiet_peak) {
            ++quiet;
            continue;
        }
        if (quiet >= 150)
            found.push_back(part.time);
        quiet = 0;
    }
    return found;
}

void report(const char* name, double value)
{
    std::printf("%s %.2f\n", name, value);
}

/// Words that begin with a vowel, so that the sound begins where the word does.
void word_events_against_sound(Bench& bench)
{
    constexpr const char* spoken[] = { "apple", "every", "orange", "other", "under", "only", "open",
        "able", "evening", "ocean" };
    std::string text = "<silence msec=\"300\"/>";
    for (int round = 0; round < 4; ++round)
        for (const char* word : spoken)
            text += std::string(word) + " <silence msec=\"300\"/> ";
    const auto begin = Clock::now();
    bench.speak(text);
    bench.loop.run_until([&] { return bench.listener.ended; });
    bench.wait(std::chrono::milliseconds(200));

    const auto heard = onsets(bench.monitor.since(begin));
    const auto& words = bench.listener.words;
    if (heard.size() != words.size() || words.size() != 4 * std::size(spoken))
        throw Failure(std::to_string(words.size()) + " word events, but "
            + std::to_string(heard.size()) + " words were heard");
    std::vector<double> errors;
    double sum = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const double error = Milliseconds(words[i] - heard[i]).count();
        sum += error;
        errors.push_back(std::fabs(error));
    }
    std::sort(errors.begin(), errors.end());
    const double count = static_cast<double>(errors.size());
    report("word_event_mean_error_ms", std::accumulate(errors.begin(), errors.end(), 0.0) / count);
    report("word_event_mean_lead_ms", -sum / count);
    report("word_event_95_percent_error_ms", errors[errors.size() * 95 / 100]);
}

std::string many(const char* words, int times)
{
    std::string text;
    for (int i = 0; i < times; ++i)
        text += words;
    return text;
}

/// The time from the call to the last sound, the worst of ten.
void volume_until_silence(Bench& bench)
{
    double worst = 0;
    for (int round = 0; round < 10; ++round) {
        bench.voice->set_Volume(100);
        const auto begin = Clock::now();
        bench.speak(many("Alone on a yellow lawn we all long for rain and ", 20));
        bench.loop.run_until([&] { return bench.loud_since(begin); });
        bench.wait(std::chrono::milliseconds(700 + 37 * round));
        const auto turned = Clock::now();
        bench.voice->set_Volume(0);
        bench.wait(std::chrono::milliseconds(600));
        for (const auto& part : bench.monitor.since(turned))
            if (part.peak > quiet_peak)
                worst = std::max(worst, Milliseconds(part.time - turned).count());
    }
    bench.voice->set_Volume(100);
    bench.voice->Speak({}, SVSFPurgeBeforeSpeak);
    report("volume_change_heard_ms", worst);
}

/// The same word over and over; the rate is changed while a word sounds. Counts the words that
/// still come at the old pace after that one.
void rate_until_next_word(Bench& bench)
{
    constexpr std::size_t change = 6;
    bench.voice->set_Rate(0);
    bench.listener.at_word = [&] {
        if (bench.listener.words.size() == change + 1)
            bench.voice->set_Rate(10);
    };
    bench.speak(many("yellow ", 30));
    bench.loop.run_until([&] { return bench.listener.ended; });
    bench.listener.at_word = [] {};
    bench.voice->set_Rate(0);

    const auto& words = bench.listener.words;
    const auto pace = [&](std::size_t i) { return Milliseconds(words[i + 1] - words[i]).count(); };
    const double slow = pace(change - 2);
    std::size_t next = change + 1;
    while (next + 1 < words.size() && pace(next) > slow * 0.7)
        ++next;
    report("words_at_the_old_rate", static_cast<double>(next - change - 1));
}

} // namespace

int main()
{
    try {
        Bench bench;
        word_events_against_sound(bench);
        volume_until_silence(bench);
        rate_until_next_word(bench);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "bench_heard: %s\n", failure.what());
        return 1;
    }
    return 0;
}
