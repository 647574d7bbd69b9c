#include "platform/voice/sound/interpolator.h"

#include "platform/failure.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <numeric>

namespace tessavox::voice {

namespace {

constexpr std::size_t lanes = 8;
constexpr std::size_t half_band_pairs = 32; // a transition of 20 % of the bandwidth
constexpr std::size_t phase_taps = 16; // a wide one, as doubling has pushed the images far away
constexpr std::size_t phase_past = phase_taps / 2 - 1; // taps before the moment of the output
constexpr std::size_t most_groups = 128; // more would not stay in the fast cache
constexpr double attenuation_decibels = 100;

/// The modified Bessel function of the first kind and order 0, by its power series.
double bessel_i0(double x)
{
    double sum = 1;
    double term = 1;
    for (int k = 1; term > 1e-12 * sum; ++k) {
        term *= x / (2 * k) * (x / (2 * k));
        sum += term;
    }
    return sum;
}

/// The Kaiser window at -1..1.
double window(double place)
{
    static const double beta = 0.1102 * (attenuation_decibels - 8.7);
    static const double middle = bessel_i0(beta);
    const double inside = 1 - place * place;
    return inside < 0 ? 0 : bessel_i0(beta * std::sqrt(inside)) / middle;
}

double sinc(double x)
{
    return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

// Eight neighbours at once. Compilers turn it into whatever vectors the processor has.
using Vector = float __attribute__((vector_size(lanes * sizeof(float))));
using Integers = std::int32_t __attribute__((vector_size(lanes * sizeof(std::int32_t))));
using Samples = std::int16_t __attribute__((vector_size(lanes * sizeof(std::int16_t))));

#define TESSAVOX_INLINE inline __attribute__((always_inline))

/// Of each pair of outputs the first is the input itself, the second lies half way to the next.
TESSAVOX_INLINE void double_rate_kernel(
    const float* input, std::size_t count, const float* coefficients, float* out)
{
    constexpr std::size_t side_by_side = 2; // as many sums as hide the time that an addition takes
    for (std::size_t at = 0; at < count; at += side_by_side * lanes) {
        Vector sums[side_by_side] = {};
        for (std::size_t pair = 0; pair < half_band_pairs; ++pair) {
            for (std::size_t part = 0; part < side_by_side; ++part) {
                Vector before;
                Vector after;
                std::memcpy(&before, input + at + part * lanes - pair, sizeof before);
                std::memcpy(&after, input + at + part * lanes + 1 + pair, sizeof after);
                sums[part] += (before + after) * coefficients[pair];
            }
        }
        for (std::size_t part = 0; part < side_by_side; ++part) {
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                const std::size_t place = at + part * lanes + lane;
                out[2 * place] = input[place];
                out[2 * place + 1] = sums[part][lane];
            }
        }
    }
}

/// Eight outputs, each a weighted sum of the same stretch of samples.
TESSAVOX_INLINE void group_kernel(
    const float* samples, const float* coefficients, std::size_t span, std::int16_t* out)
{
    Vector even{};
    Vector odd{};
    for (std::size_t at = 0; at < span; at += 2) {
        Vector one;
        Vector other;
        std::memcpy(&one, coefficients + at * lanes, sizeof one);
        std::memcpy(&other, coefficients + (at + 1) * lanes, sizeof other);
        even += one * samples[at];
        odd += other * samples[at + 1];
    }
    even += odd;
    const Vector lowest = Vector{} - 32768.0F;
    const Vector highest = Vector{} + 32767.0F;
    even = even > lowest ? even : lowest;
    even = even < highest ? even : highest;
    // Truncation of a positive sum rounds to the nearest.
    const Integers rounded = __builtin_convertvector(even + 32768.5F, Integers) - 32768;
    const Samples samples_out = __builtin_convertvector(rounded, Samples);
    std::memcpy(out, &samples_out, sizeof samples_out);
}

struct Groups {
    const float* coefficients;
    const std::size_t* starts;
    std::size_t count; // groups in a round
    std::size_t span;
};

/// Groups as long as the samples last; `group` and `origin` go on with them.
TESSAVOX_INLINE std::size_t groups_kernel(const float* samples, std::size_t count,
    const Groups& groups, std::size_t& group, std::size_t& origin, std::int16_t* out)
{
    std::size_t made = 0;
    while (origin + groups.starts[group] + groups.span <= count) {
        group_kernel(samples + origin + groups.starts[group],
            groups.coefficients + group * groups.span * lanes, groups.span, out + made);
        made += lanes;
        if (++group == groups.count) {
            group = 0;
            origin += groups.starts[groups.count];
        }
    }
    return made;
}

void double_rate_portable(const float* input, std::size_t count, const float* half_band, float* out)
{
    double_rate_kernel(input, count, half_band, out);
}

std::size_t groups_portable(const float* samples, std::size_t count, const Groups& groups,
    std::size_t& group, std::size_t& origin, std::int16_t* out)
{
    return groups_kernel(samples, count, groups, group, origin, out);
}

#ifdef __x86_64__
bool has_wide_vectors()
{
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

[[gnu::target("avx2,fma")]] void double_rate_wide(
    const float* input, std::size_t count, const float* half_band, float* out)
{
    double_rate_kernel(input, count, half_band, out);
}

[[gnu::target("avx2,fma")]] std::size_t groups_wide(const float* samples, std::size_t count,
    const Groups& groups, std::size_t& group, std::size_t& origin, std::int16_t* out)
{
    return groups_kernel(samples, count, groups, group, origin, out);
}
#else
bool has_wide_vectors()
{
    return false;
}
constexpr auto double_rate_wide = double_rate_portable;
constexpr auto groups_wide = groups_portable;
#endif

struct Ratio {
    std::size_t steps; // of 1/phases of a doubled sample, from output to output
    std::size_t phases;

    std::size_t groups() const { return std::lcm(phases, lanes) / lanes; }
};

Ratio ratio(int from_rate, int to_rate)
{
    const auto doubled = 2 * static_cast<std::size_t>(from_rate);
    const auto to = static_cast<std::size_t>(to_rate);
    const auto common = std::gcd(doubled, to);
    return { .steps = doubled / common, .phases = to / common };
}

} // namespace

bool Interpolator::suits(int from_rate, int to_rate)
{
    return from_rate > 0 && 10LL * to_rate >= 11LL * from_rate
        && ratio(from_rate, to_rate).groups() <= most_groups;
}

Interpolator::Interpolator(int from_rate, int to_rate, bool portable)
    : m_wide(!portable && has_wide_vectors())
{
    if (!suits(from_rate, to_rate))
        throw Failure("no interpolation between these rates");
    for (std::size_t pair = 0; pair < half_band_pairs; ++pair) {
        const double place = static_cast<double>(pair) + 0.5;
        m_half_band.push_back(
            static_cast<float>(sinc(place) * window(place / static_cast<double>(half_band_pairs))));
    }
    const auto [steps, phases] = ratio(from_rate, to_rate);
    const std::size_t count = ratio(from_rate, to_rate).groups();
    m_span = (phase_taps + (lanes - 1) * steps / phases + 1 + 1) / 2 * 2;
    m_groups.resize(count * m_span * lanes);
    for (std::size_t output = 0; output < count * lanes; ++output) {
        const std::size_t group = output / lanes;
        const std::size_t start = group * lanes * steps / phases;
        const std::size_t before = output * steps / phases;
        const auto fraction
            = static_cast<double>(output * steps % phases) / static_cast<double>(phases);
        if (output % lanes == 0)
            m_starts.push_back(start);
        for (std::size_t tap = 0; tap < phase_taps; ++tap) {
            const double place
                = static_cast<double>(tap) - static_cast<double>(phase_past) - fraction;
            m_groups[(group * m_span + before - start + tap) * lanes + output % lanes]
                = static_cast<float>(sinc(place) * window(place / (phase_taps / 2.0)));
        }
    }
    m_starts.push_back(count * lanes * steps / phases);
    // The silence before the first sample, as far as the filters look back. What they make of it
    // begins eight doubled samples early, of which the groups need the last seven.
    m_input.assign(half_band_pairs - 1 + lanes / 2, 0);
    m_origin = lanes - phase_past;
}

void Interpolator::push(std::span<const std::int16_t> samples, std::vector<std::int16_t>& out)
{
    m_input.insert(m_input.end(), samples.begin(), samples.end());
    double_rate();
    make_output(out);
}

void Interpolator::finish(std::vector<std::int16_t>& out)
{
    constexpr std::size_t more_than_any_filter_holds = 4 * (half_band_pairs + phase_taps + lanes);
    const std::vector<std::int16_t> silence(more_than_any_filter_holds);
    push(silence, out);
}

void Interpolator::double_rate()
{
    constexpr std::size_t at_once = 2 * lanes;
    constexpr std::size_t past = half_band_pairs - 1;
    if (m_input.size() < past + half_band_pairs + at_once)
        return;
    const std::size_t count = (m_input.size() - past - half_band_pairs) / at_once * at_once;
    const std::size_t before = m_doubled.size();
    m_doubled.resize(before + 2 * count);
    (m_wide ? double_rate_wide : double_rate_portable)(
        m_input.data() + past, count, m_half_band.data(), m_doubled.data() + before);
    m_input.erase(m_input.begin(), m_input.begin() + static_cast<std::ptrdiff_t>(count));
}

void Interpolator::make_output(std::vector<std::int16_t>& out)
{
    const std::size_t groups = m_starts.size() - 1;
    const Groups table{ m_groups.data(), m_starts.data(), groups, m_span };
    const std::size_t before = out.size();
    const std::size_t most = (m_doubled.size() / m_starts[groups] + 1) * groups * lanes;
    out.resize(before + most);
    const std::size_t made = (m_wide ? groups_wide : groups_portable)(
        m_doubled.data(), m_doubled.size(), table, m_group, m_origin, out.data() + before);
    out.resize(before + made);
    const std::size_t done = std::min(m_origin, m_doubled.size());
    m_doubled.erase(m_doubled.begin(), m_doubled.begin() + static_cast<std::ptrdiff_t>(done));
    m_origin -= done;
}

} // namespace tessavox::voice
