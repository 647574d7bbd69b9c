// The formats of the pane's selection, and the pane's own font.
#include "platform/failure.h"
#include "platform/qt/rich_text_pane.h"
#include "platform/qt/selection_formats.h"
#include "platform/qt/text_conversion.h"
#include "platform/rtf/text_document.h"

#include <QScopedValueRollback>
#include <QTextEdit>

namespace tessavox {

void QtRichTextPane::report_formatted()
{
    if (m_step)
        ++m_step->changes;
    report_change();
}

void QtRichTextPane::merge_format(const QTextCharFormat& format)
{
    QTextCursor cursor = this->cursor();
    const bool is_of_text = cursor.hasSelection();
    {
        const QScopedValueRollback formatting(m_text_stays, true);
        if (is_of_text)
            cursor.mergeCharFormat(format);
        else if (m_step)
            m_step->cursor.mergeCharFormat(format);
        else
            editor().mergeCurrentCharFormat(format);
    }
    if (is_of_text)
        report_formatted();
}

std::optional<bool> QtRichTextPane::SelBold() const
{
    const QFont usual = document().defaultFont();
    return common_format(cursor(),
        [&](const QTextCharFormat& format) { return format.font().resolve(usual).bold(); });
}

void QtRichTextPane::set_SelBold(bool bold)
{
    QTextCharFormat format;
    format.setFontWeight(bold ? QFont::Bold : QFont::Normal);
    merge_format(format);
}

std::optional<bool> QtRichTextPane::SelItalic() const
{
    const QFont usual = document().defaultFont();
    return common_format(cursor(),
        [&](const QTextCharFormat& format) { return format.font().resolve(usual).italic(); });
}

void QtRichTextPane::set_SelItalic(bool italic)
{
    QTextCharFormat format;
    format.setFontItalic(italic);
    merge_format(format);
}

std::optional<bool> QtRichTextPane::SelUnderline() const
{
    return common_format(
        cursor(), [](const QTextCharFormat& format) { return format.fontUnderline(); });
}

void QtRichTextPane::set_SelUnderline(bool underline)
{
    QTextCharFormat format;
    format.setFontUnderline(underline);
    merge_format(format);
}

std::optional<bool> QtRichTextPane::SelStrikeThru() const
{
    return common_format(
        cursor(), [](const QTextCharFormat& format) { return format.fontStrikeOut(); });
}

void QtRichTextPane::set_SelStrikeThru(bool strike)
{
    QTextCharFormat format;
    format.setFontStrikeOut(strike);
    merge_format(format);
}

std::optional<std::string> QtRichTextPane::SelFontName() const
{
    const QFont usual = document().defaultFont();
    return common_format(cursor(), [&](const QTextCharFormat& format) {
        return from_qt(format.font().resolve(usual).families().value(0));
    });
}

void QtRichTextPane::set_SelFontName(const std::string& name)
{
    if (name.empty())
        throw Failure("a font has to have a name");
    QTextCharFormat format;
    format.setFontFamilies({ to_qt(name) });
    merge_format(format);
}

std::optional<double> QtRichTextPane::SelFontSize() const
{
    const QFont usual = document().defaultFont();
    return common_format(cursor(),
        [&](const QTextCharFormat& format) { return format.font().resolve(usual).pointSizeF(); });
}

void QtRichTextPane::set_SelFontSize(double points)
{
    if (!(points > 0))
        throw Failure("text can't have the size " + std::to_string(points));
    QTextCharFormat format;
    format.setFontPointSize(points);
    merge_format(format);
    // How far text is raised is drawn as a share of its size.
    if (const auto offset = SelCharOffset(); offset && *offset != 0)
        set_SelCharOffset(*offset);
}

std::optional<std::int32_t> QtRichTextPane::SelColor() const
{
    return common_format(cursor(), [](const QTextCharFormat& format) {
        const QBrush brush = format.foreground();
        const QColor color = brush.color();
        return brush.style() == Qt::NoBrush ? automatic_color
                                            : RGB(color.red(), color.green(), color.blue());
    });
}

void QtRichTextPane::set_SelColor(std::int32_t color)
{
    QBrush brush; // none
    if (color != automatic_color)
        brush = QColor(color & 0xFF, (color >> 8) & 0xFF, (color >> 16) & 0xFF);
    QTextCharFormat format;
    format.setProperty(QTextFormat::ForegroundBrush, brush);
    merge_format(format);
}

std::optional<std::int32_t> QtRichTextPane::SelCharOffset() const
{
    return common_format(
        cursor(), [](const QTextCharFormat& format) { return rtf::char_offset(format); });
}

void QtRichTextPane::set_SelCharOffset(std::int32_t twips)
{
    const QFont usual = document().defaultFont();
    const auto offset_at = [&](const QTextCharFormat& given) {
        QTextCharFormat format;
        format.setFontPointSize(given.font().resolve(usual).pointSizeF());
        rtf::set_char_offset(format, twips);
        format.clearProperty(QTextFormat::FontPointSize);
        format.setVerticalAlignment(QTextCharFormat::AlignNormal);
        return format;
    };
    const QTextCursor selection = cursor();
    if (SelFontSize() || !selection.hasSelection())
        return merge_format(offset_at(first_format(selection)));
    std::vector<FormattedPiece> pieces;
    visit_pieces(selection, [&](const FormattedPiece& piece) {
        pieces.push_back(piece);
        return true;
    });
    {
        const QScopedValueRollback formatting(m_text_stays, true);
        QTextCursor cursor(selection.document());
        cursor.beginEditBlock();
        for (const FormattedPiece& piece : pieces) {
            cursor.setPosition(piece.start);
            cursor.setPosition(piece.start + piece.length, QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(offset_at(piece.format));
        }
        cursor.endEditBlock();
    }
    report_formatted();
}

template <class Alter> void QtRichTextPane::change_paragraphs(Alter&& alter)
{
    {
        const QScopedValueRollback formatting(m_text_stays, true);
        QTextCursor all(&document());
        all.beginEditBlock();
        for (const QTextBlock& block : paragraphs_of(cursor())) {
            rtf::ParagraphFormat format = rtf::paragraph_format(block);
            const rtf::ParagraphFormat before = format;
            alter(format);
            QTextCursor place(block);
            if (format != before)
                rtf::set_paragraph_format(place, format);
        }
        all.endEditBlock();
    }
    report_formatted();
}

std::optional<bool> QtRichTextPane::SelBullet() const
{
    const std::vector<QTextBlock> paragraphs = paragraphs_of(cursor());
    const bool first = paragraphs.front().textList() != nullptr;
    for (const QTextBlock& block : paragraphs) {
        if ((block.textList() != nullptr) != first)
            return std::nullopt;
    }
    return first;
}

void QtRichTextPane::set_SelBullet(bool bullet)
{
    change_paragraphs([&](rtf::ParagraphFormat& format) { format.bullet = bullet; });
}

std::optional<std::int32_t> QtRichTextPane::SelHangingIndent() const
{
    const std::vector<QTextBlock> paragraphs = paragraphs_of(cursor());
    const std::int32_t first = rtf::paragraph_format(paragraphs.front()).first_line_indent;
    for (const QTextBlock& block : paragraphs) {
        if (rtf::paragraph_format(block).first_line_indent != first)
            return std::nullopt;
    }
    return -first;
}

void QtRichTextPane::set_SelHangingIndent(std::int32_t twips)
{
    change_paragraphs([&](rtf::ParagraphFormat& format) {
        const std::int32_t first_line = format.left_indent + format.first_line_indent;
        format.left_indent = first_line + twips;
        format.first_line_indent = -twips;
    });
}

void QtRichTextPane::set_font(const QFont& font)
{
    const QScopedValueRollback formatting(m_text_stays, true);
    m_editor->setFont(font);
    m_lines.changed();
}

void QtRichTextPane::set_FontName(const std::string& name)
{
    if (name.empty())
        throw Failure("a font has to have a name");
    QFont font = m_editor->font();
    font.setFamilies({ to_qt(name) });
    set_font(font);
}

void QtRichTextPane::set_FontSize(double points)
{
    if (!(points > 0))
        throw Failure("a font can't have the size " + std::to_string(points));
    QFont font = m_editor->font();
    font.setPointSizeF(points);
    set_font(font);
}

void QtRichTextPane::set_FontBold(bool bold)
{
    QFont font = m_editor->font();
    font.setBold(bold);
    set_font(font);
}

} // namespace tessavox
