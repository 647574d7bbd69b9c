#include "platform/qt/late_library.h"

#include "platform/failure.h"
#include "platform/qt/text_conversion.h"

#include <QLibrary>

namespace tessavox {

void* late_function(const std::string& path, const char* name)
{
    QLibrary library(to_qt(path)); // stays loaded without this
    if (QFunctionPointer found = library.resolve(name))
        return reinterpret_cast<void*>(found);
    throw Failure(from_qt(library.errorString()));
}

} // namespace tessavox
