// Any bytes taken for the description of a voice or the config of a model: what is accepted can be
// relied on.
#include "platform/failure.h"
#include "platform/voice/natural/piper_config.h"
#include "platform/voice/natural/voice_description.h"

#include <cstdlib>

using namespace tessavox;
using namespace tessavox::voice;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    attempt([&] {
        const VoiceDescription voice = parse_voice_description(text);
        require(!voice.name.empty() && voice.language.size() >= 2);
        require(!voice.command.empty() && !voice.command.front().empty());
        require(has_placeholder(voice.command, "{out}") == (voice.mode == CommandMode::wave));
        require(has_placeholder(voice.command, "{dir}") == (voice.mode == CommandMode::directory));
        require(!has_placeholder(voice.command, "{model}") || !voice.model.empty());
    });
    attempt([&] {
        const PiperConfig config = parse_piper_config(text);
        require(config.sample_rate > 0 && !config.speakers.empty());
        require(config.speakers.size() <= most_piper_speakers);
    });
    return 0;
}
