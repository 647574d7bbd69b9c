// The voice of a document on this system.
#pragma once

#include "platform/speech_voice.h"
#include "platform/voice/event_queue.h"
#include "platform/voice/file_stream.h"
#include "platform/voice/pacer.h"
#include "platform/voice/playback.h"
#include "platform/voice/sound/audio_sink.h"
#include "platform/voice/speech_engines.h"
#include "platform/voice/synthesis_worker.h"

#include <memory>
#include <string>
#include <thread>

namespace tessavox::voice {

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
    SystemVoice(VoiceParts parts, SpeechVoiceEvents& events);
    ~SystemVoice() override;
    SystemVoice(const SystemVoice&) = delete;
    SystemVoice& operator=(const SystemVoice&) = delete;

    std::int32_t Speak(TextSlice text, std::int32_t flags) override;
    void Pause() override;
    void Resume() override;
    std::int32_t Skip(std::string_view type, std::int32_t count) override;
    bool WaitUntilDone(std::int32_t milliseconds) override;
    std::int64_t spoken_units() const override { return m_playback->spoken_units(); }
    SpeechObjectTokens GetVoices(
        std::string_view required_attributes, std::string_view optional_attributes) override;
    SpeechObjectTokens GetAudioOutputs(
        std::string_view required_attributes, std::string_view optional_attributes) override;
    SpeechObjectToken Voice() const override;
    void set_Voice(const SpeechObjectToken& token) override;
    std::int32_t Rate() const override { return m_playback->rate(); }
    void set_Rate(std::int32_t rate) override;
    std::int32_t Volume() const override { return m_playback->volume(); }
    void set_Volume(std::int32_t volume) override;
    void set_AudioOutput(const std::optional<SpeechObjectToken>& token) override;
    std::shared_ptr<SpeechBaseStream> AudioOutputStream() const override;
    void set_AudioOutputStream(std::shared_ptr<SpeechBaseStream> stream) override;
    void set_AllowAudioOutputFormatChangesOnNextSet(bool allow) override { m_allow = allow; }
    std::int32_t EventInterests() const override { return m_events->interests(); }
    void set_EventInterests(std::int32_t bits) override { m_events->set_interests(bits); }

private:
    std::shared_ptr<Job> make_job(TextSlice text, std::int32_t flags) const;
    void purge();
    void start_threads();
    void speak_through(const std::shared_ptr<Job>& job);

    const VoiceParts m_parts;
    const std::shared_ptr<Wakeup> m_wakeup = std::make_shared<Wakeup>(); // of this thread
    const std::shared_ptr<EventQueue> m_events;
    const std::shared_ptr<Playback> m_playback;
    Pacer m_pacer;
    SynthesisWorker m_worker;

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

} // namespace tessavox::voice
