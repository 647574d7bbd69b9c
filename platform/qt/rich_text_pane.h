// The pane of a document's text, as a QTextEdit.
#pragma once

#include "platform/clipboard.h"
#include "platform/qt/screen_lines.h"
#include "platform/rich_text_pane.h"

#include <QPointer>

#include <memory>

class QFont;
class QTextDocument;
class QWidget;

namespace tessavox {

/// The Tab key inserts a tab; Shift+Tab and F6 lead out of the pane. Pasted text comes in without
/// the formats and pictures of where it was copied.
class QtRichTextPane : public RichTextPane {
public:
    /// Pastes by its keys from `clipboard`, if given, which doesn't wait long for its owner.
    explicit QtRichTextPane(Clipboard* clipboard = nullptr);
    ~QtRichTextPane() override;

    TextSlice Text() const override;
    void set_Text(std::u16string text) override;
    std::int32_t SelStart() const override;
    void set_SelStart(std::int32_t offset) override;
    std::int32_t SelLength() const override;
    void set_SelLength(std::int32_t length) override;
    TextSlice SelText() const override;
    std::int32_t GetLineFromChar(std::int32_t offset) const override;
    void set_SelFontSize(double points) override;
    void set_FontName(const std::string& name) override;
    void set_FontSize(double points) override;
    void set_FontBold(bool bold) override;
    void set_HideSelection(bool hide) override;
    void set_RightMargin(double twips) override;

    /// Belongs to the pane, wherever it is shown.
    QWidget& widget() const;

private:
    class Editor;
    struct Selection {
        int start = 0;
        int length = 0;
        bool operator==(const Selection&) const = default;
    };

    int length() const;
    Selection selection() const;
    void watch(QTextDocument& document);
    void text_edited(int position);
    void report_change();
    void report_selection();
    void set_font(const QFont& font);
    void show_wide_selection();
    void show_wide_selection_when_laid_out();

    Clipboard* m_clipboard;
    QPointer<Editor> m_editor;
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
};

class QtRichTextPanes : public RichTextPanes {
public:
    explicit QtRichTextPanes(Clipboard& clipboard)
        : m_clipboard(clipboard)
    {
    }
    std::unique_ptr<RichTextPane> create() override;

private:
    Clipboard& m_clipboard;
};

} // namespace tessavox
