// What a document window shows, by design.
#pragma once

#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/containers.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/rich_text_box.h"
#include "platform/controls/scroll_bar.h"
#include "platform/controls/text_box.h"
#include "platform/controls/web_browser.h"

namespace tessavox {

/// The controls of frmDocument in the order of the tab key. Of two that overlap the later one is on
/// top, so the strip of tabs comes before the panes that cover it.
struct DocumentControls : Form {
    DocumentControls(
        Forms& forms, std::unique_ptr<RichTextPane> text_pane, std::unique_ptr<WebPane> web_pane);

    PictureBox Picture1{ *this, "Picture1" };
    CommandButton SpeakBtn{ *this, "SpeakBtn" };
    CommandButton StopBtn{ *this, "StopBtn" };
    CommandButton PauseBtn{ *this, "PauseBtn" };
    CommandButton ResumeBtn{ *this, "ResumeBtn" };

    PictureBox Picture3{ *this, "Picture3" };
    CommandButton SpeaktofileBtn{ *this, "SpeaktofileBtn" };
    CommandButton Play{ *this, "Play" };
    CommandButton ReadClipbdBtn{ *this, "ReadClipbdBtn" };
    CommandButton ReadClipboardtoFile{ *this, "ReadClipboardtoFile" };
    CommandButton Command4{ *this, "Command4" };

    PictureBox Picboxsetting{ *this, "Picboxsetting" };
    Frame Frame2{ *this, "Frame2" };
    Label SpeakerLabel{ *this, "SpeakerLabel" };
    ComboBox VoiceCB{ *this, "VoiceCB", ComboBoxStyle::list_only };
    Label FormatLabel{ *this, "FormatLabel" };
    ComboBox FormatCB{ *this, "FormatCB", ComboBoxStyle::list_only };
    Label SpeedLabel{ *this, "SpeedLabel" };
    ScrollBar cpvSlider1{ *this, "cpvSlider1", { -10, 10, 1, 6 } };
    Label VolumeLabel{ *this, "VolumeLabel" };
    ScrollBar cpvSlider2{ *this, "cpvSlider2", { 0, 100, 1, 30 } };
    CheckBox Check1{ *this, "Check1" };
    CommandButton ResetBtn{ *this, "ResetBtn" };

    TabStrip TabStrip1;
    PictureBox PicBox{ *this, "PicBox" };
    RichTextBox rtfText;

    // The web view.
    CoolBar CoolBar1{ *this, "CoolBar1" };
    ComboBox Combo1{ *this, "Combo1", ComboBoxStyle::editable };
    CommandButton Command3{ *this, "Command3" };
    PictureBox Picbox2{ *this, "Picbox2" };
    WebBrowser WebBrowser1;

    // Never seen: the boxes hold the bits of the speak flags, the rest has no way to be reached.
    Frame Frame1{ *this, "Frame1" };
    CheckBox chkSpFlagIsXML{ *this, "chkSpFlagIsXML" };
    CheckBox chkShowEvents{ *this, "chkShowEvents" };
    CheckBox chkSpFlagNLPSpeakPunc{ *this, "chkSpFlagNLPSpeakPunc" };
    CheckBox chkSpFlagPurgeBeforeSpeak{ *this, "chkSpFlagPurgeBeforeSpeak" };
    CheckBox chkSpFlagAync{ *this, "chkSpFlagAync" };
    CheckBox chkSpFlagIsFilename{ *this, "chkSpFlagIsFilename" };
    CheckBox chkSpFlagPersistXML{ *this, "chkSpFlagPersistXML" };
    ComboBox AudioOutputCB{ *this, "AudioOutputCB", ComboBoxStyle::list_only };
    CommandButton SkipBtn{ *this, "SkipBtn" };
    TextBox SkipTxtBox{ *this, "SkipTxtBox" };
    Control UpDown1{ *this, "UpDown1", "UpDown" };
    Control SkinLabel2{ *this, "SkinLabel2", "SkinLabel" };
    CommandButton Command1{ *this, "Command1" };
    CommandButton Command2{ *this, "Command2" };
    CommandButton ReadClipboardBtn{ *this, "ReadClipboardBtn" };
};

} // namespace tessavox
