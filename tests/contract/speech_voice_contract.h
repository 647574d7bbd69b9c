// What the logic relies on in every voice. A Bed has service(), events(), which outlives the
// voices, path(name), in a folder of its own, and at least two voices.
#pragma once

#include "platform/speech_voice.h"

#include <gtest/gtest.h>

namespace tessavox {

template <class Bed> struct SpeechVoiceContract : testing::Test {
    Bed bed;
    std::unique_ptr<SpeechVoice> voice = bed.service().create_voice(bed.events());
};

TYPED_TEST_SUITE_P(SpeechVoiceContract);

TYPED_TEST_P(SpeechVoiceContract, StartsWithTheFirstVoiceRate0Volume100AndKeepsWhatItIsGiven)
{
    EXPECT_EQ(this->voice->Rate(), 0);
    EXPECT_EQ(this->voice->Volume(), 100);
    EXPECT_EQ(this->voice->Voice().id, this->voice->GetVoices("", "").Item(0).id);
    EXPECT_EQ(this->voice->EventInterests(), SVEDefaultInterests);
    const SpeechObjectToken second = this->voice->GetVoices("", "").Item(1);
    this->voice->set_Voice(second);
    this->voice->set_Rate(-10);
    this->voice->set_Volume(0);
    EXPECT_EQ(this->voice->Voice().id, second.id);
    EXPECT_EQ(this->voice->Rate(), -10);
    EXPECT_EQ(this->voice->Volume(), 0);
}

TYPED_TEST_P(SpeechVoiceContract, SpeaksIntoAFileUntilItsOutputIsSet)
{
    const std::shared_ptr<SpeechBaseStream> device = this->voice->AudioOutputStream();
    ASSERT_NE(device, nullptr);
    const std::shared_ptr<SpeechFileStream> file = this->bed.service().create_file_stream();
    file->set_FormatType(12);
    EXPECT_EQ(file->FormatType(), 12);
    file->Open(this->bed.path("file.wav"), SSFMCreateForWrite, false);
    this->voice->set_AllowAudioOutputFormatChangesOnNextSet(false);
    this->voice->set_AudioOutputStream(file);
    EXPECT_EQ(this->voice->AudioOutputStream(), file);
    this->voice->Speak(u"", SVSFlagsAsync | SVSFPurgeBeforeSpeak | SVSFIsXML);
    EXPECT_TRUE(this->voice->WaitUntilDone(-1));
    this->voice->set_AudioOutput(this->voice->GetAudioOutputs("", "").Item(0));
    EXPECT_EQ(this->voice->AudioOutputStream(), device);
    device->set_FormatType(6);
    this->voice->set_AudioOutputStream(device);
    EXPECT_EQ(this->voice->AudioOutputStream()->FormatType(), 6);
    EXPECT_NO_THROW(file->Close());
}

REGISTER_TYPED_TEST_SUITE_P(SpeechVoiceContract,
    StartsWithTheFirstVoiceRate0Volume100AndKeepsWhatItIsGiven, SpeaksIntoAFileUntilItsOutputIsSet);

} // namespace tessavox
