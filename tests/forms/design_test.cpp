#include "forms/about_controls.h"
#include "forms/dock_controls.h"
#include "forms/find_controls.h"
#include "forms/openmsg_controls.h"
#include "forms/tag_controls.h"
#include "tests/fakes/running_program.h"

#include <set>

namespace tessavox {
namespace {

std::string or_dash(const std::string& text)
{
    return text.empty() ? "-" : text;
}

/// Each control's container, place, size, text id and tool tip id; its text where that isn't the
/// one of the id. So a language with a hole shows English there.
std::string design_of(const Form& form)
{
    std::ostringstream lines;
    for (const Control* control : form.controls()) {
        std::string text;
        attempt([&] { text = StringTable().LoadResString(std::stoi("0" + control->Tag.get())); });
        lines << control->name() << ' '
              << (control->container() ? control->container()->name() : "-") << ' '
              << control->Left() << ' ' << control->Top() << ' ' << control->Width() << ' '
              << control->Height() << ' ' << or_dash(control->Tag) << ' '
              << or_dash(control->ToolTipText) << (control->Visible ? "" : " hidden");
        if (control->Caption.get() != text)
            lines << " \"" << control->Caption << '"';
        lines << ';';
    }
    lines << form.ScaleWidth() << ' ' << form.ScaleHeight() << ' ' << or_dash(form.Tag) << ';';
    return lines.str();
}

/// Each item's menu, text id or text, and shortcut; then the buttons and panels of the bars.
std::string design_of_main(const MainControls& main)
{
    std::ostringstream lines;
    for (const Control* control : main.controls()) {
        const auto* const item = dynamic_cast<const MenuItem*>(control);
        if (item && !item->Caption.get().empty())
            lines << item->name() << ' ' << (item->container() ? item->container()->name() : "-")
                  << ' ' << or_dash(item->Caption) << (item->Shortcut.empty() ? "" : " ")
                  << item->Shortcut << (item->Visible ? "" : " hidden") << ';';
    }
    for (const ToolBar* bar : { &main.tbToolBar, &main.Toolbar2 }) {
        for (const BarMember& button : bar->Buttons())
            lines << "button " << or_dash(button.key()) << ' ' << or_dash(button.Tag) << ';';
    }
    for (const StatusBar::Panel& panel : main.sbStatusBar.panels())
        lines << "panel " << or_dash(panel.key) << ' ' << panel.width << ' '
              << static_cast<int>(panel.kind) << ';';
    return lines.str();
}

/// FNV-1a.
std::uint64_t fingerprint(const std::string& text)
{
    std::uint64_t sum = 14695981039346656037U;
    for (const char letter : text)
        sum = (sum ^ static_cast<unsigned char>(letter)) * 1099511628211U;
    return sum;
}

/// Places, sizes, numbers of texts, shortcuts and their order are fixed. Whoever changes one for
/// good reason sees here what the window has become, and its new sum.
TEST(Design, OfEveryWindowIsKept)
{
    const RunningProgram program;
    FakePlatform outside;
    Forms forms{ outside.windows, outside.platform.post, [] {} };
    const DocumentControls document{ forms, outside.panes.create(), outside.web_panes.create() };
    const std::pair<std::string, std::uint64_t> windows[] = {
        { design_of(document), 14133167500872771251U },
        { design_of_main(program.main), 7300751313036072672U },
        { design_of(OpenmsgControls(forms)), 12071368473032865188U },
        { design_of(DockControls(forms)), 13463864285003018080U },
        { design_of(AboutControls(forms)), 17525624560396447048U },
        { design_of(FindControls(forms)), 11906466173826917714U },
        { design_of(SilenceControls(forms)), 7062313179984285144U },
        { design_of(SpeedControls(forms)), 11319760139408153434U },
        { design_of(VoiceControls(forms)), 5941711017935267606U },
    };
    for (const auto& [design, expected] : windows)
        EXPECT_EQ(fingerprint(design), expected) << design;
    EXPECT_EQ(program.main.Tag, "2205");
    EXPECT_FALSE(program.main.Toolbar2.Visible);

    std::string tabs;
    for (const BarMember& tab : document.TabStrip1.Tabs())
        tabs += tab.key() + " " + tab.Caption.get() + " " + tab.Tag.get() + " "
            + tab.ToolTipText.get() + "; ";
    EXPECT_EQ(tabs, "text Text 2116 2130; xml Web 2117 2131; ");
    const auto range_of = [](const ScrollBar& bar) {
        const ScrollBarRange& range = bar.range();
        return std::vector{ range.Min, range.Max, range.SmallChange, range.LargeChange,
            bar.Value.get() };
    };
    EXPECT_EQ(range_of(document.cpvSlider1), (std::vector{ -10, 10, 1, 6, 0 }));
    EXPECT_EQ(range_of(document.cpvSlider2), (std::vector{ 0, 100, 1, 30, 100 }));
    EXPECT_EQ(document.Check1.Value, 1);
    EXPECT_EQ(document.SkipTxtBox.Text, "0");
    EXPECT_EQ(document.Combo1.Text, "Http://");
    const auto& pane = static_cast<const FakePane&>(document.rtfText.pane());
    EXPECT_EQ(pane.font_name + std::to_string(pane.font_size), "Comic Sans MS12.000000");
}

TEST(Design, HasALetterForEachItemOfATranslatedMenu)
{
    for (const int language : { 1031, 1066 }) {
        RunningProgram program;
        program.texts = StringTable(strings_of_language(language));
        program.start();
        std::set<std::pair<const Control*, int>> letters;
        for (const Control* control : program.main.controls()) {
            const std::string caption = control->Caption;
            const std::size_t mark = caption.find('&');
            if (!dynamic_cast<const MenuItem*>(control) || mark == std::string::npos)
                continue;
            const int letter = std::tolower(caption.at(mark + 1));
            EXPECT_TRUE(letters.emplace(control->container(), letter).second) << caption;
        }
        EXPECT_GT(letters.size(), 40u);
    }
}

} // namespace
} // namespace tessavox
