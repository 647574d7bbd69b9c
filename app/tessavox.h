// The program as a whole, apart from the world outside.
#pragma once

#include "app/main_window.h"
#include "app/openmsg.h"
#include "documents/process.h"
#include "persist/text_file.h"

#include <memory>

namespace tessavox {

/// Has to live until the message loop has ended.
class Tessavox {
public:
    explicit Tessavox(Platform& platform);

    /// The program's entry. Returns when its windows are set up; the message loop is the
    /// platform's. A process that has only passed a command on posts the end of that loop.
    void Main();
    frmMain& main_window() { return *m_main; }

private:
    Process m_process;
    std::shared_ptr<frmMain> m_main;
    std::shared_ptr<openmsg> m_openmsg;
    PCCFile m_text_file;
};

} // namespace tessavox
