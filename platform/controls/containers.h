// Controls that other controls lie in.
#pragma once

#include "platform/controls/control.h"

namespace tessavox {

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

} // namespace tessavox
