// Written is the RIFF WAVE form of the "Multimedia Programming Interface and Data
// Specifications 1.0" (1991), and past 4 GiB the RF64 form of EBU Tech 3306.
#include "platform/voice/sound/wave_file.h"

#include "platform/descriptor.h"
#include "platform/failure.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

/// Opens a regular file, or creates one if `flags` say so; symbolic links are followed. Neither
/// hangs on a pipe nor wakes a device. @throws Failure if it can't be opened or is something else.
Descriptor open_regular_file(const std::string& path, int flags)
{
    constexpr mode_t everybody_as_the_mask_allows = 0666;
    struct stat status { };
    // Looked at before it is opened, as the very opening of a device may start something.
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw Failure(path + ": no regular file");
    Descriptor file(::open(
        path.c_str(), flags | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, everybody_as_the_mask_allows));
    if (!file.is_open())
        throw Failure(path + ": " + std::generic_category().message(errno));
    if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        throw Failure(path + ": no regular file");
    return file;
}

/// Cuts the file if it is longer. One that was truncated at all is written out by some file systems
/// as it is closed, which takes its time.
bool shorten(int file, std::uint64_t size)
{
    struct stat status { };
    return ::fstat(file, &status) == 0
        && (static_cast<std::uint64_t>(status.st_size) <= size
            || ::ftruncate(file, static_cast<off_t>(size)) == 0);
}

// Headers as they stand in the file; numbers are little endian there.
static_assert(std::endian::native == std::endian::little);

constexpr std::uint32_t tag(const char (&letters)[5])
{
    return std::bit_cast<std::uint32_t>(
        std::array{ letters[0], letters[1], letters[2], letters[3] });
}

constexpr std::uint32_t see_ds64 = 0xFFFF'FFFF;

struct RiffHead {
    std::uint32_t id = tag("RIFF");
    std::uint32_t size = see_ds64; // of all that follows
    std::uint32_t form = tag("WAVE");
};

struct [[gnu::packed]] SizesChunk {
    std::uint32_t id = tag("ds64");
    std::uint32_t bytes = 28;
    std::uint64_t riff = 0;
    std::uint64_t data = 0;
    std::uint64_t frames = 0;
    std::uint32_t longer_chunks = 0;
};

struct FormatAndData {
    std::uint32_t id = tag("fmt ");
    std::uint32_t bytes = 16;
    std::uint16_t uncompressed = 1;
    std::uint16_t channels = 0;
    std::uint32_t rate = 0;
    std::uint32_t bytes_a_second = 0;
    std::uint16_t block_align = 0;
    std::uint16_t bits = 0;
    std::uint32_t data = tag("data");
    std::uint32_t size = see_ds64;
};

constexpr std::uint64_t riff_uncounted = 8; // what the size in a file's head does not count
constexpr std::uint64_t plain_header = sizeof(RiffHead) + sizeof(FormatAndData);
static_assert(plain_header == 44);

// By so much an RF64 header is longer. Whole pages, so that a file system can put them in front
// without moving what follows.
constexpr std::uint64_t inserted = 4096;

struct LongHead {
    RiffHead riff;
    SizesChunk sizes;
    std::uint32_t junk = tag("JUNK");
    std::uint32_t junk_bytes = inserted - sizeof(SizesChunk) - riff_uncounted;
};

[[noreturn]] void fail(const std::string& what)
{
    throw Failure(what + ": " + std::generic_category().message(errno));
}

/// Writes all bytes at `offset`. Returns how many the disk took; errno tells why it took no more.
std::size_t write_some(int file, std::span<const std::byte> bytes, std::uint64_t offset)
{
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pwrite(
            file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count == 0)
            errno = ENOSPC;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

void write_at(int file, std::span<const std::byte> bytes, std::uint64_t offset)
{
    if (write_some(file, bytes, offset) < bytes.size())
        fail("writing a wave file");
}

/// Moves everything in the file back by `inserted`, the end first so that nothing is overwritten.
void move_back(int file, std::uint64_t size)
{
    constexpr std::size_t most = std::size_t(4) * 1024 * 1024;
    std::vector<std::byte> block(most);
    while (size > 0) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(size, block.size()));
        size -= count;
        for (std::size_t got = 0; got < count;) {
            const ssize_t step
                = ::pread(file, &block[got], count - got, static_cast<off_t>(size + got));
            if (step <= 0)
                fail("making room in a wave file");
            got += static_cast<std::size_t>(step);
        }
        write_at(file, std::span(block).first(count), size + inserted);
    }
}

