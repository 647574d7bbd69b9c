#include "platform/rtf/text_document.h"

#include "platform/rtf/document_builder.h"

#include <QFont>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <span>

namespace tessavox::rtf {
namespace {

constexpr int char_offset_property = QTextFormat::UserProperty + 1; // twips
constexpr int first_line_property = QTextFormat::UserProperty + 2; // twips, of a bulleted paragraph
constexpr double twips_per_pixel = 15; // 1440 twips and 96 logical pixels an inch
constexpr double twips_per_point = 20;
// The toolkit looks at a whole list each time that it grows, so many short ones stand for one.
constexpr int longest_list = 10;

std::int32_t to_twips(double pixels)
{
    return std::clamp(
        static_cast<std::int32_t>(std::lround(pixels * twips_per_pixel)), -most_twips, most_twips);
}

QString to_qstring(std::u16string_view text)
{
    return QString(
        reinterpret_cast<const QChar*>(text.data()), static_cast<qsizetype>(text.size()));
}

struct AlignmentRow {
    Alignment ours;
    Qt::Alignment theirs;
};

constexpr AlignmentRow alignments[] = {
    { Alignment::left, Qt::AlignLeft },
    { Alignment::center, Qt::AlignHCenter },
    { Alignment::right, Qt::AlignRight },
    { Alignment::justified, Qt::AlignJustify },
};

QTextBlockFormat to_block_format(const ParagraphFormat& format)
{
    QTextBlockFormat block;
    block.setLeftMargin(format.left_indent / twips_per_pixel);
    block.setRightMargin(format.right_indent / twips_per_pixel);
    block.setTopMargin(format.space_before / twips_per_pixel);
    block.setBottomMargin(format.space_after / twips_per_pixel);
    block.setAlignment(alignments[static_cast<std::size_t>(format.alignment)].theirs);
    // A bullet hangs before the text by itself, so a hanging first line would hang twice.
    if (format.bullet)
        block.setProperty(first_line_property, format.first_line_indent);
    else
        block.setTextIndent(format.first_line_indent / twips_per_pixel);
    return block;
}

QTextListFormat to_list_format(const ParagraphFormat& format)
{
    constexpr std::int32_t room_for_bullet_twips = 180;
    QTextListFormat list;
    list.setStyle(QTextListFormat::ListDisc);
    list.setIndent(format.left_indent < room_for_bullet_twips ? 1 : 0);
    return list;
}

QTextCharFormat to_char_format(const CharacterFormat& format, const std::vector<std::string>& fonts)
{
    QTextCharFormat out;
    if (format.font != no_font)
        out.setFontFamilies(
            { QString::fromStdString(fonts[static_cast<std::size_t>(format.font)]) });
    out.setFontPointSize(format.half_points / 2.0);
    out.setFontWeight(format.bold ? QFont::Bold : QFont::Normal);
    if (format.italic)
        out.setFontItalic(true);
    if (format.underline)
        out.setFontUnderline(true);
    if (format.strike)
        out.setFontStrikeOut(true);
    if (format.color != automatic_color)
        out.setForeground(QColor::fromRgb(static_cast<QRgb>(format.color)));
    if (format.background != automatic_color)
        out.setBackground(QColor::fromRgb(static_cast<QRgb>(format.background)));
    if (format.script != Script::normal)
        out.setVerticalAlignment(format.script == Script::super ? QTextCharFormat::AlignSuperScript
                                                                : QTextCharFormat::AlignSubScript);
    if (format.capitals != Capitals::as_written)
        out.setFontCapitalization(
            format.capitals == Capitals::all ? QFont::AllUppercase : QFont::SmallCaps);
    if (format.offset_twips != 0)
        set_char_offset(out, format.offset_twips);
    return out;
}

/// Puts paragraphs in one after the other.
class Inserter {
public:
    Inserter(QTextCursor& cursor, const Document& document)
        : m_cursor(cursor)
        , m_document(document)
    {
        for (const CharacterFormat& format : document.character_formats)
            m_formats.push_back(to_char_format(format, document.fonts));
        for (const ParagraphFormat& format : document.paragraph_formats)
            m_block_formats.push_back(to_block_format(format));
    }

