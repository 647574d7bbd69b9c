#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/writer.h"
#include "platform/text.h"
#include "tests/platform/rtf/described.h"

#include <gtest/gtest.h>

namespace tessavox::rtf {
namespace {

std::string repeated(const std::string& piece, std::size_t times)
{
    std::string out;
    while (times-- > 0)
        out += piece;
    return out;
}

struct Row {
    std::string rich_text;
    std::string expected;
};

TEST(RichText, GivesTheTextThatAReaderOfThePageSees)
{
    const Row rows[] = {
        // Characters in all their ways to be written.
        { " a\\par b\\line c\\tab d\\\n e\\\\\\{\\}\\~\\-\\_}",
            "a\nb\u2028c\td\n e\\{}\u00A0\u00AD\u2011" },
        { R"( \emdash\endash\bullet\lquote\rquote\ldblquote\rdblquote})",
            "—–•\u2018\u2019\u201C\u201D" },
        { "\\ansi \\'80 caf\\'e9\r\n!}", "€ café!" },
        { R"(\mac caf\'8e})", "café" },
        { R"(\ansi\ansicpg1251 \'c4\'e0})", "Да" },
        { "\\ansicpg65001 \xD0\x94\\'d0\\'b0}", "Да" },
        { R"(\ansicpg12345 \'e9})", "é" },
        // A double-byte character in all mixtures of bytes; its second byte may be a letter.
        { "{\\fonttbl{\\f0\\fcharset128 M;}}\\f0\\'82\\'a0\\'83A\\'83\r\n\\'40 x}", "あアァ x" },
        { R"(\deff3{\fonttbl{\f3\fcharset204 T;}{\f4\fcharset0 T;}}\'c4{\f4\'c4}\'c4})", "ДÄД" },
        { R"({\fonttbl\f1\fcharset204 T;\f2 T;}\f1\'c4\f2\'c4})", "ДÄ" },
        { R"({\fonttbl{\f7\cpg1253 T;}}\f7\'e1})", "α" },
        { R"({\fonttbl{\f2\fcharset2 Symbol;}{\f3\fcharset2 Wingdings;}}\f2 a\'b7\u-3999?\f3\'fc)"
          R"(\'e0\'ff\u-3876?})",
            "α•α✔→\uF0FF\uF0DC" },
        // Unicode, and the characters after it that are for older readers.
        { R"( \u1044?\u1072\'e0x\uc0\u1044x\uc2\u1044\tab\bin2 }}x})", "ДаxДxДx" },
        { R"({\uc3\u1044{a}}\u1044ab\u1044})", "ДaДbД" },
        { R"(\u1044\u1072\u1044?!})", "ДаД!" },
        { R"(\u-10179?\u-8704? \u-10179?{\b\u-8704?}\u128512?})", "😀 😀😀" },
        { R"(\u-10179?x\u-8704?\par\u-10179?\par})", "\uFFFDx\uFFFD\n\uFFFD" },
        { R"(\u0?\u-4?\u10?\u11?\u1?\u8233?\'0d\'0ax})", "\uFFFD\uFFFD\n\u2028\n\nx" },
        { R"( \u65536?\u1114111?\par\u-10179?})", "\U00010000\U0010FFFF\n\uFFFD" },
        { R"({\upr{Latin}{\*\ud{\u1044?}}} after})", "Д after" },
        // What isn't on the page.
        { R"( a{\*\unknown b{c}}{\unknown d}{\info{\title e}}{\pict\bin3 }}}f}g})", "adg" },
        { R"( a\v b\par c\v0 d{\deleted e}{\v f\plain g}})", "adg" },
        { R"({\header h\par}{\stylesheet{\s0 Normal;}}a{\footnote n}{\*\bkmkstart b}c})", "ac" },
        { R"({\field{\*\fldinst HYPERLINK "x"}{\fldrslt shown}} {\object{\*\objdata 00ff}{)"
          R"(\result too}}})",
            "shown too" },
        { R"( a{\shp{\*\shpinst\shpleft0{\sp{\sn x}{\sv 1}}{\shptxt in\par}}{\shprslt out}}b\par})",
            "a\nin\nb" },
        // Tables and lists.
        { R"(\trowd a\cell b\cell\row\trowd c\cell d\cell\row\pard e\par})", "a\tb\nc\td\ne" },
        { R"(\intbl a\nestcell b\nestcell{\*\nesttableprops\trowd\nestrow}{\nonesttables\par}c)"
          R"(\cell\row})",
            "a\tb\nc" },
        { R"({\pntext 1.\tab}one\par{\listtext\pard 2)\tab}two\par{\pntext\'b7\tab}x})",
            "1.\tone\n2)\ttwo\nx" },
        // One paragraph's end at the end of the text belongs to the last paragraph.
        { R"( a\par\par})", "a\n" },
        { R"( a\par b})", "a\nb" },
        { R"(})", "" },
        { R"(\par})", "" },
        { R"( a\page b\sect\sect c})", "a\nb\nc" },
        // What stands before and after, and what breaks off.
        { std::string(" a\0\x01 b", 6) + "}", "a b" },
        { " a{b\\", "ab" },
        { R"( a\')", "a" },
        { R"( a\'g1\'1}\u)", "ag11" },
        { R"( a\bin)", "a" },
    };
    for (const Row& row : rows) {
        const Document document = read_rich_text("{\\rtf1" + row.rich_text);
        EXPECT_EQ(to_utf8(document.text), row.expected) << row.rich_text;
        EXPECT_EQ(flaw_of(document), "") << row.rich_text;
    }
}

const std::string header = "{\\rtf1\\deff1{\\fonttbl{\\f0\\fswiss{\\*\\panose 02}Arial{\\*\\falt A}"
                           ";}{\\f1 DejaVu Sans;}{\\f2\\fcharset238 Times CE;}{\\f3\\fcharset128 "
                           "\\'82\\'6c;}}{\\colortbl;\\red255;\\green128\\blue1;}";

TEST(RichText, StandsBetweenBracesWhateverIsAroundThem)
{
    EXPECT_EQ(read_rich_text("\xEF\xBB\xBF\r\n {\\rtf1 a}{\\rtf1 b} c").text, u"a");
}

TEST(RichText, GivesEveryFormatWhereItBelongs)
{
    const Row rows[] = {
        { R"(\f0 a\f1 b\f2 c\f3 d\f9 e)", "[Arial]a[DejaVu Sans]b[Times]c[Ｍ]d[]e\n" },
        { R"(a\f0\b b{\plain c}d)", "[DejaVu Sans]a[Arial b]b[DejaVu Sans]c[Arial b]d\n" },
        { R"(\f9\b a\b0 b\i c\i0\ul d\ulnone\ulwave e\ul0\strike f\strike0\striked1 g)",
            "[b]a[]b[i]c[ul]de[strike]fg\n" },
        { R"(\f9\fs20 a\fs b\fs99999 c\fs-3 d)", "[fs20]a[]b[fs3276]c[]d\n" },
        { R"(\f9\cf1 a\cf2\highlight1 b\cf0\cb2 c\chcbpat9 d\cf-1 e)",
            "[#ff0000]a[#008001 on#ff0000]b[on#008001]c[]de\n" },
        { R"(\f9\super a\sub b\nosupersub c\up d\dn4 e\up0 f\up6\txoffset55 g\up9\txoffset55 h)",
            "[super]a[sub]b[]c[up60]d[up-40]e[]f[up55]g[up90]h\n" },
        { R"(\f9\caps a\scaps b\caps0 c)", "[caps]a[scaps]b[]c\n" },
        { R"(\f9\qc a\par b\pard\qr\par\qj\ri5\sb6\sa7 c\par\pard\li720\fi-360 d)",
            "(center)a\n(right)b\n(justified ri5 sb6 sa7)c\n(li720 fi-360)d\n" },
        { R"(\f9\li99999999\fi-99999999\sb-5 a)", "(li31680 fi-31680)a\n" },
        // Bullets as several programs write them.
        { R"(\f9\pard{\pntext\f2\'B7\tab}{\*\pn\pnlvlblt\pnf2{\pntxtb\'B7}}\fi-200\li200 a\par{)"
          R"(\pntext\'B7\tab}b\par\pard c\par)",
            "(bullet li200 fi-200)a\n(bullet li200 fi-200)b\nc\n" },
        { R"(\f9{\listtext\pard\plain\f2\'95\tab}\pard\fi-9\li9\ls1 a\par{\listtext o\tab}b\par{)"
          R"(\listtext a)\tab}c\par d\par)",
            "(bullet li9 fi-9)a\n(bullet li9 fi-9)b\n(li9 fi-9)a)\tc\n(li9 fi-9)d\n" },
        { R"(\f9{\b a\par}\par{\i\par})", "[b]a\n[]\n[i]\n" },
    };
    for (const Row& row : rows) {
        const Document document = read_rich_text(header + row.rich_text + "}");
        EXPECT_EQ(described(document), row.expected) << row.rich_text;
        EXPECT_EQ(described(read_rich_text(write_rich_text(document))), row.expected);
    }
}

TEST(RichText, OfAHostileKindEndsWithTheTextSoFar)
{
    constexpr std::size_t many = 100'000;
    const Row rows[] = {
        { repeated("{", many) + "deep", "deep" },
        { repeated("{", many) + repeated("}", many) + "out", "out" },
        { repeated("{\\b", many) + " deep" + repeated("}", many) + "x}y", "deepx" },
        { "a" + repeated("}", many), "a" },
        { "a\\bin999999999 b", "a" },
        { "a\\bin-5 b", "ab" },
        { "a\\bin3 {{}b{\\bin1 }}c", "abc" },
        { "\\uc0\\u65 \\uc999999999\\u66 " + repeated("x", 16) + "C\\uc-7\\u68 E", "ABCDE" },
        { "\\u" + repeated("9", many) + "x", "\uCA00" },
        { "a\\fs" + repeated("9", many) + " b\\fs-" + repeated("9", many) + " c", "abc" },
        { "a\\" + repeated("w", 5'000'000) + " b", "ab" },
        { "{\\fonttbl{\\f0 " + repeated("n", 5'000'000) + ";}}\\f0 a", "a" },
        { "{\\colortbl" + repeated(";", 5'000'000) + "}\\cf999999999 a", "a" },
        { "a" + repeated("\\'zz", 9) + std::string(many, '\0') + "b\\",
            "a" + repeated("zz", 9) + "b" },
        { "{\\listtext " + repeated("1", many) + "}a", repeated("1", 32) + "\ta" },
        { repeated("\\cell\\row", 3) + " a", "\n\n\na" },
    };
    for (const Row& row : rows) {
        const Document document = read_rich_text("{\\rtf1 " + row.rich_text);
        EXPECT_EQ(flaw_of(document), "");
        EXPECT_EQ(to_utf8(document.text), row.expected) << row.rich_text.substr(0, 40);
    }
}

TEST(RichText, OfMoreKindsThanAnyoneWritesKeepsItsTextAndTheFirstOfThem)
{
    std::string fonts = "{\\rtf1{\\fonttbl";
    std::string colors = "{\\rtf1{\\colortbl";
    std::string text_in_fonts;
    std::string text_in_colors;
    for (std::size_t i = 0; i < most_formats + 10; ++i) {
        const std::string number = std::to_string(i);
        fonts += "{\\f" + number + " F" + number + ";}";
        colors += "\\red" + std::to_string(i & 255) + "\\green" + std::to_string(i >> 8 & 255)
            + "\\blue" + std::to_string(i >> 16) + ";";
        text_in_fonts += "\\f" + number + " a";
        text_in_colors += "\\cf" + number + " a";
    }
    const Document in_fonts = read_rich_text(fonts + "}" + text_in_fonts);
    EXPECT_EQ(in_fonts.fonts.size(), most_fonts);
    EXPECT_EQ(in_fonts.text.size(), most_formats + 10);
    EXPECT_EQ(in_fonts.character_formats[in_fonts.runs.back().format].font, no_font);
    const Document in_colors = read_rich_text(colors + "}" + text_in_colors);
    EXPECT_EQ(in_colors.character_formats.size(), most_formats);
    EXPECT_EQ(in_colors.text.size(), most_formats + 10);
    EXPECT_EQ(in_colors.runs.back().format, 0u);
    const Document in_runs = read_rich_text("{\\rtf1 " + repeated("\\b a\\b0 a", most_runs));
    EXPECT_EQ(in_runs.runs.size(), most_runs);
    EXPECT_EQ(in_runs.text.size(), 2 * most_runs);
    EXPECT_EQ(flaw_of(in_runs), "");
}

} // namespace
} // namespace tessavox::rtf
