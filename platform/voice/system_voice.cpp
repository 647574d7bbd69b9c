#include "platform/voice/system_voice.h"

#include "platform/failure.h"
#include "platform/voice/engines/voice_catalog.h"

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

} // namespace

SystemVoice::SystemVoice(VoiceParts parts, SpeechVoiceEvents& events)
    : m_parts(std::move(parts))
    , m_events(std::make_shared<EventQueue>(events, m_parts.catalog, m_parts.post, m_wakeup))
    , m_playback(std::make_shared<Playback>(m_wakeup))
    , m_pacer(*m_playback, *m_events, *m_parts.server)
    , m_worker(*m_parts.engines, *m_playback, *m_events)
    , m_voice(m_parts.catalog->tokens().empty() ? -1 : 0)
{
}

SystemVoice::~SystemVoice()
{
    m_events->close();
    m_playback->stop();
    if (m_worker_thread.joinable())
        m_worker_thread.join();
    if (m_pacer_thread.joinable())
        m_pacer_thread.join();
    m_wakeup->notify(); // a Speak may be waiting below a handler that ended the voice
}

void SystemVoice::start_threads()
{
    if (m_worker_thread.joinable())
        return;
    m_worker_thread = std::thread([this] { m_worker.run(); });
    m_pacer_thread = std::thread([this] { m_pacer.run(); });
}

std::int32_t SystemVoice::Speak(TextSlice text, std::int32_t flags)
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

std::shared_ptr<Job> SystemVoice::make_job(TextSlice text, std::int32_t flags) const
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

void SystemVoice::purge()
{
    m_events->start_generation(++m_generation);
    m_playback->purge();
}

void SystemVoice::speak_through(const std::shared_ptr<Job>& job)
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

void SystemVoice::Pause()
{
    m_playback->set_paused(true);
}

void SystemVoice::Resume()
{
    m_playback->set_paused(false);
}

std::int32_t SystemVoice::Skip(std::string_view type, std::int32_t count)
{
    if (type != "Sentence")
        throw Failure("Only sentences can be skipped");
    return m_playback->skip(count) ? count : 0;
}

bool SystemVoice::WaitUntilDone(std::int32_t milliseconds)
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

SpeechObjectTokens SystemVoice::GetVoices(
    std::string_view required_attributes, std::string_view optional_attributes)
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
SpeechObjectTokens SystemVoice::GetAudioOutputs(
    std::string_view required_attributes, std::string_view)
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

SpeechObjectToken SystemVoice::Voice() const
{
    return m_voice < 0 ? SpeechObjectToken()
                       : m_parts.catalog->tokens()[static_cast<std::size_t>(m_voice)];
}

void SystemVoice::set_Voice(const SpeechObjectToken& token)
{
    const int voice = m_parts.catalog->find(token.id);
    if (voice < 0)
        throw Failure("No such voice is installed: " + token.id);
    m_voice = voice;
}

void SystemVoice::set_Rate(std::int32_t rate)
{
    if (rate < -10 || rate > 10)
        throw Failure("The rate is out of range");
    m_playback->set_rate(rate);
}

void SystemVoice::set_Volume(std::int32_t volume)
{
    if (volume < 0 || volume > 100)
        throw Failure("The volume is out of range");
    m_playback->set_volume(volume);
}

void SystemVoice::set_AudioOutput(const std::optional<SpeechObjectToken>& token)
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

std::shared_ptr<SpeechBaseStream> SystemVoice::AudioOutputStream() const
{
    if (m_file_stream)
        return m_file_stream;
    return m_device_stream;
}

void SystemVoice::set_AudioOutputStream(std::shared_ptr<SpeechBaseStream> stream)
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

} // namespace tessavox::voice
