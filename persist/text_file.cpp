#include "persist/text_file.h"

#include "platform/failure.h"

namespace tessavox {

namespace {

/// Some of these files are looked at many times a second.
constexpr std::size_t most_bytes = std::size_t(1) << 20;

} // namespace

void PCCFile::WriteToFile(const std::string& text, const std::string& path, Durability durability)
{
    attempt([&] { m_files.write(path, '"' + text + "\"\r\n", durability); });
}

std::string PCCFile::ReadFromFile(const std::string& path)
try {
    if (!path.empty())
        m_filename = path;
    return read_lines(m_files.read(m_filename, most_bytes));
} catch (const Failure&) {
    attempt([&] {
        m_message_boxes.show(m_texts.with_value(2308, path), application_title, MessageButtons::ok,
            MessageIcon::none);
    });
    return {};
}

bool PCCFile::can_read(const std::string& path) const
{
    PCCFile other(*this);
    return attempt([&] { other.read_lines(other.m_files.read(path, most_bytes)); });
}

std::string PCCFile::read_lines(const std::string& bytes)
{
    std::string result;
    std::size_t count = 0;
    std::size_t at = 0;
    while (at < bytes.size()) {
        if (count == INT16_MAX)
            throw Failure(m_filename + " has too many lines");
        // One element more than is read: the spare one may still hold a line of the read before.
        m_lines.resize(count + 2);
        const std::size_t end = std::min(bytes.find('\r', at), bytes.size());
        m_lines[count] = bytes.substr(at, end - at);
        at = end + (bytes.compare(end, 2, "\r\n") == 0 ? 2 : 1);
        if (!result.empty())
            result += "\r\n";
        result += m_lines[count];
        ++count;
    }
    m_total_line = static_cast<std::int16_t>(count);
    return result;
}

std::string PCCFile::FileText(std::int16_t number) const
{
    const bool held = number >= 1 && static_cast<std::size_t>(number) <= m_lines.size();
    return held ? m_lines[static_cast<std::size_t>(number) - 1] : std::string();
}

} // namespace tessavox
