// The text in what other programs offer for pasting.
#pragma once

#include <QString>
#include <QStringList>

class QMimeData;

namespace tessavox {

/// The formats that text is taken from, the best one first.
const QStringList& text_formats();

/// Files that were copied are their paths, one a line; of a page without a plain form, its words.
/// Empty if there is no text in it.
QString copied_text(const QMimeData& offered);

} // namespace tessavox
