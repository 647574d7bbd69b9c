// The print server of the desktop, which may hang.
#pragma once

#include <QByteArray>
#include <QPageLayout>
#include <QString>

namespace tessavox {

// It is asked on a thread of its own, which is left to itself after two seconds: windows don't wait
// for what may be on another machine, or never come.

/// The paper of the default printer, with the least margins that it can print in. @throws Failure
/// if there is no printer, or no answer.
QPageLayout default_paper();

/// Gives a PDF document to the default printer; `title` is what the desktop calls it. @throws
/// Failure if the printer doesn't take it, or nothing is known of that yet.
void print_document(const QByteArray& document, const QString& title);

} // namespace tessavox
