// A voice on a test bed: a message loop, a sound device whose clock the test moves, an engine that
// sings a tone, and a listener that keeps what it hears.
#pragma once

#include "platform/voice/speech_service.h"
#include "tests/platform/voice/core/manual_device.h"
#include "tests/platform/voice/core/tone_engine.h"

#include <condition_variable>
#include <deque>

namespace tessavox::voice::test {

/// The message loop of the interface thread, which the test's own thread runs.
class MessageLoop {
public:
    void post(std::function<void()> call)
    {
        const std::lock_guard lock(m_mutex);
        m_calls.push_back(std::move(call));
        m_called.notify_one();
    }
    /// Runs what is posted; waits up to `wait` if there is nothing.
    void run_posted(std::chrono::microseconds wait = std::chrono::microseconds(0))
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
    std::int32_t first = 0; // CharacterPosition, level
    std::int32_t second = 0; // Length, BookmarkId
    std::string name = {}; // bookmark or voice
};

class Listener : public SpeechVoiceEvents {
public:
    std::vector<Heard> heard;
    std::function<void(const Heard&)> on_event;

    int count(const std::string& kind) const
    {
        return static_cast<int>(std::ranges::count(heard, kind, &Heard::kind));
    }
    /// The rows of these kinds, "Word" or "Word Sentence"; no kind: all but phonemes, visemes.
    std::vector<Heard> of(const std::string& kinds) const
    {
        std::vector<Heard> rows;
        for (const Heard& row : heard)
            if (kinds.empty() ? row.kind != "Phoneme" && row.kind != "Viseme"
                              : (' ' + kinds + ' ').find(' ' + row.kind + ' ') != kinds.npos)
                rows.push_back(row);
        return rows;
    }
    /// "Word 0+3" and so on, for comparing.
    std::vector<std::string> told(const std::string& kinds) const
    {
        std::vector<std::string> texts;
        for (const Heard& row : of(kinds)) {
            const bool has_extent = row.kind == "Word" || row.kind == "Sentence";
            texts.push_back(row.kind + (has_extent || !row.name.empty() ? " " : "") + row.name
                + (has_extent ? std::to_string(row.first) + '+' + std::to_string(row.second) : ""));
        }
        return texts;
    }

    using Int = std::int32_t;
    using Place = std::int64_t;
    void Voice_StartStream(Int stream, Place at) override { add({ "StartStream", stream, at }); }
    void Voice_EndStream(Int stream, Place at) override { add({ "EndStream", stream, at }); }
    void Voice_VoiceChange(Int stream, Place at, const SpeechObjectToken& token) override
    {
        add({ "VoiceChange", stream, at, 0, 0, token.description });
    }
    void Voice_Bookmark(Int stream, Place at, const std::string& bookmark, Int id) override
    {
        add({ "Bookmark", stream, at, 0, id, bookmark });
    }
    void Voice_Word(Int stream, Place at, Int character, Int length) override
    {
        add({ "Word", stream, at, character, length });
    }
    void Voice_Sentence(Int stream, Place at, Int character, Int length) override
    {
        add({ "Sentence", stream, at, character, length });
    }
    void Voice_Phoneme(Int stream, Place at, Int, std::int16_t, Int, std::int16_t) override
    {
        add({ "Phoneme", stream, at });
    }
    void Voice_Viseme(Int stream, Place at, Int, Int, Int, Int) override
    {
        add({ "Viseme", stream, at });
    }
    void Voice_AudioLevel(Int stream, Place at, Int level) override
    {
        add({ "AudioLevel", stream, at, level });
    }
    void Voice_AudioOutput(bool reachable) override { add({ "AudioOutput", 0, 0, reachable }); }

private:
    void add(Heard row)
    {
        heard.push_back(row);
        if (on_event)
            on_event(row);
    }
};

constexpr int mono_22 = 22; // 22.05 kHz, 16 bit, mono: the engines' own

struct VoiceBed {
    /// A voice in the engines' format. Engines and server are the test's own if none are given.
    explicit VoiceBed(std::shared_ptr<SpeechEngines> other_engines = nullptr,
        std::unique_ptr<SoundServer> server = nullptr)
    {
        if (!server) {
            auto manual = std::make_unique<ManualDevice>();
            device = manual.get();
            server = std::move(manual);
        }
        SpeechServiceOptions options;
        options.post = [this](std::function<void()> call) { loop.post(std::move(call)); };
        options.default_output_name = "Default output";
        service = make_speech_service(
            std::move(options), other_engines ? other_engines : engines, std::move(server));
        voice = service->create_voice(listener);
        voice->AudioOutputStream()->set_FormatType(mono_22);
        voice->set_AudioOutputStream(voice->AudioOutputStream());
    }
    ~VoiceBed()
    {
        voice.reset();
        loop.run_posted();
    }

    /// Runs the message loop and the device's clock until the condition holds. False after a bound
    /// that no healthy run comes near.
    bool run_until(const std::function<bool()>& done, milliseconds step = milliseconds(5))
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
    /// As above, but the device's clock stands.
    bool wait_until(const std::function<bool()>& done) { return run_until(done, milliseconds(0)); }
    bool has_heard(const std::string& kind, int count = 1, milliseconds step = milliseconds(5))
    {
        return run_until([&] { return listener.count(kind) >= count; }, step);
    }
    /// Forgets what was heard, speaks, and runs until all of it has been heard.
    bool speak(const TextSlice& text, int flags = SVSFlagsAsync)
    {
        listener.heard.clear();
        voice->Speak(text, flags);
        return has_heard("EndStream");
    }

    MessageLoop loop;
    Listener listener;
    const std::shared_ptr<ToneEngines> engines = std::make_shared<ToneEngines>();
    ToneEngine* const engine = engines->engine;
    ManualDevice* device = nullptr;
    std::unique_ptr<SpeechService> service;
    std::unique_ptr<SpeechVoice> voice;
};

} // namespace tessavox::voice::test
