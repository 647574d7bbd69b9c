#include "platform/failure.h"
#include "platform/voice/sound/wave_file.h"
#include "tests/platform/files/test_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

namespace tessavox::voice {
namespace {

using Bytes = std::string;

struct WaveFile : testing::Test {
    Bytes content() const { return folder.content("sound.wav"); }

    const TestFolder folder;
    const std::string path = folder / "sound.wav";
};

template <class Number> Bytes little(Number number)
{
    Bytes bytes;
    for (std::size_t i = 0; i < sizeof number; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

constexpr auto u32 = little<std::uint32_t>;
constexpr auto u16 = little<std::uint16_t>;

struct Shape {
    std::uint16_t tag = 1;
    std::uint16_t channels = 1;
    std::uint32_t rate = 16000;
    std::uint16_t bits = 16;
};

/// A plain file; `told` is the size of the sound that its header tells, if that isn't the true one.
Bytes wave(const Shape& shape, const Bytes& data, std::optional<std::uint32_t> told = {})
{
    const auto align = static_cast<std::uint16_t>(shape.channels * shape.bits / 8);
    const std::uint32_t size = told.value_or(static_cast<std::uint32_t>(data.size()));
    return "RIFF" + u32(36 + size) + "WAVE" + "fmt " + u32(16) + u16(shape.tag)
        + u16(shape.channels) + u32(shape.rate) + u32(shape.rate * align) + u16(align)
        + u16(shape.bits) + "data" + u32(size) + data;
}

template <class Number> Bytes raw(std::initializer_list<Number> numbers)
{
    Bytes bytes(numbers.size() * sizeof(Number), '\0');
    std::memcpy(bytes.data(), std::data(numbers), bytes.size());
    return bytes;
}

std::span<const std::byte> as_frames(const Bytes& bytes)
{
    return std::as_bytes(std::span(bytes));
}

/// Samples that differ from place to place.
Bytes noise(std::size_t size)
{
    Bytes bytes(size, '\0');
    std::uint32_t state = 1;
    for (char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

std::vector<std::int16_t> read_all(WaveReader& reader)
{
    std::vector<std::int16_t> all;
    std::vector<std::int16_t> block(static_cast<std::size_t>(1000 * reader.channels()));
    while (const std::size_t frames = reader.read(block))
        all.insert(all.end(), block.begin(),
            block.begin() + static_cast<long>(frames) * reader.channels());
    return all;
}

TEST_F(WaveFile, IsWrittenByTheBookInEveryFormatAndReadBack)
{
    const std::pair<int, Shape> rows[] = { { 4, { 1, 1, 8000, 8 } }, { 5, { 1, 2, 8000, 8 } },
        { 6, { 1, 1, 8000, 16 } }, { 11, { 1, 2, 11025, 16 } }, { 12, { 1, 1, 12000, 8 } },
        { 25, { 1, 2, 24000, 8 } }, { 39, { 1, 2, 48000, 16 } } };
    for (const auto& [type, shape] : rows) {
        SCOPED_TRACE(type);
        const PcmFormat format = PcmFormat::from_type(type);
        EXPECT_EQ(format.type(), type);
        const auto frame = static_cast<std::size_t>(format.block_align());
        const Bytes data = noise(frame * 1001);
        const auto writer = create_wave_file(path, format);
        writer->write(as_frames(data).first(frame));
        writer->write(as_frames(data).subspan(frame));
        EXPECT_EQ(writer->frames(), 1001U);
        writer->close();
        Bytes whole = wave(shape, data);
        if (data.size() % 2 == 1) // padded
            whole = whole.replace(4, 4, u32(36 + 1002)) + '\0';
        EXPECT_EQ(content(), whole);

        const auto reader = open_wave_file(path);
        EXPECT_EQ(reader->rate(), format.rate);
        EXPECT_EQ(reader->channels(), format.channels);
        EXPECT_EQ(reader->frames(), 1001U);
        std::vector<std::int16_t> samples(static_cast<std::size_t>(1001 * format.channels));
        if (format.bits == 8)
            std::ranges::transform(data, samples.begin(),
                [](char byte) { return (static_cast<unsigned char>(byte) - 128) * 256; });
        else
            std::memcpy(samples.data(), data.data(), data.size());
        EXPECT_EQ(read_all(*reader), samples);
    }
    for (const int type : { -1, 3, 40 })
        EXPECT_THROW(PcmFormat::from_type(type), Failure) << type;
    create_wave_file(path, { .rate = 8000, .bits = 8, .channels = 1 })->close();
    EXPECT_EQ(content(), wave({ 1, 1, 8000, 8 }, "")) << "an empty file is whole";
}

// The folder in memory has no way to put room in front of a file, so that its sound moves.
TEST_F(WaveFile, PastTheLimitItGoesOnAsRf64)
{
    const TestFolder in_memory("/dev/shm");
    for (const TestFolder* place : { &folder, &in_memory }) {
        const Bytes data = noise(6'000'000);
        const auto writer = create_wave_file(
            *place / "long.wav", { .rate = 48000, .bits = 16, .channels = 2 }, 5'500'000);
        std::size_t at = 0;
        for (const std::size_t piece : { 4, 1000, 300'000, 5'000'000, 100'000, 598'996 }) {
            writer->write(as_frames(data).subspan(at, piece));
            at += piece;
        }
        EXPECT_EQ(writer->frames(), data.size() / 4);
        writer->close();
        const Bytes bytes = place->content("long.wav");
        EXPECT_EQ(bytes.substr(0, 16), "RF64" + u32(0xFFFF'FFFF) + "WAVEds64");
        EXPECT_EQ(bytes.substr(20, 28),
            little<std::uint64_t>(bytes.size() - 8) + little<std::uint64_t>(data.size())
                + little<std::uint64_t>(data.size() / 4) + u32(0));
        EXPECT_TRUE(bytes.ends_with("data" + u32(0xFFFF'FFFF) + data));
        EXPECT_EQ(open_wave_file(*place / "long.wav")->frames(), data.size() / 4);
    }
    for (const bool beyond : { false, true }) { // the limit itself is still plain
        create_wave_file(path, { .rate = 8000, .bits = 16, .channels = 1 }, 1036)
            ->write(as_frames(noise(beyond ? 1002 : 1000)));
        EXPECT_EQ(content().substr(0, 4), beyond ? "RF64" : "RIFF");
        EXPECT_EQ(open_wave_file(path)->frames(), beyond ? 501U : 500U);
    }
}

TEST_F(WaveFile, AFullDiskIsAFailureAndWhatIsWrittenStays)
{
    const PcmFormat format{ .rate = 8000, .bits = 16, .channels = 1 };
    const Bytes data = noise(1'000'000);
    const auto writer = create_wave_file(path, format);
    {
        const SizeLimit full(600'001); // within a sample
        writer->write(as_frames(data).first(300'000));
        EXPECT_THROW(writer->write(as_frames(data).subspan(300'000)), Failure);
        EXPECT_THROW(writer->write(as_frames(data).first(400'000)), Failure);
    }
    EXPECT_EQ(writer->frames(), 299'978U);
    writer->close();
    EXPECT_EQ(fs::file_size(path), 600'000U);
    EXPECT_EQ(open_wave_file(path)->frames(), 299'978U);
}

TEST_F(WaveFile, UsualKindsOfPcmAreReadAs16BitAlsoWhereTheHeaderLies)
{
    const float infinite = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::tuple<const char*, Bytes, int, std::vector<std::int16_t>> rows[] = {
        { "more told than there is", wave({}, raw<std::int16_t>({ 1, 2, 3 }), 1000), 1,
            { 1, 2, 3 } },
        { "float",
            wave({ 3, 1, 8000, 32 }, raw<float>({ 0.5F, -0.25F, 3, -3, infinite, -infinite, nan })),
            1, { 16384, -8192, 32767, -32768, 32767, -32768, 0 } },
        { "three channels", wave({ 1, 3 }, raw<std::int16_t>({ 100, 200, 300 })), 2, { 200, 250 } },
    };
    for (const auto& [kind, bytes, channels, samples] : rows) {
        SCOPED_TRACE(kind);
        folder.write("sound.wav", bytes);
        const auto reader = open_wave_file(path);
        EXPECT_EQ(reader->channels(), channels);
        EXPECT_EQ(reader->frames(), samples.size() / static_cast<std::size_t>(channels));
        EXPECT_EQ(read_all(*reader), samples);
    }
}

} // namespace
} // namespace tessavox::voice
