#include "platform/failure.h"
#include "platform/text.h"
#include "platform/text_files/plain_text.h"
#include "platform/text_limits.h"

#include <gtest/gtest.h>

namespace tessavox {
namespace {

using namespace std::string_literals;

constexpr const char* english = "He said \"fine\".\nNobody answered.\n";
constexpr const char* german
    = "Größe, Übermut, ähnlich: alle Menschen sind frei und gleich an Würde.\n";
constexpr const char* quoted = "He said “it’s fine” – naïve café.\n";
constexpr const char* polish
    = "Wszyscy ludzie rodzą się wolni i równi pod względem swej godności i swych praw.\n";
constexpr const char* czech
    = "Všichni lidé rodí se svobodní a sobě rovní co do důstojnosti a práv. Šťastný život, kůň.\n";
constexpr const char* russian
    = "Все люди рождаются свободными и равными в своем достоинстве и правах.\n";
constexpr const char* greek = "Όλοι οι άνθρωποι γεννιούνται ελεύθεροι και ίσοι στην αξιοπρέπεια.\n";
constexpr const char* turkish
    = "Bütün insanlar hür, haysiyet ve haklar bakımından eşit doğarlar. Şeker ağacı.\n";
constexpr const char* japanese
    = "すべての人間は、生まれながらにして自由であり、かつ、尊厳と権利とについて平等である。\n";
constexpr const char* chinese = "人人生而自由，在尊严和权利上一律平等。他们赋有理性和良心。\n";
constexpr const char* korean
    = "모든 인간은 태어날 때부터 자유로우며 그 존엄과 권리에 있어 동등하다.\n";

TEST(PlainText, KeepsItsEncodingOnTheWayInAndOut)
{
    const struct {
        const char* text;
        TextFileForm written;
        std::string found; // the encoding; empty: the one that was written
    } rows[] = {
        { "", {}, "" },
        { english, {}, "" },
        { english, { "windows-1252" }, "UTF-8" },
        { russian, {}, "" },
        { "\U0001F600", {}, "" },
        { russian, { "UTF-8", true, LineEnd::crlf }, "" },
        { german, { "UTF-16LE", true, LineEnd::crlf }, "" },
        { "", { "UTF-16LE", true }, "" },
        { chinese, { "UTF-16BE", true }, "" },
        { japanese, { "UTF-32LE", true, LineEnd::cr }, "" },
        { japanese, { "UTF-32BE", true }, "" },
        { chinese, { "GB18030", true }, "" },
        { english, { "UTF-16LE", false, LineEnd::crlf }, "" },
        { german, { "UTF-16BE" }, "" },
        { russian, { "UTF-16LE" }, "" },
        { german, { "windows-1252", false, LineEnd::crlf }, "" },
        { quoted, { "windows-1252" }, "" },
        { "café", { "windows-1252" }, "" },
        { german, { "windows-1250" }, "windows-1252" },
        { german, { "ISO-8859-1" }, "windows-1252" },
        { polish, { "windows-1250" }, "" },
        { polish, { "ISO-8859-2", false, LineEnd::cr }, "" },
        { czech, { "windows-1250" }, "" },
        { czech, { "ISO-8859-2" }, "" },
        { russian, { "windows-1251" }, "" },
        { russian, { "KOI8-R" }, "" },
        { russian, { "ISO-8859-5" }, "" },
        { russian, { "IBM866" }, "" },
        { greek, { "windows-1253" }, "" },
        { turkish, { "windows-1254" }, "" },
        { japanese, { "windows-932" }, "" },
        { japanese, { "EUC-JP" }, "" },
        { chinese, { "GB18030" }, "" },
        { korean, { "windows-949" }, "" },
    };
    for (const auto& row : rows) {
        const EncodedText file = encode_plain_text(to_utf16(row.text), row.written);
        EXPECT_EQ(file.form, row.written) << row.text;
        const PlainText read = decode_plain_text(file.bytes);
        const std::string& expected = row.found.empty() ? row.written.encoding : row.found;
        EXPECT_EQ(read.form.encoding, expected) << row.text;
        EXPECT_EQ(read.form.has_mark, row.written.has_mark) << expected << row.text;
        EXPECT_EQ(to_utf8(read.text), row.text) << expected;
        EXPECT_EQ(encode_plain_text(read.text, read.form).bytes, file.bytes) << expected;
    }
}

TEST(PlainText, IsReadWhateverItsBytesAre)
{
    const std::tuple<std::string, std::u16string, TextFileForm> rows[] = {
        { "a\r\nb\nc\r\n", u"a\nb\nc\n", { "UTF-8", false, LineEnd::crlf } },
        { "a\rb\r\r\nc\r", u"a\nb\n\nc\n", { "UTF-8", false, LineEnd::cr } },
        { "\xEF\xBB\xBF\xFF\xE9", u"\uFFFD\uFFFD", { "UTF-8", true } },
        { "\xED\xA0\x80", u"\u00ED\u00A0\u20AC", { "windows-1252" } }, // half a pair is no UTF-8
        { "\xC0\xAF", u"\u00C0\u00AF", { "windows-1252" } }, // nor is an overlong form
        { "a\x81\x8D\xFF", u"a\u0081\u008D\u00FF", { "windows-1252" } },
        { "one\0two, and then three more words"s, u"one\0two, and then three more words"s, {} },
        { "\xFF\xFE"
          "a"s,
            u"\uFFFD", { "UTF-16LE", true } },
        { "\xFF\xFE\x00\xD8"
          "a\0"s,
            u"\uFFFDa", { "UTF-16LE", true } },
    };
    for (const auto& [bytes, text, form] : rows) {
        const PlainText read = decode_plain_text(bytes);
        EXPECT_EQ(read.text, text) << bytes;
        EXPECT_EQ(read.form, form) << bytes << " as " << read.form.encoding;
    }
}

TEST(PlainText, GoesOutAsUtf8WhereItDoesNotFit)
{
    const TextFileForm wanted{ "windows-1252", false, LineEnd::crlf };
    for (const std::u16string text : { u"caf\u00E9\n\u0414", u"\U0001F600", u"\uFF21" }) {
        const EncodedText file = encode_plain_text(text, wanted);
        EXPECT_EQ(file.form, (TextFileForm{ "UTF-8", false, LineEnd::crlf }));
        EXPECT_EQ(decode_plain_text(file.bytes).text, text);
    }
    EXPECT_EQ(encode_plain_text(u"caf\u00E9\n", wanted).bytes, "caf\xE9\r\n");
}

TEST(PlainText, IsRefusedWhereNoPaneCouldShowIt)
{
    EXPECT_THROW(decode_plain_text(std::string(most_text_bytes + 1, 'a')), Failure);
    EXPECT_THROW(decode_plain_text(std::string(most_text_paragraphs, '\n')), Failure);
    EXPECT_EQ(decode_plain_text(std::string(most_text_paragraphs - 1, '\r')).text.size(),
        most_text_paragraphs - 1);
    EXPECT_THROW(encode_plain_text(u"a", { "no such encoding" }), Failure);
}

} // namespace
} // namespace tessavox