    void insert()
    {
        const bool has_neighbours = m_cursor.block().length() > 1;
        const bool splits_paragraph = has_neighbours && m_document.paragraphs.size() > 1;
        const ParagraphFormat own_format = paragraph_format(m_cursor.block());
        const QTextCharFormat own_mark = m_cursor.blockCharFormat();
        if (!has_neighbours)
            m_cursor.setBlockCharFormat(m_formats[m_document.paragraphs.front().mark]);
        if (!has_neighbours || splits_paragraph)
            set_paragraph_format(
                m_cursor, m_document.paragraph_formats[m_document.paragraphs.front().format]);
        insert_paragraphs();
        // A paragraph's format belongs to its end, and this one's end is the old paragraph's.
        if (splits_paragraph) {
            set_paragraph_format(m_cursor, own_format);
            m_cursor.setBlockCharFormat(own_mark);
        }
    }

private:
    // All paragraphs come before the text in them: the toolkit keeps its pieces in a tree that is
    // half as deep inside as where it grows at its end.
    void insert_paragraphs()
    {
        const int start = m_cursor.position();
        for (const Paragraph& paragraph : std::span(m_document.paragraphs).subspan(1))
            insert_block(paragraph);
        m_cursor.setPosition(start);
        insert_text();
    }

    void insert_text()
    {
        const std::u16string_view text = m_document.text;
        std::size_t at = 0;
        const Run* run = m_document.runs.data();
        for (const Paragraph& paragraph : m_document.paragraphs) {
            if (&paragraph != &m_document.paragraphs.front())
                m_cursor.setPosition(m_cursor.position() + 1);
            for (const Run* end = run + paragraph.runs; run != end; ++run) {
                m_cursor.insertText(
                    to_qstring(text.substr(at, run->length)), m_formats[run->format]);
                at += run->length;
            }
            ++at;
        }
    }

    void insert_block(const Paragraph& paragraph)
    {
        QTextBlockFormat block = m_block_formats[paragraph.format];
        const ParagraphFormat& format = m_document.paragraph_formats[paragraph.format];
        const bool continues_list
            = m_list && m_list_format == paragraph.format && m_list_length < longest_list;
        if (format.bullet && continues_list) {
            block.setObjectIndex(m_list->objectIndex());
            ++m_list_length;
        }
        m_cursor.insertBlock(block, m_formats[paragraph.mark]);
        if (!format.bullet) {
            m_list = nullptr;
        } else if (!continues_list) {
            m_list = m_cursor.createList(to_list_format(format));
            m_list_format = paragraph.format;
            m_list_length = 1;
        }
    }

    QTextCursor& m_cursor;
    const Document& m_document;
    std::vector<QTextCharFormat> m_formats;
    std::vector<QTextBlockFormat> m_block_formats;
    QTextList* m_list = nullptr; // the one that the next paragraph may belong to
    std::uint32_t m_list_format = 0;
    int m_list_length = 0;
};

/// Takes paragraphs out one after the other.
class Extractor {
public:
    Extractor(const QTextDocument& document, int begin, int end)
        : m_toolkit(document)
        , m_builder(static_cast<std::size_t>(end - begin) + 1)
        , m_begin(begin)
        , m_end(end)
    {
        m_text = document.toRawText();
    }

    Document extract()
    {
        QTextBlock block = m_toolkit.findBlock(m_begin);
        for (;;) {
            add_text_of(block);
            const QTextBlock next = block.next();
            if (!next.isValid() || next.position() > m_end)
                return m_builder.finish(
                    paragraph_format(block), mark_of(block), LastParagraph::open);
            m_builder.end_paragraph(paragraph_format(block), mark_of(block));
            block = next;
        }
    }

private:
    void add_text_of(const QTextBlock& block)
    {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int begin = std::max(fragment.position(), m_begin);
            const int end = std::min(fragment.position() + fragment.length(), m_end);
            if (begin >= end)
                continue;
            const std::u16string_view piece(
                reinterpret_cast<const char16_t*>(m_text.constData()) + begin,
                static_cast<std::size_t>(end - begin));
            const auto format = number_of(fragment.charFormatIndex(), fragment.charFormat());
            m_builder.add(piece, format, {});
        }
    }

    std::uint32_t mark_of(const QTextBlock& block)
    {
        return number_of(block.charFormatIndex(), block.charFormat());
    }

    /// The builder's number for a format; the toolkit's number for it stands in for a comparison.
    std::uint32_t number_of(int index, const QTextCharFormat& format)
    {
        const auto place = static_cast<std::size_t>(std::max(index, 0));
        if (place >= m_numbers.size())
            m_numbers.resize(place + 1, -1);
        if (m_numbers[place] < 0)
            m_numbers[place] = m_builder.format(to_character_format(format));
        return static_cast<std::uint32_t>(m_numbers[place]);
    }

