#include "tests/fakes/fake_pane.h"

#include "platform/failure.h"

#include <algorithm>

namespace tessavox {

namespace {

bool is_unholdable(char16_t unit)
{
    return unit == u'\0' || unit == 0xFDD0 || unit == 0xFDD1 || unit == 0xFFFC;
}

std::u16string normalised(const std::u16string& text)
{
    std::u16string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r') {
            out += u'\n';
            i += i + 1 < text.size() && text[i + 1] == u'\n';
        } else {
            out += is_unholdable(text[i]) ? u'\xFFFD' : text[i];
        }
    }
    return out;
}

void require(bool condition, const char* what)
{
    if (!condition)
        throw Failure(what);
}

} // namespace

std::int32_t FakePane::size() const
{
    return static_cast<std::int32_t>(m_buffer->size());
}

void FakePane::set_Text(std::u16string text)
{
    m_buffer = std::make_shared<std::u16string>(normalised(text));
    m_text = TextSlice(m_buffer, 0, m_buffer->size());
    if (Change)
        Change();
    select(0, 0);
}

void FakePane::set_SelStart(std::int32_t offset)
{
    require(offset >= 0, "a negative SelStart");
    select(std::min(offset, size()), 0);
}

void FakePane::set_SelLength(std::int32_t length)
{
    require(length >= 0, "a negative SelLength");
    select(m_start, std::min(length, size() - m_start));
}

void FakePane::select(std::int32_t start, std::int32_t length)
{
    if (start == m_start && length == m_length)
        return;
    m_start = start;
    m_length = length;
    if (SelChange)
        SelChange();
}

TextSlice FakePane::SelText() const
{
    return { m_buffer, static_cast<std::size_t>(m_start), static_cast<std::size_t>(m_length) };
}

std::int32_t FakePane::GetLineFromChar(std::int32_t offset) const
{
    return static_cast<std::int32_t>(
        std::count(m_buffer->begin(), m_buffer->begin() + std::min(offset, size()), u'\n'));
}

void FakePane::set_SelFontSize(double points)
{
    require(points > 0, "no font has that size");
    selection_font_size = points;
}

void FakePane::set_FontName(const std::string& name)
{
    require(!name.empty(), "no font has that name");
    font_name = name;
}

void FakePane::set_FontSize(double points)
{
    require(points > 0, "no font has that size");
    font_size = points;
}

void FakePane::set_RightMargin(double twips)
{
    require(twips >= 0, "a negative margin");
    right_margin = twips;
}

void FakePane::user_types(const std::u16string& text)
{
    std::u16string buffer = *m_buffer;
    buffer.replace(static_cast<std::size_t>(m_start), static_cast<std::size_t>(m_length), text);
    m_buffer = std::make_shared<std::u16string>(std::move(buffer));
    m_text = TextSlice(m_buffer, 0, m_buffer->size());
    const auto caret = m_start + static_cast<std::int32_t>(text.size());
    if (Change)
        Change();
    select(caret, 0);
}

void FakePane::user_selects(std::int32_t start, std::int32_t length)
{
    select(start, length);
}

} // namespace tessavox
