#include "platform/voice/sound/converter.h"

#include "platform/failure.h"

#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace tessavox::voice {

namespace {

// Small enough that a block and its result stay in the processor's second-level cache.
constexpr std::size_t block_frames = 4096;
constexpr std::size_t made_frames = 2 * block_frames;

constexpr float glide_seconds = 0.005F; // a full swing; short enough to seem immediate

// Truncation of a positive sum rounds to the nearest, and compilers make vector code of it.
std::int16_t scaled_16(std::int16_t sample, float gain)
{
    return static_cast<std::int16_t>(
        static_cast<int>(static_cast<float>(sample) * gain + 32768.5F) - 32768);
}

std::byte scaled_8(std::byte sample, float gain)
{
    const float centred = static_cast<float>(static_cast<int>(sample) - 128);
    return static_cast<std::byte>(static_cast<int>(centred * gain + 128.5F));
}

/// Rounded to the nearest of 256 steps; silence is exactly 0x80.
std::byte to_8_bit(std::int16_t sample)
{
    return static_cast<std::byte>(std::min((sample + 32768 + 128) >> 8, 255));
}

/// Appends samples as they are, or each of them for the left and the right, in the format's width.
void append(
    std::span<const std::int16_t> samples, int copies, int bits, std::vector<std::byte>& out)
{
    const std::size_t start = out.size();
    const std::size_t count = samples.size() * static_cast<std::size_t>(copies);
    out.resize(start + count * static_cast<std::size_t>(bits / 8));
    std::byte* const to = out.data() + start;
    if (bits == 16 && copies == 1) {
        if (count > 0)
            std::memcpy(to, samples.data(), samples.size_bytes());
    } else if (bits == 16) {
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const auto one = static_cast<std::uint16_t>(samples[i]);
            const std::uint32_t both = one | static_cast<std::uint32_t>(one) << 16;
            std::memcpy(to + 4 * i, &both, sizeof both);
        }
    } else if (copies == 1) {
        for (std::size_t i = 0; i < samples.size(); ++i)
            to[i] = to_8_bit(samples[i]);
    } else {
        for (std::size_t i = 0; i < samples.size(); ++i)
            to[2 * i] = to[2 * i + 1] = to_8_bit(samples[i]);
    }
}

} // namespace

void Converter::Release::operator()(soxr* resampler) const
{
    soxr_delete(resampler);
}

Converter::Converter(PcmFormat output)
    : m_output(output)
{
    if (output.rate <= 0 || output.channels < 1 || output.channels > 2
        || (output.bits != 8 && output.bits != 16))
        throw Failure("sound has a rate, 8 or 16 bit, and is mono or stereo");
}

void Converter::restart(std::uint64_t frame)
{
    m_resampler.reset();
    m_rate = 0;
    m_base = frame;
    m_pushed = m_made = 0;
}

void Converter::begin(int rate, int channels, std::vector<std::byte>& out)
{
    if (rate <= 0 || channels < 1 || channels > 2)
        throw Failure("sound has a rate and is mono or stereo");
    const auto width = static_cast<std::size_t>(channels);
    if (m_rate == rate && m_input_channels == width)
        return;
    finish(out);
    m_input_channels = width;
    m_channels = std::min(width, static_cast<std::size_t>(m_output.channels));
    if (rate != m_output.rate) {
        // No dither: silence has to stay silence, and a 16-bit rounding is far below any voice's
        // noise.
        soxr_io_spec_t io = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
        io.flags = SOXR_NO_DITHER;
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
        soxr_error_t error = nullptr;
        m_resampler.reset(soxr_create(rate, m_output.rate, static_cast<unsigned>(m_channels),
            &error, &io, &quality, nullptr));
        if (!m_resampler || error)
            throw Failure(std::string("no resampler: ") + (error ? error : "out of memory"));
    }
    m_rate = rate;
}

std::uint64_t Converter::frame_of(std::uint64_t ahead) const
{
    if (m_rate == 0)
        return m_base;
    const auto from = static_cast<std::uint64_t>(m_rate);
    const auto to = static_cast<std::uint64_t>(m_output.rate);
    return m_base + ((m_pushed + ahead) * to + from / 2) / from;
}

