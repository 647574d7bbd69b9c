// A text pane without a window. Rich text loses its formats on the way in and out.
#pragma once

#include "platform/file_store.h"
#include "platform/rich_text_pane.h"
#include "platform/text_files/plain_text.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox {

/// A job that takes a page's text. A4 with a quarter of an inch that can't be printed on.
class FakePrintJob : public PrintJob {
public:
    explicit FakePrintJob(std::string& printed)
        : m_printed(printed)
    {
    }
    double left_offset() const override { return 360; }
    double top_offset() const override { return 180; }
    double Width() const override { return 11906; }
    double Height() const override { return 16838; }
    void NewPage() override { m_printed += "|"; }
    void EndDoc() override { m_printed += "]"; }
    void print(const std::string& text) { m_printed += text; }

private:
    std::string& m_printed;
};

class FakePane : public RichTextPane {
public:
    explicit FakePane(FileStore* files = nullptr)
        : m_files(files)
    {
    }

    TextSlice Text() const override { return { shared(), 0, m_content.text.size() }; }
    void set_Text(std::u16string text) override;
    std::int32_t SelStart() const override { return m_start; }
    void set_SelStart(std::int32_t offset) override;
    std::int32_t SelLength() const override { return m_length; }
    void set_SelLength(std::int32_t length) override;
    TextSlice SelText() const override;
    void set_SelText(std::u16string text) override;
    void set_SelRTF(const std::u16string& source) override;
    std::int32_t Find(const std::u16string& text, std::int32_t start, int options) override;
    std::int32_t GetLineFromChar(std::int32_t offset) const override;

    std::optional<bool> SelBold() const override { return common(&Format::bold); }
    void set_SelBold(bool bold) override { give(&Format::bold, bold); }
    std::optional<bool> SelItalic() const override { return common(&Format::italic); }
    void set_SelItalic(bool italic) override { give(&Format::italic, italic); }
    std::optional<bool> SelUnderline() const override { return common(&Format::underline); }
    void set_SelUnderline(bool underline) override { give(&Format::underline, underline); }
    std::optional<bool> SelStrikeThru() const override { return common(&Format::strike); }
    void set_SelStrikeThru(bool strike) override { give(&Format::strike, strike); }
    std::optional<std::string> SelFontName() const override
    {
        const auto name = common(&Format::font);
        return name ? std::optional<std::string>(*name) : std::nullopt;
    }
    void set_SelFontName(const std::string& name) override;
    std::optional<double> SelFontSize() const override { return common(&Format::size); }
    void set_SelFontSize(double points) override;
    std::optional<std::int32_t> SelColor() const override { return common(&Format::color); }
    void set_SelColor(std::int32_t color) override { give(&Format::color, color); }
    std::optional<std::int32_t> SelCharOffset() const override { return common(&Format::offset); }
    void set_SelCharOffset(std::int32_t twips) override { give(&Format::offset, twips); }
    std::optional<bool> SelBullet() const override { return common(&Paragraph::bullet); }
    void set_SelBullet(bool bullet) override { give(&Paragraph::bullet, bullet); }
    std::optional<std::int32_t> SelHangingIndent() const override
    {
        return common(&Paragraph::hanging);
    }
    void set_SelHangingIndent(std::int32_t twips) override { give(&Paragraph::hanging, twips); }

    void set_FontName(const std::string& name) override;
    void set_FontSize(double points) override;
    void set_FontBold(bool bold) override { font_bold = bold; }
    void set_HideSelection(bool) override { }
    void set_MousePointer(int) override { }
    void set_RightMargin(double twips) override;

    void LoadFile(const std::string& path, TextKind kind) override;
    void SaveFile(const std::string& path, TextKind kind) override;
    /// A page takes five units.
    std::int32_t FormatRange(PrintJob& job, const PageArea& area, std::int32_t first) override;
    void release_format() override { ++formats_released; }
    void begin_step() override { ++m_step_depth; }
    void end_step() override;

    /// The user types over the selection.
    void user_types(const std::u16string& text) { set_SelText(text); }
    void user_selects(std::int32_t start, std::int32_t length) { select(start, length); }

    std::string font_name;
    double font_size = 0;
    bool font_bold = false;
    PageArea print_area;
    int formats_released = 0;

private:
    struct Format {
        bool bold = false, italic = false, underline = false, strike = false;
        std::string_view font = "the pane's"; // or one of m_fonts
        double size = 10;
        std::int32_t color = automatic_color;
        std::int32_t offset = 0;
    };
    struct Paragraph {
        bool bullet = false;
        std::int32_t hanging = 0;
    };
    /// Text with the format of each unit and of each paragraph.
    struct Content {
        std::u16string text;
        std::vector<Format> formats;
        std::vector<Paragraph> paragraphs{ {} };
    };

    std::int32_t size() const { return static_cast<std::int32_t>(m_content.text.size()); }
    void select(std::int32_t start, std::int32_t length);
    const std::shared_ptr<const std::u16string>& shared() const;
    void report_selection();
    void report_change();
    static Content plain(const std::u16string& text, const Format& format);
    std::string rich_text() const;
    void show(Content content);
    void replace_selection(const Content& content);
    std::size_t paragraph_at(std::int32_t offset) const;
    const Format& first_format() const;
    Format format_of_new_text() const;
    template <class Value> std::optional<Value> common(Value Format::*field) const;
    template <class Value> std::optional<Value> common(Value Paragraph::*field) const;
    template <class Value> void give(Value Format::*field, const Value& value);
    template <class Value> void give(Value Paragraph::*field, const Value& value);

    FileStore* m_files;
    Content m_content;
    /// The text for readers; none once it has changed.
    mutable std::shared_ptr<const std::u16string> m_shared;
    std::set<std::string> m_fonts;
    Format m_typing; // of what is typed next
    std::int32_t m_start = 0;
    std::int32_t m_length = 0;
    std::pair<std::int32_t, std::int32_t> m_reported;
    int m_step_depth = 0;
    bool m_changed_in_step = false;
    TextSearch m_search;
    TextFileForm m_file_form;
};

template <class Value> std::optional<Value> FakePane::common(Value Format::*field) const
{
    const Value first = first_format().*field;
    for (std::int32_t i = m_start; i < m_start + m_length; ++i) {
        if (m_content.formats[static_cast<std::size_t>(i)].*field != first)
            return std::nullopt;
    }
    return first;
}

template <class Value> std::optional<Value> FakePane::common(Value Paragraph::*field) const
{
    const std::size_t start = paragraph_at(m_start);
    for (std::size_t i = start; i <= paragraph_at(m_start + std::max(m_length - 1, 0)); ++i) {
        if (m_content.paragraphs[i].*field != m_content.paragraphs[start].*field)
            return std::nullopt;
    }
    return m_content.paragraphs[start].*field;
}

template <class Value> void FakePane::give(Value Format::*field, const Value& value)
{
    if (m_length == 0)
        m_typing.*field = value;
    for (std::int32_t i = m_start; i < m_start + m_length; ++i)
        m_content.formats[static_cast<std::size_t>(i)].*field = value;
    if (m_length > 0)
        report_change();
}

template <class Value> void FakePane::give(Value Paragraph::*field, const Value& value)
{
    const std::size_t end = paragraph_at(m_start + std::max(m_length - 1, 0));
    for (std::size_t i = paragraph_at(m_start); i <= end; ++i)
        m_content.paragraphs[i].*field = value;
    report_change();
}

} // namespace tessavox
