// What engines' programs answer with: whatever it is, it is a sound within the bounds, or refused.
#include "platform/failure.h"
#include "platform/voice/programs/sound_answer.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tessavox;
    using namespace tessavox::voice;
    const auto answer = std::as_bytes(std::span(data, size));
    for (const CommandMode mode : { CommandMode::wave, CommandMode::frames })
        attempt([&] {
            const EngineSound sound = read_sound(mode, answer, 0);
            if (sound.sample_rate < 8000 || sound.samples.size() * 2 > size)
                std::abort();
            for (const auto& word : sound.words)
                if (word && *word > sound.samples.size())
                    std::abort();
        });
    return 0;
}
