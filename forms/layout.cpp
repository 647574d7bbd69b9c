#include "forms/layout.h"

#include "forms/document_controls.h"
#include "forms/main_controls.h"
#include "platform/controls/pick.h"
#include "platform/failure.h"

#include <span>

namespace tessavox {

namespace {

using D = DocumentControls;
using M = MainControls;

/// One of a control's four numbers: left as it is, or an offset to a length, in twips.
struct Length {
    enum From { kept, zero, client, container } from = kept;
    double plus = 0;
};
constexpr Length keep{};
constexpr Length at(double twips)
{
    return { Length::zero, twips };
}
/// The window's client width or height, whichever the number is about, and an offset to it.
constexpr Length client(double plus)
{
    return { Length::client, plus };
}
/// The same of the control's container.
constexpr Length container(double plus)
{
    return { Length::container, plus };
}

struct MoveRow {
    Pick<D> control;
    Length left, top, width, height;
};

/// What is on in the text view and in the web view.
template <class Window> struct ViewRow {
    Pick<Window> control;
    bool text;
    bool web;
};

enum class View { text, web };

constexpr MoveRow text_moves[] = {
    { pick<&D::Picture3>, at(2900), at(0), keep, keep },
    { pick<&D::Picture1>, keep, at(0), keep, keep },
    { pick<&D::Picboxsetting>, keep, at(2600), keep, keep },
    { pick<&D::PicBox>, at(2900), at(500), client(-2900), client(-800) },
    { pick<&D::rtfText>, at(0), at(0), container(-15), container(-5) },
    { pick<&D::TabStrip1>, at(2900), at(500), client(-2900), client(-500) },
};

// The strip gets the full width first and loses the column then: in a window narrower than the
// column only the second move fails.
constexpr MoveRow web_moves[] = {
    { pick<&D::Picture1>, keep, at(450), keep, keep },
    { pick<&D::Picture3>, at(2900), at(450), keep, keep },
    { pick<&D::Picboxsetting>, keep, at(3050), keep, keep },
    { pick<&D::Picbox2>, at(2900), at(1000), client(-2900), client(-1300) },
    { pick<&D::WebBrowser1>, at(0), at(0), container(0), container(0) },
    { pick<&D::TabStrip1>, at(2900), at(1000), client(0), client(-1000) },
    { pick<&D::TabStrip1>, keep, keep, client(-2900), keep },
    { pick<&D::CoolBar1>, at(200), at(0), client(-320), keep },
    { pick<&D::Combo1>, at(0), at(50), client(-1000), keep },
    { pick<&D::Command3>, client(-950), keep, keep, keep },
};

constexpr ViewRow<D> shown[] = {
    { pick<&D::PicBox>, true, false },
    { pick<&D::Picbox2>, false, true },
    { pick<&D::rtfText>, true, false },
    { pick<&D::WebBrowser1>, false, true },
    { pick<&D::CoolBar1>, false, true },
};

constexpr ViewRow<M> enabled[] = {
    { pick<&M::mnuInsert>, true, false },
    { pick<&M::mnuEdit>, true, false },
    { pick<&M::mnuFormat>, true, false },
    { pick<&M::mnuWindow>, true, false },
    { pick<&M::mnuFileNew>, true, true },
    { pick<&M::mnuFileSave>, true, false },
    { pick<&M::mnuFileSaveAs>, true, false },
    { pick<&M::mnuFilePrint>, true, false },
};

struct Outer {
    double client;
    double container;
};

double value_of(const Length& length, double kept, const Outer& outer)
{
    switch (length.from) {
    case Length::kept:
        return kept;
    case Length::zero:
        return length.plus;
    case Length::client:
        return outer.client + length.plus;
    case Length::container:
        break;
    }
    return outer.container + length.plus;
}

void move(D& document, std::span<const MoveRow> rows)
{
    for (const MoveRow& row : rows) {
        Control& control = row.control(document);
        const Control* holder = control.container();
        const Outer across{ document.ScaleWidth(), holder ? holder->Width() : 0 };
        const Outer down{ document.ScaleHeight(), holder ? holder->Height() : 0 };
        attempt([&] {
            control.Move(value_of(row.left, control.Left(), across),
                value_of(row.top, control.Top(), down),
                value_of(row.width, control.Width(), across),
                value_of(row.height, control.Height(), down));
        });
    }
}

void show_panes(D& document, View view)
{
    for (const auto& row : shown)
        row.control(document).Visible = view == View::text ? row.text : row.web;
}

void enable_menus(M& main, View view)
{
    for (const auto& row : enabled)
        row.control(main).Enabled = view == View::text ? row.text : row.web;
}

} // namespace

void control_pos(D& document, M& main, const Handler& focused)
{
    main.tbToolBar.Visible = true;
    main.Toolbar2.Visible = false;
    move(document, text_moves);
    show_panes(document, View::text);
    attempt([&] { document.rtfText.SetFocus(); });
    focused();
    enable_menus(main, View::text);
}

void control_pos2(D& document, M& main)
{
    main.tbToolBar.Visible = false;
    main.Toolbar2.Visible = true;
    move(document, web_moves);
    show_panes(document, View::web);
    attempt([&] { document.WebBrowser1.SetFocus(); });
    enable_menus(main, View::web);
}

void fit_text_pane(D& document, const M& main)
{
    constexpr double share_of_width = 0.7;
    constexpr double edge_twips = 15;
    constexpr double margin_twips = 400;
    Control& box = document.PicBox;
    RichTextBox& text = document.rtfText;
    attempt_each(
        [&] {
            box.Move(box.Left(), box.Top(), share_of_width * main.ScaleWidth(), main.ScaleHeight());
        },
        [&] { text.Move(0, 0, box.Width() - edge_twips, box.Height()); },
        [&] { text->set_RightMargin(text.Width() - margin_twips); });
}

} // namespace tessavox
