#include "platform/failure.h"
#include "platform/voice/sound/file_descriptor.h"
#include "platform/voice/sound/wave_file.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

// What converters and devices can make use of; anything else is a damaged file.
constexpr int lowest_rate = 1000;
constexpr int highest_rate = 384000;

constexpr std::size_t block_samples = 16384;

/// The library knows many kinds of files and guesses among them; only this one is wanted.
void require_wave(int file, const std::string& path)
{
    std::array<char, 12> head{};
    const std::string_view seen(head.data(), head.size());
    const bool is_wave = ::pread(file, head.data(), head.size(), 0) == ssize_t(head.size())
        && (seen.starts_with("RIFF") || seen.starts_with("RF64")) && seen.ends_with("WAVE");
    if (!is_wave)
        throw Failure(path + ": no wave file");
}

bool is_plain_pcm(int subtype)
{
    constexpr int plain[] = { SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24,
        SF_FORMAT_PCM_32, SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE };
    return std::find(std::begin(plain), std::end(plain), subtype) != std::end(plain);
}

std::int16_t to_16_bit(float sample)
{
    if (std::isnan(sample))
        return 0;
    return static_cast<std::int16_t>(
        std::lrint(std::clamp(sample * 32768.0F, -32768.0F, 32767.0F)));
}

/// Which of left and right a channel goes to when there are more than two. The usual order is front
/// left and right, centre, low frequencies, then pairs; with four channels it is two pairs.
struct Sides {
    bool left;
    bool right;
};

Sides sides_of(int channel, int channels)
{
    const bool has_centre = channels == 3 || channels >= 5;
    const bool has_low_frequencies = channels >= 6;
    if ((has_centre && channel == 2) || (has_low_frequencies && channel == 3))
        return { .left = true, .right = true };
    const bool pairs_are_shifted = has_centre && !has_low_frequencies && channel > 2;
    const bool left = (channel % 2 == 0) != pairs_are_shifted;
    return { .left = left, .right = !left };
}

class SndfileReader final : public WaveReader {
public:
    explicit SndfileReader(const std::string& path)
    {
        FileDescriptor file = open_regular_file(path, O_RDONLY);
        require_wave(file.get(), path);
        m_file.reset(sf_open_fd(file.get(), SFM_READ, &m_info, SF_FALSE));
        if (!m_file)
            throw Failure(path + ": " + sf_strerror(nullptr));
        m_descriptor = std::move(file);
        if (!is_plain_pcm(m_info.format & SF_FORMAT_SUBMASK))
            throw Failure(path + ": compressed");
        if (m_info.channels < 1 || m_info.samplerate < lowest_rate
            || m_info.samplerate > highest_rate || m_info.frames < 0)
            throw Failure(path + ": damaged wave file");
    }

    int rate() const override { return m_info.samplerate; }
    int channels() const override { return std::min(m_info.channels, 2); }
    std::uint64_t frames() const override { return static_cast<std::uint64_t>(m_info.frames); }

    std::size_t read(std::span<std::int16_t> samples) override
    {
        const auto wanted = samples.size() / static_cast<std::size_t>(channels());
        std::size_t total = 0;
        while (total < wanted) {
            const std::size_t got = read_block(
                samples.subspan(total * static_cast<std::size_t>(channels())), wanted - total);
            if (got == 0)
                break;
            total += got;
        }
        return total;
    }

private:
    struct Closer {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };

    bool fits_as_it_is() const
    {
        const int subtype = m_info.format & SF_FORMAT_SUBMASK;
        return m_info.channels <= 2 && (subtype == SF_FORMAT_PCM_U8 || subtype == SF_FORMAT_PCM_16);
    }

    std::size_t read_block(std::span<std::int16_t> samples, std::size_t wanted)
    {
        if (fits_as_it_is())
            return whole(
                sf_readf_short(m_file.get(), samples.data(), static_cast<sf_count_t>(wanted)));
        const auto width = static_cast<std::size_t>(m_info.channels);
        const std::size_t frames
            = std::min(wanted, std::max<std::size_t>(1, block_samples / width));
        m_block.resize(frames * width);
        const std::size_t got
            = whole(sf_readf_float(m_file.get(), m_block.data(), static_cast<sf_count_t>(frames)));
        if (width <= 2)
            std::transform(m_block.begin(), m_block.begin() + static_cast<long>(got * width),
                samples.begin(), to_16_bit);
        else
            mix(std::span(m_block).first(got * width), samples);
        return got;
    }

    void mix(std::span<const float> block, std::span<std::int16_t> samples) const
    {
        const auto width = static_cast<std::size_t>(m_info.channels);
        for (std::size_t at = 0, to = 0; at < block.size(); at += width, to += 2) {
            float left = 0;
            float right = 0;
            int on_the_left = 0;
            int on_the_right = 0;
            for (std::size_t channel = 0; channel < width; ++channel) {
                const Sides sides = sides_of(static_cast<int>(channel), m_info.channels);
                left += sides.left ? block[at + channel] : 0;
                right += sides.right ? block[at + channel] : 0;
                on_the_left += sides.left ? 1 : 0;
                on_the_right += sides.right ? 1 : 0;
            }
            samples[to] = to_16_bit(left / static_cast<float>(on_the_left));
            samples[to + 1] = to_16_bit(right / static_cast<float>(on_the_right));
        }
    }

    static std::size_t whole(sf_count_t frames)
    {
        return static_cast<std::size_t>(std::max<sf_count_t>(frames, 0));
    }

    SF_INFO m_info{};
    FileDescriptor m_descriptor; // outlives the library's use
    std::unique_ptr<SNDFILE, Closer> m_file;
    std::vector<float> m_block;
};

} // namespace

std::unique_ptr<WaveReader> open_wave_file(const std::string& path)
{
    return std::make_unique<SndfileReader>(path);
}

} // namespace tessavox::voice
