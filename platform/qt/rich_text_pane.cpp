#include "platform/qt/rich_text_pane.h"

#include "platform/failure.h"
#include "platform/qt/caret_menu.h"
#include "platform/qt/child_widget.h"
#include "platform/qt/colours.h"
#include "platform/qt/copied_text.h"
#include "platform/qt/legible_text.h"
#include "platform/qt/page_text.h"
#include "platform/qt/pane_text.h"
#include "platform/qt/text_conversion.h"
#include "platform/qt/twips.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>

#include <algorithm>

namespace tessavox {
namespace {

int button_number(Qt::MouseButton button)
{
    return button == Qt::LeftButton ? 1 : button == Qt::RightButton ? 2 : 0;
}

int shift_state(Qt::KeyboardModifiers keys)
{
    return (keys.testFlag(Qt::ShiftModifier) ? 1 : 0) + (keys.testFlag(Qt::ControlModifier) ? 2 : 0)
        + (keys.testFlag(Qt::AltModifier) ? 4 : 0);
}

bool is_laid_out(const QTextBlock& block)
{
    return block.layout()->lineCount() > 0;
}

/// Or else the first edit would have everything laid out anew that was changed before the document
/// was shown.
void forget_what_changed(QTextDocument& document)
{
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    cursor.endEditBlock();
}

} // namespace

class QtRichTextPane::Editor : public QTextEdit {
public:
    explicit Editor(QtRichTextPane& pane)
        : m_pane(pane)
    {
        setAcceptRichText(false);
        setTabChangesFocus(false);
        setContextMenuPolicy(Qt::PreventContextMenu); // it opens on release, or by its key
        show_selection_always(true);
    }

    /// Without the focus the selection looks as it does with it, or else like ordinary text.
    void show_selection_always(bool always)
    {
        m_shows_selection_always = always;
        const QPalette colours = QApplication::palette(this);
        QPalette own;
        own.setColor(QPalette::Inactive, QPalette::Highlight,
            colours.color(QPalette::Active, always ? QPalette::Highlight : QPalette::Base));
        own.setColor(QPalette::Inactive, QPalette::HighlightedText,
            colours.color(QPalette::Active, always ? QPalette::HighlightedText : QPalette::Text));
        setPalette(own);
    }

protected:
    bool event(QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
        case QEvent::InputMethod:
        case QEvent::FocusIn:
            m_pane.show_wide_selection();
            break;
        case QEvent::ApplicationPaletteChange:
            show_selection_always(m_shows_selection_always);
            break;
        case QEvent::PaletteChange:
            if (show_legibly(*document(), 0, document()->characterCount(), palette()))
                document()->markContentsDirty(0, document()->characterCount());
            break;
        default:
            break;
        }
        return QTextEdit::event(event);
    }

    bool viewportEvent(QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::Drop)
            m_pane.show_wide_selection();
        return QTextEdit::viewportEvent(event);
    }

    /// Where the display is scaled, the edge of what is drawn anew, such as the blinking caret, may
    /// lie within a pixel. The toolkit draws letters there in the colour of what isn't selected,
    /// so let the edge be out of sight.
    void paintEvent(QPaintEvent* event) override
    {
        constexpr int margin = 2; // pixels
        QPaintEvent wider(event->rect().adjusted(-margin, -margin, margin, margin));
        QTextEdit::paintEvent(&wider);
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_F6 && !(event->modifiers() & ~Qt::ShiftModifier)) {
            leave(!event->modifiers());
        } else if (opens_menu(*event)) {
            button_up(Qt::RightButton, {}, QCursor::pos());
            bring_menu_to_caret(*this);
        } else if (m_pane.m_clipboard && event->matches(QKeySequence::Paste)) {
            insert_step(as_qstring(m_pane.m_clipboard->GetText().view()));
        } else {
            QTextEdit::keyPressEvent(event);
        }
    }

    /// The text pane's own way would go to the next link in the text.
    bool leave(bool forwards)
    {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        return QAbstractScrollArea::focusNextPrevChild(forwards);
    }

    bool focusNextPrevChild(bool next) override
    {
        return next ? QTextEdit::focusNextPrevChild(next) : leave(next);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        QTextEdit::mouseReleaseEvent(event);
        button_up(event->button(), event->modifiers(), event->globalPosition().toPoint());
    }

    bool canInsertFromMimeData(const QMimeData* source) const override
    {
        return source->hasText() || source->hasHtml();
    }

    void insertFromMimeData(const QMimeData* source) override { insert_step(copied_text(*source)); }

