#include "platform/qt/selection_formats.h"

namespace tessavox {

QTextCharFormat first_format(const QTextCursor& selection)
{
    if (!selection.hasSelection())
        return selection.charFormat();
    QTextCursor after_first(selection.document());
    after_first.setPosition(selection.selectionStart() + 1);
    return after_first.charFormat();
}

std::vector<QTextBlock> paragraphs_of(const QTextCursor& selection)
{
    const int end = selection.selectionEnd();
    QTextBlock block = selection.document()->findBlock(selection.selectionStart());
    std::vector<QTextBlock> paragraphs{ block };
    for (block = block.next(); block.isValid() && block.position() < end; block = block.next())
        paragraphs.push_back(block);
    return paragraphs;
}

} // namespace tessavox
