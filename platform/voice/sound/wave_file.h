// Wave files, written and read.
#pragma once

#include "platform/voice/sound/pcm_format.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace tessavox::voice {

/// Writes a PCM wave file; past 4 GiB it goes on as RF64. The header of a smaller one is the plain
/// 44 bytes. Some hundred thousand bytes at a time reach the file, and the header tells of them.
class WaveWriter {
public:
    virtual ~WaveWriter() = default;
    /// Appends whole frames. @throws Failure if the disk refuses them; what is written stays.
    virtual void write(std::span<const std::byte> frames) = 0;
    /// Completes the header. Called by the destructor too, which swallows a failure.
    /// @throws Failure if the disk refuses it.
    virtual void close() = 0;
    virtual std::uint64_t frames() const = 0;
};

/// The most bytes that the 32-bit sizes of a plain wave file can count behind its first 8.
inline constexpr std::uint64_t plain_wave_limit = 0xFFFF'FFFF;

/// Creates or empties `path`. Past `limit` bytes the file turns into an RF64 one.
/// @throws Failure if it can't be written or is no regular file.
std::unique_ptr<WaveWriter> create_wave_file(
    const std::string& path, PcmFormat format, std::uint64_t limit = plain_wave_limit);

/// Reads any usual PCM wave file (8 to 32 bit, float, one or more channels, RF64) as 16-bit sound.
class WaveReader {
public:
    virtual ~WaveReader() = default;
    virtual int rate() const = 0;
    virtual int channels() const = 0; // 1 or 2: files of more channels are mixed down
    virtual std::uint64_t frames() const = 0; // as far as the file is really there
    /// Reads whole interleaved frames, as many as are at hand; returns how many, 0 at the end.
    virtual std::size_t read(std::span<std::int16_t> samples) = 0;
};

/// @throws Failure if `path` is missing, no regular file, or no PCM wave file. Never hangs: a pipe
/// or a device is refused before it is opened for reading.
std::unique_ptr<WaveReader> open_wave_file(const std::string& path);

} // namespace tessavox::voice
