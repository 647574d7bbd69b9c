// The beginning of every benchmark of what Qt shows.
#include <QApplication>
#include <QFont>

#include <benchmark/benchmark.h>

int main(int count, char** arguments)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, arguments);
    QFont::insertSubstitution("Comic Sans MS", "Comic Neue");
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
