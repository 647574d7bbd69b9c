// Plain text as files have it: in what encoding, with what line ends, with a mark before it or not.
#pragma once

#include <string>
#include <string_view>

namespace tessavox {

enum class LineEnd { lf, crlf, cr };

/// All that a file says besides its text. The default is what a new file gets.
struct TextFileForm {
    std::string encoding = "UTF-8"; // as ICU names it
    bool has_mark = false; // a byte order mark, U+FEFF, stands before the text and is no part of it
    LineEnd line_end = LineEnd::lf;

    friend bool operator==(const TextFileForm&, const TextFileForm&) = default;
};

struct PlainText {
    std::u16string text; // every line end is LF
    TextFileForm form; // with the most frequent line end, where a file has several
};

/// Any bytes are some text. The encoding is that of the mark; without one UTF-8 where the bytes are
/// valid, UTF-16 where every other byte is often zero, otherwise what the letters suggest, and
/// windows-1252 in the end. @throws Failure for more than most_text_bytes, most_text_paragraphs or
/// most_paragraph_units in a line.
PlainText decode_plain_text(std::string_view bytes);

struct EncodedText {
    std::string bytes;
    TextFileForm form; // the wanted one, unless the text doesn't fit its encoding
};

/// The bytes of a file. Text that has other characters than the wanted encoding goes out as UTF-8,
/// so that nothing is lost. Lone surrogates become U+FFFD.
EncodedText encode_plain_text(std::u16string_view text, const TextFileForm& wanted);

} // namespace tessavox
