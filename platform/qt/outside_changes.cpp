#include "platform/qt/outside_changes.h"

#include "platform/qt/clipboard.h"

#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace tessavox {
namespace {

/// How soon a folder that was taken away is looked for again.
constexpr int search_interval_ms = 1000;
constexpr std::uint32_t any_change = IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_TO
    | IN_MOVED_FROM | IN_MOVE_SELF | IN_ONLYDIR;

} // namespace

QtOutsideChanges::QtOutsideChanges(QtClipboard& clipboard)
    : m_notices(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    clipboard.when_changed([this] { tell(); });
    if (m_notices < 0)
        return;
    auto& arrival = *new QSocketNotifier(m_notices, QSocketNotifier::Read, this);
    connect(&arrival, &QSocketNotifier::activated, this, &QtOutsideChanges::folder_changed);
}

QtOutsideChanges::~QtOutsideChanges()
{
    if (m_notices >= 0)
        ::close(m_notices);
}

void QtOutsideChanges::watch(const std::string& folder, Handler notice)
{
    m_folder = folder;
    m_notice = std::move(notice);
    watch_folder();
}

void QtOutsideChanges::watch_folder()
{
    if (m_notices >= 0 && ::inotify_add_watch(m_notices, m_folder.c_str(), any_change) < 0)
        QTimer::singleShot(search_interval_ms, this, &QtOutsideChanges::watch_folder);
}

void QtOutsideChanges::folder_changed()
{
    alignas(inotify_event) std::array<char, 4096> notices;
    bool is_lost = false; // moved away or deleted, and maybe another stands in its place
    for (;;) {
        const auto size = ::read(m_notices, notices.data(), notices.size());
        if (size <= 0)
            break;
        for (std::size_t at = 0; at < static_cast<std::size_t>(size);) {
            inotify_event notice{};
            std::memcpy(&notice, notices.data() + at, sizeof(notice));
            is_lost = is_lost || (notice.mask & (IN_IGNORED | IN_MOVE_SELF)) != 0;
            at += sizeof(notice) + notice.len;
        }
    }
    if (is_lost)
        watch_folder();
    tell();
}

void QtOutsideChanges::tell()
{
    if (m_notice)
        m_notice();
}

} // namespace tessavox
