#include "forms/about_controls.h"
#include "forms/dock_controls.h"
#include "forms/find_controls.h"
#include "forms/openmsg_controls.h"
#include "forms/tag_controls.h"
#include "tests/fakes/running_program.h"

#include <gmock/gmock.h>

namespace tessavox {
namespace {

std::string or_dash(const std::string& text)
{
    return text.empty() ? "-" : text;
}

/// The entries of a table, each of which ends in a semicolon.
std::vector<std::string> entries(const std::string& table)
{
    std::vector<std::string> all;
    std::istringstream text(table);
    for (std::string entry; std::getline(text >> std::ws, entry, ';');)
        all.push_back(entry);
    return all;
}

/// Each control's container, place, size, text id and tool tip id; its text where that isn't the
/// one of the id. So a language with a hole shows English there.
std::string design_of(const Form& form)
{
    std::ostringstream lines;
    for (const Control* control : form.controls()) {
        std::string text;
        attempt([&] { text = StringTable().LoadResString(std::stoi("0" + control->Tag.get())); });
        lines << control->name() << ' '
              << (control->container() ? control->container()->name() : "-") << ' '
              << control->Left() << ' ' << control->Top() << ' ' << control->Width() << ' '
              << control->Height() << ' ' << or_dash(control->Tag) << ' '
              << or_dash(control->ToolTipText) << (control->Visible ? "" : " hidden");
        if (control->Caption.get() != text)
            lines << " \"" << control->Caption << '"';
        lines << ';';
    }
    lines << form.ScaleWidth() << ' ' << form.ScaleHeight() << ' ' << or_dash(form.Tag) << ';';
    return lines.str();
}

/// Each item's menu, text id or text, and shortcut; then the buttons and panels of the bars.
std::string design_of_main(const MainControls& main)
{
    std::ostringstream lines;
    for (const Control* control : main.controls()) {
        const auto* const item = dynamic_cast<const MenuItem*>(control);
        if (item && !item->Caption.get().empty())
            lines << item->name() << ' ' << (item->container() ? item->container()->name() : "-")
                  << ' ' << or_dash(item->Caption) << (item->Shortcut.empty() ? "" : " ")
                  << item->Shortcut << (item->Visible ? "" : " hidden") << ';';
    }
    for (const ToolBar* bar : { &main.tbToolBar, &main.Toolbar2 }) {
        for (const BarMember& button : bar->Buttons())
            lines << "button " << or_dash(button.key()) << ' ' << or_dash(button.Tag) << ';';
    }
    for (const StatusBar::Panel& panel : main.sbStatusBar.panels())
        lines << "panel " << or_dash(panel.key) << ' ' << panel.width << ' '
              << static_cast<int>(panel.kind) << ';';
    return lines.str();
}

constexpr const char* document_design = R"(
Picture1 - 0 0 2775 2300 - -; SpeakBtn Picture1 0 0 2775 780 1129 2119;
StopBtn Picture1 0 760 2775 780 1130 2120; PauseBtn Picture1 0 1520 2775 780 1131 2121;
ResumeBtn Picture1 0 1520 2775 780 2107 2121 hidden; Picture3 - 2900 0 8055 420 - -;
SpeaktofileBtn Picture3 0 0 1815 420 1133 2126; Play Picture3 1800 0 1455 420 1134 2127;
ReadClipbdBtn Picture3 3240 0 1695 420 1132 2128;
ReadClipboardtoFile Picture3 4920 0 1935 420 1135 2311;
Command4 Picture3 6840 0 1215 420 2118 2129; Picboxsetting - 0 2600 2775 3375 - -;
Frame2 Picboxsetting 0 120 2775 3255 - -; SpeakerLabel Frame2 0 240 720 255 2109 -;
VoiceCB Frame2 720 240 2055 315 - 2122; FormatLabel Frame2 0 720 720 255 2110 -;
FormatCB Frame2 720 720 2055 315 - 2123; SpeedLabel Frame2 0 1200 720 255 2111 -;
cpvSlider1 Frame2 720 1200 2055 255 - -; VolumeLabel Frame2 0 1680 720 255 2112 -;
cpvSlider2 Frame2 720 1680 2055 255 - -; Check1 Frame2 120 2040 2775 255 2113 2124;
ResetBtn Frame2 120 2400 2565 345 2114 2125; TabStrip1 - 2900 500 8260 7990 - -;
PicBox - 2900 500 8260 7690 - -; rtfText PicBox 0 0 8245 7685 2116 2314;
CoolBar1 - 200 0 10840 420 - - hidden; Combo1 CoolBar1 0 50 10160 315 - 2319;
Command3 CoolBar1 10210 50 600 345 2318 -; Picbox2 - 2900 1000 8260 7190 - - hidden;
WebBrowser1 Picbox2 0 0 8260 7190 2117 - hidden; Frame1 - 0 0 0 0 - - hidden "Speak Flags";
chkSpFlagIsXML Frame1 0 0 0 0 - - "IsXML"; chkShowEvents Frame1 0 0 0 0 - - "Show Events";
chkSpFlagNLPSpeakPunc Frame1 0 0 0 0 - - "NLPSpeakPunc";
chkSpFlagPurgeBeforeSpeak Frame1 0 0 0 0 - - "PurgeBeforeSpeak";
chkSpFlagAync Frame1 0 0 0 0 - - "FlagsAsync"; chkSpFlagIsFilename Frame1 0 0 0 0 - - "IsFilename";
chkSpFlagPersistXML Frame1 0 0 0 0 - - "PersistXML"; AudioOutputCB - 0 0 0 0 - -;
SkipBtn - 0 0 0 0 - -; SkipTxtBox - 0 0 0 0 - -; UpDown1 - 0 0 0 0 - -; SkinLabel2 - 0 0 0 0 - -;
Command1 - 0 0 0 0 - - "Advanced Features  >>"; Command2 - 0 0 0 0 - - "Advanced Features  <<";
ReadClipboardBtn - 0 0 0 0 - - hidden;
11160 8490 -;
)";

constexpr const char* main_design = R"(
mnuFile - 1000; mnuFileNew mnuFile 1001 Ctrl+N; mnuFileOpen mnuFile 1002 Ctrl+O;
mnuFileBar0 mnuFile -;
mnuFileSave mnuFile 1003 Ctrl+S; mnuFileSaveAs mnuFile 1004; mnuFileBar1 mnuFile -;
mnuFilePrint mnuFile 1005 Ctrl+P;
mnuFileBar3 mnuFile -; mnuFileClose mnuFile 1006; mnuFileExit mnuFile 1007 Ctrl+Q;
mnuFileExit2 mnuFile -; mnuCtl - 1101;
mnuCtlSpeak mnuCtl 1102 Ctrl+F5; mnuCtlPause mnuCtl 1104 Ctrl+F6; mnuCtlStop mnuCtl 1103 Ctrl+F7;
mnuCtlsep4 mnuCtl -; mnuCtlclipboard mnuCtl 1105 Ctrl+F8;
mnuCtlSaveClipboardTexttoWav mnuCtl 1108 Ctrl+F12; mnuCtlsep1 mnuCtl -;
mnuCtlSpeaktofile mnuCtl 1106; mnuCtlPlay mnuCtl 1107 Ctrl+F11; mnuCtlFile2 mnuCtl -;
mnuEdit - 1201; mnuEditCut mnuEdit 1202 Ctrl+X; mnuEditCopy mnuEdit 1203 Ctrl+C;
mnuEditPaste mnuEdit 1204 Ctrl+V; mnuEditSelectAll mnuEdit 1205 Ctrl+A; mnuEditBar2 mnuEdit -;
mnuEditFind mnuEdit 1206 Ctrl+F; mnuFormat - 1401; mnuFormatFont mnuFormat 1402 F9;
mnuFormatSep1 mnuFormat -; mnuFormatBullets mnuFormat 1403 Ctrl+B;
mnuFormatChangeCase mnuFormat 1404; mnuFormatCSLower mnuFormatChangeCase 1405;
mnuFormatCSUpper mnuFormatChangeCase 1406; mnuFormatCSSC mnuFormatChangeCase 1407;
mnuFormatScript mnuFormat 1408; mnuFormatSubScript mnuFormatScript 1409;
mnuFormatSuperScript mnuFormatScript 1410; mnuFormatNoScript mnuFormatScript 1411;
mnuInsert - 1501; mnuInsertMaleReader mnuInsert 1502; mnuInsertSpeed mnuInsert 1503;
mnuInsertSpell mnuInsert 1504; menuInsertSep mnuInsert -; menuInsertSlience mnuInsert 1505;
mnuWebsite - 1800; munTIME mnuWebsite TIME;
mnuESPN mnuWebsite ESPN; mnuCNET mnuWebsite CNET; mnuABC mnuWebsite ABC;
mnuReuters mnuWebsite Reuters; mnuMSNBC mnuWebsite MSNBC; mnuYahoo mnuWebsite Yahoo;
mnuBBC mnuWebsite BBC; mnuCNN mnuWebsite CNN; mnuVOA mnuWebsite Voice Of America;
munGoogle mnuWebsite Google; mnuWindow - 1601; mnuWindowNewWindow mnuWindow 1602;
mnuWindowBar0 mnuWindow -; mnuWindowCascade mnuWindow 1603;
mnuWindowTileHorizontal mnuWindow 1604; mnuWindowTileVertical mnuWindow 1605;
mnuWindowArrangeIcons mnuWindow 1606;
mnuHelp - 1701; mnuHelphelp mnuHelp 1702 F1; mnuHelpsep1 mnuHelp -; mnuHelpEmail mnuHelp 1703;
mnuHelpWebsite mnuHelp 1705; mnuHelpsep2 mnuHelp -; mnuHelpAbout mnuHelp 1706;
mnuPopUp - PopUp hidden; mnuPopCut mnuPopUp 1202; mnuPopCopy mnuPopUp 1203;
mnuPopPaste mnuPopUp 1204; mnuPopSep1 mnuPopUp -; mnuPopFont mnuPopUp 1402; mnuPopSep2 mnuPopUp -;
mnuPopSpeak mnuPopUp 1102; mnuPopPause mnuPopUp 1104; mnuPopStop mnuPopUp 1103; Popmenu - Traymenu;
mnuTrayShowSoftware Popmenu 1901; mnuTraymenu9 Popmenu -; mnuTrayReadClipboard Popmenu 1132;
mnuTrayStop Popmenu 1130; mnuTrayPause Popmenu 1131; mnuTraySp1 Popmenu -;
mnuTrayClipboardtoWav Popmenu 1135; mnuTrayPlayFile Popmenu 1134; mnuTraySp2 Popmenu -;
mnuTrayHelp Popmenu 1710; mnuTrayAbout Popmenu 1707; mnuTraysp3 Popmenu -;
mnuTrayExit Popmenu 1023;
button New 1018; button Open 1019; button Save 1020; button - -; button Print 1022; button - -;
button Cut 1207; button Copy 1208; button Paste 1209;
button Back 2200; button Forward 2201; button Stop 2204; button - -; button Refresh 2202;
button Search 2203;
panel Text 5759 0; panel - 4171 0; panel - 4171 0; panel - 1499 1; panel - 1499 2;
)";

