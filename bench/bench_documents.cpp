// What opening, saving, searching and typing take in the pane that a user sees, with real files.
#include "platform/files/disk_file_store.h"
#include "platform/qt/rich_text_pane.h"
#include "platform/temporary_folder.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace tessavox;

constexpr std::size_t ten_million = 10'000'000;
constexpr double frame_ms = 16.7;

std::string of_size(std::size_t size, const std::string& piece, const std::string& start = {})
{
    std::string text = start;
    while (text.size() < size)
        text += piece;
    return text;
}

/// A folder with the files, and a pane as a document's window shows it.
struct Shelf {
    Shelf()
    {
        const std::string plain = "It was the best of times, it was the worst of times; and Mr. "
                                  "Lorry did not know what to say about it.\n";
        files.write(folder + "/a.txt", of_size(ten_million, plain), Durability::fleeting);
        files.write(folder + "/million.txt", of_size(1'000'000, plain), Durability::fleeting);
        files.write(folder + "/a.rtf",
            of_size(ten_million,
                "\\pard\\qj It was {\\b the best} of times, it was the {\\i worst of times}; and "
                "Mr. Lorry did not know what to say. {\\f1\\fs28\\cf1 caf\\'e9} was closed.\\par\n",
                "{\\rtf1\\ansi{\\fonttbl{\\f0 DejaVu Serif;}{\\f1 DejaVu Sans;}}"
                "{\\colortbl;\\red192\\green0\\blue0;}\n")
                + "}",
            Durability::fleeting);
        pane.set_FontName("Comic Sans MS");
        pane.set_FontSize(12);
        pane.set_RightMargin(13928);
        pane.widget().resize(1170, 640);
        pane.widget().show();
        QApplication::processEvents();
    }

    const TemporaryFolder place{ "/var/tmp" }; // on a disk, where /tmp may be none
    const std::string folder = place.path();
    DiskFileStore files;
    QtRichTextPane pane{ nullptr, &files };
};

/// Until it is painted, and the caret can be put anywhere that is seen.
void open(benchmark::State& state, const char* name, TextKind kind, double limit_ms)
{
    Shelf shelf;
    for (auto _ : state) {
        shelf.pane.LoadFile(shelf.folder + name, kind);
        shelf.pane.widget().repaint();
        benchmark::DoNotOptimize(shelf.pane.GetLineFromChar(1000));
        state.PauseTiming();
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["limit"] = limit_ms;
}

void save(benchmark::State& state, const char* name, TextKind kind)
{
    Shelf shelf;
    shelf.pane.LoadFile(shelf.folder + name, kind);
    for (auto _ : state) {
        state.PauseTiming();
        shelf.pane.set_SelText(u"x"); // so that nothing is at hand from before
        state.ResumeTiming();
        shelf.pane.SaveFile(shelf.folder + "/saved", kind);
    }
    state.counters["limit"] = 500;
}

BENCHMARK_CAPTURE(open, BM_Open10MBOfPlainText, "/a.txt", TextKind::plain, 350)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(open, BM_Open10MBOfRichText, "/a.rtf", TextKind::rich, 700)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(save, BM_Save10MBOfPlainText, "/a.txt", TextKind::plain)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(save, BM_Save10MBOfRichText, "/a.rtf", TextKind::rich)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

void BM_FindNothingIn10MB(benchmark::State& state, const char16_t* wanted, int options)
{
    Shelf shelf;
    shelf.pane.LoadFile(shelf.folder + "/a.txt", TextKind::plain);
    shelf.pane.Text();
    for (auto _ : state)
        benchmark::DoNotOptimize(shelf.pane.Find(wanted, 0, options));
    state.counters["limit"] = 20;
}
BENCHMARK_CAPTURE(BM_FindNothingIn10MB, any_case, u"timesheet", 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_FindNothingIn10MB, same_case, u"timesheet", find_match_case)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_FindNothingIn10MB, whole_words, u"time", find_whole_word)
    ->Unit(benchmark::kMillisecond);

void BM_TypeInTheMiddleOf1MB(benchmark::State& state)
{
    Shelf shelf;
    shelf.pane.LoadFile(shelf.folder + "/million.txt", TextKind::plain);
    shelf.pane.GetLineFromChar(1'000'000);
    QApplication::processEvents();
    shelf.pane.set_SelStart(500'000);
    std::int32_t line = 0;
    shelf.pane.SelChange = [&] { line = shelf.pane.GetLineFromChar(shelf.pane.SelStart()); };
    double worst = 0;
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        QTest::keyClick(&shelf.pane.widget(), 'x');
        shelf.pane.widget().repaint();
        worst = std::max(worst, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    benchmark::DoNotOptimize(line);
    state.counters["limit"] = frame_ms;
    state.counters["worst_ms"] = worst;
}
BENCHMARK(BM_TypeInTheMiddleOf1MB)->Iterations(300)->Unit(benchmark::kMillisecond);

} // namespace
