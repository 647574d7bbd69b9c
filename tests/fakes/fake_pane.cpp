#include "tests/fakes/fake_pane.h"

#include "platform/failure.h"
#include "platform/rtf/reader.h"

#include <algorithm>

namespace tessavox {

namespace {

std::u16string normalised(const std::u16string& text)
{
    std::u16string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r') {
            out += u'\n';
            i += i + 1 < text.size() && text[i + 1] == u'\n';
        } else {
            const bool fits = text[i] && text[i] != 0xFDD0 && text[i] != 0xFDD1;
            out += fits && text[i] != 0xFFFC ? text[i] : u'\xFFFD';
        }
    }
    return out;
}

void require(bool condition, const char* what)
{
    if (!condition)
        throw Failure(what);
}

std::string rich_text_of(const std::u16string& text)
{
    std::string source = "{\\rtf1";
    for (const char16_t unit : text)
        source += unit == u'\n' ? "\\par "
                                : "\\u" + std::to_string(static_cast<std::int16_t>(unit)) + "?";
    return source + "\\par}";
}

} // namespace

void FakePane::show(const std::u16string& text, const Format& format)
{
    if (!m_text.empty() || !text.empty())
        m_typing = text.empty() ? Format() : format;
    m_text = normalised(text);
    m_formats.assign(m_text.size() + 1, format);
    m_shared.reset();
    m_start = m_length = 0;
    m_file_form = {};
    report_change();
    report_selection();
}

void FakePane::set_Text(std::u16string text)
{
    show(text, format_of_new_text());
}

void FakePane::replace_selection(const std::u16string& text, Format format)
{
    const std::u16string added = normalised(text);
    const auto [begin, end] = selection();
    format.bullet = m_formats[begin].bullet;
    format.hanging = m_formats[begin].hanging;
    m_shared.reset();
    m_text.replace(begin, end - begin, added);
    const auto start = m_formats.begin() + m_start;
    m_formats.insert(m_formats.erase(start, start + m_length), added.size(), format);
    m_start += static_cast<std::int32_t>(added.size());
    m_length = 0;
    report_change();
    report_selection();
}

void FakePane::set_SelText(std::u16string text)
{
    if (text.empty() && m_length == 0)
        return;
    const Format format = m_length > 0 ? m_formats[selection().begin] : m_typing;
    replace_selection(text, format);
    m_typing = format;
}

void FakePane::set_SelRTF(const std::u16string& source)
{
    const std::string bytes = to_utf8(source);
    if (!rtf::is_rich_text(bytes))
        return set_SelText(source);
    replace_selection(rtf::read_rich_text(bytes, rtf::LastParagraph::open).text, {});
}

std::int32_t FakePane::Find(const std::u16string& text, std::int32_t start, int options)
{
    require(start >= 0, "a search before the text");
    const auto found = m_search.find(m_text, text, static_cast<std::size_t>(start), options);
    if (!found)
        return -1;
    select(static_cast<std::int32_t>(*found), static_cast<std::int32_t>(text.size()));
    return m_start;
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
    m_start = start;
    m_length = length;
    if (size() > 0)
        m_typing = m_formats[static_cast<std::size_t>(std::max(start - 1, 0))];
    report_selection();
}

FakePane::Range FakePane::selection() const
{
    return { static_cast<std::size_t>(m_start), static_cast<std::size_t>(m_start + m_length) };
}

FakePane::Range FakePane::lines() const
{
    const auto [begin, end] = selection();
    const std::size_t before = begin > 0 ? m_text.rfind(u'\n', begin - 1) : m_text.npos;
    return { before + 1,
        std::min(m_text.find(u'\n', std::max(end, begin + 1) - 1), m_text.size()) + 1 };
}

void FakePane::report_selection()
{
    const std::pair now(m_start, m_length);
    if (m_step_depth > 0 || m_reported == now)
        return;
    m_reported = now;
    if (SelChange)
        SelChange();
}

void FakePane::report_change()
{
    m_changed_in_step = m_step_depth > 0;
    if (m_step_depth == 0 && Change)
        Change();
}

void FakePane::end_step()
{
    if (--m_step_depth > 0)
        return;
    if (m_changed_in_step)
        report_change();
    report_selection();
}

const std::shared_ptr<const std::u16string>& FakePane::shared() const
{
    if (!m_shared)
        m_shared = std::make_shared<const std::u16string>(m_text);
    return m_shared;
}

TextSlice FakePane::SelText() const
{
    return { shared(), static_cast<std::size_t>(m_start), static_cast<std::size_t>(m_length) };
}

std::int32_t FakePane::GetLineFromChar(std::int32_t offset) const
{
    const auto end = m_text.begin() + std::min(offset, size());
    return static_cast<std::int32_t>(std::count(m_text.begin(), end, u'\n'));
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

void FakePane::LoadFile(const std::string& path, TextKind kind)
{
    const std::string bytes = m_files->read(path);
    if (kind == TextKind::rich)
        return show(rtf::read_rich_text(bytes).text, {});
    const PlainText plain = decode_plain_text(bytes);
    show(plain.text, format_of_new_text());
    m_file_form = plain.form;
}

void FakePane::SaveFile(const std::string& path, TextKind kind)
{
    if (kind == TextKind::rich)
        return m_files->write(path, rich_text_of(m_text), Durability::durable);
    const EncodedText encoded = encode_plain_text(m_text, m_file_form);
    m_files->write(path, encoded.bytes, Durability::durable);
    m_file_form = encoded.form;
}

std::int32_t FakePane::FormatRange(PrintJob& job, const PageArea& area, std::int32_t first)
{
    print_area = area;
    const std::u16string page = m_text.substr(static_cast<std::size_t>(first), 5);
    dynamic_cast<FakePrintJob&>(job).print(to_utf8(page));
    return first + static_cast<std::int32_t>(page.size());
}

} // namespace tessavox
