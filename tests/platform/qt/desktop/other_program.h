// Another program on the same desktop: this one once more, with an argument that says what to do,
// or in a Wayland session, where windows can copy only in front, a program without any.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>

namespace tessavox {

/// Offers something on the clipboard while it lives: at once, or soon in a Wayland session. A
/// stopped one answers nobody.
class OtherProgram {
public:
    using Offer = QMap<QString, QByteArray>; // by format
    explicit OtherProgram(const Offer& offer);
    ~OtherProgram();

    void stop();
    void go_on();
    /// What one gets that pastes plain text.
    static QString pasted();
    /// What main() does in such a process; nothing in the process of the tests.
    static bool is_it(int count, char** arguments, int& exit_code);

private:
    QProcess m_process;
};

} // namespace tessavox
