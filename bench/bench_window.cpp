// What the window costs while a long text is read: each word selected and painted, with its line.
#include "platform/qt/print_page.h"
#include "platform/qt/rich_text_pane.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QTextEdit>
#include <QWidget>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

using namespace tessavox;

constexpr std::size_t long_text_units = 10'000'000;

std::u16string long_text(std::size_t words_in_a_paragraph)
{
    constexpr std::u16string_view words[]
        = { u"the ", u"reader ", u"selects ", u"every ", u"word ", u"that ", u"is ", u"spoken " };
    std::u16string text;
    text.reserve(long_text_units + 100);
    for (std::size_t i = 0; text.size() < long_text_units; ++i) {
        text += words[i % std::size(words)];
        if (i % words_in_a_paragraph == words_in_a_paragraph - 1)
            text += u'\n';
    }
    return text;
}

struct Word {
    std::int32_t start;
    std::int32_t length;
};

Word word_at(std::u16string_view text, std::size_t from)
{
    const auto start = text.find_first_not_of(u" \n", from);
    const auto end = text.find_first_of(u" \n", start);
    return { static_cast<std::int32_t>(start), static_cast<std::int32_t>(end - start) };
}

/// A pane of ordinary size that shows 10 MB, as it is after `settle` (seconds at most) of laying
/// out.
class LongPane {
public:
    explicit LongPane(std::size_t words_in_a_paragraph)
        : text(long_text(words_in_a_paragraph))
    {
        pane.set_FontName("Comic Sans MS");
        pane.set_FontSize(12);
        pane.set_RightMargin(13928);
        pane.set_HideSelection(false);
        pane.widget().resize(1170, 640);
        pane.widget().show();
        pane.set_Text(text);
        QApplication::processEvents();
    }

    /// All that a word costs: selection, line, and the picture of it.
    void read_word(const Word& word)
    {
        pane.set_SelStart(word.start);
        pane.set_SelLength(word.length);
        benchmark::DoNotOptimize(pane.GetLineFromChar(pane.SelStart()));
        QApplication::processEvents();
    }

    std::u16string text;
    QtRichTextPane pane;
};

void settle(LongPane& long_pane)
{
    // Being asked for its last line makes the pane lay everything out.
    long_pane.pane.GetLineFromChar(static_cast<std::int32_t>(long_pane.text.size()));
    QApplication::processEvents();
}

void read_on(benchmark::State& state, LongPane& long_pane, std::size_t from)
{
    std::vector<double> milliseconds;
    Word word = word_at(long_pane.text, from);
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        long_pane.read_word(word);
        milliseconds.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        word = word_at(long_pane.text, static_cast<std::size_t>(word.start + word.length));
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    state.counters["p50_ms"] = milliseconds[milliseconds.size() / 2];
    state.counters["p99_ms"] = milliseconds[milliseconds.size() * 99 / 100];
    state.counters["worst_ms"] = milliseconds.back();
}

void WordInALongText(benchmark::State& state)
{
    LongPane long_pane(12);
    settle(long_pane);
    read_on(state, long_pane, long_text_units / 10 * static_cast<std::size_t>(state.range(0)));
}
BENCHMARK(WordInALongText)->Arg(0)->Arg(5)->Arg(9)->Iterations(2000)->Unit(benchmark::kMillisecond);

void WordWhileTheTextIsStillLaidOut(benchmark::State& state)
{
    LongPane long_pane(12);
    read_on(state, long_pane, 0);
}
BENCHMARK(WordWhileTheTextIsStillLaidOut)->Iterations(300)->Unit(benchmark::kMillisecond);

void WordInLongParagraphs(benchmark::State& state)
{
    LongPane long_pane(static_cast<std::size_t>(state.range(0)));
    settle(long_pane);
    read_on(state, long_pane, long_text_units / 2);
}
BENCHMARK(WordInLongParagraphs)
    ->Arg(1000)
    ->Arg(15'000)
    ->Iterations(200)
    ->Unit(benchmark::kMillisecond);

void LoadingALongText(benchmark::State& state)
{
    const std::u16string text = long_text(12);
    QtRichTextPane pane;
    pane.widget().resize(1170, 640);
    pane.widget().show();
    for (auto _ : state) {
        pane.set_Text(text);
        benchmark::DoNotOptimize(pane.Text());
    }
}
BENCHMARK(LoadingALongText)->Iterations(5)->Unit(benchmark::kMillisecond);

void SelectingAllOfALongTextJustLoaded(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        LongPane long_pane(12);
        state.ResumeTiming();
        long_pane.pane.set_SelLength(static_cast<std::int32_t>(long_pane.text.size()));
        benchmark::DoNotOptimize(long_pane.pane.SelText());
        long_pane.read_word({ 0, 3 });
    }
}
BENCHMARK(SelectingAllOfALongTextJustLoaded)->Iterations(3)->Unit(benchmark::kMillisecond);

/// A printer's pages at its own fineness, without the printer.
class PdfJob : public QtPrintJob {
public:
    PdfJob()
        : m_writer(&m_bytes)
    {
        m_bytes.open(QIODevice::WriteOnly);
        m_writer.setResolution(600);
        m_writer.setPageMargins({});
        m_painter.begin(&m_writer);
    }
    double left_offset() const override { return 0; }
    double top_offset() const override { return 0; }
    double Width() const override { return 11906; }
    double Height() const override { return 16838; }
    void NewPage() override { m_writer.newPage(); }
    void EndDoc() override { m_painter.end(); }
    QPainter& painter() override { return m_painter; }

private:
    QBuffer m_bytes;
    QPdfWriter m_writer;
    QPainter m_painter;
};

void PrintingABook(benchmark::State& state)
{
    constexpr PageArea half_an_inch_inside{ 720, 720, 11906 - 720, 16838 - 720 };
    constexpr std::size_t units_of_1000_pages = 3'770'000;
    LongPane long_pane(12);
    long_pane.text.resize(units_of_1000_pages);
    long_pane.pane.set_Text(long_pane.text);
    const auto length = static_cast<std::int32_t>(long_pane.text.size());
    for (auto _ : state) {
        PdfJob job;
        int pages = 1;
        std::int32_t first = long_pane.pane.FormatRange(job, half_an_inch_inside, 0);
        for (; first < length; ++pages) {
            job.NewPage();
            first = long_pane.pane.FormatRange(job, half_an_inch_inside, first);
        }
        job.EndDoc();
        state.counters["pages"] = pages;
    }
}
BENCHMARK(PrintingABook)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
