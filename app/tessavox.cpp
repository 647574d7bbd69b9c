#include "app/tessavox.h"

#include "app/start_instance.h"

namespace tessavox {

Tessavox::Tessavox(Platform& platform)
    : m_process(platform)
    , m_main(std::make_shared<frmMain>(m_process))
    , m_openmsg(std::make_shared<openmsg>(m_process.forms, platform.texts, *m_main))
    , m_text_file(platform.files, platform.message_boxes, platform.texts)
{
}

void Tessavox::Main()
{
    m_process.find_ConfigFolder();
    StartInstance(m_process, m_text_file, *m_main, m_openmsg);
    if (m_process.forms.loaded().empty())
        m_process.platform.post(m_process.platform.quit);
}

} // namespace tessavox
