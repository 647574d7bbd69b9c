#include "platform/voice/speech_service.h"

#include "platform/failure.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/event_queue.h"
#include "platform/voice/file_stream.h"
#include "platform/voice/pacer.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/speech_engines.h"
#include "platform/voice/synthesis_worker.h"

#include <thread>
#include <utility>

namespace tessavox::voice {

namespace {

// The default output's id; those of the others are the sound server's names for them.
constexpr const char* default_output_id = "";

ReaderOptions reading_options(const TextSlice& text, std::int32_t flags)
{
    ReaderOptions options;
    options.markup = (flags & SVSFIsXML) != 0
        || ((flags & SVSFIsNotXML) == 0 && looks_like_markup(text.view()));
    options.speak_punctuation = (flags & SVSFNLPSpeakPunc) != 0;
    return options;
}

/// What all voices of the process share.
struct VoiceParts {
    std::shared_ptr<const VoiceCatalog> catalog;
    std::shared_ptr<SpeechEngines> engines;
    std::shared_ptr<SoundServer> server;
    std::string default_output_name;
    Post post;
};

/// The format that a voice's stream to the sound device has. Setting it acts when the stream is
/// given back to the voice.
class DeviceStream : public SpeechBaseStream {
public:
    int FormatType() const override { return m_type; }
    void set_FormatType(int type) override { m_type = PcmFormat::from_type(type).type(); }

private:
    int m_type = PcmFormat().type();
};

/// The facade: it keeps the properties, turns each Speak into a job, and gives orders to two
/// threads, which start with the first Speak. Where SAPI leaves a case open or would hang:
/// - A synchronous Speak on a paused voice returns at once, as nobody could resume it.
///   WaitUntilDone without limit does so too, unless only files are being written.
/// - A pause holds the sound, and with it the events; it does not hold the writing of a file.
/// - Speak into a file stream that has been closed fails.
/// - Skip moves within a text that is spoken to a sound output; elsewhere it skips nothing.
class SystemVoice : public SpeechVoice {
public:
    SystemVoice(VoiceParts parts, SpeechVoiceEvents& events)
        : m_parts(std::move(parts))
        , m_events(std::make_shared<EventQueue>(events, m_parts.catalog, m_parts.post, m_wakeup))
        , m_playback(std::make_shared<Playback>(m_wakeup))
        , m_voice(m_parts.catalog->tokens().empty() ? -1 : 0)
    {
    }
    ~SystemVoice() override
    {
        m_events->close();
        m_playback->stop();
        if (m_worker_thread.joinable())
            m_worker_thread.join();
        if (m_pacer_thread.joinable())
            m_pacer_thread.join();
        m_wakeup->notify(); // a Speak may be waiting below a handler that ended the voice
    }
    SystemVoice(const SystemVoice&) = delete;
    SystemVoice& operator=(const SystemVoice&) = delete;

