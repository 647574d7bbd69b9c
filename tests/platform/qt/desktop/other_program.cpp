#include "tests/platform/qt/desktop/other_program.h"

#include <QApplication>
#include <QClipboard>
#include <QDataStream>
#include <QFile>
#include <QMimeData>

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <memory>

namespace tessavox {
namespace {

constexpr int bound_ms = 20'000;
constexpr const char* offering = "--offers";
constexpr const char* pasting = "--pastes";

bool is_wayland()
{
    return qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

int offer_and_wait()
{
    QFile input;
    input.open(stdin, QIODevice::ReadOnly);
    QDataStream stream(input.readAll());
    OtherProgram::Offer offer;
    stream >> offer;
    auto* offered = std::make_unique<QMimeData>().release(); // the clipboard owns it
    for (auto row = offer.begin(); row != offer.end(); ++row)
        offered->setData(row.key(), row.value());
    QApplication::clipboard()->setMimeData(offered);
    std::cout << "ready" << std::endl;
    return QApplication::exec();
}

int paste()
{
    std::cout << QApplication::clipboard()->text().toStdString();
    return 0;
}

} // namespace

OtherProgram::OtherProgram(const Offer& offer)
{
    if (is_wayland()) {
        m_process.start("wl-copy", { "--foreground", "--type", offer.firstKey() });
        m_process.write(offer.first());
        m_process.closeWriteChannel();
        return;
    }
    m_process.start(QCoreApplication::applicationFilePath(), { offering });
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << offer;
    m_process.write(bytes);
    m_process.closeWriteChannel();
    EXPECT_TRUE(m_process.waitForReadyRead(bound_ms));
}

OtherProgram::~OtherProgram()
{
    m_process.kill();
    m_process.waitForFinished(bound_ms);
}

void OtherProgram::stop()
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP);
}

void OtherProgram::go_on()
{
    ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT);
}

QString OtherProgram::pasted()
{
    QProcess process;
    if (is_wayland())
        process.start("wl-paste", { "--no-newline", "--type", "text/plain" });
    else
        process.start(QCoreApplication::applicationFilePath(), { pasting });
    while (process.state() != QProcess::NotRunning)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); // it asks this process
    return QString::fromUtf8(process.readAllStandardOutput());
}

bool OtherProgram::is_it(int count, char** arguments, int& exit_code)
{
    const QByteArray task = count > 1 ? arguments[1] : "";
    if (task == offering)
        exit_code = offer_and_wait();
    else if (task == pasting)
        exit_code = paste();
    else
        return false;
    return true;
}

} // namespace tessavox
