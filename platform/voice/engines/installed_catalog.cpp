// The one place that knows which engines there are.
#include "platform/voice/engines/voice_catalog.h"

namespace tessavox::voice {

std::unique_ptr<VoiceCatalog> make_installed_catalog(std::unique_ptr<Engine> more)
{
    std::vector<std::unique_ptr<Engine>> engines;
    engines.push_back(make_espeak_engine());
    engines.push_back(make_flite_engine());
    if (more)
        engines.push_back(std::move(more));
    return std::make_unique<VoiceCatalog>(std::move(engines));
}

} // namespace tessavox::voice
