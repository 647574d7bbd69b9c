// PDF documents as pages of the web, so that their text can be selected and copied like any other.
#pragma once

#include <QMap>
#include <QObject>
#include <QTemporaryDir>
#include <QUrl>

#include <functional>
#include <memory>
#include <vector>

class QProcess;
class QWebEngineDownloadRequest;

namespace tessavox {

/// The document may be from anywhere, so it is opened by a program in a confined process, which
/// leaves a page. Pages stay until this goes, as the history leads back to them.
class DocumentPages : public QObject {
public:
    /// `helper` is the path of tessavox-document-helper.
    explicit DocumentPages(QString helper);
    ~DocumentPages() override;

    static bool is_document(const QWebEngineDownloadRequest& download);
    /// Takes the document in the place of a download. In the end `ready` runs with its page, or
    /// with nothing where it can't be shown; not if another one is taken before.
    void take(QWebEngineDownloadRequest& download, std::function<void(const QUrl& page)> ready);
    /// The address of the document that a page was made of, or `page` itself.
    QUrl address_of(const QUrl& page) const { return m_addresses.value(page, page); }
    /// The file of the document that a page was made of.
    static QString document_of(const QUrl& page);
    /// What is under way comes to nothing.
    void drop();

private:
    void convert(std::size_t row);
    void finish(const QUrl& page);

    QString m_helper;
    std::vector<std::unique_ptr<QTemporaryDir>> m_folders;
    QMap<QUrl, QUrl> m_addresses; // of documents, by those of their pages
    QUrl m_address; // of the one under way
    std::function<void(const QUrl&)> m_ready;
    std::unique_ptr<QProcess> m_conversion;
    int m_turn = 0;
};

} // namespace tessavox
