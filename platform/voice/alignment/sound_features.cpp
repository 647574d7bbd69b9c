#include "platform/voice/alignment/sound_features.h"

#include "platform/failure.h"

#include <kiss_fftr.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace tessavox::voice {

namespace {

// The usual front end of speech recognition (Davis and Mermelstein, 1980), with the settings that
// put the word marks of known voices best.
constexpr double window_seconds = 0.025;
constexpr float pre_emphasis = 0.97F;
constexpr std::size_t band_count = 24;
constexpr double lowest_hz = 100;
constexpr double speech_hz = 7000;
constexpr double highest_share = 0.47; // of the sample rate: below the slope of its filter

constexpr float change_weight = 0.8F;
constexpr float level_weight = 0.3F;
constexpr float lowest_level_db = -50; // below it all silences are alike
constexpr std::size_t change_slices = 2; // to either side

// What is above it is speech.
constexpr float speech_level_db = -35;
constexpr std::size_t edge_margin_slices = 5;

// What is below it is silence.
constexpr double quiet_percentile = 0.05;
constexpr float above_quiet_db = 8;
constexpr float lowest_silence_db = -38;
constexpr float highest_silence_db = -24;

constexpr double loud_percentile = 0.95;
constexpr float least_power = 1e-3F; // far below the noise of 16 bits

double mel_of(double hz)
{
    return 1127 * std::log1p(hz / 700);
}

double hz_of(double mel)
{
    return 700 * std::expm1(mel / 1127);
}

// A triangle over the lines of a spectrum.
struct Band {
    std::size_t first = 0;
    std::vector<float> weights; // their sum is 1
};

std::vector<Band> mel_bands(int sample_rate, std::size_t window, double highest_hz)
{
    const double top = mel_of(highest_hz);
    const double bottom = mel_of(lowest_hz);
    const auto edge_line = [&](std::size_t edge) {
        const double share = static_cast<double>(edge) / (band_count + 1);
        return hz_of(bottom + share * (top - bottom)) * static_cast<double>(window) / sample_rate;
    };
    std::vector<Band> bands(band_count);
    for (std::size_t at = 0; at < band_count; ++at) {
        const double left = edge_line(at), peak = edge_line(at + 1), right = edge_line(at + 2);
        Band& band = bands[at];
        band.first = static_cast<std::size_t>(std::ceil(left));
        double sum = 0;
        for (std::size_t line = band.first; line <= window / 2; ++line) {
            const auto place = static_cast<double>(line);
            if (place >= right)
                break;
            const double weight
                = place < peak ? (place - left) / (peak - left) : (right - place) / (right - peak);
            band.weights.push_back(static_cast<float>(std::max(0.0, weight)));
            sum += weight;
        }
        // A band of a low sample rate may be narrower than the distance of two lines.
        if (sum <= 0) {
            band.first = static_cast<std::size_t>(std::lround(peak));
            band.weights.assign(1, 1.0F);
            sum = 1;
        }
        for (float& weight : band.weights)
            weight /= static_cast<float>(sum);
    }
    return bands;
}

using Cepstrum = std::array<float, cepstrum_count>;

std::array<std::array<float, band_count>, cepstrum_count> cosines()
{
    std::array<std::array<float, band_count>, cepstrum_count> table{};
    for (std::size_t row = 0; row < cepstrum_count; ++row)
        for (std::size_t band = 0; band < band_count; ++band)
            table[row][band] = static_cast<float>(std::sqrt(2.0 / band_count)
                * std::cos(std::numbers::pi * static_cast<double>(row + 1)
                    * (static_cast<double>(band) + 0.5) / band_count));
    return table;
}

float percentile(std::vector<float> values, double share)
{
    const auto place = values.begin()
        + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, place);
    return *place;
}