class FileWriter final : public WaveWriter {
public:
    FileWriter(const std::string& path, PcmFormat format, std::uint64_t limit)
        : m_format(format)
        , m_limit(limit)
        , m_file(open_regular_file(path, O_RDWR | O_CREAT))
    {
        // Beyond a limit on the size of files this signal would end the program. Ignored, it leaves
        // the error number to tell the story.
        std::signal(SIGXFSZ, SIG_IGN);
        if (!shorten(m_file.get(), 0))
            fail(path);
        write_header();
    }

    ~FileWriter() override
    {
        attempt([this] { close(); });
    }

    void write(std::span<const std::byte> frames) override
    {
        if (!m_file.is_open())
            throw Failure("this wave file is closed");
        const std::uint64_t after = m_data + frames.size();
        if (!m_is_rf64 && plain_header - riff_uncounted + after + after % 2 > m_limit)
            become_rf64();
        const std::size_t done = write_some(m_file.get(), frames, header_bytes() + m_data);
        const int error = errno;
        // A frame that a full disk has cut does not count.
        m_data += done - done % static_cast<std::size_t>(m_format.block_align());
        write_header(); // a program that is ended from outside leaves a file to play
        errno = error;
        if (done < frames.size())
            fail("writing a wave file");
    }

    void close() override
    {
        if (!m_file.is_open())
            return;
        Descriptor file = std::move(m_file);
        const std::uint64_t end = header_bytes() + m_data;
        if (!shorten(file.get(), end))
            fail("completing a wave file");
        const std::byte pad{};
        if (m_data % 2 == 1)
            write_at(file.get(), std::span(&pad, 1), end);
        if (::close(file.release()) != 0)
            fail("closing a wave file");
    }

    std::uint64_t frames() const override
    {
        return m_data / static_cast<std::uint64_t>(m_format.block_align());
    }

private:
    std::uint64_t header_bytes() const { return plain_header + (m_is_rf64 ? inserted : 0); }

    void write_header() const
    {
        FormatAndData format{ .channels = static_cast<std::uint16_t>(m_format.channels),
            .rate = static_cast<std::uint32_t>(m_format.rate),
            .bytes_a_second = static_cast<std::uint32_t>(m_format.rate * m_format.block_align()),
            .block_align = static_cast<std::uint16_t>(m_format.block_align()),
            .bits = static_cast<std::uint16_t>(m_format.bits) };
        const std::uint64_t riff = header_bytes() - riff_uncounted + m_data + m_data % 2;
        if (m_is_rf64) {
            put(LongHead{ .riff = { .id = tag("RF64") },
                    .sizes = { .riff = riff, .data = m_data, .frames = frames() } },
                0);
        } else {
            format.size = static_cast<std::uint32_t>(m_data);
            put(RiffHead{ .size = static_cast<std::uint32_t>(riff) }, 0);
        }
        put(format, header_bytes() - sizeof format);
    }

    template <class Part> void put(const Part& part, std::uint64_t offset) const
    {
        write_at(m_file.get(), std::as_bytes(std::span(&part, 1)), offset);
    }

    void become_rf64()
    {
        // Few file systems can insert; on the others the sound moves once, when it is that long.
        if (::fallocate(m_file.get(), FALLOC_FL_INSERT_RANGE, 0, inserted) != 0)
            move_back(m_file.get(), plain_header + m_data);
        m_is_rf64 = true;
        write_header();
    }

    PcmFormat m_format;
    std::uint64_t m_limit;
    Descriptor m_file;
    std::uint64_t m_data = 0; // bytes of sound in the file
    bool m_is_rf64 = false;
};

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
        Descriptor file = open_regular_file(path, O_RDONLY);
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
        return read_block(samples, samples.size() / static_cast<std::size_t>(channels()));
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
    Descriptor m_descriptor; // outlives the library's use
    std::unique_ptr<SNDFILE, Closer> m_file;
    std::vector<float> m_block;
};

} // namespace

std::unique_ptr<WaveWriter> create_wave_file(
    const std::string& path, PcmFormat format, std::uint64_t limit)
{
    return std::make_unique<FileWriter>(path, format, limit);
}

std::unique_ptr<WaveReader> open_wave_file(const std::string& path)
{
    return std::make_unique<SndfileReader>(path);
}

} // namespace tessavox::voice
