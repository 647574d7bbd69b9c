#include "tests/fakes/fake_pane.h"

#include "platform/failure.h"
#include "platform/rtf/document_builder.h"
#include "platform/rtf/reader.h"
#include "platform/rtf/writer.h"

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

FakePane::Content FakePane::plain(const std::u16string& text, const Format& format)
{
    Content content;
    content.text = normalised(text);
    content.formats.assign(content.text.size(), format);
    const auto line_ends = std::count(content.text.begin(), content.text.end(), u'\n');
    content.paragraphs.resize(static_cast<std::size_t>(line_ends) + 1);
    return content;
}

std::string FakePane::rich_text() const
{
    rtf::DocumentBuilder builder(m_content.text.size());
    for (const char16_t& unit : m_content.text) {
        if (unit == u'\n')
            builder.end_paragraph({}, builder.format({}));
        else
            builder.add({ &unit, 1 }, builder.format({}), {});
    }
    return rtf::write_rich_text(builder.finish({}, builder.format({}), rtf::LastParagraph::open));
}

void FakePane::show(Content content)
{
    if (size() > 0 || !content.text.empty())
        m_typing = content.formats.empty() ? Format() : content.formats.front();
    m_content = std::move(content);
    m_shared.reset();
    m_start = m_length = 0;
    m_file_form = {};
    report_change();
    report_selection();
}

void FakePane::set_Text(std::u16string text)
{
    show(plain(text, format_of_new_text()));
}

FakePane::Format FakePane::format_of_new_text() const
{
    return size() == 0 ? m_typing : Format();
}

void FakePane::replace_selection(const Content& content)
{
    const auto in = [](auto& list, std::size_t place) {
        return list.begin() + static_cast<std::ptrdiff_t>(place);
    };
    const auto from = static_cast<std::size_t>(m_start);
    const auto to = static_cast<std::size_t>(m_start + m_length);
    const std::size_t first_paragraph = paragraph_at(m_start);
    auto& paragraphs = m_content.paragraphs;
    const Paragraph own = paragraphs[first_paragraph];
    paragraphs.erase(
        in(paragraphs, first_paragraph), in(paragraphs, paragraph_at(m_start + m_length)));
    paragraphs.insert(in(paragraphs, first_paragraph), content.paragraphs.size() - 1, own);
    m_shared.reset();
    m_content.text.replace(from, to - from, content.text);
    auto& formats = m_content.formats;
    formats.erase(in(formats, from), in(formats, to));
    formats.insert(in(formats, from), content.formats.begin(), content.formats.end());
    m_start += static_cast<std::int32_t>(content.text.size());
    m_length = 0;
    report_change();
    report_selection();
}

void FakePane::set_SelText(std::u16string text)
{
    if (text.empty() && m_length == 0)
        return;
    const Format format = first_format();
    replace_selection(plain(text, format));
    m_typing = format;
}

void FakePane::set_SelRTF(const std::u16string& source)
{
    const std::string bytes = to_utf8(source);
    if (!rtf::is_rich_text(bytes))
        return set_SelText(source);
    replace_selection(plain(rtf::read_rich_text(bytes, rtf::LastParagraph::open).text, {}));
}

std::int32_t FakePane::Find(const std::u16string& text, std::int32_t start, int options)
{
    require(start >= 0, "a search before the text");
    const auto found
        = m_search.find(m_content.text, text, static_cast<std::size_t>(start), options);
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
        m_typing = m_content.formats[static_cast<std::size_t>(std::max(start - 1, 0))];
    report_selection();
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
        m_shared = std::make_shared<const std::u16string>(m_content.text);
    return m_shared;
}

TextSlice FakePane::SelText() const
{
    return { shared(), static_cast<std::size_t>(m_start), static_cast<std::size_t>(m_length) };
}

std::int32_t FakePane::GetLineFromChar(std::int32_t offset) const
{
    return static_cast<std::int32_t>(paragraph_at(std::min(offset, size())));
}

std::size_t FakePane::paragraph_at(std::int32_t offset) const
{
    if (m_content.paragraphs.size() == 1)
        return 0;
    const auto begin = m_content.text.begin();
    return static_cast<std::size_t>(std::count(begin, begin + offset, u'\n'));
}

const FakePane::Format& FakePane::first_format() const
{
    return m_length > 0 ? m_content.formats[static_cast<std::size_t>(m_start)] : m_typing;
}

void FakePane::set_SelFontName(const std::string& name)
{
    require(!name.empty(), "no font has that name");
    give(&Format::font, std::string_view(*m_fonts.insert(name).first));
}

void FakePane::set_SelFontSize(double points)
{
    require(points > 0, "no font has that size");
    give(&Format::size, points);
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
}

void FakePane::LoadFile(const std::string& path, TextKind kind)
{
    require(m_files, "no files");
    const std::string bytes = m_files->read(path);
    if (kind == TextKind::rich)
        return show(plain(rtf::read_rich_text(bytes).text, {}));
    const PlainText plain_text = decode_plain_text(bytes);
    show(plain(plain_text.text, format_of_new_text()));
    m_file_form = plain_text.form;
}

void FakePane::SaveFile(const std::string& path, TextKind kind)
{
    require(m_files, "no files");
    if (kind == TextKind::rich)
        return m_files->write(path, rich_text(), Durability::durable);
    const EncodedText encoded = encode_plain_text(m_content.text, m_file_form);
    m_files->write(path, encoded.bytes, Durability::durable);
    m_file_form = encoded.form;
}

std::int32_t FakePane::FormatRange(PrintJob& job, const PageArea& area, std::int32_t first)
{
    constexpr std::int32_t units_of_a_page = 5;
    print_area = area;
    const std::int32_t next = std::min(first + units_of_a_page, size());
    dynamic_cast<FakePrintJob&>(job).print(to_utf8(
        std::u16string_view(m_content.text)
            .substr(static_cast<std::size_t>(first), static_cast<std::size_t>(next - first))));
    return next;
}

} // namespace tessavox
