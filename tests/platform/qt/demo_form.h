// Forms with one control of each kind.
#pragma once

#include "platform/controls/bars.h"
#include "platform/controls/buttons.h"
#include "platform/controls/combo_box.h"
#include "platform/controls/containers.h"
#include "platform/controls/form.h"
#include "platform/controls/label.h"
#include "platform/controls/menu_item.h"
#include "platform/controls/rich_text_box.h"
#include "platform/controls/scroll_bar.h"
#include "platform/controls/text_box.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/message_gate.h"
#include "platform/qt/rich_text_pane.h"

#include <QApplication>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace tessavox {

struct DemoMain : Form {
    explicit DemoMain(Forms& forms)
        : Form(forms, "DemoMain", FormKind::mdi_parent, 12000, 8000)
    {
        Caption = "Demo";
        mnuFile.Caption = "&File";
        mnuFileNew.Caption = "New  ";
        mnuFileNew.Shortcut = "Ctrl+N";
        mnuFileOdd.Caption = "Nothing to offer";
        mnuEmpty.Caption = "Empty";
        for (MenuItem* item : { &mnuFileNew, &mnuFileOdd })
            item->set_container(&mnuFile);
    }
    void Form_Unload(bool& Cancel) override { Cancel = std::exchange(refuses_to_go, false); }

    MenuItem mnuFile{ *this, "mnuFile" };
    MenuItem mnuFileNew{ *this, "mnuFileNew" };
    MenuItem mnuFileOdd{ *this, "mnuFileOdd" };
    MenuItem mnuEmpty{ *this, "mnuEmpty" };
    ToolBar bar{ *this, "bar", { { "New", {}, {}, "makes one" }, {}, { "Save" } } };
    StatusBar status{ *this, "status",
        { { "Text", 5759 }, { "", 1499, StatusBar::PanelKind::date } } };
    bool refuses_to_go = false;
};

struct DemoChild : Form {
    explicit DemoChild(Forms& forms, std::string name = "DemoChild")
        : Form(forms, std::move(name), FormKind::mdi_child, 9000, 6000)
    {
        Caption = "/home/[*] a file.txt";
        column.Move(0, 0, 2775, 5000);
        double top = 0;
        for (Control* control : std::initializer_list<Control*>{
                 &button, &stop, &check, &label, &combo, &slider, &line }) {
            control->set_container(&column);
            control->Move(0, top, 2775, 600);
            top += 600;
        }
        label.Move(0, combo.Top(), 720, 255);
        combo.Move(720, combo.Top(), 2055, 315);
        button.Caption = "&Read";
        check.Caption = "Read Clipboard Automatically";
        label.Caption = "Speaker";
        tabs.Move(2900, 500, 6000, 5500);
        pane_box.Move(2900, 500, 6000, 5200);
        text.set_container(&pane_box);
        text.Move(0, 0, 6000, 5200);
    }
    void Form_Resize() override
    {
        if (on_resize)
            on_resize();
    }
    void Form_Activate() override { ++activations; }
    void Form_Unload(bool& Cancel) override
    {
        if (on_unload)
            on_unload(Cancel);
    }

    PictureBox column{ *this, "column" };
    CommandButton button{ *this, "SpeakBtn" };
    CommandButton stop{ *this, "StopBtn" };
    CheckBox check{ *this, "check" };
    Label label{ *this, "label" };
    ComboBox combo{ *this, "combo", ComboBoxStyle::list_only };
    ScrollBar slider{ *this, "slider", { -10, 10, 1, 6 } };
    TextBox line{ *this, "line" };
    TabStrip tabs{ *this, "tabs", { { "text", "Text" }, { "xml", "Web" } } };
    PictureBox pane_box{ *this, "pane_box" };
    RichTextBox text{ *this, "text", std::make_unique<QtRichTextPane>() };
    Control other{ *this, "other", "UpDown" };

    std::function<void()> on_resize;
    std::function<void(bool&)> on_unload;
    int activations = 0;
};

/// A main window and what it takes to run it.
struct DemoDesktop {
    DemoDesktop() { main->Show(); }
    ~DemoDesktop()
    {
        main->Unload();
        settle();
    }

    /// Handles all that is waiting, closed windows and forms included.
    static void settle()
    {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
    }
    std::shared_ptr<DemoChild> open(const std::string& name = "DemoChild")
    {
        auto child = std::make_shared<DemoChild>(forms, name);
        child->Load();
        settle();
        return child;
    }
    template <class Widget> Widget& find(const char* name) const
    {
        for (QWidget* widget : QApplication::allWidgets()) {
            if (widget->objectName() == name && dynamic_cast<Widget*>(widget))
                return dynamic_cast<Widget&>(*widget);
        }
        throw Failure(std::string("no widget is called ") + name);
    }

    int ends = 0;
    MessageGate gate;
    QtFormWindows windows{ gate };
    Forms forms{ windows, [this](std::function<void()> call) { gate.post(std::move(call)); },
        [this] { ++ends; } };
    std::shared_ptr<DemoMain> main = std::make_shared<DemoMain>(forms);
};

} // namespace tessavox