    std::int32_t Speak(TextSlice text, std::int32_t flags) override
    {
        if (text.empty() && flags == SVSFPurgeBeforeSpeak) {
            purge();
            return m_last_stream;
        }
        const std::shared_ptr<Job> job = make_job(std::move(text), flags);
        if ((flags & SVSFPurgeBeforeSpeak) != 0)
            purge();
        job->generation = m_generation;
        job->stream = ++m_last_stream;
        start_threads();
        m_playback->enqueue(job);
        if ((flags & SVSFlagsAsync) == 0)
            speak_through(job);
        return job->stream;
    }
    void Pause() override { m_playback->set_paused(true); }
    void Resume() override { m_playback->set_paused(false); }
    std::int32_t Skip(std::string_view type, std::int32_t count) override
    {
        if (type != "Sentence")
            throw Failure("Only sentences can be skipped");
        return m_playback->skip(count) ? count : 0;
    }
    bool WaitUntilDone(std::int32_t milliseconds) override
    {
        using Clock = Wakeup::Clock;
        const Clock::time_point deadline = milliseconds < 0
            ? Clock::time_point::max()
            : Clock::now() + std::chrono::milliseconds(milliseconds);
        while (!m_playback->idle()) {
            if (Clock::now() >= deadline || (milliseconds < 0 && m_playback->held_by_pause()))
                return false;
            m_wakeup->wait_until(deadline);
        }
        return true;
    }
    std::int64_t spoken_units() const override { return m_playback->spoken_units(); }
    SpeechObjectTokens GetVoices(
        std::string_view required_attributes, std::string_view optional_attributes) override
    {
        const VoiceCatalog& catalog = *m_parts.catalog;
        if (required_attributes.empty() && optional_attributes.empty())
            return SpeechObjectTokens(catalog.tokens());
        std::vector<SpeechObjectToken> fitting;
        for (const int voice : catalog.matching(required_attributes, optional_attributes))
            fitting.push_back(catalog.tokens()[static_cast<std::size_t>(voice)]);
        return SpeechObjectTokens(std::move(fitting));
    }
    // Outputs carry no attributes, so one that requires some finds none.
    SpeechObjectTokens GetAudioOutputs(
        std::string_view required_attributes, std::string_view) override
    {
        if (!required_attributes.empty())
            return {};
        std::vector<SpeechObjectToken> tokens(1);
        tokens.front().id = default_output_id;
        tokens.front().description = m_parts.default_output_name;
        for (const SoundServer::Output& output : m_parts.server->outputs()) {
            SpeechObjectToken token;
            token.id = output.name;
            token.description = output.description;
            for (const SpeechObjectToken& other : tokens) {
                if (other.description == token.description)
                    token.description = output.description + " (" + output.name + ")";
            }
            tokens.push_back(std::move(token));
        }
        return SpeechObjectTokens(std::move(tokens));
    }
    SpeechObjectToken Voice() const override
    {
        return m_voice < 0 ? SpeechObjectToken()
                           : m_parts.catalog->tokens()[static_cast<std::size_t>(m_voice)];
    }
    void set_Voice(const SpeechObjectToken& token) override
    {
        const int voice = m_parts.catalog->find(token.id);
        if (voice < 0)
            throw Failure("No such voice is installed: " + token.id);
        m_voice = voice;
    }
    std::int32_t Rate() const override { return m_playback->rate(); }
    void set_Rate(std::int32_t rate) override
    {
        if (rate < -10 || rate > 10)
            throw Failure("The rate is out of range");
        m_playback->set_rate(rate);
    }
    std::int32_t Volume() const override { return m_playback->volume(); }
    void set_Volume(std::int32_t volume) override
    {
        if (volume < 0 || volume > 100)
            throw Failure("The volume is out of range");
        m_playback->set_volume(volume);
    }
    void set_AudioOutput(const std::optional<SpeechObjectToken>& token) override
    {
        std::string output = default_output_id;
        if (token) {
            bool known = false;
            for (const SpeechObjectToken& each : GetAudioOutputs("", ""))
                known = known || each.id == token->id;
            if (!known)
                throw Failure("No such sound output: " + token->id);
            output = token->id;
        }
        m_output = std::move(output);
        m_file_stream.reset();
        if (m_allow) {
            m_format_type = PcmFormat().type();
            m_device_stream->set_FormatType(m_format_type);
        }
    }
    std::shared_ptr<SpeechBaseStream> AudioOutputStream() const override
    {
        if (m_file_stream)
            return m_file_stream;
        return m_device_stream;
    }
    void set_AudioOutputStream(std::shared_ptr<SpeechBaseStream> stream) override
    {
        if (stream == m_device_stream) {
            m_format_type = m_device_stream->FormatType();
            m_file_stream.reset();
            return;
        }
        auto file = std::dynamic_pointer_cast<SystemFileStream>(stream);
        if (!file || !file->target())
            throw Failure("The stream is not one of this voice, or is not open");
        m_file_stream = std::move(file);
    }
    void set_AllowAudioOutputFormatChangesOnNextSet(bool allow) override { m_allow = allow; }
    std::int32_t EventInterests() const override { return m_events->interests(); }
    void set_EventInterests(std::int32_t bits) override { m_events->set_interests(bits); }

private:
    std::shared_ptr<Job> make_job(TextSlice text, std::int32_t flags) const
    {
        auto job = std::make_shared<Job>();
        if (m_file_stream) {
            job->file = m_file_stream->target();
            if (!job->file)
                throw Failure("The file stream that the voice speaks into is closed");
            job->format = job->file->format();
        } else {
            job->format = PcmFormat::from_type(m_format_type);
            job->output = m_output;
        }
        job->voice = m_voice;
        if ((flags & SVSFIsFilename) != 0) {
            job->wave = open_wave_file(to_utf8(text.view()));
            return job;
        }
        job->reading = reading_options(text, flags);
        job->persist_markup = (flags & SVSFPersistXML) != 0;
        job->text = std::move(text);
        return job;
    }
    void purge()
    {
        m_events->start_generation(++m_generation);
        m_playback->purge();
    }
    void start_threads()
    {
        if (m_worker_thread.joinable())
            return;
        m_worker_thread
            = std::thread([this] { run_synthesis(*m_parts.engines, *m_playback, *m_events); });
        m_pacer_thread = std::thread([this] { run_pacer(*m_playback, *m_events, m_parts.server); });
    }
    void speak_through(const std::shared_ptr<Job>& job)
    {
        // A handler may end the voice, so nothing of it is touched but what these keep alive.
        const std::shared_ptr<EventQueue> events = m_events;
        const std::shared_ptr<Playback> playback = m_playback;
        const std::shared_ptr<Wakeup> wakeup = m_wakeup;
        for (;;) {
            const bool over
                = !playback->holds(*job) || (playback->paused() && !job->file) || events->closed();
            events->deliver();
            if (over || events->closed())
                return;
            wakeup->wait_until(Wakeup::Clock::time_point::max());
        }
    }

