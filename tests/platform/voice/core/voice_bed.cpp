#include "tests/platform/voice/core/voice_bed.h"

#include "platform/failure.h"
#include "tests/platform/voice/core/local_engines.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <thread>

namespace tessavox::voice::test {

using std::chrono::milliseconds;

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
    for (const Heard& row : heard) {
        const bool wanted = kinds.empty()
            ? row.kind != "Phoneme" && row.kind != "Viseme"
            : (' ' + kinds + ' ').find(' ' + row.kind + ' ') != std::string::npos;
        if (wanted)
            rows.push_back(row);
    }
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

int Listener::count(const std::string& kind) const
{
    return static_cast<int>(std::count_if(
        heard.begin(), heard.end(), [&](const Heard& row) { return row.kind == kind; }));
}

void Listener::add(Heard row)
{
    heard.push_back(row);
    if (on_event)
        on_event(row);
}

void Listener::Voice_StartStream(std::int32_t stream, std::int64_t position)
{
    add({ "StartStream", stream, position, 0, 0, "" });
}

void Listener::Voice_EndStream(std::int32_t stream, std::int64_t position)
{
    add({ "EndStream", stream, position, 0, 0, "" });
}

void Listener::Voice_VoiceChange(
    std::int32_t stream, std::int64_t position, const SpeechObjectToken& token)
{
    add({ "VoiceChange", stream, position, 0, 0, token.description });
}

void Listener::Voice_Bookmark(
    std::int32_t stream, std::int64_t position, const std::string& bookmark, std::int32_t id)
{
    add({ "Bookmark", stream, position, 0, id, bookmark });
}

void Listener::Voice_Word(
    std::int32_t stream, std::int64_t position, std::int32_t character, std::int32_t length)
{
    add({ "Word", stream, position, character, length, "" });
}

void Listener::Voice_Sentence(
    std::int32_t stream, std::int64_t position, std::int32_t character, std::int32_t length)
{
    add({ "Sentence", stream, position, character, length, "" });
}

void Listener::Voice_Phoneme(std::int32_t stream, std::int64_t position, std::int32_t duration,
    std::int16_t next, std::int32_t, std::int16_t)
{
    add({ "Phoneme", stream, position, duration, next, "" });
}

void Listener::Voice_Viseme(std::int32_t stream, std::int64_t position, std::int32_t duration,
    std::int32_t type, std::int32_t, std::int32_t)
{
    add({ "Viseme", stream, position, duration, type, "" });
}

void Listener::Voice_AudioLevel(std::int32_t stream, std::int64_t position, std::int32_t level)
{
    add({ "AudioLevel", stream, position, level, 0, "" });
}

void Listener::Voice_EnginePrivate(std::int32_t stream, std::int32_t position, std::int64_t)
{
    add({ "EnginePrivate", stream, position, 0, 0, "" });
}

void Listener::Voice_AudioOutput(bool reachable)
{
    add({ "AudioOutput", 0, 0, reachable, 0, "" });
}

int ToneEngine::word_samples(int rate, int voice)
{
    const int period = voice == 0 ? 50 : 25;
    const double samples = 2250.0 / std::pow(3.0, rate / 10.0);
    return std::max(1, static_cast<int>(samples / period)) * period;
}

std::vector<SpeechObjectToken> ToneEngine::voices()
{
    SpeechObjectToken anna{ "tone/anna", "Anna", "Anna", "Female", "Adult", "409", "Tone" };
    SpeechObjectToken bert{ "tone/bert", "Bert", "Bert", "Male", "Adult", "407", "Tone" };
    return { anna, bert };
}

Rendering ToneEngine::render(const RenderRequest& request, const std::atomic<bool>& cancelled)
{
    while ((held || renderings == held_at) && !cancelled)
        std::this_thread::yield();
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
        rendering.samples.resize(rendering.samples.size() + sample_rate / 20);
    return rendering;
}

std::shared_ptr<ManualDevice::Stream> ManualDevice::latest() const
{
    return m_streams.empty() ? nullptr : m_streams.back();
}

void ManualDevice::advance(milliseconds time)
{
    std::function<void()> wake;
    {
        const std::lock_guard lock(m_mutex);
        const auto stream = latest();
        if (!stream || stream->paused || !stream->open)
            return;
        const auto align = static_cast<std::size_t>(stream->format.block_align());
        const auto frames = static_cast<std::size_t>(stream->format.rate * time.count() / 1000);
        const auto bytes
            = static_cast<std::ptrdiff_t>(std::min(frames * align, stream->waiting.size()));
        stream->heard.insert(
            stream->heard.end(), stream->waiting.begin(), stream->waiting.begin() + bytes);
        stream->waiting.erase(stream->waiting.begin(), stream->waiting.begin() + bytes);
        wake = stream->wake;
    }
    wake();
}

void ManualDevice::vanish()
{
    absent = true;
    std::function<void()> wake;
    {
        const std::lock_guard lock(m_mutex);
        latest()->alive = false;
        wake = latest()->wake;
    }
    wake();
}

int ManualDevice::opened() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_streams.size());
}

