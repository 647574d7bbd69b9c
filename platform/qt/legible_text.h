// Keeps a document's own colours legible on a dark ground.
#pragma once

class QPalette;
class QTextDocument;

namespace tessavox {

/// Documents are written for white paper: black letters, dark red tags and light marks behind words
/// can't be read where the desktop is dark. There they are drawn in a lighter or darker shade, from
/// position `from` to `to`. The document itself, what is saved and what is printed keep the colours
/// that they have. Costs next to nothing for documents without colours. Returns whether anything is
/// to be drawn in another colour than before; what is shown already has to be marked as dirty then,
/// once for all.
bool show_legibly(QTextDocument& document, int from, int to, const QPalette& palette);

} // namespace tessavox
