#include "platform/text_files/encoding_guess.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <uchardet/uchardet.h>
#include <unicode/uchar.h>
#include <unicode/ucnv.h>

namespace tessavox {
namespace {

constexpr std::size_t sample_bytes = 65'536;
constexpr const char* usual_encoding = "windows-1252";

struct NameRow {
    std::string_view detector;
    const char* converter;
};

// Where the detector's name means nothing to the converters, or less than what is in use.
constexpr NameRow names[] = {
    { "EUC-KR", "windows-949" },
    { "MAC-CENTRALEUROPE", "x-mac-centraleurroman" },
    { "MAC-CYRILLIC", "x-mac-cyrillic" },
    { "SHIFT_JIS", "windows-932" },
    { "UHC", "windows-949" },
    { "WINDOWS-1251", "windows-1251" },
    { "WINDOWS-1258", "windows-1258" },
};

struct RelativesRow {
    const char* windows;
    const char* iso;
};

// Pairs for the same languages, which the detector takes for each other. The first of each has
// letters or quotes where the second has control characters.
constexpr RelativesRow relatives[] = {
    { "windows-1252", "ISO-8859-1" },
    { "windows-1250", "ISO-8859-2" },
    { "windows-1253", "ISO-8859-7" },
    { "windows-1254", "ISO-8859-9" },
    { "windows-1255", "ISO-8859-8" },
    { "windows-1256", "ISO-8859-6" },
    { "windows-1257", "ISO-8859-13" },
};

std::uint8_t byte_of(char byte)
{
    return static_cast<std::uint8_t>(byte);
}

/// The part of the text around its first letter beyond ASCII: before that nothing can be learnt.
std::string_view sample_of(std::string_view bytes)
{
    constexpr std::size_t before = 1024;
    const auto is_beyond_ascii = [](char byte) { return byte_of(byte) >= 0x80; };
    const auto first = static_cast<std::size_t>(
        std::find_if(bytes.begin(), bytes.end(), is_beyond_ascii) - bytes.begin());
    return bytes.substr(first - std::min(first, before), sample_bytes);
}

std::string detected(std::string_view sample)
{
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(
        uchardet_new(), &uchardet_delete);
    uchardet_handle_data(detector.get(), sample.data(), sample.size());
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
}

/// What each byte means in an encoding of single bytes.
using Letters = std::array<char16_t, 256>;

Letters letters_of(const char* encoding)
{
    Letters letters{};
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
        ucnv_open(encoding, &status), &ucnv_close);
    for (std::size_t byte = 0x80; converter && byte < letters.size(); ++byte) {
        const char one = static_cast<char>(byte);
        status = U_ZERO_ERROR;
        ucnv_reset(converter.get());
        ucnv_toUChars(converter.get(), &letters[byte], 1, &one, 1, &status);
    }
    return letters;
}

/// How often each byte occurs in the text.
using Counts = std::array<std::size_t, 256>;

Counts counts_of(std::string_view bytes)
{
    Counts counts{};
    for (const char byte : bytes)
        ++counts[byte_of(byte)];
    return counts;
}

bool read_alike(const Counts& counts, const Letters& left, const Letters& right)
{
    for (std::size_t byte = 0x80; byte < counts.size(); ++byte) {
        if (counts[byte] > 0 && left[byte] != right[byte])
            return false;
    }
    return true;
}

std::size_t letters_read(const Counts& counts, const Letters& letters)
{
    std::size_t sum = 0;
    for (std::size_t byte = 0x80; byte < counts.size(); ++byte)
        sum += u_isalpha(letters[byte]) ? counts[byte] : 0;
    return sum;
}

/// Of two encodings for the same languages the one in which the text has more letters; the one of
/// Windows, if that says nothing or where the other has control characters.
const char* likelier(const RelativesRow& pair, const Counts& counts)
{
    const bool has_control_characters = std::any_of(
        counts.begin() + 0x80, counts.begin() + 0xA0, [](auto count) { return count; });
    const bool is_iso = !has_control_characters
        && letters_read(counts, letters_of(pair.iso))
            > letters_read(counts, letters_of(pair.windows));
    return is_iso ? pair.iso : pair.windows;
}

bool is_known(const std::string& encoding)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(
        ucnv_open(encoding.c_str(), &status), &ucnv_close);
    return converter != nullptr;
}

} // namespace

std::string utf16_by_zero_bytes(std::string_view bytes, bool is_valid_utf8)
{
    const std::string_view sample = bytes.substr(0, sample_bytes);
    std::size_t zeros[2] = {};
    for (std::size_t i = 0; i < sample.size(); ++i)
        zeros[i % 2] += sample[i] == '\0';
    // Scripts other than the Latin one have such zeros in blanks and line ends only.
    const std::size_t share = is_valid_utf8 ? 8 : 50;
    constexpr std::size_t stray_share = 20;
    const std::size_t pairs = sample.size() / 2;
    const std::size_t most = std::max(zeros[0], zeros[1]);
    if (bytes.size() % 2 != 0 || most == 0 || most * share < pairs
        || std::min(zeros[0], zeros[1]) * stray_share > most)
        return {};
    return zeros[1] > zeros[0] ? "UTF-16LE" : "UTF-16BE";
}

std::string encoding_by_letters(std::string_view bytes)
{
    std::string encoding = detected(sample_of(bytes));
    for (const NameRow& row : names) {
        if (row.detector == encoding)
            encoding = row.converter;
    }
    if (encoding.empty() || !is_known(encoding))
        return usual_encoding;
    const Counts counts = counts_of(bytes);
    for (const RelativesRow& pair : relatives) {
        if (ucnv_compareNames(encoding.c_str(), pair.windows) != 0
            && ucnv_compareNames(encoding.c_str(), pair.iso) != 0)
            continue;
        encoding = likelier(pair, counts);
        if (read_alike(counts, letters_of(encoding.c_str()), letters_of(usual_encoding)))
            return usual_encoding;
    }
    return encoding;
}

} // namespace tessavox
