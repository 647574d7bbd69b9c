#include "app/openmsg.h"

#include "app/main_window.h"
#include "persist/string_table.h"

namespace tessavox {

openmsg::openmsg(Forms& forms, frmMain& main)
    : Form(forms, "openmsg", FormKind::dialog, 4700, 1500)
{
    Caption = LoadResString(2205);
    Label1.Caption = LoadResString(2070);
    Label1.Move(240, 240, 4220, 300);
    Command1.Caption = LoadResString(2071);
    Command1.Move(240, 840, 1400, 420);
    Command2.Caption = LoadResString(2072);
    Command2.Move(1800, 840, 2660, 420);
    Command1.Click = [this] { Unload(); };
    Command2.Click = [this, &main] {
        main.Show();
        Unload();
    };
}

} // namespace tessavox
