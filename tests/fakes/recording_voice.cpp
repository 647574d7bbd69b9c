#include "tests/fakes/recording_voice.h"

#include "platform/failure.h"

namespace tessavox {

namespace {

struct RecordingStream : SpeechFileStream {
    RecordingStream(std::string name, std::shared_ptr<VoiceRecord> record)
        : name(std::move(name))
        , record(std::move(record))
    {
    }
    int FormatType() const override { return type; }
    void set_FormatType(int wanted) override
    {
        record->note(name + ".FormatType", std::to_string(wanted));
        type = wanted;
    }
    void Open(const std::string& path, SpeechStreamFileMode mode, bool events) override
    {
        record->note(name + ".Open", path + " " + std::to_string(mode) + (events ? " events" : ""));
    }
    void Close() override { record->note(name + ".Close"); }

    std::string name;
    std::shared_ptr<VoiceRecord> record;
    int type = 22;
};

class RecordingVoice : public SpeechVoice {
public:
    RecordingVoice(RecordingSpeech& speech, std::shared_ptr<VoiceRecord> record)
        : m_speech(speech)
        , m_record(std::move(record))
        , m_device(std::make_shared<RecordingStream>("device", m_record))
        , m_stream(m_device)
    {
        if (!speech.voices.empty())
            m_voice = speech.voices.front();
    }
    ~RecordingVoice() override { m_record->released = true; }

    void note(const std::string& name, const std::string& arguments = {})
    {
        m_record->note(name, arguments);
    }

    std::int32_t Speak(TextSlice text, std::int32_t flags) override
    {
        m_record->last_text = to_utf8(text.view());
        m_record->last_slice = text;
        note("Speak", "\"" + m_record->last_text + "\" " + std::to_string(flags));
        return 1;
    }
    void Pause() override { note("Pause"); }
    void Resume() override { note("Resume"); }
    std::int32_t Skip(std::string_view type, std::int32_t count) override
    {
        note("Skip", std::string(type) + " " + std::to_string(count));
        return count;
    }
    bool WaitUntilDone(std::int32_t milliseconds) override
    {
        note("WaitUntilDone", std::to_string(milliseconds));
        return true;
    }
    std::int64_t spoken_units() const override { return 0; }
    SpeechObjectTokens GetVoices(std::string_view, std::string_view) override
    {
        return SpeechObjectTokens(m_speech.voices);
    }
    SpeechObjectTokens GetAudioOutputs(std::string_view, std::string_view) override
    {
        return SpeechObjectTokens(m_speech.outputs);
    }
    SpeechObjectToken Voice() const override { return m_voice; }
    void set_Voice(const SpeechObjectToken& token) override
    {
        note("Voice", token.description);
        m_voice = token;
    }
    std::int32_t Rate() const override { return m_rate; }
    void set_Rate(std::int32_t rate) override
    {
        note("Rate", std::to_string(rate));
        m_rate = rate;
    }
    std::int32_t Volume() const override { return m_volume; }
    void set_Volume(std::int32_t volume) override
    {
        note("Volume", std::to_string(volume));
        m_volume = volume;
    }
    void set_AudioOutput(const std::optional<SpeechObjectToken>& token) override
    {
        note("AudioOutput", token ? token->description : "default");
        m_stream = m_device;
    }
    std::shared_ptr<SpeechBaseStream> AudioOutputStream() const override { return m_stream; }
    void set_AudioOutputStream(std::shared_ptr<SpeechBaseStream> stream) override
    {
        const auto wanted = std::dynamic_pointer_cast<RecordingStream>(stream);
        note("AudioOutputStream", wanted->name);
        m_stream = wanted;
    }
    void set_AllowAudioOutputFormatChangesOnNextSet(bool allow) override
    {
        note("AllowFormatChanges", allow ? "true" : "false");
    }
    std::int32_t EventInterests() const override { return SVEDefaultInterests; }
    void set_EventInterests(std::int32_t) override { }

private:
    RecordingSpeech& m_speech;
    std::shared_ptr<VoiceRecord> m_record;
    std::shared_ptr<RecordingStream> m_device;
    std::shared_ptr<RecordingStream> m_stream;
    SpeechObjectToken m_voice;
    std::int32_t m_rate = 0;
    std::int32_t m_volume = 100;
};

} // namespace

void VoiceRecord::note(const std::string& name, const std::string& arguments)
{
    if (failing.contains(name))
        throw Failure(name + " was told to fail");
    calls.push_back(arguments.empty() ? name : name + " " + arguments);
}

SpeechObjectToken token_named(const std::string& description)
{
    SpeechObjectToken token;
    token.id = "id of " + description;
    token.description = description;
    return token;
}

std::unique_ptr<SpeechVoice> RecordingSpeech::create_voice(SpeechVoiceEvents& events)
{
    records.push_back(std::make_shared<VoiceRecord>(events));
    return std::make_unique<RecordingVoice>(*this, records.back());
}

/// Noted among the calls of the voice made last, so that one list tells the whole order.
std::shared_ptr<SpeechFileStream> RecordingSpeech::create_file_stream()
{
    return std::make_shared<RecordingStream>("file", records.back());
}

} // namespace tessavox
