#include "platform/voice/alignment/warp_rows.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

// A shorter one belongs to its phone: a mouth that closes.
constexpr double least_pause_seconds = 0.04;

std::size_t nearest_slice(std::uint64_t frame, int sample_rate)
{
    const auto rate = static_cast<std::uint64_t>(sample_rate);
    return static_cast<std::size_t>((frame * slices_per_second + rate / 2) / rate);
}

} // namespace

ReferenceRows::ReferenceRows(const ReferenceSpeech& reference, const SoundFeatures& features)
    : m_reference(reference)
    , m_features(features)
{
    std::vector<std::size_t> starts;
    for (const std::uint64_t word : reference.words)
        starts.push_back(nearest_slice(word, reference.sample_rate));
    const SoundEdges edges = edges_of(features);
    auto start = starts.begin();
    WarpRow::Kind silence = WarpRow::Kind::expected_silence; // that belongs before the next sound
    for (std::size_t slice = edges.begin; slice < edges.end; ++slice) {
        if (in_pause(frame_of_slice(slice))) {
            silence = WarpRow::Kind::expected_silence;
            continue;
        }
        for (; start != starts.end() && *start <= slice; ++start)
            if (silence == WarpRow::Kind::sound)
                silence = WarpRow::Kind::possible_silence;
        if (silence != WarpRow::Kind::sound)
            m_rows.push_back({ silence, slice, nullptr, 0 });
        silence = WarpRow::Kind::sound;
        add_sound(slice);
    }
    if (!m_rows.empty())
        m_rows.push_back({ WarpRow::Kind::expected_silence, edges.end, nullptr, 0 });
}

void ReferenceRows::add_sound(std::size_t slice)
{
    const std::uint64_t frame = frame_of_slice(slice);
    const ReferencePhone* phone = phone_at(frame);
    const std::size_t third
        = phone ? static_cast<std::size_t>(3 * (frame - phone->frame) / phone->frames) : 0;
    m_rows.push_back({ WarpRow::Kind::sound, slice, phone, third });
}

std::vector<WarpRow> ReferenceRows::rows_for(const VoiceLearner& voice) const
{
    std::vector<WarpRow> rows;
    rows.reserve(m_rows.size());
    for (std::size_t at = 0; at < m_rows.size(); ++at) {
        WarpRow row{ m_rows[at].kind, {} };
        if (!is_silence(at)) {
            const auto place = place_of(at);
            const SliceVector& plain = m_features.vectors[m_rows[at].slice];
            row.vector = place ? voice.adapted(*place, plain) : plain;
        }
        rows.push_back(row);
    }
    return rows;
}

std::optional<VoiceLearner::Place> ReferenceRows::place_of(std::size_t row) const
{
    if (!m_rows[row].phone)
        return std::nullopt;
    return VoiceLearner::Place{ m_rows[row].phone->name, m_rows[row].third };
}

std::size_t ReferenceRows::row_of(std::uint64_t frame) const
{
    const std::size_t slice = nearest_slice(frame, m_reference.sample_rate);
    auto row = std::ranges::lower_bound(m_rows, slice, {}, &Row::slice);
    if (row != m_rows.end() && row->kind != WarpRow::Kind::sound && row + 1 != m_rows.end())
        ++row;
    return static_cast<std::size_t>(std::min(row, m_rows.end() - 1) - m_rows.begin());
}

std::int64_t ReferenceRows::beside(std::size_t row, std::uint64_t frame) const
{
    return static_cast<std::int64_t>(frame)
        - static_cast<std::int64_t>(frame_of_slice(m_rows[row].slice));
}

std::uint64_t ReferenceRows::frame_of_slice(std::size_t slice) const
{
    return slice * static_cast<std::uint64_t>(m_reference.sample_rate) / slices_per_second;
}

const ReferencePhone* ReferenceRows::phone_at(std::uint64_t frame) const
{
    const auto after
        = std::ranges::upper_bound(m_reference.phones, frame, {}, &ReferencePhone::frame);
    if (after == m_reference.phones.begin())
        return nullptr;
    const ReferencePhone& phone = *(after - 1);
    return frame < phone.frame + phone.frames ? &phone : nullptr;
}

bool ReferenceRows::in_pause(std::uint64_t frame) const
{
    const ReferencePhone* phone = phone_at(frame);
    return phone && phone->kind == PhoneKind::pause
        && static_cast<double>(phone->frames) >= least_pause_seconds * m_reference.sample_rate;
}

} // namespace tessavox::voice