private:
    void insert_step(const QString& pasted)
    {
        const QString text = as_qstring(fit_for_pane(as_utf16(pasted)));
        if (text.isEmpty())
            return;
        m_pane.wrap_what_comes(as_utf16(text));
        // A step of its own when it is undone. The character that comes and goes keeps the typing
        // after it from being joined to it.
        QTextCursor cursor = textCursor();
        cursor.beginEditBlock();
        cursor.insertText(text + ' ');
        cursor.deletePreviousChar();
        cursor.endEditBlock();
        setTextCursor(cursor);
        ensureCursorVisible();
    }

    void button_up(Qt::MouseButton button, Qt::KeyboardModifiers held, const QPoint& place)
    {
        const int number = button_number(button);
        if (m_pane.MouseUp && number)
            attempt([&] { m_pane.MouseUp(number, shift_state(held)); });
        else if (button == Qt::RightButton)
            open_menu(place);
    }

    void open_menu(const QPoint& place)
    {
        QMenu* menu = createStandardContextMenu();
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(place);
    }

    QtRichTextPane& m_pane;
    bool m_shows_selection_always = true;
};

QtRichTextPane::QtRichTextPane(Clipboard* clipboard, FileStore* files)
    : m_clipboard(clipboard)
    , m_files(files)
    , m_editor(&make_child<Editor>(*this))
{
    watch(*m_editor->document());
    QObject::connect(m_editor, &QTextEdit::textChanged, m_editor, [this] { report_change(); });
    QObject::connect(
        m_editor, &QTextEdit::selectionChanged, m_editor, [this] { report_selection(); });
    QObject::connect(
        m_editor, &QTextEdit::cursorPositionChanged, m_editor, [this] { report_selection(); });
}

QtRichTextPane::~QtRichTextPane()
{
    if (m_editor)
        m_editor->disconnect();
    delete m_editor.data();
}

QWidget& QtRichTextPane::widget() const
{
    return *m_editor;
}

void QtRichTextPane::watch(QTextDocument& document)
{
    QObject::connect(&document, &QTextDocument::contentsChange, m_editor,
        [this](int position, int, int added) { text_edited(position, added); });
    QObject::connect(document.documentLayout(), &QAbstractTextDocumentLayout::documentSizeChanged,
        m_editor, [this] { show_wide_selection_when_laid_out(); });
}

void QtRichTextPane::text_edited(int position, int added)
{
    if (is_dark(m_editor->palette().color(QPalette::Base)))
        show_legibly(document(), position, position + added, m_editor->palette());
    m_lines.changed_from(m_editor->document()->findBlock(position).blockNumber());
    if (!m_text_stays) {
        m_text.reset();
        m_has_wide_selection = false;
    }
}

void QtRichTextPane::report_change()
{
    if (!m_loading && !m_text_stays && !m_step && Change)
        attempt([this] { Change(); });
}

void QtRichTextPane::report_selection()
{
    if (m_loading || m_step)
        return;
    const Selection now = selection();
    if (now == m_reported)
        return;
    m_reported = now;
    if (SelChange)
        attempt([this] { SelChange(); });
}

int QtRichTextPane::length() const
{
    return m_editor->document()->characterCount() - 1; // Qt counts the end of the last paragraph
}

/// Lines break anywhere from an endless word on, rather than never being laid out.
void QtRichTextPane::wrap_what_comes(std::u16string_view text)
{
    if (has_endless_word(text))
        m_editor->setWordWrapMode(QTextOption::WrapAnywhere);
}

void QtRichTextPane::wrap_nothing_but(std::u16string_view text)
{
    const auto mode = has_endless_word(text) ? QTextOption::WrapAnywhere
                                             : QTextOption::WrapAtWordBoundaryOrAnywhere;
    if (mode == m_editor->wordWrapMode())
        return;
    // The text that goes would be laid out by a rule that isn't for it, which may take minutes.
    m_editor->setDocument(nullptr);
    m_editor->setWordWrapMode(mode);
}

QTextEdit& QtRichTextPane::editor() const
{
    return *m_editor;
}

QTextDocument& QtRichTextPane::document() const
{
    return *m_editor->document();
}

TextSlice QtRichTextPane::Text() const
{
    if (!m_text && m_step && m_step->text) {
        m_text = std::make_shared<const std::u16string>(m_step->text->text());
    } else if (!m_text) {
        std::u16string text = as_utf16(document().toRawText());
        for (char16_t& unit : text) {
            if (unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator)
                unit = u'\n';
        }
        m_text = std::make_shared<const std::u16string>(std::move(text));
    }
    return TextSlice(m_text, 0, m_text->size());
}

void QtRichTextPane::set_Text(std::u16string text)
{
    show_plain(fit_for_pane(std::move(text)));
    m_file_form = {};
}

void QtRichTextPane::show_plain(const std::u16string& text)
{
    // A format that was chosen for what comes into the empty pane is meant for this, too.
    const QTextCharFormat format = length() == 0 ? cursor().charFormat() : QTextCharFormat();
    // A document that nobody watches yet takes the text many times faster than the shown one.
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    QTextCursor cursor(document.get());
    cursor.beginEditBlock();
    cursor.insertText(as_qstring(text), format);
    cursor.endEditBlock();
    show_document(std::move(document), format);
}