    const VoiceParts m_parts;
    const std::shared_ptr<Wakeup> m_wakeup = std::make_shared<Wakeup>(); // of this thread
    const std::shared_ptr<EventQueue> m_events;
    const std::shared_ptr<Playback> m_playback;

    int m_voice;
    int m_generation = 0;
    std::int32_t m_last_stream = 0;
    bool m_allow = true;
    std::string m_output; // name; empty: the default one
    int m_format_type = PcmFormat().type();
    const std::shared_ptr<DeviceStream> m_device_stream = std::make_shared<DeviceStream>();
    std::shared_ptr<SystemFileStream> m_file_stream; // null: the sound goes to the output

    std::thread m_worker_thread;
    std::thread m_pacer_thread;
};

class SystemSpeechService : public SpeechService {
public:
    explicit SystemSpeechService(VoiceParts parts)
        : m_parts(std::move(parts))
    {
    }
    std::unique_ptr<SpeechVoice> create_voice(SpeechVoiceEvents& events) override
    {
        return std::make_unique<SystemVoice>(m_parts, events);
    }
    std::shared_ptr<SpeechFileStream> create_file_stream() override
    {
        return std::make_shared<SystemFileStream>();
    }

private:
    const VoiceParts m_parts;
};

} // namespace

std::unique_ptr<SpeechService> make_speech_service(
    SpeechServiceOptions options, std::shared_ptr<SpeechEngines> engines)
{
    std::unique_ptr<SoundServer> server = make_pulse_server(options.application_name);
    return make_speech_service(std::move(options), std::move(engines), std::move(server));
}

std::unique_ptr<SpeechService> make_speech_service(SpeechServiceOptions options,
    std::shared_ptr<SpeechEngines> engines, std::unique_ptr<SoundServer> server)
{
    VoiceParts parts;
    parts.catalog = engines->voices();
    parts.engines = std::move(engines);
    parts.server = std::move(server);
    parts.default_output_name = std::move(options.default_output_name);
    parts.post = std::move(options.post);
    return std::make_unique<SystemSpeechService>(std::move(parts));
}

} // namespace tessavox::voice
