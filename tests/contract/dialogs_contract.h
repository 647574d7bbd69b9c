// What every message box and file dialog has to do. A Bed has boxes() and dialogs(), and is told
// beforehand what the user will do: user_presses(MessageAnswer), user_closes(), user_chooses(name),
// user_cancels(). path(name) is that of a file in a folder which exists and has "old.wav" in it.
#pragma once

#include "platform/file_dialogs.h"
#include "platform/message_boxes.h"

#include <gtest/gtest.h>

namespace tessavox {

template <class Bed> struct DialogsContract : testing::Test {
    MessageAnswer ask()
    {
        return bed.boxes().show(
            "Save?", "Title", MessageButtons::yes_no_cancel, MessageIcon::question);
    }
    Bed bed;
};

TYPED_TEST_SUITE_P(DialogsContract);

TYPED_TEST_P(DialogsContract, AQuestionIsAnsweredByAButtonOrByClosingIt)
{
    for (const MessageAnswer answer :
        { MessageAnswer::yes, MessageAnswer::no, MessageAnswer::cancel }) {
        this->bed.user_presses(answer);
        EXPECT_EQ(this->ask(), answer);
    }
    this->bed.user_closes();
    EXPECT_EQ(this->ask(), MessageAnswer::cancel);
    this->bed.user_closes();
    EXPECT_EQ(this->bed.boxes().show("<b>Done</b>", "Title", MessageButtons::ok, MessageIcon::none),
        MessageAnswer::ok);
}

TYPED_TEST_P(DialogsContract, AFileIsChosenOrNone)
{
    FileDialogRequest request;
    request.Filter = "All Files (*.*)|*.*|Wave Files (*.wav)|*.wav";
    request.FilterIndex = 2;
    request.FileName = this->bed.path("old.wav");
    this->bed.user_chooses("old.wav");
    EXPECT_EQ(this->bed.dialogs().ShowOpen(request), this->bed.path("old.wav"));
    this->bed.user_chooses("new");
    EXPECT_EQ(this->bed.dialogs().ShowSave(request), this->bed.path("new"));
    request.FileName.clear(); // begins where the last file was chosen
    this->bed.user_chooses("old.wav");
    EXPECT_EQ(this->bed.dialogs().ShowSave(request), this->bed.path("old.wav"));
    this->bed.user_cancels();
    EXPECT_EQ(this->bed.dialogs().ShowOpen(request), std::nullopt);
    this->bed.user_cancels();
    EXPECT_EQ(this->bed.dialogs().ShowSave(request), std::nullopt);
}

REGISTER_TYPED_TEST_SUITE_P(
    DialogsContract, AQuestionIsAnsweredByAButtonOrByClosingIt, AFileIsChosenOrNone);

} // namespace tessavox