bool ManualDevice::paused() const
{
    const std::lock_guard lock(m_mutex);
    return latest() && latest()->paused;
}

bool ManualDevice::open() const
{
    const std::lock_guard lock(m_mutex);
    return latest() && latest()->open;
}

PcmFormat ManualDevice::format() const
{
    const std::lock_guard lock(m_mutex);
    return latest()->format;
}

std::string ManualDevice::output() const
{
    const std::lock_guard lock(m_mutex);
    return latest()->output;
}

std::uint64_t ManualDevice::played() const
{
    const std::lock_guard lock(m_mutex);
    if (!latest())
        return 0;
    return latest()->heard.size() / static_cast<std::size_t>(latest()->format.block_align());
}

std::vector<int> ManualDevice::sound() const
{
    const std::lock_guard lock(m_mutex);
    std::vector<int> samples;
    const PcmFormat format = latest()->format;
    const std::vector<std::byte>& bytes = latest()->heard;
    const auto align = static_cast<std::size_t>(format.block_align());
    for (std::size_t at = 0; at + align <= bytes.size(); at += align) {
        std::int16_t sample = 0;
        if (format.bits == 16)
            std::memcpy(&sample, &bytes[at], sizeof sample);
        else
            sample = static_cast<std::int16_t>((std::to_integer<int>(bytes[at]) - 128) * 256);
        samples.push_back(sample);
    }
    return samples;
}

class ManualSink : public AudioSink {
public:
    ManualSink(std::shared_ptr<ManualDevice> device, std::shared_ptr<ManualDevice::Stream> stream)
        : m_device(std::move(device))
        , m_stream(std::move(stream))
    {
    }
    ~ManualSink() override
    {
        const std::lock_guard lock(m_device->m_mutex);
        m_stream->open = false;
    }
    PcmFormat format() const override { return m_stream->format; }
    std::size_t writable() override
    {
        const std::lock_guard lock(m_device->m_mutex);
        const auto room = static_cast<std::size_t>(
            m_stream->format.rate * ManualDevice::buffer_milliseconds / 1000);
        return room - std::min(room, m_stream->waiting.size() / align());
    }
    void write(std::span<const std::byte> frames) override
    {
        const std::lock_guard lock(m_device->m_mutex);
        m_stream->waiting.insert(m_stream->waiting.end(), frames.begin(), frames.end());
    }
    void finish() override { }
    std::uint64_t played() override
    {
        const std::lock_guard lock(m_device->m_mutex);
        return m_stream->heard.size() / align();
    }
    void pause() override
    {
        const std::lock_guard lock(m_device->m_mutex);
        m_stream->paused = true;
    }
    void resume() override
    {
        const std::lock_guard lock(m_device->m_mutex);
        m_stream->paused = false;
    }
    void flush() override
    {
        const std::lock_guard lock(m_device->m_mutex);
        m_stream->waiting.clear();
    }
    bool alive() const override
    {
        const std::lock_guard lock(m_device->m_mutex);
        return m_stream->alive;
    }

private:
    std::size_t align() const { return static_cast<std::size_t>(m_stream->format.block_align()); }
    std::shared_ptr<ManualDevice> m_device;
    std::shared_ptr<ManualDevice::Stream> m_stream;
};

std::unique_ptr<AudioSink> ManualServer::open(
    PcmFormat format, const std::string& output, std::function<void()> wake)
{
    if (m_device->absent)
        throw Failure("There is no device");
    auto stream = std::make_shared<ManualDevice::Stream>();
    stream->format = format;
    stream->output = output;
    stream->wake = std::move(wake);
    const std::lock_guard lock(m_device->m_mutex);
    m_device->m_streams.push_back(stream);
    return std::make_unique<ManualSink>(m_device, stream);
}

std::vector<SoundServer::Output> ManualServer::outputs()
{
    return { { "left", "Loudspeaker" }, { "right", "Loudspeaker" } };
}

VoiceBed::VoiceBed()
{
    auto tone = std::make_unique<ToneEngine>();
    engine = tone.get();
    std::vector<std::unique_ptr<Engine>> engines;
    engines.push_back(std::move(tone));
    make_voice(std::make_shared<LocalEngines>(std::make_shared<VoiceCatalog>(std::move(engines))));
}

VoiceBed::VoiceBed(std::shared_ptr<SpeechEngines> engines)
{
    make_voice(std::move(engines));
}

void VoiceBed::make_voice(std::shared_ptr<SpeechEngines> engines)
{
    SpeechServiceOptions options;
    options.post = [this](std::function<void()> call) { loop.post(std::move(call)); };
    options.default_output_name = "Default output";
    service = make_speech_service(
        std::move(options), std::move(engines), std::make_unique<ManualServer>(device));
    voice = service->create_voice(listener);
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

int steepest(const std::vector<int>& samples)
{
    int steepest = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        steepest = std::max(steepest, std::abs(samples[i] - samples[i - 1]));
    return steepest;
}

} // namespace tessavox::voice::test
