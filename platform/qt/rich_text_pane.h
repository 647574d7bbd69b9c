// The pane of a document's text, as a QTextEdit.
#pragma once

#include "platform/clipboard.h"
#include "platform/file_store.h"
#include "platform/qt/gap_text.h"
#include "platform/qt/screen_lines.h"
#include "platform/rich_text_pane.h"
#include "platform/text_files/plain_text.h"

#include <QPointer>
#include <QTextCursor>

#include <memory>
#include <optional>

class QFont;
class QTextDocument;
class QTextEdit;
class QWidget;

namespace tessavox {

class PageText;

/// The Tab key inserts a tab; Shift+Tab and F6 lead out of the pane. Pasted text comes in without
/// the formats and pictures of where it was copied.
class QtRichTextPane : public RichTextPane {
public:
    /// Pastes by its keys from `clipboard`, which doesn't wait long for its owner. Without `files`
    /// it can neither load nor save.
    explicit QtRichTextPane(Clipboard* clipboard = nullptr, FileStore* files = nullptr);
    ~QtRichTextPane() override;

    TextSlice Text() const override;
    void set_Text(std::u16string text) override;
    std::int32_t SelStart() const override;
    void set_SelStart(std::int32_t offset) override;
    std::int32_t SelLength() const override;
    void set_SelLength(std::int32_t length) override;
    TextSlice SelText() const override;
    void set_SelText(std::u16string text) override;
    void set_SelRTF(const std::u16string& source) override;
    std::int32_t Find(const std::u16string& text, std::int32_t start, int options) override;
    std::int32_t GetLineFromChar(std::int32_t offset) const override;

    std::optional<bool> SelBold() const override;
    void set_SelBold(bool bold) override;
    std::optional<bool> SelItalic() const override;
    void set_SelItalic(bool italic) override;
    std::optional<bool> SelUnderline() const override;
    void set_SelUnderline(bool underline) override;
    std::optional<bool> SelStrikeThru() const override;
    void set_SelStrikeThru(bool strike) override;
    std::optional<std::string> SelFontName() const override;
    void set_SelFontName(const std::string& name) override;
    std::optional<double> SelFontSize() const override;
    void set_SelFontSize(double points) override;
    std::optional<std::int32_t> SelColor() const override;
    void set_SelColor(std::int32_t color) override;
    std::optional<std::int32_t> SelCharOffset() const override;
    void set_SelCharOffset(std::int32_t twips) override;
    std::optional<bool> SelBullet() const override;
    void set_SelBullet(bool bullet) override;
    std::optional<std::int32_t> SelHangingIndent() const override;
    void set_SelHangingIndent(std::int32_t twips) override;

    void set_FontName(const std::string& name) override;
    void set_FontSize(double points) override;
    void set_FontBold(bool bold) override;
    void set_HideSelection(bool hide) override;
    void set_MousePointer(int pointer) override;
    void set_RightMargin(double twips) override;

    void LoadFile(const std::string& path, TextKind kind) override;
    void SaveFile(const std::string& path, TextKind kind) override;
    std::int32_t FormatRange(PrintJob& job, const PageArea& area, std::int32_t first) override;
    void release_format() override;
    void begin_step() override;
    void end_step() override;

    /// Belongs to the pane, wherever it is shown.
    QWidget& widget() const;

private:
    class Editor;
    struct Selection {
        int start = 0;
        int length = 0;
        bool operator==(const Selection&) const = default;
    };

    /// What is under way between begin_step and end_step. The toolkit tells of it at its end.
    struct Step {
        int depth = 1;
        QTextCursor cursor;
        std::size_t changes = 0;
        std::optional<GapText> text; // from the first search on
    };

    int length() const;
    QTextEdit& editor() const;
    QTextDocument& document() const;
    Selection selection() const;
    /// The selection with the format of what is typed next.
    QTextCursor cursor() const;
    void put_cursor(const QTextCursor& cursor);
    void select(int start, int length);
    /// Returns whether it has to wait, as the text isn't laid out so far.
    bool select_later(int start, int length);
    FileStore& files() const;
    void wrap_what_comes(std::u16string_view text);
    /// The same for a text that takes the place of all there is, before it does.
    void wrap_nothing_but(std::u16string_view text);
    void show_plain(const std::u16string& text);
    void show_document(
        std::unique_ptr<QTextDocument> document, const QTextCharFormat& typing_format);
    template <class Edit> void edit_selection(Edit&& edit);
    void merge_format(const QTextCharFormat& format);
    template <class Alter> void change_paragraphs(Alter&& alter);
    void report_formatted();
    void watch(QTextDocument& document);
    void text_edited(int position, int added);
    void report_change();
    void report_selection();
    void set_font(const QFont& font);
    void show_wide_selection();
    void show_wide_selection_when_laid_out();

    Clipboard* m_clipboard;
    FileStore* m_files;
    QPointer<QTextEdit> m_editor; // an Editor
    mutable std::shared_ptr<const std::u16string> m_text; // null: to be fetched again
    mutable ScreenLines m_lines;
    Selection m_reported;
    /// A selection that reaches beyond what has been laid out so far. Drawing it would lay out the
    /// whole text, a second for a long book, while a word is about to replace it. So it is only
    /// kept here until the text is laid out or the user does something.
    bool m_has_wide_selection = false;
    Selection m_wide_selection;
    bool m_text_stays = false; // while only formats or the document object change
    bool m_loading = false;
    std::optional<Step> m_step;
    TextSearch m_search;
    TextFileForm m_file_form; // of the file that the text came from
    std::unique_ptr<PageText> m_pages; // while it is printed
};

class QtRichTextPanes : public RichTextPanes {
public:
    QtRichTextPanes(Clipboard& clipboard, FileStore& files)
        : m_clipboard(clipboard)
        , m_files(files)
    {
    }
    std::unique_ptr<RichTextPane> create() override;

private:
    Clipboard& m_clipboard;
    FileStore& m_files;
};

} // namespace tessavox
