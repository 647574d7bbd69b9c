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

struct SoxrDeleter {
    void operator()(soxr* resampler) const { soxr_delete(resampler); }
};
using Resampler = std::unique_ptr<soxr, SoxrDeleter>;

Resampler make_resampler(int from, int to, int channels)
{
    // No dither: silence has to stay silence, and a 16-bit rounding is far below any voice's noise.
    soxr_io_spec_t io = soxr_io_spec(SOXR_INT16_I, SOXR_INT16_I);
    io.flags = SOXR_NO_DITHER;
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    soxr_error_t error = nullptr;
    Resampler made(
        soxr_create(from, to, static_cast<unsigned>(channels), &error, &io, &quality, nullptr));
    if (!made || error)
        throw Failure(std::string("no resampler: ") + (error ? error : "out of memory"));
    return made;
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

class Converter::Impl {
public:
    Impl(int input_rate, int input_channels, PcmFormat output)
        : m_input_rate(input_rate)
        , m_input_channels(input_channels)
        , m_output(output)
        , m_channels(std::min(input_channels, output.channels))
    {
        if (input_rate <= 0 || output.rate <= 0)
            throw Failure("a sampling rate is above zero");
        if (input_channels < 1 || input_channels > 2 || output.channels < 1 || output.channels > 2)
            throw Failure("sound is mono or stereo");
        if (output.bits != 8 && output.bits != 16)
            throw Failure("sound has 8 or 16 bit");
        if (input_rate != output.rate)
            m_resampler = make_resampler(input_rate, output.rate, m_channels);
    }

    void push(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
    {
        m_frames_in += samples.size() / static_cast<std::size_t>(m_input_channels);
        reserve(samples.size() / static_cast<std::size_t>(m_input_channels), out);
        const std::size_t block = block_frames * static_cast<std::size_t>(m_input_channels);
        while (!samples.empty()) {
            const auto piece = samples.first(std::min(samples.size(), block));
            samples = samples.subspan(piece.size());
            resample(m_input_channels > m_channels ? mixed(piece) : piece, out);
        }
    }

    void finish(std::vector<std::byte>& out)
    {
        const auto rate = static_cast<std::uint64_t>(m_input_rate);
        const auto wanted
            = (m_frames_in * static_cast<std::uint64_t>(m_output.rate) + rate / 2) / rate;
        while (m_resampler && m_frames_out < wanted && advance(nullptr, 0, wanted, out).made > 0) {
        }
        // The resampler may end a frame short of the exact total.
        while (m_frames_out < wanted)
            emit(std::vector<std::int16_t>(channels()), out);
    }

    int input_rate() const { return m_input_rate; }
    int input_channels() const { return m_input_channels; }

private:
    void reserve(std::size_t frames, std::vector<std::byte>& out) const
    {
        const auto expected = static_cast<double>(frames) * m_output.rate / m_input_rate;
        const auto needed = out.size()
            + (static_cast<std::size_t>(expected) + 2 * block_frames)
                * static_cast<std::size_t>(m_output.block_align());
        if (out.capacity() < needed)
            out.reserve(std::max(needed, 2 * out.capacity()));
    }

    std::span<const std::int16_t> mixed(std::span<const std::int16_t> stereo)
    {
        m_mixed.resize(stereo.size() / 2);
        for (std::size_t i = 0; i < m_mixed.size(); ++i)
            m_mixed[i] = static_cast<std::int16_t>((stereo[2 * i] + stereo[2 * i + 1]) >> 1);
        return m_mixed;
    }

    void resample(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
    {
        if (!m_resampler) {
            emit(samples, out);
            return;
        }
        for (Step step{ 0, made_frames }; !samples.empty() || step.made == made_frames;) {
            step = advance(samples.data(), samples.size() / channels(), UINT64_MAX, out);
            samples = samples.subspan(step.taken * channels());
        }
    }

    struct Step {
        std::size_t taken; // frames
        std::size_t made;
    };

    /// Hands frames to the resampler (nullptr: the end) and appends what it gives, up to a total.
    Step advance(const std::int16_t* samples, std::size_t frames, std::uint64_t total,
        std::vector<std::byte>& out)
    {
        Step step{};
        m_made.resize(made_frames * channels());
        const soxr_error_t error = soxr_process(m_resampler.get(), samples, frames, &step.taken,
            m_made.data(), made_frames, &step.made);
        if (error)
            throw Failure(std::string("resampling: ") + error);
        const auto kept = std::min<std::uint64_t>(step.made, total - m_frames_out);
        emit(std::span(m_made).first(static_cast<std::size_t>(kept) * channels()), out);
        return step;
    }

    std::size_t channels() const { return static_cast<std::size_t>(m_channels); }

    void emit(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
    {
        append(samples, m_output.channels / m_channels, m_output.bits, out);
        m_frames_out += samples.size() / channels();
    }

    int m_input_rate;
    int m_input_channels;
    PcmFormat m_output;
    int m_channels; // while resampling: the fewer of both sides, as that is less work
    Resampler m_resampler; // none if the rates are equal
    std::vector<std::int16_t> m_mixed;
    std::vector<std::int16_t> m_made;
    std::uint64_t m_frames_in = 0;
    std::uint64_t m_frames_out = 0;
};

Converter::Converter(int input_rate, int input_channels, PcmFormat output)
    : m_impl(std::make_unique<Impl>(input_rate, input_channels, output))
{
}

Converter::~Converter() = default;
Converter::Converter(Converter&&) noexcept = default;
Converter& Converter::operator=(Converter&&) noexcept = default;

void Converter::push(std::span<const std::int16_t> samples, std::vector<std::byte>& out)
{
    m_impl->push(samples, out);
}

void Converter::finish(std::vector<std::byte>& out)
{
    m_impl->finish(out);
}

int Converter::input_rate() const
{
    return m_impl->input_rate();
}

int Converter::input_channels() const
{
    return m_impl->input_channels();
}

} // namespace tessavox::voice
