#include "app/about_box.h"

#include "forms/centre_form.h"
#include "forms/localise_form.h"
#include "forms/skin.h"

namespace tessavox {

AboutBox::AboutBox(Forms& forms, Platform& platform)
    : AboutControls(forms)
    , m_platform(platform)
{
    Command1.Click = [this] { Unload(); };
}

void AboutBox::Form_Load()
{
    CentreForm(*this, m_platform.screen);
    apply_skin(*this, m_platform.skin, m_platform.app_folder);
    LocaliseForm(*this, m_platform.texts);
}

} // namespace tessavox
