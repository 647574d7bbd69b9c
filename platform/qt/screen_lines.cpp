#include "platform/qt/screen_lines.h"

#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>

namespace tessavox {

int ScreenLines::line_of(const QTextDocument& document, int offset)
{
    const double width = document.pageSize().width();
    if (width != m_width || m_lines_before.empty()) {
        m_width = width;
        m_lines_before.assign(1, 0);
    }
    const QTextBlock wanted = document.findBlock(offset);
    if (!wanted.isValid())
        return 0;
    document.documentLayout()->blockBoundingRect(wanted); // long texts are laid out step by step

    const auto paragraph = static_cast<std::size_t>(wanted.blockNumber());
    QTextBlock block = document.findBlockByNumber(static_cast<int>(m_lines_before.size()) - 1);
    while (m_lines_before.size() <= paragraph) {
        const int lines = std::max(block.layout()->lineCount(), 1);
        m_lines_before.push_back(m_lines_before.back() + lines);
        block = block.next();
    }
    const QTextLine line = wanted.layout()->lineForTextPosition(offset - wanted.position());
    return m_lines_before[paragraph] + (line.isValid() ? line.lineNumber() : 0);
}

void ScreenLines::changed_from(int paragraph)
{
    // What comes before the changed paragraph still holds.
    const auto valid = static_cast<std::size_t>(std::max(paragraph, 0)) + 1;
    if (m_lines_before.size() > valid)
        m_lines_before.resize(valid);
}

} // namespace tessavox
