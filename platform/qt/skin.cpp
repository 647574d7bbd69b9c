#include "platform/qt/skin.h"

#include "platform/controls/form.h"
#include "platform/failure.h"
#include "platform/qt/form_windows.h"
#include "platform/qt/text_conversion.h"

namespace tessavox {
namespace {

constexpr std::size_t largest_skin_bytes = 1 << 20;

} // namespace

// Every window loads it, and it is one file for all: it is read once.
void QtSkin::LoadSkin(const std::string& path)
{
    if (path == m_path)
        return;
    const std::string bytes = m_files.read(path);
    if (bytes.size() > largest_skin_bytes)
        throw Failure(path + " is too large for a skin");
    m_sheet = to_qt(bytes);
    m_path = path;
}

void QtSkin::ApplySkin(Form& form)
{
    if (auto* window = dynamic_cast<QtFormWindow*>(&form.window()))
        window->set_style_sheet(m_sheet);
}

} // namespace tessavox
