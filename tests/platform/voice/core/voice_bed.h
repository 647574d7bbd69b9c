// A voice on a test bed: a message loop, a sound device whose clock the test moves, an engine that
// sings a tone, and a listener that keeps what it hears.
#pragma once

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/speech_engines.h"
#include "platform/voice/speech_service.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessavox::voice::test {

using std::chrono::milliseconds;

constexpr int mono_22 = 22; // 22.05 kHz, 16 bit, mono: the engines' own

/// The interface thread's message loop: the test's own thread runs it.
class MessageLoop {
public:
    void post(std::function<void()> call);
    /// Runs what is posted; waits up to `wait` if there is nothing.
    void run_posted(std::chrono::microseconds wait = std::chrono::microseconds(0));

private:
    std::mutex m_mutex;
    std::condition_variable m_called;
    std::deque<std::function<void()>> m_calls;
};

/// What the listener heard, one row an event.
struct Heard {
    std::string kind; // "Word", "EndStream" ...
    std::int32_t stream = 0;
    std::int64_t position = 0; // bytes
    std::int32_t first = 0; // CharacterPosition, duration, level
    std::int32_t second = 0; // Length, BookmarkId, next one's number
    std::string name = {}; // bookmark or voice
};

class Listener : public SpeechVoiceEvents {
public:
    std::vector<Heard> heard;
    std::function<void(const Heard&)> on_event;

    /// The rows of these kinds, "Word" or "Word Sentence"; no kind: all but phonemes, visemes.
    std::vector<Heard> of(const std::string& kinds) const;
    /// "Word 0+3" and so on, for comparing.
    std::vector<std::string> told(const std::string& kinds) const;
    int count(const std::string& kind) const
    {
        return static_cast<int>(std::ranges::count(heard, kind, &Heard::kind));
    }

    void Voice_StartStream(std::int32_t stream, std::int64_t position) override
    {
        add({ "StartStream", stream, position });
    }
    void Voice_EndStream(std::int32_t stream, std::int64_t position) override
    {
        add({ "EndStream", stream, position });
    }
    void Voice_VoiceChange(
        std::int32_t stream, std::int64_t position, const SpeechObjectToken& token) override
    {
        add({ "VoiceChange", stream, position, 0, 0, token.description });
    }
    void Voice_Bookmark(std::int32_t stream, std::int64_t position, const std::string& bookmark,
        std::int32_t id) override
    {
        add({ "Bookmark", stream, position, 0, id, bookmark });
    }
    void Voice_Word(std::int32_t stream, std::int64_t position, std::int32_t character,
        std::int32_t length) override
    {
        add({ "Word", stream, position, character, length });
    }
    void Voice_Sentence(std::int32_t stream, std::int64_t position, std::int32_t character,
        std::int32_t length) override
    {
        add({ "Sentence", stream, position, character, length });
    }
    void Voice_Phoneme(std::int32_t stream, std::int64_t position, std::int32_t duration,
        std::int16_t next, std::int32_t, std::int16_t) override
    {
        add({ "Phoneme", stream, position, duration, next });
    }
    void Voice_Viseme(std::int32_t stream, std::int64_t position, std::int32_t duration,
        std::int32_t type, std::int32_t, std::int32_t) override
    {
        add({ "Viseme", stream, position, duration, type });
    }
    void Voice_AudioLevel(std::int32_t stream, std::int64_t position, std::int32_t level) override
    {
        add({ "AudioLevel", stream, position, level });
    }
    void Voice_AudioOutput(bool reachable) override { add({ "AudioOutput", 0, 0, reachable }); }

private:
    void add(Heard row);
};

/// Two voices, Anna and Bert, who sing each word as a tone of 441 Hz (882 Hz for Bert) that begins
/// and ends at rest; a word lasts 100 ms at rate 0. A sentence ends in 50 ms of silence.
class ToneEngine : public Engine {
public:
    static constexpr int sample_rate = 22050;
    static constexpr int amplitude = 8000;
    static constexpr int pause_samples = sample_rate / 20;
    /// Samples of a word at a rate: whole periods.
    static int word_samples(int rate = 0, int voice = 0);

    std::vector<SpeechObjectToken> voices() override;
    /// Nothing if it is cancelled.
    Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) override;

    std::atomic<bool> held{ false }; // does not answer until this is false or it is cancelled
    std::atomic<int> held_at{ -1 }; // does not answer when so many renderings are made
    std::atomic<bool> broken{ false };
    std::atomic<int> renderings{ 0 };
};

/// The tone engine on the thread that asks for sound, when it takes it.
class ToneEngines : public SpeechEngines {
public:
    ToneEngines();
    const std::shared_ptr<const VoiceCatalog>& voices() override { return m_catalog; }
    std::unique_ptr<RenderQueue> live_queue() override;
    std::unique_ptr<RenderQueue> file_queue(std::size_t) override { return live_queue(); }

    ToneEngine* engine = nullptr;
    std::atomic<int> orders{ 0 }; // submitted so far

private:
    std::shared_ptr<const VoiceCatalog> m_catalog;
};

/// A sound server with one device, which holds 100 ms.
class ManualDevice : public SoundServer {
public:
    struct Stream {
        PcmFormat format;
        std::string output;
        std::function<void()> wake = {};
        std::vector<std::byte> heard = {};
        std::vector<std::byte> waiting = {};
        bool paused = false;
        bool alive = true;
        bool open = true;
        std::uint64_t played() const; // frames
    };

    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake) override;
    std::vector<Output> outputs() override;

    /// Lets the sound run on: at most as far as there is some.
    void advance(milliseconds time);
    void vanish();
    int opened() const;
    /// A copy of the stream that was opened last.
    Stream last() const;
    /// All samples that were heard of it; the format has 16 bits and one channel.
    std::vector<std::int16_t> sound() const;

    std::atomic<bool> absent{ false }; // opening fails

private:
    friend class ManualSink;
    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<Stream>> m_streams;
};

class VoiceBed {
public:
    /// A voice of the tone engine on the manual device, in the engine's format.
    VoiceBed();
    explicit VoiceBed(std::shared_ptr<SpeechEngines> engines);
    explicit VoiceBed(std::unique_ptr<SoundServer> server);
    ~VoiceBed();

    /// Runs the message loop and the device's clock until the condition holds. False after a bound
    /// that no healthy run comes near.
    bool run_until(const std::function<bool()>& done, milliseconds step = milliseconds(5));
    /// As above, but the device's clock stands.
    bool wait_until(const std::function<bool()>& done);
    /// Runs until that many streams have ended.
    bool run_to_end(int streams = 1);
    bool heard_words(int count);
    /// Forgets what was heard, speaks, and runs until all of it has been heard.
    bool speak(const TextSlice& text, int flags = SVSFlagsAsync);

    MessageLoop loop;
    ManualDevice* device = nullptr;
    ToneEngines* engines = nullptr;
    ToneEngine* engine = nullptr;
    Listener listener;
    std::unique_ptr<SpeechService> service;
    std::unique_ptr<SpeechVoice> voice;

private:
    void make_voice(std::shared_ptr<SpeechEngines> engines, std::unique_ptr<SoundServer> server);
    std::shared_ptr<ToneEngines> use_tones();
    std::unique_ptr<ManualDevice> use_device();
};

/// The largest step from one sample to the next.
int steepest(const std::vector<std::int16_t>& samples);

} // namespace tessavox::voice::test
