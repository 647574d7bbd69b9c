// Writes the RIFF WAVE form of the "Multimedia Programming Interface and Data Specifications 1.0"
// (1991), and past 4 GiB the RF64 form of EBU Tech 3306.
#include "platform/failure.h"
#include "platform/voice/sound/file_descriptor.h"
#include "platform/voice/sound/wave_file.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

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

void write_all(int file, std::span<const std::byte> bytes, std::uint64_t offset)
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
        write_all(file, std::span(block).first(count), size + inserted);
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
        if (::ftruncate(m_file.get(), 0) != 0)
            fail(path);
        write_header();
    }

    ~FileWriter() override
    {
        attempt([this] { close(); });
    }

    void write(std::span<const std::byte> frames) override
    {
        if (m_file.get() < 0)
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
        if (m_file.get() < 0)
            return;
        FileDescriptor file = std::move(m_file);
        const std::uint64_t end = header_bytes() + m_data;
        if (::ftruncate(file.get(), static_cast<off_t>(end)) != 0)
            fail("completing a wave file");
        const std::byte pad{};
        if (m_data % 2 == 1)
            write_all(file.get(), std::span(&pad, 1), end);
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
        write_all(m_file.get(), std::as_bytes(std::span(&part, 1)), offset);
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
    FileDescriptor m_file;
    std::uint64_t m_data = 0; // bytes of sound in the file
    bool m_is_rf64 = false;
};

} // namespace

std::unique_ptr<WaveWriter> create_wave_file(
    const std::string& path, PcmFormat format, std::uint64_t limit)
{
    return std::make_unique<FileWriter>(path, format, limit);
}

} // namespace tessavox::voice
