#include "platform/voice/alignment/mark_mapping.h"

#include <algorithm>

namespace tessavox::voice {

namespace {

// A stop begins with silence, which the path can't tell from a pause before it: a short one is
// all the stop's own, of a long one this much.
constexpr double longest_closure_seconds = 0.08;
constexpr double usual_closure_seconds = 0.04;

// No mouth stays closed as long.
constexpr double least_pause_seconds = 0.15;

// A word of the reference begins at most so long before its first phone.
constexpr std::size_t most_quiet_rows = 20;

// The slices that sound as a row does; none of a silence that the path passes by.
struct Stay {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
};

std::vector<Stay> stays_of(std::size_t rows, const WarpPath& path)
{
    std::vector<Stay> stays(rows);
    std::uint32_t end = 0;
    auto point = path.points.begin();
    for (std::size_t row = 0; row < rows; ++row) {
        stays[row] = { end, end };
        for (bool first = true; point != path.points.end() && point->row == row; ++point) {
            stays[row].begin = first ? point->slice : stays[row].begin;
            stays[row].end = end = point->slice + 1;
            first = false;
        }
    }
    return stays;
}

class Carrier {
public:
    Carrier(const ReferenceSpeech& reference, const ReferenceRows& rows, const WarpPath& path,
        const MarkTarget& target)
        : m_reference(reference)
        , m_rows(rows)
        , m_target(target)
        , m_stays(stays_of(rows.size(), path))
        , m_quiet_level(quiet_level(target.levels))
    {
    }

    std::vector<std::uint64_t> words() const
    {
        std::vector<std::uint64_t> words;
        std::uint64_t before = 0;
        for (const std::uint64_t word : m_reference.words) {
            before = std::clamp(start_of_word(word), before, m_target.frames);
            words.push_back(before);
        }
        return words;
    }

    std::vector<AlignedPhone> phones()
    {
        m_phones.clear();
        begin_phone(AlignedPhone::pause, 0);
        const ReferencePhone* before = nullptr;
        for (std::size_t row = 0; row < m_stays.size(); ++row) {
            const ReferencePhone* phone = m_rows.phone_of(row);
            if (m_rows.is_silence(row) && m_stays[row].begin == m_stays[row].end)
                continue;
            if (!phone || phone->kind == PhoneKind::pause)
                begin_phone(AlignedPhone::pause, start_of(row));
            else if (phone != before)
                begin_phone(
                    static_cast<std::int32_t>(phone - m_reference.phones.data()), start_of(row));
            before = phone;
        }
        begin_phone(AlignedPhone::pause, frame_of(m_stays.back().end));
        end_phone(m_target.frames);
        return std::move(m_phones);
    }

private:
    std::uint64_t frame_of(std::uint32_t slice) const
    {
        return (m_target.first_slice + slice) * static_cast<std::uint64_t>(m_target.sample_rate)
            / slices_per_second;
    }

    std::uint64_t start_of(std::size_t row) const
    {
        return frame_of(m_stays[row].begin) - closure_before(row);
    }

    // Slices are coarser than the reference's marks: how far one lies beside its slice, it does so
    // in the target too.
    std::uint64_t start_of_word(std::uint64_t reference_frame) const
    {
        const std::size_t row = m_rows.row_of(reference_frame);
        const auto half_slice = m_target.sample_rate / (2 * slices_per_second);
        const auto beside = std::clamp<std::int64_t>(
            m_target.sample_rate * m_rows.beside(row, reference_frame) / m_reference.sample_rate,
            -half_slice, half_slice);
        const auto start = static_cast<std::uint64_t>(
            std::max<std::int64_t>(0, static_cast<std::int64_t>(start_of(row)) + beside));
        return std::max(start, start_after_pause(row, reference_frame));
    }

