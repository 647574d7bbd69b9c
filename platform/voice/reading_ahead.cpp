#include "platform/voice/reading_ahead.h"

#include "platform/voice/text/utterance_parts.h"

#include <cmath>
#include <iterator>
#include <utility>

namespace tessavox::voice {

namespace {

constexpr double seconds_ahead = 10;
constexpr double units_a_second = 15; // at rate 0, roughly, whatever the voice
constexpr std::size_t most_items_ahead = 256;
constexpr std::size_t longest_first_units = 160; // some ten seconds of speech, some ms of work
constexpr std::size_t first_part_units = 106; // of a longer one, at the most
constexpr std::size_t longest_first_units_of_a_natural_voice = 60; // up to some seconds of work

} // namespace

ReadingAhead::ReadingAhead(const JobVoices& voices, const Playback& playback, const Job& job,
    RenderQueue& engines, Pace pace, const ReadingPlace& start)
    : m_voices(voices)
    , m_playback(playback)
    , m_job(job)
    , m_engines(engines)
    , m_pace(pace)
    , m_reader(job.text, job.reading, voices, start)
{
}

void ReadingAhead::order()
{
    for (;;) {
        if (m_ordered == m_items.size() && (far_enough() || !read_one()))
            return;
        Spoken& item = m_items[m_ordered];
        if (const auto* utterance = std::get_if<Utterance>(&item.item)) {
            if (!m_engines.wants_more())
                return;
            item.voice = m_voices.voice_for(utterance->style);
            item.rate = rate_for(utterance->style, m_playback.rate());
            m_engines.submit(item.voice, item.rate, *utterance);
        }
        ++m_ordered;
    }
}

bool ReadingAhead::far_enough() const
{
    if (m_pace == Pace::Fast)
        return m_items.size() >= most_items_ahead;
    std::size_t units = 0;
    for (const Spoken& item : m_items) {
        const auto* utterance = std::get_if<Utterance>(&item.item);
        units += utterance ? utterance->text.size() : 0;
    }
    const double pace = units_a_second * std::pow(3.0, m_playback.rate() / 10.0);
    return m_items.size() >= most_items_ahead || static_cast<double>(units) >= seconds_ahead * pace;
}

bool ReadingAhead::read_one()
{
    ReadingPlace place = m_reader.place();
    std::optional<SpeechItem> item = m_all_read ? std::nullopt : m_reader.next();
    if (!item) {
        m_all_read = true;
        return false;
    }
    m_items.push_back({ { std::move(*item), std::move(place) }, -1, 0, {} });
    if (m_pace == Pace::Live)
        while (divide_last()) { }
    return true;
}

// The sound starts when the first utterance is rendered, so a very long one is given in two parts.
// A natural voice may need half as long to render as it speaks: each of its parts is rendered while
// those before it are heard, so none is longer than they are together.
bool ReadingAhead::divide_last()
{
    Spoken& item = m_items.back();
    auto* utterance = std::get_if<Utterance>(&item.item);
    if (!utterance)
        return false;
    const bool is_long = m_units_read == 0 && utterance->text.size() > longest_first_units;
    std::size_t most_units = is_long ? first_part_units : utterance->text.size();
    if (m_voices.is_natural(utterance->style))
        most_units = std::max(longest_first_units_of_a_natural_voice, m_units_read * 4 / 5);
    const std::size_t division = division_of(*utterance, most_units);
    m_units_read += division == 0 ? utterance->text.size() : utterance->tokens[division].begin;
    if (division == 0)
        return false;
    Spoken rest{ { rest_of(*utterance, division), item.place }, -1, 0, {} };
    *utterance = start_of(*utterance, division);
    m_items.push_back(std::move(rest));
    return true;
}

std::optional<Spoken> ReadingAhead::next(const std::function<bool()>& interrupted)
{
    order();
    if (m_items.empty())
        return std::nullopt;
    if (std::holds_alternative<Utterance>(m_items.front().item)) {
        std::optional<RenderQueue::Result> result = m_engines.take(interrupted);
        if (!result)
            return std::nullopt;
        m_items.front().rendering = std::move(result->rendering);
    }
    Spoken spoken = std::move(m_items.front());
    m_items.pop_front();
    --m_ordered;
    return spoken;
}

void ReadingAhead::forget_orders()
{
    m_engines.drop();
    m_ordered = 0;
}

void ReadingAhead::go_to(const ReadingPlace& place)
{
    forget_orders();
    m_items.clear();
    m_all_read = false;
    m_units_read = 0;
    m_reader = TextReader(m_job.text, m_job.reading, m_voices, place);
}

void ReadingAhead::put_back(std::deque<Placed> items)
{
    forget_orders();
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        m_items.push_front({ std::move(*item), -1, 0, {} });
}

void ReadingAhead::follow_rate()
{
    const auto end = m_items.begin() + static_cast<std::ptrdiff_t>(m_ordered);
    const bool changed = std::any_of(m_items.begin(), end, [this](const Spoken& item) {
        const auto* utterance = std::get_if<Utterance>(&item.item);
        return utterance && rate_for(utterance->style, m_playback.rate()) != item.rate;
    });
    if (changed)
        forget_orders();
}

} // namespace tessavox::voice
