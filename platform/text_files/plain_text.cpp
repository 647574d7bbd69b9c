#include "platform/text_files/plain_text.h"

#include "platform/failure.h"
#include "platform/text.h"
#include "platform/text_files/encoding_guess.h"
#include "platform/text_limits.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

namespace tessavox {
namespace {

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;
using namespace std::string_view_literals;

struct MarkRow {
    std::string_view bytes;
    const char* encoding;
};

// The longer ones first: that of UTF-32 begins as that of UTF-16 does.
constexpr MarkRow marks[] = {
    { "\xFF\xFE\0\0"sv, "UTF-32LE" },
    { "\0\0\xFE\xFF"sv, "UTF-32BE" },
    { "\x84\x31\x95\x33"sv, "GB18030" },
    { "\xEF\xBB\xBF"sv, "UTF-8" },
    { "\xFF\xFE"sv, "UTF-16LE" },
    { "\xFE\xFF"sv, "UTF-16BE" },
};

constexpr char16_t byte_order_mark = 0xFEFF;

Converter open_converter(const std::string& encoding)
{
    UErrorCode status = U_ZERO_ERROR;
    Converter converter(ucnv_open(encoding.c_str(), &status), &ucnv_close);
    if (!converter)
        throw Failure("text can't be converted from or to " + encoding);
    return converter;
}

/// Nothing if the bytes are no valid UTF-8.
std::optional<std::u16string> from_valid_utf8(std::string_view bytes)
{
    std::u16string text(bytes.size(), u'\0');
    std::int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF8(text.data(), static_cast<std::int32_t>(text.size()), &length, bytes.data(),
        static_cast<std::int32_t>(bytes.size()), &status);
    if (U_FAILURE(status))
        return std::nullopt;
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::u16string from_encoding(std::string_view bytes, const std::string& encoding)
{
    const Converter converter = open_converter(encoding);
    std::u16string text(bytes.size() + 1, u'\0'); // no encoding has a unit for less than a byte
    UErrorCode status = U_ZERO_ERROR;
    const auto length
        = ucnv_toUChars(converter.get(), text.data(), static_cast<std::int32_t>(text.size()),
            bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    text.resize(static_cast<std::size_t>(
        std::clamp<std::int64_t>(length, 0, static_cast<std::int64_t>(text.size()))));
    return text;
}

std::u16string decode(std::string_view bytes, TextFileForm& form)
{
    for (const MarkRow& mark : marks) {
        if (bytes.starts_with(mark.bytes)) {
            form.encoding = mark.encoding;
            form.has_mark = true;
            return from_encoding(bytes.substr(mark.bytes.size()), form.encoding);
        }
    }
    auto utf8 = from_valid_utf8(bytes);
    const std::string utf16 = utf16_by_zero_bytes(bytes, utf8.has_value());
    if (utf8 && utf16.empty())
        return std::move(*utf8);
    form.encoding = !utf16.empty() ? utf16 : encoding_by_letters(bytes);
    return from_encoding(bytes, form.encoding);
}

/// Makes every line end an LF. Returns the most frequent kind, and how many there were of all.
struct LineEnds {
    LineEnd usual = LineEnd::lf;
    std::size_t count = 0;
    std::size_t longest_line = 0; // units
};

LineEnds unify_line_ends(std::u16string& text)
{
    std::array<std::size_t, 3> counts{}; // by LineEnd
    std::size_t kept = 0;
    std::size_t line_start = 0;
    std::size_t longest_line = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t unit = text[i];
        if (unit == u'\r') {
            const bool has_lf = i + 1 < text.size() && text[i + 1] == u'\n';
            ++counts[static_cast<std::size_t>(has_lf ? LineEnd::crlf : LineEnd::cr)];
            i += has_lf ? 1 : 0;
            unit = u'\n';
        } else if (unit == u'\n') {
            ++counts[static_cast<std::size_t>(LineEnd::lf)];
        }
        text[kept++] = unit;
        if (unit == u'\n') {
            longest_line = std::max(longest_line, kept - line_start);
            line_start = kept;
        }
    }
    text.resize(kept);
    longest_line = std::max(longest_line, kept - line_start);
    const auto usual = std::max_element(counts.begin(), counts.end()) - counts.begin();
    return { static_cast<LineEnd>(usual), counts[0] + counts[1] + counts[2], longest_line };
}

std::u16string with_line_ends(std::u16string_view text, const TextFileForm& form)
{
    constexpr std::u16string_view ends[] = { u"\n", u"\r\n", u"\r" }; // by LineEnd
    const std::u16string_view end = ends[static_cast<std::size_t>(form.line_end)];
    std::u16string out;
    out.reserve(text.size() + text.size() / 16 + 1);
    if (form.has_mark)
        out.push_back(byte_order_mark);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t line_end = std::min(text.find(u'\n', at), text.size());
        out.append(text.substr(at, line_end - at));
        if (line_end < text.size())
            out.append(end);
        at = line_end + 1;
    }
    return out;
}

/// Nothing if the encoding lacks a character of the text.
std::optional<std::string> to_encoding(std::u16string_view text, const std::string& encoding)
{
    const Converter converter = open_converter(encoding);
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setFromUCallBack(
        converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    ucnv_setFallback(converter.get(), false); // characters that only look alike are others
    std::string bytes;
    std::array<char, 65'536> piece;
    const char16_t* source = text.data();
    const char16_t* const end = source + text.size();
    do {
        status = U_ZERO_ERROR;
        char* target = piece.data();
        ucnv_fromUnicode(converter.get(), &target, piece.data() + piece.size(), &source, end,
            nullptr, true, &status);
        bytes.append(piece.data(), target);
    } while (status == U_BUFFER_OVERFLOW_ERROR);
    return U_SUCCESS(status) ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace

PlainText decode_plain_text(std::string_view bytes)
{
    if (bytes.size() > most_text_bytes)
        throw Failure("the text is larger than 64 MiB");
    PlainText plain;
    plain.text = decode(bytes, plain.form);
    const LineEnds ends = unify_line_ends(plain.text);
    if (ends.count >= most_text_paragraphs)
        throw Failure("the text has more than a million paragraphs");
    if (ends.longest_line > most_paragraph_units)
        throw Failure("a line of the text is too long");
    plain.form.line_end = ends.usual;
    return plain;
}

EncodedText encode_plain_text(std::u16string_view text, const TextFileForm& wanted)
{
    const std::u16string out = with_line_ends(text, wanted);
    if (wanted.encoding == TextFileForm().encoding)
        return { to_utf8(out), wanted };
    if (auto bytes = to_encoding(out, wanted.encoding))
        return { std::move(*bytes), wanted };
    TextFileForm instead = wanted;
    instead.encoding = TextFileForm().encoding;
    return { to_utf8(out), instead };
}

} // namespace tessavox
