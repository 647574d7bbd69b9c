// The dialog that finds and replaces text in the active document.
#pragma once

#include "documents/process.h"
#include "forms/find_controls.h"

namespace tessavox {

/// It searches forward and never from the start by itself; what it remembers between two clicks is
/// the caption of cmdFind: the first text means that the next search begins at the start of the
/// document, the other one ("next") that it goes on after the selection. It is made anew to be
/// opened, so it starts with empty boxes.
class frmFind : public FindControls {
public:
    explicit frmFind(Process& process);

protected:
    void Form_Load() override;

private:
    class Replacing;
    std::string text(int id) const { return m_process.platform.texts.LoadResString(id); }
    void message(const std::string& text);
    int searchOptions() const;
    RichTextPane& pane() const;
    void search();
    void first_search();
    void continued_search();
    bool selection_matches() const;
    void cmdReplace_Click();
    void cmdReplaceAll_Click();

    Process& m_process;
};

} // namespace tessavox
