// What changes the text of the pane: the selection's text, files, searches and steps.
#include "platform/failure.h"
#include "platform/qt/pane_text.h"
#include "platform/qt/rich_text_pane.h"
#include "platform/qt/selection_formats.h"
#include "platform/qt/text_conversion.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/text_document.h"
#include "platform/rtf/writer.h"

#include <QScopedValueRollback>
#include <QTextEdit>

namespace tessavox {
namespace {

/// The bytes of a rich text that came as characters. They are ASCII by nature; what isn't is taken
/// for a byte where it can be one.
std::string bytes_of(const std::u16string& source)
{
    std::string bytes;
    bytes.reserve(source.size());
    for (const char16_t unit : source)
        bytes.push_back(unit <= 0xFF ? static_cast<char>(unit) : '?');
    return bytes;
}

} // namespace

template <class Edit> void QtRichTextPane::edit_selection(Edit&& edit)
{
    {
        const QScopedValueRollback editing(m_loading, true);
        QTextCursor cursor = this->cursor();
        cursor.beginEditBlock();
        edit(cursor);
        cursor.endEditBlock();
        put_cursor(cursor);
    }
    m_text.reset();
    if (m_step)
        ++m_step->changes;
    report_change();
    report_selection();
}

void QtRichTextPane::set_SelText(std::u16string text)
{
    const std::u16string fitting = fit_for_pane(std::move(text));
    const Selection replaced = selection();
    if (fitting.empty() && replaced.length == 0)
        return;
    wrap_what_comes(fitting);
    edit_selection([&](QTextCursor& cursor) {
        QTextCharFormat format = first_format(cursor);
        format.clearProperty(QTextFormat::ObjectType);
        cursor.insertText(as_qstring(fitting), format);
    });
    if (m_step && m_step->text)
        m_step->text->replace(static_cast<std::size_t>(replaced.start),
            static_cast<std::size_t>(replaced.length), fitting);
}

void QtRichTextPane::set_SelRTF(const std::u16string& source)
{
    const std::string bytes = bytes_of(source);
    if (!rtf::is_rich_text(bytes))
        return set_SelText(source);
    const rtf::Document document = rtf::read_rich_text(bytes, rtf::LastParagraph::open);
    edit_selection([&](QTextCursor& cursor) { rtf::insert(cursor, document); });
    if (m_step)
        m_step->text.reset();
}

std::int32_t QtRichTextPane::Find(const std::u16string& text, std::int32_t start, int options)
{
    constexpr std::size_t context = 256; // units before the start that tell whether a word is whole
    if (start < 0)
        throw Failure("a search can't start before the text");
    if (start > length())
        return -1;
    const auto begin = static_cast<std::size_t>(start);
    std::optional<std::size_t> found;
    if (!m_step) {
        found = m_search.find(Text().view(), text, begin, options);
    } else {
        if (!m_step->text)
            m_step->text.emplace(Text().view());
        const std::size_t from = begin - std::min(begin, context);
        found = m_search.find(m_step->text->from(from), text, begin - from, options);
        if (found)
            *found += from;
    }
    if (!found)
        return -1;
    const auto at = static_cast<std::int32_t>(*found);
    select(at, static_cast<int>(text.size()));
    return at;
}

FileStore& QtRichTextPane::files() const
{
    if (!m_files)
        throw Failure("this pane has no files");
    return *m_files;
}

void QtRichTextPane::LoadFile(const std::string& path, TextKind kind)
{
    const std::string bytes = files().read(path);
    if (kind == TextKind::rich) {
        show_document(rtf::to_text_document(rtf::read_rich_text(bytes)), {});
        m_file_form = {};
        return;
    }
    PlainText plain = decode_plain_text(bytes);
    show_plain(fit_for_pane(std::move(plain.text)));
    m_file_form = plain.form;
}

void QtRichTextPane::SaveFile(const std::string& path, TextKind kind)
{
    if (kind == TextKind::rich) {
        const std::string bytes = rtf::write_rich_text(rtf::from_text_document(document()));
        return files().write(path, bytes, Durability::durable);
    }
    const EncodedText encoded = encode_plain_text(Text().view(), m_file_form);
    files().write(path, encoded.bytes, Durability::durable);
    m_file_form = encoded.form;
}

void QtRichTextPane::begin_step()
{
    if (m_step) {
        ++m_step->depth;
        return;
    }
    const QTextCursor cursor = this->cursor();
    m_has_wide_selection = false;
    editor().setUpdatesEnabled(false); // what is half done can't be drawn
    m_step = Step{};
    m_step->cursor = cursor;
    m_step->cursor.beginEditBlock();
}

void QtRichTextPane::end_step()
{
    if (!m_step || --m_step->depth > 0)
        return;
    // Changes in many places make the toolkit lay out all between the first and the last one at
    // once, a second for a long book. What is laid out from its start comes bit by bit.
    constexpr std::size_t many_changes = 500;
    QTextCursor cursor = m_step->cursor;
    const bool has_changed = m_step->changes > 0;
    const bool lays_out_later = m_step->changes > many_changes;
    {
        const QScopedValueRollback ending(m_loading, true);
        document().setLayoutEnabled(!lays_out_later);
        cursor.endEditBlock();
        if (lays_out_later)
            wrap_what_comes(Text().view()); // small pieces may have become an endless word
        document().setLayoutEnabled(true);
        m_step.reset();
        editor().setUpdatesEnabled(true);
        if (cursor.hasSelection())
            select(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart());
        else if (!lays_out_later || !select_later(cursor.position(), 0))
            put_cursor(cursor);
    }
    if (has_changed)
        report_change();
    report_selection();
}

} // namespace tessavox