// A microphone and a throat colour every slice alike; that mean says nothing about the words.
void subtract_mean(std::vector<Cepstrum>& cepstra, const std::vector<float>& levels)
{
    std::array<double, cepstrum_count> mean{};
    std::size_t count = 0;
    for (std::size_t at = 0; at < cepstra.size(); ++at)
        if (levels[at] > speech_level_db) {
            ++count;
            for (std::size_t row = 0; row < cepstrum_count; ++row)
                mean[row] += cepstra[at][row];
        }
    if (count == 0)
        return;
    for (Cepstrum& cepstrum : cepstra)
        for (std::size_t row = 0; row < cepstrum_count; ++row)
            cepstrum[row] -= static_cast<float>(mean[row] / static_cast<double>(count));
}

SliceVector vector_of(const std::vector<Cepstrum>& cepstra, std::size_t at, float level)
{
    const Cepstrum& before = cepstra[at - std::min(at, change_slices)];
    const Cepstrum& after = cepstra[std::min(at + change_slices, cepstra.size() - 1)];
    SliceVector vector{};
    for (std::size_t row = 0; row < cepstrum_count; ++row) {
        vector[row] = cepstra[at][row];
        vector[cepstrum_count + row] = change_weight * (after[row] - before[row]);
    }
    vector[2 * cepstrum_count] = level_weight * std::max(lowest_level_db, level);
    return vector;
}

struct FreeTransform {
    void operator()(kiss_fftr_state* state) const { kiss_fftr_free(state); }
};

} // namespace

double highest_told_hz(int sample_rate)
{
    return std::min(speech_hz, highest_share * sample_rate);
}

float distance_of(const SliceVector& one, const SliceVector& other)
{
    std::array<float, 4> sums{};
    for (std::size_t at = 0; at < one.size(); at += sums.size())
        for (std::size_t lane = 0; lane < sums.size(); ++lane) {
            const float difference = one[at + lane] - other[at + lane];
            sums[lane] += difference * difference;
        }
    return std::sqrt(sums[0] + sums[1] + sums[2] + sums[3]);
}

float quiet_level(std::span<const float> levels)
{
    const float quiet = percentile({ levels.begin(), levels.end() }, quiet_percentile);
    return std::clamp(quiet + above_quiet_db, lowest_silence_db, highest_silence_db);
}

SoundEdges edges_of(const SoundFeatures& features)
{
    const auto is_speech = [](float level) { return level > speech_level_db; };
    const auto& levels = features.levels;
    const auto first = std::ranges::find_if(levels, is_speech);
    if (first == levels.end())
        return {};
    const auto last = std::find_if(levels.rbegin(), levels.rend(), is_speech);
    const auto begin = static_cast<std::size_t>(first - levels.begin());
    const auto end = static_cast<std::size_t>(levels.rend() - last);
    return { begin - std::min(begin, edge_margin_slices),
        std::min(end + edge_margin_slices, levels.size()) };
}

class FeatureExtractor::Impl {
public:
    Impl(int sample_rate, double highest_hz)
        : m_rate(sample_rate)
        , m_highest_hz(highest_hz)
        , m_points(transform_points(sample_rate))
        , m_transform(kiss_fftr_alloc(static_cast<int>(m_points), 0, nullptr, nullptr))
        , m_bands(mel_bands(sample_rate, m_points, highest_hz))
        , m_piece(m_points)
        , m_spectrum(m_points / 2 + 1)
        , m_power(m_points / 2 + 1)
    {
        if (!m_transform)
            throw Failure("no memory for the features of a sound");
        const auto length = static_cast<std::size_t>(std::lround(window_seconds * sample_rate));
        for (std::size_t at = 0; at < length; ++at)
            m_window.push_back(static_cast<float>(0.5
                - 0.5
                    * std::cos(2 * std::numbers::pi * (static_cast<double>(at) + 0.5)
                        / static_cast<double>(length))));
    }

    bool is_for(int sample_rate, double highest_hz) const
    {
        return sample_rate == m_rate && highest_hz == m_highest_hz;
    }