constexpr const char* openmsg_design = R"(
Label1 - 240 240 4220 300 2070 -; Command1 - 240 840 1400 420 2071 -;
Command2 - 1800 840 2660 420 2072 -;
4700 1500 2205;
)";

constexpr const char* dock_design = R"(
ReadClipbdBtn - 0 0 1215 350 1132 -; StopBtn - 1320 0 645 350 1130 -;
PauseBtn - 2040 0 645 350 1131 -; SpeaktofileBtn - 2760 0 2085 350 1133 -;
Play - 4920 0 765 350 1134 -; Command4 - 5880 0 1215 375 1901 -;
PauseBtn1 - 2040 0 645 350 - - hidden; hscrollSnapDistance - 1200 1440 1095 255 - -;
lblSnapDistance - 2400 1440 1095 255 - -;
7305 315 2205;
)";

constexpr const char* about_design = R"(
SkinLabel1 - 360 360 3480 300 2013 -; Command1 - 1400 960 1400 420 2014 -;
4200 1640 2205;
)";

constexpr const char* find_design = R"(
txtFind - 1320 120 2400 315 - -; cmdFind - 3840 120 1470 400 2060 -;
cmdCancel - 3840 1590 1470 400 2066 -; txtReplace - 1320 610 2400 315 - -;
cmdReplaceAll - 3840 1100 1470 400 2062 -; cmdReplace - 3840 610 1470 400 2061 -;
lblReplace - 120 610 1170 315 2063 -; lblFind - 120 120 1170 315 2067 -;
chkWholeWord - 120 1160 3600 315 2064 -; chkMatchCase - 120 1590 3600 315 2065 -;
5430 2115 2205;
)";

