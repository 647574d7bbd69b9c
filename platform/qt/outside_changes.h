// Notices of changed files and of a changed clipboard.
#pragma once

#include "platform/outside_changes.h"

#include <QObject>

namespace tessavox {

class QtClipboard;

class QtOutsideChanges : public QObject, public OutsideChanges {
public:
    /// `clipboard` tells nobody else, and must not change when this is gone.
    explicit QtOutsideChanges(QtClipboard& clipboard);
    ~QtOutsideChanges() override;
    void watch(const std::string& folder, Handler notice) override;

private:
    void watch_folder();
    void folder_changed();
    void tell();

    int m_notices; // the system's queue of them, -1 if it has none left for us
    std::string m_folder;
    Handler m_notice;
};

} // namespace tessavox
