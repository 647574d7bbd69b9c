// Engines in the process that asks for them, each queue on a thread of its own; only a long text
// that goes into a file is rendered by helper processes.
#pragma once

#include "platform/voice/speech_engines.h"

#include <string>

namespace tessavox::voice {

class LocalEngines : public SpeechEngines {
public:
    LocalEngines(std::shared_ptr<const VoiceCatalog> catalog, std::string helper_path, int helpers)
        : m_catalog(std::move(catalog))
        , m_helper_path(std::move(helper_path))
        , m_helpers(helpers)
    {
    }
    const std::shared_ptr<const VoiceCatalog>& voices() override { return m_catalog; }
    std::unique_ptr<RenderQueue> live_queue() override;
    std::unique_ptr<RenderQueue> file_queue(std::size_t text_units) override;

private:
    const std::shared_ptr<const VoiceCatalog> m_catalog;
    const std::string m_helper_path;
    const int m_helpers;
};

} // namespace tessavox::voice