void Converter::push(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
{
    const std::size_t frames = samples.size() / m_input_channels;
    const auto expected
        = static_cast<std::size_t>(static_cast<double>(frames) * m_output.rate / m_rate);
    const std::size_t needed = out.size()
        + (expected + 2 * block_frames) * static_cast<std::size_t>(m_output.block_align());
    if (out.capacity() < needed)
        out.reserve(std::max(needed, 2 * out.capacity()));
    m_pushed += frames;
    while (!samples.empty()) {
        const auto piece = samples.first(std::min(samples.size(), block_frames * m_input_channels));
        samples = samples.subspan(piece.size());
        auto rest = m_input_channels > m_channels ? mixed(piece) : piece;
        if (!m_resampler) {
            emit(rest, out);
            continue;
        }
        for (Step step{ 0, made_frames }; !rest.empty() || step.made == made_frames;) {
            step = resample(rest.data(), rest.size() / m_channels, UINT64_MAX, out);
            rest = rest.subspan(step.taken * m_channels);
        }
    }
}

void Converter::finish(std::vector<std::byte>& out)
{
    const std::uint64_t wanted = frame_of(0) - m_base;
    while (m_resampler && m_made < wanted && resample(nullptr, 0, wanted, out).made > 0) { }
    // The resampler may end a frame short of the exact total.
    while (m_made < wanted)
        emit(std::vector<std::int16_t>(m_channels), out);
    restart(m_base + m_made);
}

std::span<const std::int16_t> Converter::mixed(std::span<const std::int16_t> stereo)
{
    m_mixed.resize(stereo.size() / 2);
    for (std::size_t i = 0; i < m_mixed.size(); ++i)
        m_mixed[i] = static_cast<std::int16_t>((stereo[2 * i] + stereo[2 * i + 1]) >> 1);
    return m_mixed;
}

/// Hands frames to the resampler (nullptr: the end) and appends what it gives, up to a total.
Converter::Step Converter::resample(const std::int16_t* samples, std::size_t frames,
    std::uint64_t total, std::vector<std::byte>& out)
{
    Step step{};
    m_resampled.resize(made_frames * m_channels);
    const soxr_error_t error = soxr_process(m_resampler.get(), samples, frames, &step.taken,
        m_resampled.data(), made_frames, &step.made);
    if (error)
        throw Failure(std::string("resampling: ") + error);
    const auto kept = std::min<std::uint64_t>(step.made, total - m_made);
    emit(std::span(m_resampled).first(static_cast<std::size_t>(kept) * m_channels), out);
    return step;
}

void Converter::emit(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
{
    append(samples, m_output.channels / static_cast<int>(m_channels), m_output.bits, out);
    m_made += samples.size() / m_channels;
}

void scale(std::span<std::byte> samples, PcmFormat format, float gain)
{
    if (format.bits == 8) {
        for (std::byte& sample : samples)
            sample = scaled_8(sample, gain);
        return;
    }
    for (std::size_t at = 0; at + 1 < samples.size(); at += 2) {
        std::int16_t sample = 0;
        std::memcpy(&sample, &samples[at], sizeof sample);
        sample = scaled_16(sample, gain);
        std::memcpy(&samples[at], &sample, sizeof sample);
    }
}

Gain::Gain(PcmFormat format)
    : m_format(format)
{
}

void Gain::set(float factor)
{
    m_wanted = std::isfinite(factor) ? std::clamp(factor, 0.0F, 1.0F) : 1.0F;
    if (!m_started)
        m_current = m_wanted;
}

void Gain::apply(std::span<std::byte> frames)
{
    const auto align = static_cast<std::size_t>(m_format.block_align());
    const float step = 1.0F / (glide_seconds * static_cast<float>(m_format.rate));
    m_started = m_started || !frames.empty();
    while (m_current != m_wanted && frames.size() >= align) {
        m_current = m_wanted > m_current ? std::min(m_wanted, m_current + step)
                                         : std::max(m_wanted, m_current - step);
        scale(frames.first(align), m_format, m_current);
        frames = frames.subspan(align);
    }
    if (m_current != 1.0F)
        scale(frames, m_format, m_current);
}

} // namespace tessavox::voice
