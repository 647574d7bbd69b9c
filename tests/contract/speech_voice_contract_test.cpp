#include "tests/contract/speech_voice_contract.h"

#include "tests/fakes/recording_voice.h"
#include "tests/platform/voice/core/voice_bed.h"

#include <filesystem>
#include <unistd.h>

namespace tessavox {
namespace {

class Folder {
public:
    Folder() { std::filesystem::create_directories(m_path); }
    ~Folder() { std::filesystem::remove_all(m_path); }
    std::string file(const std::string& name) const { return m_path / name; }

private:
    const std::filesystem::path m_path = std::filesystem::temp_directory_path()
        / ("tessavox-voice-contract-" + std::to_string(getpid()));
};

class SystemBed {
public:
    SpeechService& service() { return *m_bed.service; }
    SpeechVoiceEvents& events() { return m_bed.listener; }
    std::string path(const std::string& name) const { return m_folder.file(name); }

private:
    Folder m_folder;
    voice::test::VoiceBed m_bed;
};

class RecordingBed {
public:
    SpeechService& service() { return m_speech; }
    SpeechVoiceEvents& events() { return m_listener; }
    std::string path(const std::string& name) const { return m_folder.file(name); }

private:
    Folder m_folder;
    voice::test::Listener m_listener;
    RecordingSpeech m_speech;
};

INSTANTIATE_TYPED_TEST_SUITE_P(System, SpeechVoiceContract, SystemBed);
INSTANTIATE_TYPED_TEST_SUITE_P(Recording, SpeechVoiceContract, RecordingBed);

} // namespace
} // namespace tessavox
