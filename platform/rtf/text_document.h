// Formatted texts in and out of the toolkit's documents. Needs no window and no screen.
#pragma once

#include "platform/rtf/document.h"

#include <memory>

class QTextBlock;
class QTextCharFormat;
class QTextCursor;
class QTextDocument;

namespace tessavox::rtf {

/// A toolkit's document without undo history, which belongs to no window yet: building one and
/// handing it over takes a ninth of the time of building it inside a window. Its text is
/// `document.text`, and its offsets are the same.
std::unique_ptr<QTextDocument> to_text_document(const Document& document);

/// Puts the text in the selection's place, as one step of undo, and leaves the cursor after it.
/// What comes to stand in the paragraph that is there already takes that paragraph's format, unless
/// it is empty: a paragraph's format belongs to its end.
void insert(QTextCursor& cursor, const Document& document);

/// Every character gets the font, size and weight that it is shown with, also where those are the
/// document's own. @throws Failure for more than most_text_paragraphs.
Document from_text_document(const QTextDocument& document);
/// The same for the selected piece.
Document from_selection(const QTextCursor& cursor);

/// How far text stands above the line; twips, below 0 when below it. Kept exactly beside what the
/// toolkit draws, which goes by the size of the font that the format has when this is called.
void set_char_offset(QTextCharFormat& format, std::int32_t twips);
std::int32_t char_offset(const QTextCharFormat& format);

/// Gives a format to the paragraph that holds the cursor.
void set_paragraph_format(QTextCursor& cursor, const ParagraphFormat& format);
ParagraphFormat paragraph_format(const QTextBlock& block);

} // namespace tessavox::rtf