void QtRichTextPane::show_document(
    std::unique_ptr<QTextDocument> document, const QTextCharFormat& typing_format)
{
    if (m_step)
        throw Failure("a new text can't be a part of a step");
    {
        const QScopedValueRollback loading(m_loading, true);
        const QString raw = document->toRawText();
        QPointer<QTextDocument> before = m_editor->document();
        wrap_nothing_but({ reinterpret_cast<const char16_t*>(raw.utf16()),
            static_cast<std::size_t>(raw.size()) });
        document->setDefaultFont(m_editor->font());
        document->setUndoRedoEnabled(true);
        document->setModified(false);
        document->setParent(m_editor);
        show_legibly(*document, 0, document->characterCount(), m_editor->palette());
        forget_what_changed(*document);
        m_editor->setDocument(document.get());
        QTextCursor cursor(document.get());
        if (document->isEmpty())
            cursor.setCharFormat(typing_format);
        m_editor->setTextCursor(cursor); // the editor's own keeps the format of before
        delete before.data(); // the very first one is gone with this already
        watch(*document.release());
        m_text.reset();
        m_lines.changed();
        m_has_wide_selection = false;
    }
    report_change();
    report_selection();
}

QtRichTextPane::Selection QtRichTextPane::selection() const
{
    if (m_has_wide_selection)
        return m_wide_selection;
    const QTextCursor cursor = m_step ? m_step->cursor : m_editor->textCursor();
    return { cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart() };
}

std::int32_t QtRichTextPane::SelStart() const
{
    return selection().start;
}

std::int32_t QtRichTextPane::SelLength() const
{
    return selection().length;
}

TextSlice QtRichTextPane::SelText() const
{
    const Selection now = selection();
    Text();
    return TextSlice(
        m_text, static_cast<std::size_t>(now.start), static_cast<std::size_t>(now.length));
}

void QtRichTextPane::set_SelStart(std::int32_t offset)
{
    if (offset < 0)
        throw Failure("a selection can't start before the text");
    select(std::min(offset, length()), 0);
}

void QtRichTextPane::set_SelLength(std::int32_t length)
{
    if (length < 0)
        throw Failure("a selection can't be shorter than nothing");
    const int start = SelStart();
    select(start, std::min(length, this->length() - start));
}

void QtRichTextPane::select(int start, int length)
{
    m_has_wide_selection = false;
    const int end = start + length;
    if (length == 0 || m_step || !select_later(start, length)) {
        // The caret stands at the start, so that this is the end which is brought into view.
        QTextCursor cursor = this->cursor();
        cursor.setPosition(end);
        cursor.setPosition(start, QTextCursor::KeepAnchor);
        put_cursor(cursor);
    }
    report_selection();
}

bool QtRichTextPane::select_later(int start, int length)
{
    m_has_wide_selection = !is_laid_out(document().findBlock(start + length));
    m_wide_selection = { start, length };
    return m_has_wide_selection;
}

QTextCursor QtRichTextPane::cursor() const
{
    QTextCursor cursor = m_step ? m_step->cursor : m_editor->textCursor();
    if (m_has_wide_selection) {
        cursor.setPosition(m_wide_selection.start + m_wide_selection.length);
        cursor.setPosition(m_wide_selection.start, QTextCursor::KeepAnchor);
    }
    return cursor;
}

void QtRichTextPane::put_cursor(const QTextCursor& cursor)
{
    m_has_wide_selection = false;
    if (m_step)
        m_step->cursor = cursor;
    else
        m_editor->setTextCursor(cursor);
}

void QtRichTextPane::show_wide_selection()
{
    if (!m_has_wide_selection)
        return;
    put_cursor(cursor());
}

void QtRichTextPane::show_wide_selection_when_laid_out()
{
    if (m_has_wide_selection && is_laid_out(m_editor->document()->lastBlock()))
        show_wide_selection();
}

std::int32_t QtRichTextPane::GetLineFromChar(std::int32_t offset) const
{
    return m_lines.line_of(*m_editor->document(), std::clamp(offset, 0, length()));
}

void QtRichTextPane::set_HideSelection(bool hide)
{
    static_cast<Editor&>(*m_editor).show_selection_always(!hide);
}

void QtRichTextPane::set_MousePointer(int pointer)
{
    m_editor->viewport()->setCursor(pointer == 0 ? Qt::IBeamCursor : Qt::CrossCursor);
}

void QtRichTextPane::set_RightMargin(double twips)
{
    if (twips < 0)
        throw Failure("text can't be wrapped at a negative width");
    const int pixels = to_pixels(twips);
    if (pixels == 0) {
        m_editor->setLineWrapMode(QTextEdit::WidgetWidth);
        return;
    }
    m_editor->setLineWrapMode(QTextEdit::FixedPixelWidth);
    m_editor->setLineWrapColumnOrWidth(pixels);
}

std::unique_ptr<RichTextPane> QtRichTextPanes::create()
{
    return std::make_unique<QtRichTextPane>(&m_clipboard, &m_files);
}

} // namespace tessavox
