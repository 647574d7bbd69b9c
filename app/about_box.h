// Tells the program's version.
#pragma once

#include "forms/about_controls.h"
#include "platform/platform.h"

namespace tessavox {

class AboutBox : public AboutControls {
public:
    AboutBox(Forms& forms, Platform& platform);

protected:
    void Form_Load() override;

private:
    Platform& m_platform;
};

} // namespace tessavox
