// Controls that are pressed, and the plain ones that only show or hold something.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

class CommandButton : public Control {
public:
    CommandButton(Form& form, std::string name)
        : Control(form, std::move(name), "CommandButton")
    {
    }
    Handler Click;

    /// The user pressed it. A disabled button has no effect.
    void user_press()
    {
        if (Enabled && Click)
            Click();
    }
};

class MenuItem : public Control {
public:
    MenuItem(Form& form, std::string name)
        : Control(form, std::move(name), "Menu")
    {
    }
    /// Such as "Ctrl+F5"; empty if none. A caption of "-" makes a separator. The container is the
    /// menu that it stands in, or null for a menu of the menu bar.
    std::string Shortcut;
    Handler Click;

    void user_choose()
    {
        if (Enabled && Click)
            Click();
    }
};

class CheckBox : public Control {
public:
    CheckBox(Form& form, std::string name);
    /// 0 clear, 1 ticked, 2 grey. A change runs Click, whoever makes it; the same value again does
    /// not. @throws Failure for any other value.
    Property<int> Value;
    Handler Click;

    void user_toggle() { Value = Value == 1 ? 0 : 1; }
};

class Label : public Control {
public:
    Label(Form& form, std::string name)
        : Control(form, std::move(name), "Label")
    {
    }
};

/// Contains other controls; a frame has a caption and an edge, a picture box neither.
class Frame : public Control {
public:
    Frame(Form& form, std::string name)
        : Control(form, std::move(name), "Frame")
    {
    }
};

class PictureBox : public Control {
public:
    PictureBox(Form& form, std::string name)
        : Control(form, std::move(name), "PictureBox")
    {
    }
};

/// The band above a web page; contains the address box and its button.
class CoolBar : public Control {
public:
    CoolBar(Form& form, std::string name)
        : Control(form, std::move(name), "CoolBar")
    {
    }
};

/// The place of a web page among the controls of a form.
class WebBrowser : public Control {
public:
    WebBrowser(Form& form, std::string name)
        : Control(form, std::move(name), "WebBrowser")
    {
    }
};

class TextBox : public Control {
public:
    TextBox(Form& form, std::string name)
        : Control(form, std::move(name), "TextBox")
        , Text({}, announcer())
    {
    }
    Property<std::string> Text;

    void user_edit(std::string text) { Text = std::move(text); }
};

} // namespace tessavox
