// What finding and replacing through a long text cost in the pane that shows it.
#include "platform/qt/rich_text_pane.h"

#include <QApplication>
#include <QWidget>

#include <benchmark/benchmark.h>

namespace {

using namespace tessavox;

constexpr std::size_t long_text_units = 10'000'000;

/// `matches` lines hold the word "needle", evenly spread.
std::u16string haystack(std::size_t matches)
{
    constexpr std::u16string_view line
        = u"The reader selects every word that is spoken, and names the next one.\n";
    constexpr std::u16string_view match = u"Here lies a needle in the hay, and nobody needs it.\n";
    std::u16string text;
    text.reserve(long_text_units + line.size());
    for (std::size_t found = 0; text.size() < long_text_units;) {
        const bool is_due = found < matches && text.size() >= long_text_units / matches * found;
        text += is_due ? match : line;
        found += is_due ? 1 : 0;
    }
    return text;
}

struct ShownPane {
    explicit ShownPane(std::size_t matches)
    {
        pane.widget().resize(1170, 640);
        pane.widget().show();
        pane.set_Text(haystack(matches));
        // Being asked for its last line makes the pane lay everything out.
        pane.GetLineFromChar(static_cast<std::int32_t>(long_text_units));
        QApplication::processEvents();
    }
    QtRichTextPane pane;
};

void FindThroughALongText(benchmark::State& state)
{
    ShownPane shown(0);
    for (auto _ : state)
        benchmark::DoNotOptimize(shown.pane.Find(u"needle", 0, static_cast<int>(state.range(0))));
}
BENCHMARK(FindThroughALongText)->Arg(0)->Arg(4)->Unit(benchmark::kMillisecond);

/// The same steps as the dialog's Replace All.
void ReplaceAll(benchmark::State& state)
{
    const auto matches = static_cast<std::size_t>(state.range(0));
    ShownPane shown(matches);
    const std::u16string words[] = { u"needle", u"straw" };
    for (std::size_t round = 0; auto _ : state) {
        const std::u16string& wanted = words[round % 2];
        const std::u16string& replacement = words[++round % 2];
        std::size_t count = 0;
        state.PauseTiming();
        shown.pane.set_SelStart(0); // where the caret stands after a text was opened
        shown.pane.GetLineFromChar(static_cast<std::int32_t>(long_text_units));
        state.ResumeTiming();
        {
            const OneStep step(shown.pane);
            for (std::int32_t start = 0; shown.pane.Find(wanted, start, 0) != -1; ++count) {
                start = shown.pane.SelStart() + shown.pane.SelLength();
                shown.pane.set_SelText(replacement);
            }
        }
        if (count != matches)
            state.SkipWithError("matches were missed");
    }
}
BENCHMARK(ReplaceAll)->Arg(10'000)->Iterations(4)->Unit(benchmark::kMillisecond);

} // namespace
