// The small text files of the program: settings and notes between its copies.
#pragma once

#include "platform/file_store.h"
#include "platform/message_boxes.h"
#include "platform/texts.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessavox {

/// Writes a file as one quoted text and reads it as numbered lines. The two sides are meant not to
/// match: quotes are written and never stripped, so a text that begins and ends with a line end
/// comes back with a lone quote as its first and its last line, and its values start at line 2.
class PCCFile {
public:
    PCCFile(FileStore& files, MessageBoxes& message_boxes, const Texts& texts)
        : m_files(files)
        , m_message_boxes(message_boxes)
        , m_texts(texts)
    {
    }

    /// Replaces the file by a quote, the text as it stands, a quote and CR LF. A text that can't be
    /// written is lost without a word.
    void WriteToFile(const std::string& text, const std::string& path,
        Durability durability = Durability::durable);

    /// Reads the lines of the file; of the one read last if `path` is empty. A line ends at CR or
    /// CR LF. Returns them joined by CR LF, without the empty ones at the head. On any failure,
    /// which includes a file of more than 32767 lines or 1 MiB, it says so in a message box and
    /// returns an empty text; the lines and the count of the read before stay, as far as they
    /// weren't replaced.
    std::string ReadFromFile(const std::string& path);
    /// Whether ReadFromFile would take the file. No message comes, and nothing changes.
    bool can_read(const std::string& path) const;

    /// A line of the last read, counted from 1. Empty where there is none.
    std::string FileText(std::int16_t number) const;
    std::int16_t TotalLine() const { return m_total_line; }

    const std::string& filename() const { return m_filename; }
    void set_filename(std::string filename) { m_filename = std::move(filename); }
    /// Kept for callers from outside; nothing depends on it.
    std::int32_t WriteMode() const { return m_write_mode; }
    void set_WriteMode(std::int32_t mode) { m_write_mode = mode; }

private:
    std::string read_lines(const std::string& bytes);

    FileStore& m_files;
    MessageBoxes& m_message_boxes;
    const Texts& m_texts;
    std::string m_filename;
    std::int32_t m_write_mode = 1;
    std::vector<std::string> m_lines;
    std::int16_t m_total_line = 0;
};

} // namespace tessavox
