// Keys given by KDE's service for global shortcuts, org.kde.kglobalaccel.
#pragma once

#include "platform/qt/desktop_hot_keys.h"

#include <QList>
#include <QStringList>

#include <array>

namespace tessavox {

/// Keys in a row, as Qt numbers them; 0 is none. KDE's service, which is a part of the compositor,
/// crashes if it is sent any other number of them.
struct KdeKeySequence {
    std::array<int, 4> keys{};
};
using KdeKeySequences = QList<KdeKeySequence>;

/// Users find the keys in the system settings, where they can change them.
class KdeHotKeys : public DesktopHotKeys {
    Q_OBJECT

public:
    explicit KdeHotKeys(Listener listener);
    /// KDE keeps a key for a program that has ended until somebody gives it back.
    ~KdeHotKeys() override;
    void give_back(int id) override;

protected:
    void begin() override;

private slots:
    void key_pressed(const QString& program, const QString& id, qlonglong milliseconds);
    void keys_changed(const QStringList& action, const QList<tessavox::KdeKeySequence>& keys);

private:
    QStringList action(int id) const;
};

} // namespace tessavox
