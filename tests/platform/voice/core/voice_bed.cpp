#include "tests/platform/voice/core/voice_bed.h"

#include "platform/failure.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <thread>

namespace tessavox::voice::test {

void MessageLoop::post(std::function<void()> call)
{
    const std::lock_guard lock(m_mutex);
    m_calls.push_back(std::move(call));
    m_called.notify_one();
}

void MessageLoop::run_posted(std::chrono::microseconds wait)
{
    std::deque<std::function<void()>> calls;
    {
        std::unique_lock lock(m_mutex);
        m_called.wait_for(lock, wait, [this] { return !m_calls.empty(); });
        calls.swap(m_calls);
    }
    for (const auto& call : calls)
        call();
}

std::vector<Heard> Listener::of(const std::string& kinds) const
{
    std::vector<Heard> rows;
    std::ranges::copy_if(heard, std::back_inserter(rows), [&](const Heard& row) {
        return kinds.empty() ? row.kind != "Phoneme" && row.kind != "Viseme"
                             : (' ' + kinds + ' ').find(' ' + row.kind + ' ') != std::string::npos;
    });
    return rows;
}

std::vector<std::string> Listener::told(const std::string& kinds) const
{
    std::vector<std::string> texts;
    for (const Heard& row : of(kinds)) {
        std::string text = row.kind;
        if (row.kind == "Word" || row.kind == "Sentence")
            text += ' ' + std::to_string(row.first) + '+' + std::to_string(row.second);
        else if (!row.name.empty())
            text += ' ' + row.name;
        texts.push_back(std::move(text));
    }
    return texts;
}

void Listener::add(Heard row)
{
    heard.push_back(row);
    if (on_event)
        on_event(row);
}

int ToneEngine::word_samples(int rate, int voice)
{
    const int period = voice == 0 ? 50 : 25;
    const double samples = 2250.0 / std::pow(3.0, rate / 10.0);
    return std::max(1, static_cast<int>(samples / period)) * period;
}

std::vector<SpeechObjectToken> ToneEngine::voices()
{
    return { { "tone/anna", "Anna", "Anna", "Female", "Adult", "409", "Tone" },
        { "tone/bert", "Bert", "Bert", "Male", "Adult", "407", "Tone" } };
}

Rendering ToneEngine::render(const RenderRequest& request, const std::atomic<bool>& cancelled)
{
    while ((held || renderings == held_at) && !cancelled)
        std::this_thread::yield();
    if (cancelled)
        return {};
    if (broken)
        throw Failure("The engine is broken");
    ++renderings;
    const int voice = request.voice_id == "tone/anna" ? 0 : 1;
    const int period = voice == 0 ? 50 : 25;
    Rendering rendering;
    rendering.sample_rate = sample_rate;
    const int length = word_samples(request.rate, voice);
    for (std::uint32_t token = 0; token < request.utterance->tokens.size(); ++token) {
        const std::uint64_t begin = rendering.samples.size();
        rendering.words.push_back({ token, begin });
        rendering.phones.push_back({ begin, static_cast<std::uint64_t>(length), 7, 1, 0 });
        for (int i = 0; i < length; ++i) {
            const double phase = 2 * std::numbers::pi * i / period;
            rendering.samples.push_back(static_cast<std::int16_t>(amplitude * std::sin(phase)));
        }
    }
    if (request.utterance->ends_sentence)
        rendering.samples.resize(rendering.samples.size() + pause_samples);
    return rendering;
}

class ToneQueue : public RenderQueue {
public:
    explicit ToneQueue(ToneEngines& engines)
        : m_engines(engines)
    {
    }
    bool wants_more() const override { return m_orders.size() < 24; }
    bool pending() const override { return !m_orders.empty(); }
    void wake() override { m_woken = true; }
    void drop() override { m_orders.clear(); }
    void submit(int voice, int rate, Utterance utterance) override
    {
        m_orders.push_back({ voice, rate, std::move(utterance) });
        ++m_engines.orders;
    }
    std::optional<Result> take(const std::function<bool()>& interrupted) override
    {
        for (;;) {
            m_woken = false;
            if (interrupted() || m_orders.empty())
                return std::nullopt;
            Result result{ m_orders.front().utterance, {} };
            attempt([&] {
                result.rendering = m_engines.voices()->render(
                    m_orders.front().voice, m_orders.front().rate, result.utterance, m_woken);
            });
            if (m_woken && result.rendering.sample_rate == 0)
                continue;
            m_orders.pop_front();
            return result;
        }
    }

private:
    struct Order {
        int voice;
        int rate;
        Utterance utterance;
    };
    ToneEngines& m_engines;
    std::deque<Order> m_orders;
    std::atomic<bool> m_woken{ false };
};

ToneEngines::ToneEngines()
{
    std::vector<std::unique_ptr<Engine>> all;
    all.push_back(std::make_unique<ToneEngine>());
    engine = static_cast<ToneEngine*>(all[0].get());
    m_catalog = std::make_shared<VoiceCatalog>(std::move(all));
}

std::unique_ptr<RenderQueue> ToneEngines::live_queue()
{
    return std::make_unique<ToneQueue>(*this);
}

class ManualSink : public AudioSink {
public:
    ManualSink(ManualDevice& device, std::shared_ptr<ManualDevice::Stream> stream)
        : m_device(device)
        , m_stream(std::move(stream))
    {
    }
    ~ManualSink() override { with_lock()->open = false; }
    PcmFormat format() const override { return m_stream->format; }
    std::size_t writable() override
    {
        const auto stream = with_lock();
        const auto room = static_cast<std::size_t>(stream->format.rate / 10);
        return room - std::min(room, stream->waiting.size() / align());
    }
    void write(std::span<const std::byte> frames) override
    {
        const auto stream = with_lock();
        stream->waiting.insert(stream->waiting.end(), frames.begin(), frames.end());
    }
    void finish() override { }
    std::uint64_t played() override { return with_lock()->played(); }
    void pause() override { with_lock()->paused = true; }
    void resume() override { with_lock()->paused = false; }
    void flush() override { with_lock()->waiting.clear(); }
    bool alive() const override { return with_lock()->alive; }

private:
    struct Locked {
        std::unique_lock<std::mutex> lock;
        ManualDevice::Stream* stream;
        ManualDevice::Stream* operator->() const { return stream; }
    };
    Locked with_lock() const { return { std::unique_lock(m_device.m_mutex), m_stream.get() }; }
    std::size_t align() const { return static_cast<std::size_t>(m_stream->format.block_align()); }
    ManualDevice& m_device;
    std::shared_ptr<ManualDevice::Stream> m_stream;
};

std::uint64_t ManualDevice::Stream::played() const
{
    return heard.size() / static_cast<std::size_t>(format.block_align());
}

std::unique_ptr<AudioSink> ManualDevice::open(
    PcmFormat format, const std::string& output, std::function<void()> wake)
{
    if (absent)
        throw Failure("There is no device");
    const std::lock_guard lock(m_mutex);
    m_streams.push_back(std::make_shared<Stream>(Stream{ format, output, std::move(wake) }));
    return std::make_unique<ManualSink>(*this, m_streams.back());
}

std::vector<SoundServer::Output> ManualDevice::outputs()
{
    return { { "left", "Loudspeaker" }, { "right", "Loudspeaker" } };
}

void ManualDevice::advance(milliseconds time)
{
    std::function<void()> wake;
    {
        const std::lock_guard lock(m_mutex);
        if (m_streams.empty() || m_streams.back()->paused || !m_streams.back()->open)
            return;
        Stream& stream = *m_streams.back();
        const auto align = static_cast<std::size_t>(stream.format.block_align());
        const auto frames = static_cast<std::size_t>(stream.format.rate * time.count() / 1000);
        const auto end = stream.waiting.begin()
            + static_cast<std::ptrdiff_t>(std::min(frames * align, stream.waiting.size()));
        stream.heard.insert(stream.heard.end(), stream.waiting.begin(), end);
        stream.waiting.erase(stream.waiting.begin(), end);
        wake = stream.wake;
    }
    wake();
}

void ManualDevice::vanish()
{
    absent = true;
    std::function<void()> wake;
    {
        const std::lock_guard lock(m_mutex);
        m_streams.back()->alive = false;
        wake = m_streams.back()->wake;
    }
    wake();
}

int ManualDevice::opened() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_streams.size());
}

