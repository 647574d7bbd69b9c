// Engines in the process that asks for them, each queue on a thread of its own.
#pragma once

#include "platform/voice/speech_engines.h"

namespace tessavox::voice {

class LocalEngines : public SpeechEngines {
public:
    explicit LocalEngines(std::shared_ptr<const VoiceCatalog> catalog)
        : m_catalog(std::move(catalog))
    {
    }
    const std::shared_ptr<const VoiceCatalog>& voices() override { return m_catalog; }
    std::unique_ptr<RenderQueue> live_queue() override;
    std::unique_ptr<RenderQueue> file_queue(std::size_t text_units) override;

private:
    const std::shared_ptr<const VoiceCatalog> m_catalog;
};

} // namespace tessavox::voice
