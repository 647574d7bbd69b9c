#include "platform/qt/web/document_pages.h"

#include "platform/conversion/converters.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>
#include <QWebEngineDownloadRequest>

#include <chrono>
#include <utility>

namespace tessavox {
namespace {

constexpr qint64 most_bytes = qint64(256) << 20;

/// The row at or after `row` that makes pages of documents, or the end.
std::size_t next_row(std::size_t row)
{
    while (row < std::size(converters) && !(converters[row].kinds & bit(DocumentKind::pdf)))
        ++row;
    return row;
}

/// Its pictures get no words, which would be copied with the text; and whatever came through from
/// the document can neither run nor load anything. Returns whether there is a page.
bool put_right(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QByteArray page = file.readAll();
    const bool is_page = !page.isEmpty();
    page.replace("alt=\"background image\"", "alt=\"\"");
    page.replace("<head>",
        "<head><meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "img-src data:; style-src 'unsafe-inline'\"/>");
    return is_page && file.seek(0) && file.write(page) == page.size() && file.resize(page.size());
}

} // namespace

DocumentPages::DocumentPages(QString helper)
    : m_helper(std::move(helper))
{
}

DocumentPages::~DocumentPages()
{
    drop();
}

bool DocumentPages::is_document(const QWebEngineDownloadRequest& download)
{
    return !download.isSavePageDownload()
        && download.mimeType() == QLatin1String("application/pdf");
}

void DocumentPages::take(
    QWebEngineDownloadRequest& download, std::function<void(const QUrl& page)> ready)
{
    drop();
    m_ready = std::move(ready);
    m_address = download.url();
    m_folders.push_back(std::make_unique<QTemporaryDir>());
    download.setDownloadDirectory(m_folders.back()->path());
    download.setDownloadFileName(converted_document);
    QObject::connect(
        &download, &QWebEngineDownloadRequest::receivedBytesChanged, this, [&download] {
            if (download.receivedBytes() > most_bytes)
                download.cancel();
        });
    QObject::connect(&download, &QWebEngineDownloadRequest::isFinishedChanged, this,
        [this, &download, turn = m_turn] {
            if (turn != m_turn || !download.isFinished())
                return;
            if (download.state() == QWebEngineDownloadRequest::DownloadCompleted)
                convert(next_row(0));
            else
                finish({});
        });
    download.accept();
}

QString DocumentPages::document_of(const QUrl& page)
{
    return QFileInfo(page.toLocalFile()).path() + "/" + converted_document;
}

void DocumentPages::drop()
{
    ++m_turn;
    m_ready = nullptr;
    if (m_conversion) {
        m_conversion->disconnect();
        m_conversion->kill();
        m_conversion->waitForFinished();
        m_conversion.reset();
    }
}

void DocumentPages::convert(std::size_t row)
{
    if (row == std::size(converters))
        return finish({});
    const QString folder = m_folders.back()->path();
    m_conversion = std::make_unique<QProcess>();
    QProcess& conversion = *m_conversion;
    QTimer::singleShot(
        std::chrono::seconds(converters[row].most_seconds), &conversion, &QProcess::kill);
    const auto ended = [this, row, folder, turn = m_turn] {
        if (turn != m_turn)
            return;
        const QString page = folder + "/" + converted_page;
        const bool is_whole
            = m_conversion->exitStatus() == QProcess::NormalExit && m_conversion->exitCode() == 0;
        if (is_whole && put_right(page))
            finish(QUrl::fromLocalFile(page));
        else
            convert(next_row(row + 1));
    };
    // Not while the process is still on the stack of its own signal.
    QObject::connect(&conversion, &QProcess::finished, this, ended, Qt::QueuedConnection);
    QObject::connect(
        &conversion, &QProcess::errorOccurred, this,
        [ended](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                ended();
        },
        Qt::QueuedConnection);
    conversion.start(m_helper, { folder, converters[row].name });
}

void DocumentPages::finish(const QUrl& page)
{
    if (!page.isEmpty())
        m_addresses[page] = m_address;
    if (const auto ready = std::exchange(m_ready, nullptr))
        ready(page);
}

} // namespace tessavox
