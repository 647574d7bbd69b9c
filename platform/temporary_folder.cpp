#include "platform/temporary_folder.h"

#include "platform/failure.h"

#include <cstdlib>
#include <system_error>

namespace tessavox {

TemporaryFolder::TemporaryFolder(const std::filesystem::path& place)
{
    std::string name = place / "tessavox-XXXXXX";
    if (!::mkdtemp(name.data()))
        throw Failure("no folder can be made in " + place.string());
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace tessavox