constexpr const char* silence_design = R"(
Text1 - 1740 600 1260 315 - -; SkinLabel2 - 240 600 1440 315 2081 -;
SkinLabel3 - 3120 600 1440 315 2082 -; Command1 - 900 1800 1380 420 2086 -;
Command2 - 2460 1800 1380 420 2084 -; 4680 2760 2205;
)";

constexpr const char* speed_design = R"(
SkinLabel1 - 240 360 1620 315 2080 -; Combo1 - 1920 360 2730 315 - -;
Command1 - 990 1200 1380 420 2086 -; Command2 - 2550 1200 1380 420 2084 -; 4890 1995 2205;
)";

constexpr const char* voice_design = R"(
SkinLabel1 - 240 360 1620 315 2087 - "Speaker"; Combo1 - 1920 360 2730 315 2085 - "";
Command1 - 990 1200 1380 420 2086 -; Command2 - 2550 1200 1380 420 2084 -; 4890 1995 2205;
)";

TEST(Design, OfEveryWindowIsKept)
{
    const RunningProgram program;
    FakePlatform outside;
    Forms forms{ outside.windows, outside.platform.post, [] {} };
    const DocumentControls document{ forms, outside.panes.create(), outside.web_panes.create() };
    const std::pair<std::string, const char*> windows[] = {
        { design_of(document), document_design },
        { design_of_main(program.main), main_design },
        { design_of(OpenmsgControls(forms)), openmsg_design },
        { design_of(DockControls(forms)), dock_design },
        { design_of(AboutControls(forms)), about_design },
        { design_of(FindControls(forms)), find_design },
        { design_of(SilenceControls(forms)), silence_design },
        { design_of(SpeedControls(forms)), speed_design },
        { design_of(VoiceControls(forms)), voice_design },
    };
    for (const auto& [design, expected] : windows)
        EXPECT_THAT(entries(design), testing::ElementsAreArray(entries(expected)));
    EXPECT_EQ(program.main.Tag, "2205");
    EXPECT_FALSE(program.main.Toolbar2.Visible);

    std::string tabs;
    for (const BarMember& tab : document.TabStrip1.Tabs())
        tabs += tab.key() + " " + tab.Caption.get() + " " + tab.Tag.get() + " "
            + tab.ToolTipText.get() + "; ";
    EXPECT_EQ(tabs, "text Text 2116 2130; xml Web 2117 2131; ");
    const auto range_of = [](const ScrollBar& bar) {
        const ScrollBarRange& range = bar.range();
        return std::vector{ range.Min, range.Max, range.SmallChange, range.LargeChange,
            bar.Value.get() };
    };
    EXPECT_EQ(range_of(document.cpvSlider1), (std::vector{ -10, 10, 1, 6, 0 }));
    EXPECT_EQ(range_of(document.cpvSlider2), (std::vector{ 0, 100, 1, 30, 100 }));
    EXPECT_EQ(document.Check1.Value, 1);
    EXPECT_EQ(document.SkipTxtBox.Text, "0");
    EXPECT_EQ(document.Combo1.Text, "Http://");
    const auto& pane = static_cast<const FakePane&>(document.rtfText.pane());
    EXPECT_EQ(pane.font_name + std::to_string(pane.font_size), "Comic Sans MS12.000000");
}

} // namespace
} // namespace tessavox