    CharacterFormat to_character_format(const QTextCharFormat& given)
    {
        const QFont font = given.font().resolve(m_toolkit.defaultFont());
        CharacterFormat format;
        format.font = m_builder.font(font.families().value(0).toStdString());
        const double points = font.pointSizeF() > 0
            ? font.pointSizeF()
            : font.pixelSize() * twips_per_pixel / twips_per_point;
        format.half_points
            = std::clamp(static_cast<std::int32_t>(std::lround(points * 2)), 1, most_half_points);
        format.bold = font.bold();
        format.italic = font.italic();
        format.underline = font.underline();
        format.strike = font.strikeOut();
        const auto capitals = font.capitalization();
        format.capitals = capitals == QFont::AllUppercase ? Capitals::all
            : capitals == QFont::SmallCaps                ? Capitals::small
                                                          : Capitals::as_written;
        const auto color_of = [](const QBrush& brush) {
            return static_cast<std::int32_t>(brush.color().rgb() & 0xFFFFFF);
        };
        if (given.foreground().style() != Qt::NoBrush)
            format.color = color_of(given.foreground());
        if (given.hasProperty(QTextFormat::BackgroundBrush))
            format.background = color_of(given.background());
        const auto place = given.verticalAlignment();
        format.script = place == QTextCharFormat::AlignSuperScript ? Script::super
            : place == QTextCharFormat::AlignSubScript             ? Script::sub
                                                                   : Script::normal;
        format.offset_twips = char_offset(given);
        return format;
    }

    const QTextDocument& m_toolkit;
    QString m_text;
    DocumentBuilder m_builder;
    std::vector<std::int64_t> m_numbers; // by the toolkit's own; -1: not asked for yet
    int m_begin;
    int m_end;
};

} // namespace

std::unique_ptr<QTextDocument> to_text_document(const Document& document)
{
    auto out = std::make_unique<QTextDocument>();
    out->setUndoRedoEnabled(false);
    QTextCursor cursor(out.get());
    insert(cursor, document);
    return out;
}

void insert(QTextCursor& cursor, const Document& document)
{
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    Inserter(cursor, document).insert();
    cursor.endEditBlock();
}

Document from_text_document(const QTextDocument& document)
{
    return Extractor(document, 0, document.characterCount() - 1).extract();
}

Document from_selection(const QTextCursor& cursor)
{
    return Extractor(*cursor.document(), cursor.selectionStart(), cursor.selectionEnd()).extract();
}

void set_char_offset(QTextCharFormat& format, std::int32_t twips)
{
    constexpr double line_height_of_size = 1.2;
    constexpr double usual_points = 12;
    const double points = format.fontPointSize() > 0 ? format.fontPointSize() : usual_points;
    format.setProperty(char_offset_property, twips);
    format.setBaselineOffset(100 * twips / (twips_per_point * points * line_height_of_size));
}

std::int32_t char_offset(const QTextCharFormat& format)
{
    return std::clamp(format.intProperty(char_offset_property), -most_twips, most_twips);
}

void set_paragraph_format(QTextCursor& cursor, const ParagraphFormat& format)
{
    cursor.beginEditBlock();
    cursor.setBlockFormat(to_block_format(format)); // which takes it out of its list
    if (format.bullet)
        cursor.createList(to_list_format(format));
    cursor.endEditBlock();
}

ParagraphFormat paragraph_format(const QTextBlock& block)
{
    const QTextBlockFormat given = block.blockFormat();
    ParagraphFormat format;
    format.bullet = block.textList() != nullptr;
    format.left_indent = to_twips(given.leftMargin());
    format.right_indent = to_twips(given.rightMargin());
    format.space_before = std::max(to_twips(given.topMargin()), 0);
    format.space_after = std::max(to_twips(given.bottomMargin()), 0);
    format.first_line_indent = given.hasProperty(first_line_property)
        ? std::clamp(given.intProperty(first_line_property), -most_twips, most_twips)
        : to_twips(given.textIndent());
    for (const AlignmentRow& row : alignments) {
        if (given.alignment().testFlags(row.theirs))
            format.alignment = row.ours;
    }
    return format;
}

} // namespace tessavox::rtf
