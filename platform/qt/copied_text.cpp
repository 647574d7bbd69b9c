#include "platform/qt/copied_text.h"

#include <QMimeData>
#include <QTextDocumentFragment>
#include <QUrl>

namespace tessavox {
namespace {

QString paths_of(const QList<QUrl>& urls)
{
    QStringList paths;
    for (const QUrl& url : urls)
        paths += url.isLocalFile() ? url.toLocalFile() : url.toDisplayString();
    return paths.join('\n');
}

QString words_of(const QString& page)
{
    QString words = QTextDocumentFragment::fromHtml(page).toPlainText();
    return words.remove(QChar::ObjectReplacementCharacter); // where pictures were
}

} // namespace

const QStringList& text_formats()
{
    static const QStringList formats{ "text/uri-list", "text/plain", "text/html" };
    return formats;
}

QString copied_text(const QMimeData& offered)
{
    const QList<QUrl> urls = offered.urls();
    if (!urls.isEmpty() && (urls.front().isLocalFile() || !offered.hasFormat("text/plain")))
        return paths_of(urls);
    if (offered.hasFormat("text/plain"))
        return offered.text();
    return offered.hasHtml() ? words_of(offered.html()) : QString();
}

} // namespace tessavox
