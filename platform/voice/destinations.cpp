#include "platform/voice/destinations.h"

#include "platform/voice/file_stream.h"

#include <utility>

namespace tessavox::voice {

namespace {

/// What takes a source through its playing.
class Player {
public:
    Player(SoundSource& source, Playback& playback, const Job& job)
        : m_source(source)
        , m_playback(playback)
        , m_job(job)
    {
    }
    void run()
    {
        for (;;) {
            // Looked at before the job is, so that its end is never waited through: that raises it.
            const int seen = std::exchange(m_seen, m_playback.order_version());
            if (!m_playback.holds(m_job))
                return;
            if (seen != m_seen)
                take_orders();
            if (m_rate_changed)
                follow_rate();
            if (!m_piece.empty())
                send();
            else if (m_more)
                make();
            else
                wait();
        }
    }

private:
    void take_orders()
    {
        m_rate_changed = std::exchange(m_rate, m_playback.rate()) != m_rate || m_rate_changed;
        if (const auto skip = m_playback.take_skip(m_job)) {
            m_piece.clear();
            for (const int count : skip->counts)
                m_source.skip(count, skip->frame);
            m_more = true;
        }
    }
    // A place that is made but not in the ring yet is looked for again when more is there.
    void follow_rate()
    {
        const auto cut = m_source.follow_rate(m_playback.changeable_from(m_job));
        m_rate_changed = cut.has_value();
        if (!cut || cut->frame > m_playback.appended_to(m_job)
            || !m_playback.cut(m_job, cut->frame, cut->sequence))
            return;
        m_piece.clear();
        m_source.take_back(*cut);
        m_more = true;
        m_rate_changed = false;
    }
    void make()
    {
        m_source.settle(m_playback.changeable_from(m_job));
        m_more = m_source.next(m_piece, [this] { return m_playback.order_version() != m_seen; });
    }
    void send()
    {
        if (m_playback.append(m_job, m_seen, m_piece.sound, m_piece.events))
            m_piece.clear();
    }
    void wait()
    {
        m_playback.complete(m_job);
        if (!m_rate_changed)
            m_playback.wait_for_order(m_job, m_seen);
    }

    SoundSource& m_source;
    Playback& m_playback;
    const Job& m_job;
    Piece m_piece; // made, not in the ring yet
    bool m_more = true;
    int m_seen = -1; // orders, none
    int m_rate = m_playback.rate();
    bool m_rate_changed = false;
};

} // namespace

void play(SoundSource& source, Playback& playback, const Job& job)
{
    Player(source, playback, job).run();
}

void write(SoundSource& source, Stream& stream)
{
    const Job& job = stream.job();
    const auto align = static_cast<std::size_t>(job.format.block_align());
    std::uint64_t frames = 0;
    Piece piece;
    stream.start();
    for (bool more = true; more && !job.cancelled; piece.clear()) {
        more = source.next(piece, [&job] { return job.cancelled.load(); });
        stream.level(piece.sound);
        // Where the disk refuses the rest the stream ends.
        more = (piece.sound.empty() || job.file->write(piece.sound)) && more;
        frames += piece.sound.size() / align;
        stream.tell(std::move(piece.events));
    }
    stream.end(frames);
}

} // namespace tessavox::voice
