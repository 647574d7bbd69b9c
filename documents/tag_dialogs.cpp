#include "documents/tag_dialogs.h"

#include "documents/document_window.h"
#include "documents/speech_tags.h"
#include "forms/localise_form.h"
#include "forms/skin.h"

namespace tessavox {

namespace {

constexpr int slowest = -10;
constexpr int fastest = 10;

/// What the buttons of a dialog do; `tag` gives the text for what is entered.
template <class Dialog, class Tag>
void connect_buttons(Dialog& dialog, Process& process, MainControls& main, Tag tag)
{
    dialog.Command1.Click = [&dialog, &process, tag] {
        attempt([&] { insert_tag(ActiveForm(process.forms).rtfText.pane(), tag(dialog)); });
        dialog.Unload();
    };
    dialog.Command2.Click = [&main] { main.mnuHelphelp.run(); };
}

void dress(Form& dialog, Process& process)
{
    apply_skin(dialog, process.platform.skin, process.AppFolder);
    LocaliseForm(dialog, process.platform.texts);
}

/// A voice that is made only to be asked which ones there are.
std::vector<std::string> voice_names(SpeechService& speech)
{
    SpeechVoiceEvents nobody;
    const std::unique_ptr<SpeechVoice> voice = speech.create_voice(nobody);
    std::vector<std::string> names;
    for (const SpeechObjectToken& token : voice->GetVoices("", ""))
        names.push_back(token.name.empty() ? token.description : token.name);
    return names;
}

} // namespace

Selectionfrm1::Selectionfrm1(Process& process, MainControls& main)
    : SilenceControls(process.forms)
    , m_process(process)
{
    connect_buttons(*this, process, main,
        [](const Selectionfrm1& dialog) { return silence_tag(dialog.Text1.Text); });
}

void Selectionfrm1::Form_Load()
{
    Text1.Text = "500";
    dress(*this, m_process);
}

Selectionfrm::Selectionfrm(Process& process, MainControls& main)
    : SpeedControls(process.forms)
    , m_process(process)
{
    connect_buttons(*this, process, main,
        [](const Selectionfrm& dialog) { return speed_tag(dialog.Combo1.Text); });
}

void Selectionfrm::Form_Load()
{
    for (int speed = slowest; speed <= fastest; ++speed)
        Combo1.AddItem(std::to_string(speed));
    dress(*this, m_process);
}

SelectionVoice::SelectionVoice(Process& process, MainControls& main)
    : VoiceControls(process.forms)
    , m_process(process)
{
    connect_buttons(*this, process, main,
        [](const SelectionVoice& dialog) { return voice_tag(dialog.Combo1.Text); });
}

void SelectionVoice::Form_Load()
{
    attempt([&] {
        for (const std::string& name : voice_names(m_process.platform.speech))
            Combo1.AddItem(name);
    });
    dress(*this, m_process);
    attempt([&] { Combo1.ListIndex = 0; });
}

} // namespace tessavox
