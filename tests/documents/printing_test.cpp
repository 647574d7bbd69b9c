#include "tests/fakes/running_program.h"

namespace tessavox::tests {
namespace {

using Printing = StartedProgramTest;

TEST_F(Printing, GoesPageAfterPageToTheEndWhateverIsSelected)
{
    const std::pair<const char16_t*, const char*> rows[] = { { u"", "[]" }, { u"a", "[a]" },
        { u"exact", "[exact]" }, { u"exactly", "[exact|ly]" }, { u"ten units!", "[ten u|nits!]" } };
    int released = 0;
    for (const auto& [text, printed] : rows) {
        pane().set_Text(text);
        pane().user_selects(1, 2);
        printer.printed.clear();
        main.tbToolBar.user_press(5);
        EXPECT_EQ(printer.printed, std::string("first.txt") + printed);
        EXPECT_EQ(pane().formats_released, ++released);
    }
    // Half an inch from each edge of the paper, less what can't be printed on.
    EXPECT_EQ(pane().print_area.left, 360);
    EXPECT_EQ(pane().print_area.top, 540);
    EXPECT_EQ(pane().print_area.right, 11906 - 720 - 360);
    EXPECT_EQ(pane().print_area.bottom, 16838 - 720 - 180);
}

TEST_F(Printing, NeedsADocument)
{
    main.mnuFileClose.run();
    main.mnuFilePrint.run();
    const auto shown = boxes.take_shown();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].title + ": " + shown[0].text, "Tessavox: No open documents !");
    EXPECT_EQ(printer.printed, "");
}

} // namespace
} // namespace tessavox::tests
