// A text pane without a window. Rich text loses its formats on the way in and out.
#pragma once

#include "platform/file_store.h"
#include "platform/rich_text_pane.h"
#include "platform/text_files/plain_text.h"

#include <memory>
#include <optional>
#include <string>
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

    TextSlice Text() const override { return { shared(), 0, m_text.size() }; }
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
    std::optional<std::string> SelFontName() const override { return common(&Format::font); }
    void set_SelFontName(const std::string& name) override { give(&Format::font, name); }
    std::optional<double> SelFontSize() const override { return common(&Format::size); }
    void set_SelFontSize(double points) override { give(&Format::size, points); }
    std::optional<std::int32_t> SelColor() const override { return common(&Format::color); }
    void set_SelColor(std::int32_t color) override { give(&Format::color, color); }
    std::optional<std::int32_t> SelCharOffset() const override { return common(&Format::offset); }
    void set_SelCharOffset(std::int32_t twips) override { give(&Format::offset, twips); }
    std::optional<bool> SelBullet() const override { return common(&Format::bullet, lines()); }
    void set_SelBullet(bool bullet) override { give(&Format::bullet, bullet, lines()); }
    std::optional<std::int32_t> SelHangingIndent() const override
    {
        return common(&Format::hanging, lines());
    }
    void set_SelHangingIndent(std::int32_t twips) override
    {
        give(&Format::hanging, twips, lines());
    }

    void set_FontName(const std::string& name) override;
    void set_FontSize(double points) override;
    void set_FontBold(bool bold) override { font_bold = bold; }
    void set_HideSelection(bool) override { }
    void set_MousePointer(int pointer) override { mouse_pointer = pointer; }
    void set_RightMargin(double) override { }

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
    int mouse_pointer = 0;

private:
    struct Format {
        bool bold = false, italic = false, underline = false, strike = false, bullet = false;
        std::string font = "the pane's";
        double size = 10;
        std::int32_t color = automatic_color;
        std::int32_t offset = 0, hanging = 0;
    };
    struct Range {
        std::size_t begin, end;
    };

    std::int32_t size() const { return static_cast<std::int32_t>(m_text.size()); }
    Range selection() const;
    Range lines() const; // the paragraphs that the selection touches, with their ends
    void select(std::int32_t start, std::int32_t length);
    const std::shared_ptr<const std::u16string>& shared() const;
    void report_selection();
    void report_change();
    void show(const std::u16string& text, const Format& format);
    void replace_selection(const std::u16string& text, Format format);
    Format format_of_new_text() const { return m_text.empty() ? m_typing : Format(); }
    template <class Value>
    std::optional<Value> common(Value Format::*field, std::optional<Range> in = {}) const
    {
        const auto [begin, end] = in.value_or(selection());
        const Value first = (begin < end ? m_formats[begin] : m_typing).*field;
        for (std::size_t at = begin; at < end; ++at)
            if (m_formats[at].*field != first)
                return std::nullopt;
        return first;
    }
    template <class Value>
    void give(Value Format::*field, const Value& value, std::optional<Range> in = {})
    {
        const auto [begin, end] = in.value_or(selection());
        if (begin == end)
            m_typing.*field = value;
        for (std::size_t at = begin; at < end; ++at)
            m_formats[at].*field = value;
        if (begin < end)
            report_change();
    }

    FileStore* m_files;
    std::u16string m_text;
    std::vector<Format> m_formats{ {} }; // of each unit, and of the end
    /// The text for readers; none once it has changed.
    mutable std::shared_ptr<const std::u16string> m_shared;
    Format m_typing; // of what is typed next
    std::int32_t m_start = 0;
    std::int32_t m_length = 0;
    std::pair<std::int32_t, std::int32_t> m_reported;
    int m_step_depth = 0;
    bool m_changed_in_step = false;
    TextSearch m_search;
    TextFileForm m_file_form;
};

} // namespace tessavox
