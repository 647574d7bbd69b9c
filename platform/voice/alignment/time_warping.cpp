#include "platform/voice/alignment/time_warping.h"

#include <algorithm>
#include <limits>

namespace tessavox::voice {

namespace {

// About the distance of two voices in the same phone; the other costs are measured in it. All were
// found by measuring voices whose word times are known, and lie in the middle of a wide plain: a
// third more or less moves the marks by less than 1 ms.
constexpr float unit = 11;

constexpr float pace_cost = 0.6F * unit; // a slice that is drawn out or swallowed
constexpr float silence_cost = 0.8F * unit; // a slice of silence
constexpr float loud_silence_cost = 0.15F * unit; // for each dB over the level of silence
constexpr float entry_cost = 2 * unit; // a silence that the reference has not

// How far a target may run ahead or fall behind an even pace.
constexpr double band_share = 0.25;
constexpr std::size_t least_band = slices_per_second;
constexpr std::size_t greatest_band = 4 * least_band;

constexpr float unreachable = std::numeric_limits<float>::infinity();

enum class Step : std::uint8_t {
    none,
    both, // from the sound before, with the slice before
    from_silence, // the same from the silence before
    slice_only, // the row lasts longer
    row_only, // the slice holds two rows
};

std::vector<float> silence_costs(std::span<const float> levels)
{
    const float limit = quiet_level(levels);
    std::vector<float> costs;
    costs.reserve(levels.size());
    for (const float level : levels)
        costs.push_back(silence_cost + loud_silence_cost * std::max(0.0F, level - limit));
    return costs;
}

// The costs of one row, where it is within the band.
struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::vector<float> costs;

    float at(std::size_t slice) const
    {
        if (slice < begin || slice >= end)
            return unreachable;
        return costs[slice - begin];
    }
    // What the step to `slice` begins with; nothing is before the first slice.
    float before(std::size_t slice) const { return slice == 0 ? unreachable : at(slice - 1); }
};

class Grid {
public:
    Grid(std::span<const WarpRow> rows, std::span<const SliceVector> vectors,
        std::span<const float> levels)
        : m_rows(rows)
        , m_vectors(vectors)
        , m_silence_costs(silence_costs(levels))
        , m_sounds(static_cast<std::size_t>(std::ranges::count_if(rows, is_sound)))
    {
    }

    WarpPath path()
    {
        fill();
        return way_back();
    }

    static bool is_sound(const WarpRow& row) { return row.kind == WarpRow::Kind::sound; }

private:
    struct Trace {
        std::size_t begin = 0; // the first slice in the band
        std::vector<Step> steps;
    };

    // A row's band reaches to where the next one's begins, however few rows there are.
    void set_band(Line& line, std::size_t sound) const
    {
        const std::size_t slices = m_vectors.size();
        const std::size_t half
            = std::clamp(static_cast<std::size_t>(band_share * static_cast<double>(slices)),
                least_band, greatest_band);
        const std::size_t centre = sound * slices / m_sounds;
        const std::size_t next = (sound + 1) * slices / m_sounds;
        line.begin = centre - std::min(centre, half);
        line.end = std::min(slices, next + half + 1);
        line.costs.assign(line.end - line.begin, unreachable);
    }

    void fill()
    {
        Line sound, silence, next;
        bool has_silence = false;
        m_trace.resize(m_rows.size());
        for (std::size_t row = 0, count = 0; row < m_rows.size(); ++row) {
            set_band(next, std::min(count, m_sounds - 1));
            m_trace[row] = { next.begin, std::vector<Step>(next.costs.size()) };
            if (is_sound(m_rows[row])) {
                fill_sound(row, count == 0, sound, has_silence ? silence : Line(), next);
                std::swap(sound, next);
                ++count;
            } else {
                fill_silence(row, count == 0, sound, next);
                std::swap(silence, next);
            }
            has_silence = !is_sound(m_rows[row]);
        }
        m_last_sound = sound.at(m_vectors.size() - 1);
        m_last_silence = has_silence ? silence.at(m_vectors.size() - 1) : unreachable;
    }

    void fill_sound(std::size_t row, bool first, const Line& sound, const Line& silence, Line& line)
    {
        std::vector<Step>& steps = m_trace[row].steps;
        for (std::size_t slice = line.begin; slice < line.end; ++slice) {
            const float distance = distance_of(m_rows[row].vector, m_vectors[slice]);
            float best = first && slice == 0 ? 2 * distance : unreachable;
            Step step = Step::none;
            const auto offer = [&](float cost, Step candidate) {
                if (cost < best) {
                    best = cost;
                    step = candidate;
                }
            };
            offer(sound.before(slice) + 2 * distance, Step::both);
            offer(silence.before(slice) + 2 * distance, Step::from_silence);
            offer(line.before(slice) + distance + pace_cost, Step::slice_only);
            offer(sound.at(slice) + distance + pace_cost, Step::row_only);
            line.costs[slice - line.begin] = best;
            steps[slice - line.begin] = step;
        }
    }

    void fill_silence(std::size_t row, bool first, const Line& sound, Line& line)
    {
        std::vector<Step>& steps = m_trace[row].steps;
        const float entry = m_rows[row].kind == WarpRow::Kind::expected_silence ? 0 : entry_cost;
        for (std::size_t slice = line.begin; slice < line.end; ++slice) {
            const float stay = line.before(slice);
            const float enter = first && slice == 0 ? 0 : sound.before(slice) + entry;
            line.costs[slice - line.begin] = std::min(stay, enter) + m_silence_costs[slice];
            steps[slice - line.begin] = stay < enter ? Step::slice_only
                : first                              ? Step::none
                                                     : Step::both;
        }
    }

    WarpPath way_back() const
    {
        WarpPath path;
        const float cost = std::min(m_last_sound, m_last_silence);
        if (cost == unreachable)
            return path;
        std::size_t row = m_rows.size() - 1;
        if (!is_sound(m_rows[row]) && m_last_sound <= m_last_silence)
            --row;
        for (std::size_t slice = m_vectors.size() - 1;;) {
            path.points.push_back(
                { static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(slice) });
            const Step step = m_trace[row].steps[slice - m_trace[row].begin];
            if (step == Step::none)
                break;
            if (step != Step::row_only)
                --slice;
            if (step == Step::from_silence)
                --row;
            else if (step != Step::slice_only)
                row -= row >= 2 && !is_sound(m_rows[row - 1]) ? 2 : 1;
        }
        std::ranges::reverse(path.points);
        path.cost = cost / static_cast<float>(m_sounds + m_vectors.size());
        return path;
    }

    std::span<const WarpRow> m_rows;
    std::span<const SliceVector> m_vectors;
    std::vector<float> m_silence_costs;
    std::size_t m_sounds;
    std::vector<Trace> m_trace;
    float m_last_sound = unreachable;
    float m_last_silence = unreachable;
};

} // namespace

WarpPath warp(std::span<const WarpRow> rows, std::span<const SliceVector> vectors,
    std::span<const float> levels)
{
    if (vectors.empty() || std::ranges::none_of(rows, Grid::is_sound))
        return {};
    return Grid(rows, vectors, levels).path();
}

} // namespace tessavox::voice
