#include "tests/contract/speech_voice_contract.h"

#include "platform/temporary_folder.h"
#include "tests/fakes/recording_voice.h"
#include "tests/platform/voice/core/voice_bed.h"

namespace tessavox {
namespace {

class SystemBed {
public:
    SpeechService& service() { return *m_bed.service; }
    SpeechVoiceEvents& events() { return m_bed.listener; }
    std::string path(const std::string& name) const { return m_folder / name; }

private:
    TemporaryFolder m_folder;
    voice::test::VoiceBed m_bed;
};

class RecordingBed {
public:
    SpeechService& service() { return m_speech; }
    SpeechVoiceEvents& events() { return m_listener; }
    std::string path(const std::string& name) const { return m_folder / name; }

private:
    TemporaryFolder m_folder;
    voice::test::Listener m_listener;
    RecordingSpeech m_speech;
};

INSTANTIATE_TYPED_TEST_SUITE_P(System, SpeechVoiceContract, SystemBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Recording, SpeechVoiceContract, RecordingBed);

} // namespace
} // namespace tessavox
