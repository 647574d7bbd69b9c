// The dialogs that put speech tags into the active document.
#pragma once

#include "documents/process.h"
#include "forms/main_controls.h"
#include "forms/tag_controls.h"

namespace tessavox {

/// Each is made anew to be opened, so it starts from the values of its design, and goes with its OK
/// button. Nothing that is entered is checked.
class Selectionfrm1 : public SilenceControls {
public:
    Selectionfrm1(Process& process, MainControls& main);

protected:
    void Form_Load() override;

private:
    Process& m_process;
};

class Selectionfrm : public SpeedControls {
public:
    Selectionfrm(Process& process, MainControls& main);

protected:
    void Form_Load() override;

private:
    Process& m_process;
};

class SelectionVoice : public VoiceControls {
public:
    SelectionVoice(Process& process, MainControls& main);

protected:
    void Form_Load() override;

private:
    Process& m_process;
};

} // namespace tessavox
