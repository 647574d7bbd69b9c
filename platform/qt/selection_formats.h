// The formats of a selected piece of a document.
#pragma once

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <algorithm>
#include <optional>
#include <vector>

namespace tessavox {

/// Text of one format within a selection.
struct FormattedPiece {
    int start = 0;
    int length = 0;
    QTextCharFormat format;
};

/// Calls `visit` with each piece until it returns false. Costs what the selection is long.
template <class Visit> void visit_pieces(const QTextCursor& selection, Visit&& visit)
{
    const int start = selection.selectionStart();
    const int end = selection.selectionEnd();
    QTextBlock block = selection.document()->findBlock(start);
    for (; block.isValid() && block.position() < end; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const int from = std::max(fragment.position(), start);
            const int to = std::min(fragment.position() + fragment.length(), end);
            if (from < to && !visit(FormattedPiece{ from, to - from, fragment.charFormat() }))
                return;
        }
    }
}

/// The format that text gets which takes the selection's place, or which is typed at the caret.
QTextCharFormat first_format(const QTextCursor& selection);

/// What `get` says of every character format of the selection; nothing if it says several things.
template <class Get>
auto common_format(const QTextCursor& selection, Get&& get)
    -> std::optional<decltype(get(QTextCharFormat()))>
{
    const QTextCharFormat first = first_format(selection);
    const auto value = get(first);
    QTextCharFormat seen = first; // comparing two formats costs less than asking one
    bool is_common = true;
    visit_pieces(selection, [&](const FormattedPiece& piece) {
        if (piece.format != seen) {
            seen = piece.format;
            is_common = get(seen) == value;
        }
        return is_common;
    });
    return is_common ? std::optional(value) : std::nullopt;
}

/// The paragraphs that the selection touches. One that it only ends before isn't among them.
std::vector<QTextBlock> paragraphs_of(const QTextCursor& selection);

} // namespace tessavox
