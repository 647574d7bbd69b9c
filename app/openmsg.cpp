#include "app/openmsg.h"

#include "app/main_window.h"
#include "forms/localise_form.h"

namespace tessavox {

openmsg::openmsg(Forms& forms, const Texts& texts, frmMain& main)
    : OpenmsgControls(forms)
    , m_texts(texts)
{
    Command1.Click = [this] { Unload(); };
    Command2.Click = [this, &main] {
        main.Show();
        Unload();
    };
}

void openmsg::Form_Load()
{
    LocaliseForm(*this, m_texts);
}

} // namespace tessavox
