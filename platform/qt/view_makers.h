// One maker for each kind of control; make_widget_view() chooses among them.
#pragma once

#include "platform/qt/control_view.h"

namespace tessavox {

class CheckBox;
class ComboBox;
class CommandButton;
class Frame;
class Label;
class RichTextBox;
class ScrollBar;
class TabStrip;
class TextBox;
class WebBrowser;

std::unique_ptr<WidgetView> view_command_button(CommandButton& button, QWidget& parent);
std::unique_ptr<WidgetView> view_check_box(CheckBox& box, QWidget& parent);
std::unique_ptr<WidgetView> view_label(Label& label, QWidget& parent);
std::unique_ptr<WidgetView> view_frame(Frame& frame, QWidget& parent);
std::unique_ptr<WidgetView> view_combo_box(ComboBox& box, QWidget& parent);
std::unique_ptr<WidgetView> view_scroll_bar(ScrollBar& bar, QWidget& parent);
std::unique_ptr<WidgetView> view_text_box(TextBox& box, QWidget& parent);
std::unique_ptr<WidgetView> view_tab_strip(TabStrip& strip, QWidget& parent);
std::unique_ptr<WidgetView> view_rich_text_box(RichTextBox& box, QWidget& parent);
std::unique_ptr<WidgetView> view_web_browser(WebBrowser& browser, QWidget& parent);

} // namespace tessavox
