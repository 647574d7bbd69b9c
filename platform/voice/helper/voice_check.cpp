#include "platform/voice/helper/voice_check.h"

#include "platform/failure.h"
#include "platform/voice/alignment/aligner.h"
#include "platform/voice/engines/voice_catalog.h"
#include "platform/voice/programs/engine_process.h"
#include "platform/voice/programs/program_engine.h"
#include "platform/voice/programs/program_text.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tessavox::voice {

namespace {

using Clock = std::chrono::steady_clock;

// Numbers and names read alike in many languages. Two, because the second comes from a program that
// runs already.
constexpr std::u16string_view test_texts[]
    = { u"Tessavox, 1 2 3 4 5.", u"Anna, Maria, 6 7 8 9 10." };
constexpr auto patience_seconds = std::chrono::seconds(30);

Utterance utterance_of(std::u16string_view text)
{
    Utterance utterance;
    utterance.text = text;
    utterance.ends_sentence = true;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(u' ', at), text.size());
        const auto begin = static_cast<std::uint32_t>(at);
        const auto length = static_cast<std::uint32_t>(end - at);
        utterance.tokens.push_back({ begin, length, begin, length });
        at = end + 1;
    }
    return utterance;
}

void tell(const std::string& line)
{
    std::printf("good: %s\n", line.c_str());
}

void try_to_speak(const NaturalVoice& voice)
{
    const VoiceDescription& description = voice.description;
    const auto reference_engine = make_espeak_engine();
    const std::string reference_voice = reference_voice_of(description);
    tell("its words are put by the voice " + reference_voice);
    const std::atomic<bool> cancelled{ false };
    Aligner aligner;
    EngineProcess engine(voice);
    for (const std::u16string_view text : test_texts) {
        const Utterance utterance = utterance_of(text);
        const auto begin = Clock::now();
        EnginePatience patience{ begin + patience_seconds, -1, {} };
        std::vector<std::byte> answer;
        try {
            answer = engine.say(program_text(utterance, description).line, patience);
        } catch (const Failure& failure) {
            const std::string& errors = engine.last_errors();
            throw Failure(
                failure.what() + (errors.empty() ? "" : "; its errors end with:\n" + errors));
        }
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        const Rendering reference
            = reference_engine->render({ reference_voice, 0, &utterance }, cancelled);
        const SpokenAnswer spoken = read_spoken(description, answer, utterance, reference, aligner);
        std::printf("good: \"%s\" takes %.2f s and sounds for %.2f s at %d Hz\n",
            to_utf8(utterance.text).c_str(), seconds,
            static_cast<double>(spoken.rendering.samples.size()) / spoken.rendering.sample_rate,
            spoken.rendering.sample_rate);
        if (spoken.doubtful)
            throw Failure("that is no length for this text: does it say something else?");
    }
}

} // namespace

int check_voice(const std::filesystem::path& file)
try {
    std::signal(SIGPIPE, SIG_IGN);
    const VoicePlaces places = voice_places({});
    const NaturalVoice voice = read_natural_voice(std::filesystem::absolute(file), places.programs);
    tell("the voice " + voice.description.name + " is run by " + voice.description.command.front());
    try_to_speak(voice);
    return EXIT_SUCCESS;
} catch (const Failure& failure) {
    std::printf("wrong: %s\n", failure.what());
    return EXIT_FAILURE;
}

} // namespace tessavox::voice
