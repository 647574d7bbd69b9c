#include "forms/localise_form.h"

#include "platform/controls/bars.h"
#include "platform/failure.h"
#include "platform/number_text.h"

#include <string_view>

namespace tessavox {

namespace {

/// The number has to be the whole text.
void localise(Property<std::string>& text, const std::string& number, const Texts& texts)
{
    attempt([&] { text = texts.LoadResString(to_integer16(number)); });
}

/// The text may begin with a number, and only one above 0 counts.
void localise_with_care(Property<std::string>& text, const std::string& number, const Texts& texts)
{
    if (const int id = leading_number(number); id > 0)
        attempt([&] { text = texts.LoadResString(id); });
}

void localise_tabs(TabStrip& strip, const Texts& texts)
{
    for (BarMember& tab : strip.Tabs()) {
        localise(tab.Caption, tab.Tag, texts);
        localise(tab.ToolTipText, tab.ToolTipText, texts);
    }
}

void localise_buttons(ToolBar& bar, const Texts& texts)
{
    for (BarMember& button : bar.Buttons())
        localise(button.ToolTipText, button.Tag, texts);
}

void localise_control(Control& control, const Texts& texts)
{
    const std::string_view type = control.TypeName();
    if (type == "Label" || type == "SkinLabel" || type == "Button") {
        localise(control.Caption, control.Tag, texts);
    } else if (type == "Menu") {
        localise(control.Caption, control.Caption, texts);
    } else if (auto* strip = dynamic_cast<TabStrip*>(&control)) {
        localise_tabs(*strip, texts);
    } else if (auto* bar = dynamic_cast<ToolBar*>(&control)) {
        localise_buttons(*bar, texts);
    } else {
        localise_with_care(control.Caption, control.Tag, texts);
        localise_with_care(control.ToolTipText, control.ToolTipText, texts);
    }
}

} // namespace

void LocaliseForm(Form& form, const Texts& texts)
{
    localise(form.Caption, form.Tag, texts);
    for (Control* control : form.controls())
        localise_control(*control, texts);
}

} // namespace tessavox