ManualDevice::Stream ManualDevice::last() const
{
    const std::lock_guard lock(m_mutex);
    return m_streams.empty() ? Stream() : *m_streams.back();
}

std::vector<std::int16_t> ManualDevice::sound() const
{
    const Stream stream = last();
    std::vector<std::int16_t> samples(stream.heard.size() / sizeof(std::int16_t));
    std::memcpy(samples.data(), stream.heard.data(), samples.size() * sizeof(std::int16_t));
    return samples;
}

VoiceBed::VoiceBed()
{
    make_voice(use_tones(), use_device());
}

VoiceBed::VoiceBed(std::shared_ptr<SpeechEngines> engines)
{
    make_voice(std::move(engines), use_device());
}

VoiceBed::VoiceBed(std::unique_ptr<SoundServer> server)
{
    make_voice(use_tones(), std::move(server));
}

std::shared_ptr<ToneEngines> VoiceBed::use_tones()
{
    auto tones = std::make_shared<ToneEngines>();
    engines = tones.get();
    engine = tones->engine;
    return tones;
}

std::unique_ptr<ManualDevice> VoiceBed::use_device()
{
    auto manual = std::make_unique<ManualDevice>();
    device = manual.get();
    return manual;
}

void VoiceBed::make_voice(
    std::shared_ptr<SpeechEngines> of_engines, std::unique_ptr<SoundServer> server)
{
    SpeechServiceOptions options;
    options.post = [this](std::function<void()> call) { loop.post(std::move(call)); };
    options.default_output_name = "Default output";
    service = make_speech_service(std::move(options), std::move(of_engines), std::move(server));
    voice = service->create_voice(listener);
    voice->AudioOutputStream()->set_FormatType(mono_22);
    voice->set_AudioOutputStream(voice->AudioOutputStream());
}

VoiceBed::~VoiceBed()
{
    voice.reset();
    loop.run_posted();
}

bool VoiceBed::run_until(const std::function<bool()>& done, milliseconds step)
{
    const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < bound) {
        loop.run_posted(std::chrono::microseconds(200));
        if (done())
            return true;
        if (device)
            device->advance(step);
    }
    return false;
}

bool VoiceBed::wait_until(const std::function<bool()>& done)
{
    return run_until(done, milliseconds(0));
}

bool VoiceBed::run_to_end(int streams)
{
    return run_until([&] { return listener.count("EndStream") >= streams; });
}

bool VoiceBed::heard_words(int count)
{
    return run_until([&] { return listener.count("Word") >= count; });
}

bool VoiceBed::speak(const TextSlice& text, int flags)
{
    listener.heard.clear();
    voice->Speak(text, flags);
    return run_to_end();
}

int steepest(const std::vector<std::int16_t>& samples)
{
    int steepest = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        steepest = std::max(steepest, std::abs(samples[i] - samples[i - 1]));
    return steepest;
}

} // namespace tessavox::voice::test
