// What the windows of every platform have to do for the forms. A Bed has windows(), post(call), and
// settle(), which runs all that waits.
#pragma once

#include "platform/controls/containers.h"
#include "platform/controls/form.h"
#include "platform/controls/text_box.h"
#include "platform/failure.h"

#include <gtest/gtest.h>

namespace tessavox {

template <class Bed> struct FormWindowsContract : testing::Test {
    struct Window : Form {
        Window(Forms& forms, std::string name, FormKind kind)
            : Form(forms, std::move(name), kind, 9000, 6000)
        {
            box.Move(0, 0, 1500, 315);
            line.Move(0, 0, 1500, 315);
            line.set_container(&box);
        }
        void Form_Resize() override { ++resizes; }
        void Form_Activate() override { ++activations; }

        PictureBox box{ *this, "box" };
        TextBox line{ *this, "line" };
        int resizes = 0;
        int activations = 0;
    };

    ~FormWindowsContract() override
    {
        while (!forms.loaded().empty())
            forms.loaded().front()->Unload();
        bed.settle();
    }
    std::shared_ptr<Window> load(const std::string& name, FormKind kind)
    {
        auto window = std::make_shared<Window>(forms, name, kind);
        window->Load();
        bed.settle();
        return window;
    }

    Bed bed;
    Forms forms{ bed.windows(), [this](std::function<void()> call) { bed.post(std::move(call)); },
        nullptr };
};

TYPED_TEST_SUITE_P(FormWindowsContract);

TYPED_TEST_P(FormWindowsContract, AWindowTakesTheFocusAndHasASizeOnceItIsShown)
{
    const auto main = this->load("main", FormKind::mdi_parent);
    const auto child = this->load("child", FormKind::mdi_child);
    const auto dialog = this->load("dialog", FormKind::dialog);
    EXPECT_THROW(child->line.SetFocus(), Failure); // nobody sees it before the main window
    EXPECT_THROW(dialog->line.SetFocus(), Failure);
    EXPECT_EQ(dialog->resizes, 0);
    main->Show();
    dialog->Show();
    this->bed.settle();
    EXPECT_GE(child->resizes, 1);
    EXPECT_GE(dialog->resizes, 1);
    EXPECT_GT(child->ScaleWidth(), 0);
    EXPECT_LE(child->ScaleHeight(), main->ScaleHeight());
    EXPECT_NO_THROW(child->line.SetFocus());
    EXPECT_NO_THROW(dialog->line.SetFocus());
    for (Property<bool>* needed :
        { &dialog->Visible, &dialog->box.Visible, &dialog->line.Enabled }) {
        *needed = false;
        EXPECT_THROW(dialog->line.SetFocus(), Failure);
        *needed = true;
    }
    EXPECT_NO_THROW(dialog->line.SetFocus());
}

TYPED_TEST_P(FormWindowsContract, TheDocumentBeforeComesForwardWhenOneGoes)
{
    const auto main = this->load("main", FormKind::mdi_parent);
    main->Show();
    const auto first = this->load("first", FormKind::mdi_child);
    const auto second = this->load("second", FormKind::mdi_child);
    EXPECT_EQ(this->forms.active_child(), second.get());
    EXPECT_TRUE(second->Unload());
    this->bed.settle();
    EXPECT_EQ(this->forms.active_child(), first.get());
    EXPECT_EQ(first->activations, 2);
    EXPECT_THROW(second->window(), Failure);
}

REGISTER_TYPED_TEST_SUITE_P(FormWindowsContract, AWindowTakesTheFocusAndHasASizeOnceItIsShown,
    TheDocumentBeforeComesForwardWhenOneGoes);

} // namespace tessavox
