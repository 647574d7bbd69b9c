// A text pane without a window.
#pragma once

#include "platform/rich_text_pane.h"

#include <optional>
#include <string>

namespace tessavox {

class FakePane : public RichTextPane {
public:
    TextSlice Text() const override { return m_text; }
    void set_Text(std::u16string text) override;
    std::int32_t SelStart() const override { return m_start; }
    void set_SelStart(std::int32_t offset) override;
    std::int32_t SelLength() const override { return m_length; }
    void set_SelLength(std::int32_t length) override;
    TextSlice SelText() const override;
    std::int32_t GetLineFromChar(std::int32_t offset) const override;
    void set_SelFontSize(double points) override;
    void set_FontName(const std::string& name) override;
    void set_FontSize(double points) override;
    void set_FontBold(bool bold) override { font_bold = bold; }
    void set_HideSelection(bool hide) override { hide_selection = hide; }
    void set_RightMargin(double twips) override;

    /// The user types over the selection.
    void user_types(const std::u16string& text);
    void user_selects(std::int32_t start, std::int32_t length);

    std::string font_name;
    double font_size = 0;
    double selection_font_size = 0;
    bool font_bold = false;
    bool hide_selection = true;
    double right_margin = 0;

private:
    std::int32_t size() const;
    void select(std::int32_t start, std::int32_t length);

    std::shared_ptr<const std::u16string> m_buffer = std::make_shared<std::u16string>();
    TextSlice m_text;
    std::int32_t m_start = 0;
    std::int32_t m_length = 0;
};

} // namespace tessavox
