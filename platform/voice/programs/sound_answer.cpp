#include "platform/voice/programs/sound_answer.h"

#include "platform/failure.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>

namespace tessavox::voice {

namespace {

constexpr std::uint64_t longest_seconds = 120;
constexpr int lowest_rate = 8000;
constexpr int highest_rate = 48000;

std::string_view next_field(std::string_view& line)
{
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::string_view field = line.substr(0, line.find(' '));
    line.remove_prefix(field.size());
    return field;
}

std::uint64_t number_of(std::string_view field)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (error != std::errc() || end != field.data() + field.size())
        throw Failure(
            "its header has " + std::string(field.substr(0, 20)) + " where a number should be");
    return number;
}

void check(std::uint64_t rate, std::uint64_t frames)
{
    if (rate < lowest_rate || rate > highest_rate)
        throw Failure("its sound has " + std::to_string(rate) + " Hz, which is none of "
            + std::to_string(lowest_rate) + " to " + std::to_string(highest_rate));
    if (frames == 0)
        throw Failure("its sound is empty");
    if (frames > rate * longest_seconds)
        throw Failure("its sound is longer than " + std::to_string(longest_seconds) + " s");
}

std::vector<std::int16_t> samples_of(std::span<const std::byte> bytes)
{
    std::vector<std::int16_t> samples(bytes.size() / sizeof(std::int16_t));
    if (!samples.empty())
        std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
    return samples;
}

/// The chunks of a wave file (RIFF, https://www.mmsp.ece.mcgill.ca/Documents/AudioFormats/WAVE).
class WaveChunks {
public:
    explicit WaveChunks(std::span<const std::byte> file)
        : m_rest(file)
    {
        if (text(0) != "RIFF" || text(8) != "WAVE")
            throw Failure("its sound is no wave file");
        m_rest = m_rest.subspan(12);
    }

    /// What the next chunk of this name holds.
    std::span<const std::byte> find(std::string_view name)
    {
        for (;;) {
            const std::string_view found = text(0);
            const std::size_t length = number<std::uint32_t>(4);
            m_rest = m_rest.subspan(8);
            if (length > m_rest.size())
                throw Failure("its wave file is broken off");
            const auto chunk = m_rest.first(length);
            m_rest = m_rest.subspan(std::min(length + length % 2, m_rest.size()));
            if (found == name)
                return chunk;
        }
    }

    template <class Number> Number number(std::size_t at) const { return in<Number>(m_rest, at); }
    template <class Number> static Number in(std::span<const std::byte> bytes, std::size_t at)
    {
        Number number = 0;
        if (at + sizeof number > bytes.size())
            throw Failure("its wave file is broken off");
        std::memcpy(&number, bytes.data() + at, sizeof number);
        return number;
    }

private:
    std::string_view text(std::size_t at) const
    {
        number<std::uint32_t>(at); // that it is there
        return { reinterpret_cast<const char*>(m_rest.data()) + at, 4 };
    }

    std::span<const std::byte> m_rest;
};

EngineSound read_wave(std::span<const std::byte> file)
{
    constexpr std::uint16_t plain = 1;
    constexpr std::uint16_t extensible = 0xFFFE;
    WaveChunks chunks(file);
    const auto format = chunks.find("fmt ");
    const auto kind = WaveChunks::in<std::uint16_t>(format, 0);
    const auto channels = WaveChunks::in<std::uint16_t>(format, 2);
    const auto rate = WaveChunks::in<std::uint32_t>(format, 4);
    const auto bits = WaveChunks::in<std::uint16_t>(format, 14);
    if (channels != 1)
        throw Failure("its sound has " + std::to_string(channels) + " channels instead of one");
    if ((kind != plain && kind != extensible) || bits != 16)
        throw Failure("its sound has " + std::to_string(bits) + " bits instead of 16");
    EngineSound sound;
    sound.samples = samples_of(chunks.find("data"));
    check(rate, sound.samples.size());
    sound.sample_rate = static_cast<int>(rate);
    return sound;
}

EngineSound read_frames(std::span<const std::byte> answer)
{
    const std::string_view text(reinterpret_cast<const char*>(answer.data()), answer.size());
    const std::size_t end = std::min(text.find('\n'), text.size());
    FramesHeader header = parse_frames_header(text.substr(0, end));
    EngineSound sound{ header.sample_rate,
        samples_of(answer.subspan(std::min(end + 1, text.size()))), std::move(header.words) };
    if (sound.samples.size() != header.frames)
        throw Failure("its sound is broken off");
    return sound;
}

} // namespace

FramesHeader parse_frames_header(std::string_view line)
{
    if (next_field(line) != "frames")
        throw Failure("its output begins with no header \"frames RATE COUNT\"");
    const std::uint64_t rate = number_of(next_field(line));
    const std::uint64_t frames = number_of(next_field(line));
    check(rate, frames);
    FramesHeader header{ static_cast<int>(rate), static_cast<std::size_t>(frames), {} };
    std::uint64_t last = 0;
    while (!(line = line.substr(std::min(line.find_first_not_of(" \r"), line.size()))).empty()) {
        const std::string_view field = next_field(line);
        header.words.push_back(field == "-" ? std::nullopt : std::optional(number_of(field)));
        const std::uint64_t start = header.words.back().value_or(last);
        if (start < last || start > frames)
            throw Failure("its words begin in no rising order within the sound");
        last = start;
    }
    return header;
}

EngineSound read_sound(CommandMode mode, std::span<const std::byte> answer, int expected_rate)
{
    EngineSound sound = mode == CommandMode::frames ? read_frames(answer) : read_wave(answer);
    if (expected_rate != 0 && sound.sample_rate != expected_rate)
        throw Failure("its sound has " + std::to_string(sound.sample_rate) + " Hz instead of "
            + std::to_string(expected_rate));
    return sound;
}

} // namespace tessavox::voice
