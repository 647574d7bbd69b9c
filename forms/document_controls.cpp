#include "forms/document_controls.h"

#include "forms/design.h"

namespace tessavox {

namespace {

constexpr double design_width_twips = 11160;
constexpr double design_height_twips = 8490;
// A list is as high as its font asks; this is what one line of text takes.
constexpr double list_height_twips = 315;

using D = DocumentControls;

constexpr DesignRow<D> design_rows[] = {
    { pick<&D::Picture1>, nullptr, 0, 0, 2775, 2300 },
    { pick<&D::SpeakBtn>, pick<&D::Picture1>, 0, 0, 2775, 780, 1129, "Read", 2119 },
    { pick<&D::StopBtn>, pick<&D::Picture1>, 0, 760, 2775, 780, 1130, "Stop", 2120 },
    { pick<&D::PauseBtn>, pick<&D::Picture1>, 0, 1520, 2775, 780, 1131, "Pause", 2121 },
    { pick<&D::ResumeBtn>, pick<&D::Picture1>, 0, 1520, 2775, 780, 2107, "Resume", 2121 },
    { pick<&D::Picture3>, nullptr, 2900, 0, 8055, 420 },
    { pick<&D::SpeaktofileBtn>, pick<&D::Picture3>, 0, 0, 1815, 420, 1133, "Read to File", 2126 },
    { pick<&D::Play>, pick<&D::Picture3>, 1800, 0, 1455, 420, 1134, "Play File", 2127 },
    { pick<&D::ReadClipbdBtn>, pick<&D::Picture3>, 3240, 0, 1695, 420, 1132, "Read Clipboard",
        2128 },
    { pick<&D::ReadClipboardtoFile>, pick<&D::Picture3>, 4920, 0, 1935, 420, 1135,
        "Save Clipboard to File", 2311 },
    { pick<&D::Command4>, pick<&D::Picture3>, 6840, 0, 1215, 420, 2118, "Dock", 2129 },
    { pick<&D::Picboxsetting>, nullptr, 0, 2600, 2775, 3375 },
    { pick<&D::Frame2>, pick<&D::Picboxsetting>, 0, 120, 2775, 3255 },
    { pick<&D::SpeakerLabel>, pick<&D::Frame2>, 0, 240, 720, 255, 2109, "Speaker" },
    { pick<&D::VoiceCB>, pick<&D::Frame2>, 720, 240, 2055, list_height_twips, 0, "", 2122 },
    { pick<&D::FormatLabel>, pick<&D::Frame2>, 0, 720, 720, 255, 2110, "Format" },
    { pick<&D::FormatCB>, pick<&D::Frame2>, 720, 720, 2055, list_height_twips, 0, "", 2123 },
    { pick<&D::SpeedLabel>, pick<&D::Frame2>, 0, 1200, 720, 255, 2111, "Speed" },
    { pick<&D::cpvSlider1>, pick<&D::Frame2>, 720, 1200, 2055, 255 },
    { pick<&D::VolumeLabel>, pick<&D::Frame2>, 0, 1680, 720, 255, 2112, "Volume" },
    { pick<&D::cpvSlider2>, pick<&D::Frame2>, 720, 1680, 2055, 255 },
    { pick<&D::Check1>, pick<&D::Frame2>, 120, 2040, 2775, 255, 2113,
        "Read clipboard Automatically", 2124 },
    { pick<&D::ResetBtn>, pick<&D::Frame2>, 120, 2400, 2565, 345, 2114, "Reset", 2125 },
    { pick<&D::TabStrip1>, nullptr, 2900, 500, 8260, 7990 },
    { pick<&D::PicBox>, nullptr, 2900, 500, 8260, 7690 },
    { pick<&D::rtfText>, pick<&D::PicBox>, 0, 0, 8245, 7685, 2116, "Text" },
    { pick<&D::CoolBar1>, nullptr, 200, 0, 10840, 420 },
    { pick<&D::Combo1>, pick<&D::CoolBar1>, 0, 50, 10160, list_height_twips, 0, "", 2319 },
    { pick<&D::Command3>, pick<&D::CoolBar1>, 10210, 50, 600, 345, 2318, "Go" },
    { pick<&D::Picbox2>, nullptr, 2900, 1000, 8260, 7190 },
    { pick<&D::WebBrowser1>, pick<&D::Picbox2>, 0, 0, 8260, 7190, 2117, "Web" },
    // Never seen, so they have no place.
    { pick<&D::Frame1>, nullptr, 0, 0, 0, 0, 0, "Speak Flags" },
    { pick<&D::chkSpFlagIsXML>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "IsXML" },
    { pick<&D::chkShowEvents>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "Show Events" },
    { pick<&D::chkSpFlagNLPSpeakPunc>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "NLPSpeakPunc" },
    { pick<&D::chkSpFlagPurgeBeforeSpeak>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "PurgeBeforeSpeak" },
    { pick<&D::chkSpFlagAync>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "FlagsAsync" },
    { pick<&D::chkSpFlagIsFilename>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "IsFilename" },
    { pick<&D::chkSpFlagPersistXML>, pick<&D::Frame1>, 0, 0, 0, 0, 0, "PersistXML" },
    { pick<&D::Command1>, nullptr, 0, 0, 0, 0, 0, "Advanced Features  >>" },
    { pick<&D::Command2>, nullptr, 0, 0, 0, 0, 0, "Advanced Features  <<" },
};

constexpr Pick<DocumentControls> hidden_by_design[] = {
    pick<&D::ReadClipboardBtn>,
    pick<&D::CoolBar1>,
    pick<&D::Picbox2>,
    pick<&D::WebBrowser1>,
    pick<&D::Frame1>,
    pick<&D::ResumeBtn>,
};

} // namespace

DocumentControls::DocumentControls(
    Forms& forms, std::unique_ptr<RichTextPane> text_pane, std::unique_ptr<WebPane> web_pane)
    : Form(forms, "frmDocument", FormKind::mdi_child, design_width_twips, design_height_twips)
    , TabStrip1(*this, "TabStrip1",
          { { "text", "Text", "2116", "2130" }, { "xml", "Web", "2117", "2131" } })
    , rtfText(*this, "rtfText", std::move(text_pane))
    , WebBrowser1(*this, "WebBrowser1", std::move(web_pane))
{
    Caption = "Document";
    design<D>(*this, design_rows);
    for (const auto control : hidden_by_design)
        control(*this).Visible = false;
    Combo1.Text = "Http://";
    cpvSlider2.Value = 100;
    Check1.Value = 1;
    SkipTxtBox.Text = "0";
    rtfText.ToolTipText = "2314"; // for screen readers
    rtfText->set_FontName("Comic Sans MS");
    rtfText->set_FontSize(12);
}

} // namespace tessavox
