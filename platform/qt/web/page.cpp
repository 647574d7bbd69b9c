#include "platform/qt/web/page.h"

#include <QCoreApplication>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>

#include <algorithm>
#include <iterator>

namespace tessavox {
namespace {

struct SettingRow {
    QWebEngineSettings::WebAttribute attribute;
    bool is_on;
};

constexpr SettingRow settings_of_pages[] = {
    { QWebEngineSettings::LocalContentCanAccessFileUrls, false },
    { QWebEngineSettings::LocalContentCanAccessRemoteUrls, false },
    { QWebEngineSettings::JavascriptCanAccessClipboard, false },
    { QWebEngineSettings::JavascriptCanPaste, false },
    { QWebEngineSettings::JavascriptCanOpenWindows, false },
    { QWebEngineSettings::AllowWindowActivationFromJavaScript, false },
    { QWebEngineSettings::NavigateOnDropEnabled, false },
    { QWebEngineSettings::HyperlinkAuditingEnabled, false },
    { QWebEngineSettings::WebRTCPublicInterfacesOnly, true },
    { QWebEngineSettings::PluginsEnabled, false },
    { QWebEngineSettings::PdfViewerEnabled, false }, // no text can be copied out of it
    { QWebEngineSettings::FocusOnNavigationEnabled, false },
};

bool is_any_of(const QString& scheme, std::initializer_list<const char*> schemes)
{
    return std::any_of(schemes.begin(), schemes.end(),
        [&](const char* one) { return scheme == QLatin1String(one); });
}

} // namespace

Page::Page(QWebEngineProfile& profile, const PageHost& host, QObject* parent)
    : QWebEnginePage(&profile, parent)
    , m_host(host)
{
    for (const SettingRow& row : settings_of_pages)
        settings()->setAttribute(row.attribute, row.is_on);
    settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
        [this](const QUrl& origin, Feature feature) {
            setFeaturePermission(origin, feature, PermissionDeniedByUser);
        });
    connect(this, &QWebEnginePage::newWindowRequested, this,
        [this](QWebEngineNewWindowRequest& request) {
            const QUrl address = request.requestedUrl();
            if (request.isUserInitiated() && is_any_of(address.scheme(), { "http", "https" }))
                m_host.open_outside(address);
        });
}

bool Page::javaScriptConfirm(const QUrl&, const QString& text)
{
    // So does the engine ask, by no other name, for a page that wants to keep its user.
    return text
        == QCoreApplication::translate("QWebEnginePage",
            "Are you sure you want to leave this page? Changes that you made may not be saved.");
}

bool Page::acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main)
{
    const QString scheme = url.scheme();
    if (is_any_of(scheme, { "http", "https", "about", "file" })) // a page can't lead to a file
        return true;
    if (is_any_of(scheme, { "data", "blob" }))
        return !is_main || type == NavigationTypeTyped;
    if (type == NavigationTypeLinkClicked && scheme == QLatin1String("mailto"))
        m_host.open_outside(url);
    return false;
}

} // namespace tessavox
