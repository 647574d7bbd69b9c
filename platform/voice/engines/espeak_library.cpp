#include "platform/voice/engines/espeak_library.h"

#include "platform/failure.h"

#include <espeak-ng/speak_lib.h>

#include <cstring>
#include <string_view>

namespace tessavox::voice {

namespace {

// All of this is guarded by `mutex`. It mirrors the state that the library keeps for the process.
struct ProcessState {
    std::mutex mutex;
    bool started = false;
    int sample_rate = 0; // 0: not available
    EspeakSound* sound = nullptr;
    const std::atomic<bool>* cancelled = nullptr;
    std::uint64_t call_begin = 0; // frame
};

ProcessState& process_state()
{
    static ProcessState state;
    return state;
}

constexpr int buffer_ms = 60;

void keep_event(ProcessState& state, const espeak_EVENT& event)
{
    const std::uint64_t frame
        = state.call_begin + static_cast<std::uint64_t>(event.sample < 0 ? 0 : event.sample);
    if (event.type == espeakEVENT_WORD && event.length > 0 && event.text_position > 0)
        state.sound->words.push_back({ static_cast<std::uint32_t>(event.text_position - 1), frame,
            static_cast<std::uint32_t>(state.sound->phones.size()) });
    else if (event.type == espeakEVENT_PHONEME)
        state.sound->phones.push_back(
            { std::string(event.id.string, strnlen(event.id.string, sizeof event.id.string)),
                frame });
}

int keep_sound(short* samples, int count, espeak_EVENT* events)
{
    ProcessState& state = process_state();
    if (!state.sound)
        return 1;
    for (; events && events->type != espeakEVENT_LIST_TERMINATED; ++events)
        keep_event(state, *events);
    if (samples && count > 0)
        state.sound->samples.insert(state.sound->samples.end(), samples, samples + count);
    return state.cancelled->load(std::memory_order_relaxed) ? 1 : 0;
}

void start(ProcessState& state)
{
    state.started = true;
    const int rate = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, buffer_ms, nullptr,
        espeakINITIALIZE_PHONEME_EVENTS | espeakINITIALIZE_DONT_EXIT);
    state.sample_rate = rate > 0 ? rate : 0;
    if (state.sample_rate)
        espeak_SetSynthCallback(keep_sound);
}

// Texts are one call each, so that what the library reports counts from there.
bool begin_call(ProcessState& state)
{
    if (state.cancelled->load(std::memory_order_relaxed))
        return false;
    state.call_begin = state.sound->samples.size();
    return true;
}

void synthesize(const std::string& text, unsigned int flags)
{
    ProcessState& state = process_state();
    if (begin_call(state))
        espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
}

} // namespace

EspeakLibrary::EspeakLibrary()
    : m_lock(process_state().mutex)
{
    ProcessState& state = process_state();
    if (!state.started)
        start(state);
}

EspeakLibrary::~EspeakLibrary()
{
    process_state().sound = nullptr;
    process_state().cancelled = nullptr;
}

bool EspeakLibrary::available() const
{
    return process_state().sample_rate != 0;
}

std::vector<EspeakVoice> EspeakLibrary::voices()
{
    std::vector<EspeakVoice> result;
    const espeak_VOICE** list = espeak_ListVoices(nullptr);
    for (; list && *list; ++list) {
        const espeak_VOICE& voice = **list;
        const std::string_view identifier = voice.identifier ? voice.identifier : "";
        if (identifier.empty() || identifier.starts_with("mb/") || identifier.starts_with("!v/"))
            continue;
        // A language list holds a priority byte before each name.
        const char* language = voice.languages && *voice.languages ? voice.languages + 1 : "";
        result.push_back({ voice.name ? voice.name : std::string(identifier), language,
            std::string(identifier), voice.gender, voice.age });
    }
    return result;
}

void EspeakLibrary::begin(
    const EspeakSettings& settings, EspeakSound& sound, const std::atomic<bool>& cancelled)
{
    ProcessState& state = process_state();
    if (!state.sample_rate || espeak_SetVoiceByName(settings.voice.c_str()) != EE_OK)
        throw Failure("espeak-ng can't load the voice " + settings.voice);
    espeak_SetParameter(espeakRATE, settings.words_per_minute, 0);
    espeak_SetParameter(espeakVOLUME, settings.volume, 0);
    espeak_SetParameter(espeakPITCH, settings.pitch, 0);
    espeak_SetParameter(espeakRANGE, settings.range, 0);
    espeak_SetParameter(espeakPUNCTUATION, espeakPUNCT_NONE, 0);
    espeak_SetParameter(espeakCAPITALS, 0, 0);
    espeak_SetParameter(espeakWORDGAP, 0, 0);
    sound.sample_rate = state.sample_rate;
    state.sound = &sound;
    state.cancelled = &cancelled;
}

std::string EspeakLibrary::phonemes_of(const std::string& utf8)
{
    // The library takes the separator between phonemes from the upper bits.
    constexpr int mode = phoneme_separator << 8;
    std::string phonemes;
    const void* rest = utf8.c_str();
    while (rest) {
        const char* some = espeak_TextToPhonemes(&rest, espeakCHARS_UTF8, mode);
        phonemes += some ? some : "";
        phonemes += ' ';
    }
    return phonemes;
}

void EspeakLibrary::say(const std::string& utf8, bool pause_after)
{
    synthesize(utf8, espeakCHARS_UTF8 | (pause_after ? espeakENDPAUSE : 0U));
}

void EspeakLibrary::say_phonemes(const std::string& mnemonics, bool pause_after)
{
    synthesize("[[" + mnemonics + "]]",
        espeakCHARS_UTF8 | espeakPHONEMES | (pause_after ? espeakENDPAUSE : 0U));
}

void EspeakLibrary::say_name_of(char32_t character)
{
    ProcessState& state = process_state();
    if (begin_call(state))
        espeak_Char(static_cast<wchar_t>(character));
}

} // namespace tessavox::voice