    // The quiet start of a word, such as a closed mouth, sounds like the pause that a voice makes
    // before it, and may draw it in. A word begins after its longest quiet stretch that is too long
    // for that; 0 if there is none.
    std::uint64_t start_after_pause(std::size_t row, std::uint64_t reference_frame) const
    {
        const auto phone = std::ranges::lower_bound(
            m_reference.phones, reference_frame, {}, &ReferencePhone::frame);
        if (phone == m_reference.phones.end())
            return 0;
        const std::size_t last = m_rows.row_of(phone->frame + phone->frames);
        std::size_t after = row + 1;
        while (after < last && after < row + most_quiet_rows && !m_rows.is_silence(after))
            ++after;
        Stay pause;
        std::uint32_t quiet = m_stays[row].begin; // where the stretch begins
        for (std::uint32_t slice = quiet; slice < m_stays[after - 1].end; ++slice) {
            if (m_target.levels[slice] > m_quiet_level)
                quiet = slice + 1;
            else if (slice + 1 - quiet > pause.end - pause.begin)
                pause = { quiet, slice + 1 };
        }
        const double rate = m_target.sample_rate;
        const std::uint64_t end = frame_of(pause.end);
        if (static_cast<double>(end - frame_of(pause.begin)) < least_pause_seconds * rate)
            return 0;
        const bool stop = phone->kind == PhoneKind::stop;
        return end - (stop ? static_cast<std::uint64_t>(usual_closure_seconds * rate) : 0);
    }

    std::uint64_t closure_before(std::size_t row) const
    {
        const ReferencePhone* phone = m_rows.phone_of(row);
        if (row == 0 || !m_rows.is_silence(row - 1) || !phone || phone->kind != PhoneKind::stop)
            return 0;
        const Stay& silence = m_stays[row - 1];
        const std::uint64_t length = frame_of(silence.end) - frame_of(silence.begin);
        const double rate = m_target.sample_rate;
        return static_cast<double>(length) < longest_closure_seconds * rate
            ? length
            : static_cast<std::uint64_t>(usual_closure_seconds * rate);
    }

    void begin_phone(std::int32_t phone, std::uint64_t frame)
    {
        if (!m_phones.empty() && phone == AlignedPhone::pause && m_phones.back().phone == phone)
            return;
        end_phone(frame);
        m_phones.push_back(
            { phone, m_phones.empty() ? 0 : m_phones.back().frame + m_phones.back().frames, 0 });
    }

    void end_phone(std::uint64_t frame)
    {
        if (m_phones.empty())
            return;
        AlignedPhone& last = m_phones.back();
        last.frames = std::clamp(frame, last.frame, m_target.frames) - last.frame;
    }

    const ReferenceSpeech& m_reference;
    const ReferenceRows& m_rows;
    const MarkTarget& m_target;
    const std::vector<Stay> m_stays;
    const float m_quiet_level;
    std::vector<AlignedPhone> m_phones;
};

} // namespace

AlignedMarks map_marks(const ReferenceSpeech& reference, const ReferenceRows& rows,
    const WarpPath& path, const MarkTarget& target)
{
    Carrier carrier(reference, rows, path, target);
    AlignedMarks marks{ carrier.words(), carrier.phones() };
    std::erase_if(marks.phones, [](const AlignedPhone& phone) { return phone.frames == 0; });
    return marks;
}

AlignedMarks spread_marks(const ReferenceSpeech& reference, const MarkTarget& target)
{
    const auto length = static_cast<double>(std::max<std::size_t>(1, reference.samples.size()));
    const auto place_of = [&](std::uint64_t frame) {
        const double share = std::min(1.0, static_cast<double>(frame) / length);
        return static_cast<std::uint64_t>(share * static_cast<double>(target.frames));
    };
    AlignedMarks marks;
    for (const std::uint64_t word : reference.words)
        marks.words.push_back(place_of(word));
    if (target.frames > 0)
        marks.phones.push_back({ AlignedPhone::pause, 0, target.frames });
    return marks;
}

} // namespace tessavox::voice
