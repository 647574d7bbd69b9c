#include "forms/about_controls.h"
#include "forms/dock_controls.h"
#include "forms/openmsg_controls.h"
#include "tests/fakes/running_program.h"

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

/// Each control's container, place, size, text id and tool tip id; a text where it has no id.
std::string design_of(const Form& form)
{
    std::ostringstream lines;
    for (const Control* control : form.controls()) {
        lines << '\n'
              << control->name() << ' '
              << (control->container() ? control->container()->name() : "-") << ' '
              << control->Left() << ' ' << control->Top() << ' ' << control->Width() << ' '
              << control->Height() << ' ' << or_dash(control->Tag) << ' '
              << or_dash(control->ToolTipText) << (control->Visible ? "" : " hidden");
        if (control->Tag.get().empty() && !control->Caption.get().empty())
            lines << " \"" << control->Caption << '"';
        lines << ';';
    }
    return lines.str();
}

/// Each item's menu, text id or text, and shortcut.
std::string menus_of(const MainControls& main)
{
    std::ostringstream lines;
    for (const Control* control : main.controls()) {
        const auto* const item = dynamic_cast<const MenuItem*>(control);
        if (item && !item->Caption.get().empty())
            lines << '\n'
                  << item->name() << ' ' << (item->container() ? item->container()->name() : "-")
                  << ' ' << or_dash(item->Caption) << (item->Shortcut.empty() ? "" : " ")
                  << item->Shortcut << (item->Visible ? "" : " hidden") << ';';
    }
    return lines.str();
}

struct Design : testing::Test {
    FakePlatform outside;
    Forms forms{ outside.windows, outside.platform.post, [] {} };
    DocumentControls document{ forms, outside.panes.create() };
    MainControls main{ forms };
    OpenmsgControls openmsg{ forms };
    DockControls dock{ forms };
    AboutControls about{ forms };
};

TEST_F(Design, OfTheDocumentWindowIsKept)
{
    EXPECT_EQ(document.ScaleWidth(), 11160);
    EXPECT_EQ(document.ScaleHeight(), 8490);
    EXPECT_EQ(entries(design_of(document)), entries(R"(
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
PicBox - 2900 500 8260 7690 - -; rtfText PicBox 0 0 8245 7685 2116 -;
CoolBar1 - 200 0 10840 420 - - hidden; Combo1 CoolBar1 0 50 10160 315 - -;
Command3 CoolBar1 10210 50 600 345 - -; Picbox2 - 2900 1000 8260 7190 - - hidden;
WebBrowser1 Picbox2 0 0 8260 7190 - - hidden; Frame1 - 0 0 0 0 - - hidden "Speak Flags";
chkSpFlagIsXML Frame1 0 0 0 0 - - "IsXML"; chkShowEvents Frame1 0 0 0 0 - - "Show Events";
chkSpFlagNLPSpeakPunc Frame1 0 0 0 0 - - "NLPSpeakPunc";
chkSpFlagPurgeBeforeSpeak Frame1 0 0 0 0 - - "PurgeBeforeSpeak";
chkSpFlagAync Frame1 0 0 0 0 - - "FlagsAsync"; chkSpFlagIsFilename Frame1 0 0 0 0 - - "IsFilename";
chkSpFlagPersistXML Frame1 0 0 0 0 - - "PersistXML"; AudioOutputCB - 0 0 0 0 - -;
SkipBtn - 0 0 0 0 - -; SkipTxtBox - 0 0 0 0 - -; UpDown1 - 0 0 0 0 - -; SkinLabel2 - 0 0 0 0 - -;
Command1 - 0 0 0 0 - - "Advanced Features  >>"; Command2 - 0 0 0 0 - - "Advanced Features  <<";
ReadClipboardBtn - 0 0 0 0 - - hidden;
)"));
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
    const auto& pane = static_cast<FakePane&>(document.rtfText.pane());
    EXPECT_EQ(pane.font_name + std::to_string(pane.font_size), "Comic Sans MS12.000000");
}

TEST_F(Design, OfTheOtherWindowsIsKept)
{
    for (const Form* form : std::initializer_list<const Form*>{ &main, &openmsg, &dock, &about })
        EXPECT_EQ(form->Tag, "2205");
    EXPECT_EQ(entries(design_of(openmsg)), entries(R"(
Label1 - 240 240 4220 300 2070 -; Command1 - 240 840 1400 420 2071 -;
Command2 - 1800 840 2660 420 2072 -;
)"));
    EXPECT_EQ(entries(design_of(dock)), entries(R"(
ReadClipbdBtn - 0 0 1215 350 1132 -; StopBtn - 1320 0 645 350 1130 -;
PauseBtn - 2040 0 645 350 1131 -; SpeaktofileBtn - 2760 0 2085 350 1133 -;
Play - 4920 0 765 350 1134 -; Command4 - 5880 0 1215 375 1901 -;
PauseBtn1 - 2040 0 645 350 - - hidden; hscrollSnapDistance - 1200 1440 1095 255 - -;
lblSnapDistance - 2400 1440 1095 255 - -;
)"));
    EXPECT_EQ(dock.ScaleWidth(), 7305);
    EXPECT_EQ(dock.ScaleHeight(), 315);
}

TEST_F(Design, OfTheMenusIsKept)
{
    const auto process_main = std::make_unique<RunningProgram>();
    EXPECT_EQ(entries(menus_of(process_main->main)), entries(R"(
mnuFile - 1000; mnuFileNew mnuFile 1001 Ctrl+N; mnuFileOpen mnuFile 1002 Ctrl+O;
mnuFileBar0 mnuFile -;
mnuFileSave mnuFile 1003 Ctrl+S; mnuFileSaveAs mnuFile 1004; mnuFilePrint mnuFile 1005 Ctrl+P;
mnuFileBar3 mnuFile -; mnuFileClose mnuFile 1006; mnuFileExit mnuFile 1007 Ctrl+Q; mnuCtl - 1101;
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
mnuWebsite - 1800; mnuWindow - 1601; mnuWindowNewWindow mnuWindow 1602;
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
)"));
}

TEST_F(Design, OfTabsToolButtonsAndStatusPanelsIsKept)
{
    std::ostringstream lines;
    for (const BarMember& tab : document.TabStrip1.Tabs())
        lines << tab.key() << ' ' << tab.Caption << ' ' << tab.Tag << ' ' << tab.ToolTipText
              << '\n';
    for (const BarMember& button : main.tbToolBar.Buttons())
        lines << button.key() << ' ' << button.Tag << '\n';
    for (const StatusBar::Panel& panel : main.sbStatusBar.panels())
        lines << panel.key << ' ' << panel.width << ' ' << static_cast<int>(panel.kind) << '\n';
    EXPECT_EQ(lines.str(),
        "text Text 2116 2130\nNew 1018\nOpen 1019\nSave 1020\n \nPrint 1022\n \nCut 1207\nCopy "
        "1208\n"
        "Paste 1209\n"
        "Text 5759 0\n 4171 0\n 4171 0\n 1499 1\n 1499 2\n");
    EXPECT_FALSE(main.Toolbar2.Visible);
}

/// So a language with a hole shows English there.
TEST_F(Design, TextsAreTheNeutralOnes)
{
    const std::initializer_list<const Form*> windows{ &document, &openmsg, &dock, &about };
    for (const Form* form : windows) {
        for (const Control* control : form->controls()) {
            const std::string id = control->Tag;
            EXPECT_EQ(control->Caption,
                id.empty() ? control->Caption.get() : outside.texts.LoadResString(std::stoi(id)));
        }
    }
}

} // namespace
} // namespace tessavox
