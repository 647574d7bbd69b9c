#include "platform/voice/rendering/helper_engines.h"

#include "platform/voice/rendering/helper_queue.h"

#include <algorithm>
#include <mutex>
#include <thread>

namespace tessavox::voice {

namespace {

// For less than this, another helper starts just when the text ends.
constexpr std::size_t units_worth_a_helper = 4'000;
constexpr int most_for_a_file = 8;

class HelperEngines : public SpeechEngines {
public:
    explicit HelperEngines(HelperOptions options)
        : m_options(std::move(options))
        , m_pool(m_options.path, m_options.patience)
    {
    }
    const std::shared_ptr<const VoiceCatalog>& voices() override
    {
        std::call_once(m_asked,
            [this] { m_voices = std::make_shared<VoiceCatalog>(m_pool.wait_for_voices()); });
        return m_voices;
    }
    std::unique_ptr<RenderQueue> live_queue() override { return queue_of(1); }
    std::unique_ptr<RenderQueue> file_queue(std::size_t text_units) override
    {
        const int processors = static_cast<int>(std::thread::hardware_concurrency());
        const int most = m_options.most_for_a_file > 0 ? m_options.most_for_a_file : processors;
        const std::size_t worth = 1 + text_units / units_worth_a_helper;
        return queue_of(static_cast<int>(std::min<std::size_t>(
            worth, static_cast<std::size_t>(std::clamp(most, 1, most_for_a_file)))));
    }

private:
    std::unique_ptr<RenderQueue> queue_of(int helpers)
    {
        return std::make_unique<HelperQueue>(m_pool, voices(), helpers);
    }

    const HelperOptions m_options;
    HelperPool m_pool;
    std::once_flag m_asked;
    std::shared_ptr<const VoiceCatalog> m_voices;
};

} // namespace

std::unique_ptr<SpeechEngines> start_helper_engines(HelperOptions options)
{
    return std::make_unique<HelperEngines>(std::move(options));
}

} // namespace tessavox::voice
