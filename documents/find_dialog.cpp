#include "documents/find_dialog.h"

#include "documents/document_window.h"
#include "forms/localise_form.h"
#include "forms/skin.h"
#include "platform/text_case.h"
#include "platform/text_search.h"

#include <cstdint>
#include <limits>

namespace tessavox {

namespace {

constexpr int find_text_id = 2060;
constexpr int find_next_text_id = 2059;

// So many replacements are made at once, before the user is told that it takes long and can be
// ended, and then between two looks at whether that is wanted.
constexpr int replacements_at_once = 10'000;

} // namespace

/// Replaces each match from the start of the text on. A search goes on where the match ended before
/// it was replaced: a shorter replacement lets close matches be missed, a longer one can be found
/// again itself, and then there is no end.
class frmFind::Replacing {
public:
    Replacing(RichTextPane& pane, std::u16string wanted, std::u16string replacement, int options)
        : m_pane(pane)
        , m_wanted(std::move(wanted))
        , m_replacement(std::move(replacement))
        , m_options(options)
        , m_size(static_cast<std::int64_t>(pane.Text().size()))
        , m_step(pane)
    {
    }

    /// Returns whether nothing is left to replace.
    bool run()
    {
        const auto growth = static_cast<std::int64_t>(m_replacement.size())
            - static_cast<std::int64_t>(m_wanted.size());
        for (int i = 0; i < replacements_at_once; ++i) {
            if (m_pane.Find(m_wanted, m_searchStart, m_options) == -1)
                return true;
            m_searchStart = m_pane.SelStart() + m_pane.SelLength();
            if (m_replaceCount < std::numeric_limits<std::int16_t>::max())
                ++m_replaceCount;
            m_size += growth;
            m_pane.set_SelText(m_replacement);
        }
        return false;
    }

    int replaceCount() const { return m_replaceCount; }
    double share() const
    {
        return static_cast<double>(m_searchStart) / static_cast<double>(m_size + 1);
    }

private:
    RichTextPane& m_pane;
    std::u16string m_wanted;
    std::u16string m_replacement;
    int m_options;
    std::int64_t m_size; // of the text; asking for it now would copy it
    std::int32_t m_searchStart = 0;
    int m_replaceCount = 0;
    OneStep m_step;
};

frmFind::frmFind(Process& process)
    : FindControls(process.forms)
    , m_process(process)
{
    cmdFind.Click = [this] { search(); };
    cmdReplace.Click = [this] { cmdReplace_Click(); };
    cmdReplaceAll.Click = [this] { cmdReplaceAll_Click(); };
    cmdCancel.Click = [this] { Unload(); };
}

void frmFind::Form_Load()
{
    apply_skin(*this, m_process.platform.skin, m_process.AppFolder);
    LocaliseForm(*this, m_process.platform.texts);
}

RichTextPane& frmFind::pane() const
{
    return ActiveForm(m_process.forms).rtfText.pane();
}

void frmFind::message(const std::string& text)
{
    m_process.platform.message_boxes.show(
        text, application_title, MessageButtons::ok, MessageIcon::none);
}

int frmFind::searchOptions() const
{
    return (chkWholeWord.Value == 1 ? find_whole_word : 0)
        + (chkMatchCase.Value == 1 ? find_match_case : 0);
}

void frmFind::search()
{
    if (cmdFind.Caption == text(find_text_id))
        first_search();
    else
        continued_search();
}

// Without a document nothing is searched and nothing is found missing, so the caption goes on.
void frmFind::first_search()
{
    std::int32_t foundAt = 0;
    attempt([&] { foundAt = pane().Find(to_utf16(txtFind.Text.get()), 0, searchOptions()); });
    if (foundAt != -1) {
        attempt([&] { ActiveForm(m_process.forms).rtfText.SetFocus(); });
        cmdFind.Caption = text(find_next_text_id);
    } else {
        message(text(2056));
        cmdFind.Caption = text(find_text_id);
    }
}

void frmFind::continued_search()
{
    std::int32_t foundAt = 0;
    std::int32_t searchStart = 0;
    attempt_each([&] { searchStart = pane().SelStart() + pane().SelLength(); },
        [&] { foundAt = pane().Find(to_utf16(txtFind.Text.get()), searchStart, searchOptions()); });
    if (foundAt != -1) {
        attempt([&] { ActiveForm(m_process.forms).rtfText.SetFocus(); });
    } else {
        message(text(2057));
        cmdFind.Caption = text(find_text_id);
    }
}

bool frmFind::selection_matches() const
{
    const std::u16string wanted = to_utf16(txtFind.Text.get());
    const TextSlice selected = pane().SelText();
    // A selection that is much longer needs no look at its letters.
    constexpr std::size_t longest_growth = 3;
    if (selected.size() > wanted.size() * longest_growth)
        return false;
    if (chkMatchCase.Value == 1)
        return selected.view() == wanted;
    return upper_case(selected.view()) == upper_case(wanted);
}

void frmFind::cmdReplace_Click()
{
    attempt([&] {
        if (selection_matches())
            pane().set_SelText(to_utf16(txtReplace.Text.get()));
    });
    search();
}

void frmFind::cmdReplaceAll_Click()
{
    if (txtFind.Text.get().empty())
        return;
    int replaceCount = 0;
    attempt([&] {
        Replacing replacing(
            pane(), to_utf16(txtFind.Text.get()), to_utf16(txtReplace.Text.get()), searchOptions());
        if (!replacing.run())
            m_process.platform.blocking_work.wait(
                text(2340), [&] { return replacing.run(); }, [&] { return replacing.share(); });
        replaceCount = replacing.replaceCount();
    });
    if (replaceCount > 0)
        message(text(2057) + "\r\n" + std::to_string(replaceCount) + text(2058));
    cmdFind.Caption = text(find_text_id);
}

} // namespace tessavox
