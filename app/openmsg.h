// Asks what to do when a copy of the program runs already.
#pragma once

#include "forms/openmsg_controls.h"
#include "platform/texts.h"

namespace tessavox {

class frmMain;

class openmsg : public OpenmsgControls {
public:
    openmsg(Forms& forms, const Texts& texts, frmMain& main);

protected:
    void Form_Load() override;

private:
    const Texts& m_texts;
};

} // namespace tessavox
