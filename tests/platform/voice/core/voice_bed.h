// A voice on a test bed: a message loop, a sound device whose clock the test moves, an engine that
// sings a tone, and a listener that keeps what it hears.
#pragma once

#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/speech_service.h"

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
    std::string name; // bookmark or voice
};

class Listener : public SpeechVoiceEvents {
public:
    std::vector<Heard> heard;
    std::function<void(const Heard&)> on_event;

    /// The rows of these kinds, "Word" or "Word Sentence"; no kind: all but phonemes, visemes.
    std::vector<Heard> of(const std::string& kinds) const;
    /// "Word 0+3" and so on, for comparing.
    std::vector<std::string> told(const std::string& kinds) const;
    int count(const std::string& kind) const;

    void Voice_StartStream(std::int32_t stream, std::int64_t position) override;
    void Voice_EndStream(std::int32_t stream, std::int64_t position) override;
    void Voice_VoiceChange(
        std::int32_t stream, std::int64_t position, const SpeechObjectToken& token) override;
    void Voice_Bookmark(std::int32_t stream, std::int64_t position, const std::string& bookmark,
        std::int32_t id) override;
    void Voice_Word(std::int32_t stream, std::int64_t position, std::int32_t character,
        std::int32_t length) override;
    void Voice_Sentence(std::int32_t stream, std::int64_t position, std::int32_t character,
        std::int32_t length) override;
    void Voice_Phoneme(std::int32_t stream, std::int64_t position, std::int32_t duration,
        std::int16_t next, std::int32_t feature, std::int16_t current) override;
    void Voice_Viseme(std::int32_t stream, std::int64_t position, std::int32_t duration,
        std::int32_t type, std::int32_t feature, std::int32_t id) override;
    void Voice_AudioLevel(std::int32_t stream, std::int64_t position, std::int32_t level) override;
    void Voice_EnginePrivate(
        std::int32_t stream, std::int32_t position, std::int64_t value) override;
    void Voice_AudioOutput(bool reachable) override;

private:
    void add(Heard row);
};

/// Two voices, Anna and Bert, who sing each word as a tone of 441 Hz (882 Hz for Bert) that begins
/// and ends at rest; a word lasts 100 ms at rate 0. A sentence ends in 50 ms of silence.
class ToneEngine : public Engine {
public:
    static constexpr int sample_rate = 22050;
    static constexpr int amplitude = 8000;
    /// Samples of a word at a rate: whole periods.
    static int word_samples(int rate, int voice);

    std::vector<SpeechObjectToken> voices() override;
    Rendering render(const RenderRequest& request, const std::atomic<bool>& cancelled) override;

    std::atomic<bool> held{ false }; // does not answer until this is false or it is cancelled
    std::atomic<int> held_at{ -1 }; // does not answer when so many renderings are made
    std::atomic<bool> broken{ false };
    std::atomic<int> renderings{ 0 };
};

/// The far side of every sink that a ManualServer opens.
class ManualDevice {
public:
    static constexpr int buffer_milliseconds = 100;

    /// Lets the sound run on: at most as far as there is some.
    void advance(std::chrono::milliseconds time);
    void vanish();

    int opened() const;
    bool paused() const;
    bool open() const;
    PcmFormat format() const;
    std::string output() const;
    std::uint64_t played() const; // frames of the sink that was opened last
    /// Everything that was heard from the sink that was opened last, as first channel's samples.
    std::vector<int> sound() const;

    std::atomic<bool> absent{ false }; // opening fails

private:
    friend class ManualSink;
    friend class ManualServer;
    struct Stream {
        PcmFormat format;
        std::string output;
        std::function<void()> wake;
        std::vector<std::byte> heard;
        std::vector<std::byte> waiting;
        bool paused = false;
        bool alive = true;
        bool open = true;
    };
    std::shared_ptr<Stream> latest() const;
    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<Stream>> m_streams;
};

class ManualServer : public SoundServer {
public:
    explicit ManualServer(std::shared_ptr<ManualDevice> device)
        : m_device(std::move(device))
    {
    }
    std::unique_ptr<AudioSink> open(
        PcmFormat format, const std::string& output, std::function<void()> wake) override;
    std::vector<Output> outputs() override;

private:
    std::shared_ptr<ManualDevice> m_device;
};

class VoiceBed {
public:
    /// A voice of the tone engine.
    VoiceBed();
    /// The first voice of these engines.
    explicit VoiceBed(std::shared_ptr<SpeechEngines> engines);
    ~VoiceBed();

    /// Runs the message loop and the device's clock until the condition holds. False after a bound
    /// that no healthy run comes near.
    bool run_until(const std::function<bool()>& done,
        std::chrono::milliseconds step = std::chrono::milliseconds(5));
    /// As above, but the device's clock stands.
    bool wait_until(const std::function<bool()>& done);
    /// Runs until that many streams have ended.
    bool run_to_end(int streams = 1);

    MessageLoop loop;
    std::shared_ptr<ManualDevice> device = std::make_shared<ManualDevice>();
    ToneEngine* engine = nullptr;
    Listener listener;
    std::unique_ptr<SpeechService> service;
    std::unique_ptr<SpeechVoice> voice;

private:
    void make_voice(std::shared_ptr<SpeechEngines> engines);
};

/// The largest step from one sample to the next.
int steepest(const std::vector<int>& samples);

} // namespace tessavox::voice::test
