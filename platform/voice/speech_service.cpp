#include "platform/voice/speech_service.h"

#include "platform/voice/system_voice.h"

#include <utility>

namespace tessavox::voice {

namespace {

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
