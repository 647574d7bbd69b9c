#include "platform/voice/sound/audio_sink.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds capacity{ 100 };

class ClockSink final : public AudioSink {
public:
    explicit ClockSink(PcmFormat format)
        : m_format(format)
    {
    }

    PcmFormat format() const override { return m_format; }

    std::size_t writable() override
    {
        const auto room = static_cast<std::uint64_t>(m_format.rate * capacity.count() / 1000);
        const auto waiting = m_written - played();
        return static_cast<std::size_t>(room - std::min(room, waiting));
    }

    void write(std::span<const std::byte> frames) override
    {
        settle();
        m_written += frames.size() / static_cast<std::size_t>(m_format.block_align());
    }

    void finish() override { }

    std::uint64_t played() override
    {
        if (m_paused)
            return m_base;
        const auto elapsed = std::chrono::duration<double>(Clock::now() - m_since).count();
        const auto passed = static_cast<std::uint64_t>(elapsed * m_format.rate);
        return std::min(m_written, m_base + passed);
    }

    void pause() override
    {
        settle();
        m_paused = true;
    }

    void resume() override
    {
        settle();
        m_paused = false;
    }

    void flush() override
    {
        settle();
        m_written = m_base;
    }

    bool alive() const override { return true; }

private:
    /// Counts from now on. A pause, and the time in which there was nothing to play, thus drop out.
    /// While frames are playing the part of a frame that has passed is kept: no drift builds up.
    void settle()
    {
        const std::uint64_t now_played = played();
        if (m_paused || now_played == m_written) {
            m_since = Clock::now();
        } else {
            const std::chrono::duration<double> counted(
                static_cast<double>(now_played - m_base) / m_format.rate);
            m_since += std::chrono::duration_cast<Clock::duration>(counted);
        }
        m_base = now_played;
    }

    PcmFormat m_format;
    std::uint64_t m_written = 0;
    std::uint64_t m_base = 0; // frames played at m_since
    Clock::time_point m_since = Clock::now();
    bool m_paused = false;
};

} // namespace

std::unique_ptr<AudioSink> make_clock_sink(PcmFormat format)
{
    return std::make_unique<ClockSink>(format);
}

} // namespace tessavox::voice
