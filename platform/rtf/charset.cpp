#include "platform/rtf/charset.h"

#include <algorithm>
#include <iterator>
#include <unicode/ucnv.h>

namespace tessavox::rtf {
namespace {

struct CharsetRow {
    std::int32_t charset;
    CodePage code_page;
};

constexpr CharsetRow charsets[] = {
    { 0, 1252 },
    { 77, 10000 },
    { 78, 10001 },
    { 79, 10003 },
    { 80, 10008 },
    { 81, 10002 },
    { 83, 10005 },
    { 84, 10004 },
    { 85, 10006 },
    { 86, 10081 },
    { 87, 10021 },
    { 88, 10029 },
    { 89, 10007 },
    { 128, 932 },
    { 129, 949 },
    { 130, 1361 },
    { 134, 936 },
    { 136, 950 },
    { 161, 1253 },
    { 162, 1254 },
    { 163, 1258 },
    { 177, 1255 },
    { 178, 1256 },
    { 186, 1257 },
    { 204, 1251 },
    { 222, 874 },
    { 238, 1250 },
    { 254, 437 },
    { 255, 850 },
};

struct CodePageRow {
    CodePage code_page;
    const char* converter; // its name in ICU
};

constexpr CodePageRow code_pages[] = {
    { 437, "ibm-437" },
    { 737, "ibm-737" },
    { 775, "ibm-775" },
    { 850, "ibm-850" },
    { 852, "ibm-852" },
    { 855, "ibm-855" },
    { 857, "ibm-857" },
    { 858, "ibm-858" },
    { 860, "ibm-860" },
    { 861, "ibm-861" },
    { 862, "ibm-862" },
    { 863, "ibm-863" },
    { 864, "ibm-864" },
    { 865, "ibm-865" },
    { 866, "ibm-866" },
    { 869, "ibm-869" },
    { 874, "windows-874" },
    { 932, "windows-932" },
    { 936, "windows-936" },
    { 949, "windows-949" },
    { 950, "windows-950" },
    { 1250, "windows-1250" },
    { 1251, "windows-1251" },
    { 1253, "windows-1253" },
    { 1254, "windows-1254" },
    { 1255, "windows-1255" },
    { 1256, "windows-1256" },
    { 1257, "windows-1257" },
    { 1258, "windows-1258" },
    { 10000, "macintosh" },
    { 10001, "windows-932" },
    { 10002, "windows-950" },
    { 10003, "windows-949" },
    { 10006, "x-mac-greek" },
    { 10007, "x-mac-cyrillic" },
    { 10008, "windows-936" },
    { 10021, "windows-874" },
    { 10029, "x-mac-centraleurroman" },
    { 10081, "x-mac-turkish" },
    { 20866, "KOI8-R" },
    { 21866, "KOI8-U" },
    { 28591, "ISO-8859-1" },
    { 28592, "ISO-8859-2" },
    { 28595, "ISO-8859-5" },
    { 28597, "ISO-8859-7" },
    { 28599, "ISO-8859-9" },
    { 28605, "ISO-8859-15" },
    { 54936, "GB18030" },
    { 65001, "UTF-8" },
};

constexpr std::uint8_t first_sign = 0x20;

// The encoding of the font Symbol, as Unicode's mapping of Adobe's symbol set has it; the pieces of
// tall brackets have got characters of their own since. 0: no sign.
constexpr char16_t symbols[] = {
    0x0020,
    0x0021,
    0x2200,
    0x0023,
    0x2203,
    0x0025,
    0x0026,
    0x220B,
    0x0028,
    0x0029,
    0x2217,
    0x002B,
    0x002C,
    0x2212,
    0x002E,
    0x002F,
    0x0030,
    0x0031,
    0x0032,
    0x0033,
    0x0034,
    0x0035,
    0x0036,
    0x0037,
    0x0038,
    0x0039,
    0x003A,
    0x003B,
    0x003C,
    0x003D,
    0x003E,
    0x003F,
    0x2245,
    0x0391,
    0x0392,
    0x03A7,
    0x0394,
    0x0395,
    0x03A6,
    0x0393,
    0x0397,
    0x0399,
    0x03D1,
    0x039A,
    0x039B,
    0x039C,
    0x039D,
    0x039F,
    0x03A0,
    0x0398,
    0x03A1,
    0x03A3,
    0x03A4,
    0x03A5,
    0x03C2,
    0x03A9,
    0x039E,
    0x03A8,
    0x0396,
    0x005B,
    0x2234,
    0x005D,
    0x22A5,
    0x005F,
    0x203E,
    0x03B1,
    0x03B2,
    0x03C7,
    0x03B4,
    0x03B5,
    0x03C6,
    0x03B3,
    0x03B7,
    0x03B9,
    0x03D5,
    0x03BA,
    0x03BB,
    0x00B5,
    0x03BD,
    0x03BF,
    0x03C0,
    0x03B8,
    0x03C1,
    0x03C3,
    0x03C4,
    0x03C5,
    0x03D6,
    0x03C9,
    0x03BE,
    0x03C8,
    0x03B6,
    0x007B,
    0x007C,
    0x007D,
    0x223C,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0,
    0x20AC,
    0x03D2,
    0x2032,
    0x2264,
    0x2044,
    0x221E,
    0x0192,
    0x2663,
    0x2666,
    0x2665,
    0x2660,
    0x2194,
    0x2190,
    0x2191,
    0x2192,
    0x2193,
    0x00B0,
    0x00B1,
    0x2033,
    0x2265,
    0x00D7,
    0x221D,
    0x2202,
    0x2022,
    0x00F7,
    0x2260,
    0x2261,
    0x2248,
    0x2026,
    0x23D0,
    0x23AF,
    0x21B5,
    0x2135,
    0x2111,
    0x211C,
    0x2118,
    0x2297,
    0x2295,
    0x2205,
    0x2229,
    0x222A,
    0x2283,
    0x2287,
    0x2284,
    0x2282,
    0x2286,
    0x2208,
    0x2209,
    0x2220,
    0x2207,
    0x00AE,
    0x00A9,
    0x2122,
    0x220F,
    0x221A,
    0x22C5,
    0x00AC,
    0x2227,
    0x2228,
    0x21D4,
    0x21D0,
    0x21D1,
    0x21D2,
    0x21D3,
    0x25CA,
    0x2329,
    0x00AE,
    0x00A9,
    0x2122,
    0x2211,
    0x239B,
    0x239C,
    0x239D,
    0x23A1,
    0x23A2,
    0x23A3,
    0x23A7,
    0x23A8,
    0x23A9,
    0x23AA,
    0,
    0x232A,
    0x222B,
    0x2320,
    0x23AE,
    0x2321,
    0x239E,
    0x239F,
    0x23A0,
    0x23A4,
    0x23A5,
    0x23A6,
    0x23AB,
    0x23AC,
    0x23AD,
};

struct Dingbat {
    std::uint8_t byte;
    char16_t character;
};

// What lists and letters really use of the font Wingdings, with the characters that look like it.
constexpr Dingbat dingbats[] = {
    { 0x28, 0x260E },
    { 0x2A, 0x2709 },
    { 0x4A, 0x263A },
    { 0x4C, 0x2639 },
    { 0x6C, 0x25CF },
    { 0x6D, 0x274D },
    { 0x6E, 0x25A0 },
    { 0x6F, 0x25A1 },
    { 0x71, 0x2751 },
    { 0x72, 0x2752 },
    { 0x75, 0x25C6 },
    { 0x76, 0x2756 },
    { 0x77, 0x2B25 },
    { 0x9E, 0x00B7 },
    { 0x9F, 0x2022 },
    { 0xA1, 0x25CB },
    { 0xA7, 0x25AA },
    { 0xA8, 0x25FB },
    { 0xAB, 0x2605 },
    { 0xD8, 0x27A2 },
    { 0xDF, 0x2190 },
    { 0xE0, 0x2192 },
    { 0xE1, 0x2191 },
    { 0xE2, 0x2193 },
    { 0xE8, 0x2794 },
    { 0xF0, 0x21E8 },
    { 0xFB, 0x2718 },
    { 0xFC, 0x2714 },
    { 0xFE, 0x2611 },
};

constexpr std::int32_t symbol_charset = 2;
constexpr char16_t private_signs = 0xF000;

} // namespace

CodePage code_page_of_charset(std::int32_t charset, const std::string& family, CodePage otherwise)
{
    if (charset == symbol_charset)
        return family == "Symbol" ? symbol_font : dingbat_font;
    const auto* row = std::find_if(std::begin(charsets), std::end(charsets),
        [&](const CharsetRow& one) { return one.charset == charset; });
    return row == std::end(charsets) ? otherwise : row->code_page;
}

char16_t sign_of(std::uint8_t byte, CodePage code_page)
{
    char16_t sign = 0;
    if (code_page == symbol_font) {
        const auto place = static_cast<std::size_t>(byte - first_sign);
        sign = byte >= first_sign && place < std::size(symbols) ? symbols[place] : 0;
    } else {
        for (const Dingbat& dingbat : dingbats)
            sign = dingbat.byte == byte ? dingbat.character : sign;
    }
    if (sign == 0 && (byte <= first_sign))
        return byte;
    return sign != 0 ? sign : static_cast<char16_t>(private_signs + byte);
}

Decoder::Decoder() = default;
Decoder::~Decoder() = default;

void Decoder::Closer::operator()(UConverter* converter) const
{
    ucnv_close(converter);
}

UConverter& Decoder::converter(CodePage code_page)
{
    const auto* row = std::find_if(std::begin(code_pages), std::end(code_pages),
        [&](const CodePageRow& one) { return one.code_page == code_page; });
    const char* name = row == std::end(code_pages) ? "windows-1252" : row->converter;
    auto& converter = m_converters[name];
    if (!converter) {
        UErrorCode status = U_ZERO_ERROR;
        converter.reset(ucnv_open(name, &status));
    }
    if (!converter) {
        UErrorCode status = U_ZERO_ERROR;
        converter.reset(ucnv_open("ISO-8859-1", &status)); // built into ICU's code, so always there
    }
    return *converter;
}

std::u16string Decoder::decode(std::string_view bytes, CodePage code_page)
{
    std::u16string text;
    if (code_page < 0) {
        for (const char byte : bytes)
            text.push_back(sign_of(static_cast<std::uint8_t>(byte), code_page));
        return text;
    }
    UConverter& from = converter(code_page);
    text.resize(bytes.size() * 2); // two units are the most that one byte has ever meant
    UErrorCode status = U_ZERO_ERROR;
    const auto length = ucnv_toUChars(&from, text.data(), static_cast<std::int32_t>(text.size()),
        bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    text.resize(std::min(text.size(), static_cast<std::size_t>(std::max(length, 0))));
    return text;
}

} // namespace tessavox::rtf
