// Writes the RIFF WAVE form of the "Multimedia Programming Interface and Data Specifications 1.0"
// (1991), and past 4 GiB the RF64 form of EBU Tech 3306.
#include "platform/failure.h"
#include "platform/voice/sound/file_descriptor.h"
#include "platform/voice/sound/wave_file.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace tessavox::voice {

namespace {

constexpr std::uint64_t riff_head = 8; // what the size in a file's head does not count
constexpr std::uint64_t plain_header = 44;
// By so much an RF64 header is longer. Whole pages, so that a file system can put them in front
// without moving what follows.
constexpr std::uint64_t inserted = 4096;
constexpr std::uint32_t see_ds64 = 0xFFFF'FFFF;
constexpr std::size_t gather_bytes = std::size_t(256) * 1024; // smaller pieces are put together
constexpr std::size_t move_bytes = std::size_t(4) * 1024 * 1024;

/// Beyond a limit on the size of files the system sends a signal that ends the process. Held back
/// here, it leaves the error number to tell the story.
class WithoutFileSizeSignal {
public:
    WithoutFileSizeSignal()
    {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    ~WithoutFileSizeSignal()
    {
        if (sigismember(&m_before, SIGXFSZ) == 1)
            return;
        const timespec at_once{};
        sigtimedwait(&m_signal, nullptr, &at_once);
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    WithoutFileSizeSignal(const WithoutFileSizeSignal&) = delete;
    WithoutFileSizeSignal& operator=(const WithoutFileSizeSignal&) = delete;

private:
    sigset_t m_signal{};
    sigset_t m_before{};
};

[[noreturn]] void fail(const std::string& what)
{
    throw Failure(what + ": " + std::generic_category().message(errno));
}

/// Writes all bytes at `offset`. `done` counts those that went through, on a failure too.
void write_at(int file, std::span<const std::byte> bytes, std::uint64_t offset, std::uint64_t& done)
{
    const WithoutFileSizeSignal guard;
    while (!bytes.empty()) {
        const ssize_t count
            = ::pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count == 0)
            errno = ENOSPC;
        if (count <= 0)
            fail("writing a wave file");
        done += static_cast<std::uint64_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

void write_at(int file, std::span<const std::byte> bytes, std::uint64_t offset)
{
    std::uint64_t done = 0;
    write_at(file, bytes, offset, done);
}

/// Bytes of a header in their order; numbers are little endian.
class Header {
public:
    Header& tag(std::string_view four)
    {
        for (const char letter : four)
            m_bytes.push_back(static_cast<std::byte>(letter));
        return *this;
    }
    template <class Number> Header& number(Number value)
    {
        for (std::size_t byte = 0; byte < sizeof value; ++byte)
            m_bytes.push_back(static_cast<std::byte>(value >> (8 * byte) & 0xFF));
        return *this;
    }
    Header& zeros(std::size_t count)
    {
        m_bytes.resize(m_bytes.size() + count);
        return *this;
    }
    std::span<const std::byte> bytes() const { return m_bytes; }

private:
    std::vector<std::byte> m_bytes;
};

void add_format(Header& header, PcmFormat format)
{
    constexpr std::uint16_t uncompressed = 1;
    header.tag("fmt ").number(std::uint32_t(16)).number(uncompressed);
    header.number(static_cast<std::uint16_t>(format.channels));
    header.number(static_cast<std::uint32_t>(format.rate));
    header.number(static_cast<std::uint32_t>(format.rate * format.block_align()));
    header.number(static_cast<std::uint16_t>(format.block_align()));
    header.number(static_cast<std::uint16_t>(format.bits));
}

Header plain(PcmFormat format, std::uint64_t data)
{
    Header header;
    const std::uint64_t size = plain_header - riff_head + data + data % 2;
    header.tag("RIFF").number(static_cast<std::uint32_t>(size)).tag("WAVE");
    add_format(header, format);
    header.tag("data").number(static_cast<std::uint32_t>(data));
    return header;
}

Header rf64(PcmFormat format, std::uint64_t data)
{
    constexpr std::uint32_t ds64_bytes = 28;
    constexpr std::uint32_t junk_bytes = inserted - 2 * riff_head - ds64_bytes;
    Header header;
    header.tag("RF64").number(see_ds64).tag("WAVE");
    header.tag("ds64").number(ds64_bytes);
    header.number(plain_header + inserted - riff_head + data + data % 2);
    header.number(data);
    header.number(data / static_cast<std::uint64_t>(format.block_align()));
    header.number(std::uint32_t(0)); // no further chunk is that long
    header.tag("JUNK").number(junk_bytes).zeros(junk_bytes);
    add_format(header, format);
    header.tag("data").number(see_ds64);
    return header;
}

/// Moves everything in the file back by `inserted`, the end first so that nothing is overwritten.
void move_back(int file, std::uint64_t size)
{
    std::vector<std::byte> block(move_bytes);
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
        if (::ftruncate(m_file.get(), 0) != 0)
            fail(path);
        write_at(m_file.get(), plain(m_format, 0).bytes(), 0);
        m_gathered.reserve(gather_bytes);
    }

    ~FileWriter() override
    {
        attempt([this] { close(); });
    }

    void write(std::span<const std::byte> frames) override
    {
        if (m_file.get() < 0)
            throw Failure("this wave file is closed");
        if (m_gathered.size() + frames.size() >= gather_bytes)
            write_gathered();
        if (frames.size() >= gather_bytes)
            append(frames);
        else
            m_gathered.insert(m_gathered.end(), frames.begin(), frames.end());
    }

    void close() override
    {
        if (m_file.get() < 0)
            return;
        // Whatever the disk refuses, the header tells the truth about what is there.
        std::string trouble;
        try {
            write_gathered();
        } catch (const Failure& failure) {
            trouble = failure.what();
        }
        m_data -= m_data % align();
        FileDescriptor file = std::move(m_file);
        complete(file.get());
        if (::close(file.release()) != 0)
            fail("closing a wave file");
        if (!trouble.empty())
            throw Failure(trouble);
    }

    std::uint64_t frames() const override { return (m_data + m_gathered.size()) / align(); }

private:
    std::uint64_t align() const { return static_cast<std::uint64_t>(m_format.block_align()); }
    std::uint64_t header_bytes() const { return plain_header + (m_is_rf64 ? inserted : 0); }

    void write_gathered()
    {
        // What the disk refuses once is dropped and not tried again behind a gap.
        const std::vector<std::byte> gathered = std::exchange(m_gathered, {});
        append(gathered);
        m_gathered.reserve(gather_bytes);
    }

    void append(std::span<const std::byte> bytes)
    {
        const std::uint64_t after = m_data + bytes.size();
        if (!m_is_rf64 && plain_header - riff_head + after + after % 2 > m_limit)
            become_rf64();
        m_data -= m_data % align(); // a frame that was cut by a full disk
        std::uint64_t done = 0;
        try {
            write_at(m_file.get(), bytes, header_bytes() + m_data, done);
        } catch (const Failure&) {
            m_data += done;
            throw;
        }
        m_data += done;
        write_header(m_file.get()); // a program that is ended from outside leaves a file to play
    }

    void write_header(int file) const
    {
        const Header header = m_is_rf64 ? rf64(m_format, m_data) : plain(m_format, m_data);
        write_at(file, header.bytes(), 0);
    }

    void become_rf64()
    {
        // Few file systems can insert; on the others the sound moves once, when it is that long.
        if (::fallocate(m_file.get(), FALLOC_FL_INSERT_RANGE, 0, inserted) != 0)
            move_back(m_file.get(), plain_header + m_data);
        m_is_rf64 = true;
        write_header(m_file.get());
    }

    void complete(int file) const
    {
        const std::uint64_t end = header_bytes() + m_data;
        write_header(file);
        if (::ftruncate(file, static_cast<off_t>(end)) != 0)
            fail("completing a wave file");
        const std::byte pad{};
        if (m_data % 2 == 1)
            write_at(file, std::span(&pad, 1), end);
    }

    PcmFormat m_format;
    std::uint64_t m_limit;
    FileDescriptor m_file;
    std::vector<std::byte> m_gathered;
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