    SoundFeatures features_of(std::span<const std::int16_t> samples)
    {
        SoundFeatures features;
        const auto rate = static_cast<std::size_t>(m_rate);
        const std::size_t count = (samples.size() * slices_per_second + rate - 1) / rate;
        if (count == 0)
            return features;
        std::vector<Cepstrum> cepstra(count);
        features.levels.resize(count);
        for (std::size_t at = 0; at < count; ++at) {
            features.levels[at] = cut_piece(samples, at * rate / slices_per_second);
            cepstra[at] = cepstrum();
        }
        const float loud = percentile(features.levels, loud_percentile);
        for (float& level : features.levels)
            level -= loud;
        subtract_mean(cepstra, features.levels);
        features.vectors.reserve(count);
        for (std::size_t at = 0; at < count; ++at)
            features.vectors.push_back(vector_of(cepstra, at, features.levels[at]));
        return features;
    }

private:
    static std::size_t transform_points(int sample_rate)
    {
        std::size_t points = 1;
        while (static_cast<double>(points) < window_seconds * sample_rate)
            points *= 2;
        return points;
    }

    // Puts the window around a sample into m_piece and tells its level in dB.
    float cut_piece(std::span<const std::int16_t> samples, std::size_t centre)
    {
        const auto sample = [&](std::ptrdiff_t at) {
            return at < 0 || at >= static_cast<std::ptrdiff_t>(samples.size())
                ? 0.0F
                : static_cast<float>(samples[static_cast<std::size_t>(at)]);
        };
        const auto begin = static_cast<std::ptrdiff_t>(centre)
            - static_cast<std::ptrdiff_t>(m_window.size() / 2);
        float power = 0;
        float before = sample(begin - 1);
        for (std::size_t at = 0; at < m_window.size(); ++at) {
            const float here = sample(begin + static_cast<std::ptrdiff_t>(at));
            m_piece[at] = (here - pre_emphasis * before) * m_window[at];
            power += here * here * m_window[at];
            before = here;
        }
        return 10 * std::log10(power / static_cast<float>(m_window.size()) + least_power);
    }

    Cepstrum cepstrum()
    {
        static const auto table = cosines();
        kiss_fftr(m_transform.get(), m_piece.data(), m_spectrum.data());
        for (std::size_t line = 0; line < m_power.size(); ++line)
            m_power[line]
                = m_spectrum[line].r * m_spectrum[line].r + m_spectrum[line].i * m_spectrum[line].i;
        std::array<float, band_count> loudness{};
        for (std::size_t at = 0; at < band_count; ++at) {
            const Band& band = m_bands[at];
            float power = least_power;
            for (std::size_t line = 0; line < band.weights.size(); ++line)
                power += band.weights[line] * m_power[band.first + line];
            loudness[at] = std::log(power);
        }
        Cepstrum result{};
        for (std::size_t row = 0; row < cepstrum_count; ++row)
            for (std::size_t band = 0; band < band_count; ++band)
                result[row] += table[row][band] * loudness[band];
        return result;
    }

    int m_rate;
    double m_highest_hz;
    std::size_t m_points;
    std::unique_ptr<kiss_fftr_state, FreeTransform> m_transform;
    std::vector<Band> m_bands;
    std::vector<float> m_window;
    std::vector<float> m_piece; // what is behind the window stays 0
    std::vector<kiss_fft_cpx> m_spectrum;
    std::vector<float> m_power;
};

FeatureExtractor::FeatureExtractor(int sample_rate, double highest_hz)
{
    constexpr int lowest_rate = 4000, highest_rate = 400000;
    if (sample_rate < lowest_rate || sample_rate > highest_rate)
        throw Failure("a sound of " + std::to_string(sample_rate) + " Hz can't be compared");
    m_impl = std::make_unique<Impl>(sample_rate, highest_hz);
}

FeatureExtractor::~FeatureExtractor() = default;

bool FeatureExtractor::is_for(int sample_rate, double highest_hz) const
{
    return m_impl->is_for(sample_rate, highest_hz);
}

SoundFeatures FeatureExtractor::features_of(std::span<const std::int16_t> samples)
{
    return m_impl->features_of(samples);
}

} // namespace tessavox::voice
