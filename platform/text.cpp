#include "platform/text.h"

#include <cstdint>

namespace tessavox {

namespace {

constexpr char32_t replacement = 0xFFFD;

void append_utf16(std::u16string& out, char32_t point)
{
    if (point < 0x10000) {
        out.push_back(static_cast<char16_t>(point));
        return;
    }
    point -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (point >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
}

void append_utf8(std::string& out, char32_t point)
{
    const auto tail
        = [&](int shift) { out.push_back(static_cast<char>(0x80 | ((point >> shift) & 0x3F))); };
    if (point < 0x80) {
        out.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (point >> 6)));
        tail(0);
    } else if (point < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (point >> 12)));
        tail(6);
        tail(0);
    } else {
        out.push_back(static_cast<char>(0xF0 | (point >> 18)));
        tail(12);
        tail(6);
        tail(0);
    }
}

struct LeadByte {
    int tails; // -1: cannot begin a character
    char32_t bits;
    char32_t smallest; // anything below is an overlong form
};

LeadByte lead_of(unsigned char byte)
{
    if (byte < 0x80)
        return { 0, byte, 0 };
    if (byte >= 0xC2 && byte < 0xE0)
        return { 1, byte & 0x1Fu, 0x80 };
    if (byte >= 0xE0 && byte < 0xF0)
        return { 2, byte & 0x0Fu, 0x800 };
    if (byte >= 0xF0 && byte < 0xF5)
        return { 3, byte & 0x07u, 0x10000 };
    return { -1, 0, 0 };
}

} // namespace

std::u16string to_utf16(std::string_view utf8)
{
    std::u16string out;
    out.reserve(utf8.size());
    std::size_t at = 0;
    while (at < utf8.size()) {
        const LeadByte lead = lead_of(static_cast<unsigned char>(utf8[at]));
        ++at;
        char32_t point = lead.bits;
        int missing = lead.tails;
        while (missing > 0 && at < utf8.size()
            && (static_cast<unsigned char>(utf8[at]) & 0xC0) == 0x80) {
            point = (point << 6) | (static_cast<unsigned char>(utf8[at]) & 0x3F);
            ++at;
            --missing;
        }
        const bool good = missing == 0 && point >= lead.smallest && point <= 0x10FFFF
            && !(point >= 0xD800 && point <= 0xDFFF);
        append_utf16(out, good ? point : replacement);
    }
    return out;
}

std::string to_utf8(std::u16string_view utf16)
{
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t at = 0; at < utf16.size(); ++at) {
        char32_t point = utf16[at];
        const bool high = point >= 0xD800 && point < 0xDC00;
        if (high && at + 1 < utf16.size() && utf16[at + 1] >= 0xDC00 && utf16[at + 1] < 0xE000) {
            point = 0x10000 + ((point - 0xD800) << 10) + (utf16[at + 1] - 0xDC00u);
            ++at;
        } else if (point >= 0xD800 && point < 0xE000) {
            point = replacement;
        }
        append_utf8(out, point);
    }
    return out;
}

} // namespace tessavox
