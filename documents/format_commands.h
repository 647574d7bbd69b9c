// The Format and Window menus: fonts, bullets, letters, and the arrangement of the documents.
#pragma once

#include "documents/process.h"
#include "forms/main_controls.h"
#include "persist/text_file.h"
#include "platform/font_dialogs.h"

#include <string>
#include <string_view>

namespace tessavox {

class FileCommands;

/// The commands for letters, scripts and bullets make a document if there is none.
class FormatCommands {
public:
    /// Adds its commands to the two menus. `text_file` writes the settings of the main window.
    FormatCommands(Process& process, MainControls& main, FileCommands& files, PCCFile& text_file);

    /// Gives the selection a font, and new documents the same from now on. The dialog keeps what it
    /// held for a format that the selection mixes; a cancelled one gives all of it back.
    void mnuFormatFont_Click();
    void mnuFormatBullets_Click();
    void mnuFormatCSLower_Click();
    void mnuFormatCSUpper_Click();
    void mnuFormatCSSC_Click();
    void mnuFormatSubScript_Click();
    void mnuFormatSuperScript_Click();
    void mnuFormatNoScript_Click();
    void mnuWindowNewWindow_Click();
    void mnuWindowCascade_Click();
    void mnuWindowTileHorizontal_Click();
    void mnuWindowTileVertical_Click();
    void mnuWindowArrangeIcons_Click();

private:
    void ChangeCase(std::u16string (*convert)(std::u16string_view));
    void ToggleBullet();
    void save_font();

    Process& m_process;
    FileCommands& m_files;
    PCCFile& m_text_file;
    FontChoice m_font; // what the dialog keeps between commands
};

} // namespace tessavox
