#include "platform/qt/document_check.h"

#include "platform/failure.h"
#include "platform/rtf/reader.h"
#include "platform/text.h"
#include "platform/text_files/plain_text.h"
#include "platform/text_limits.h"

namespace tessavox {

ReadObstacle obstacle_to_document(FileStore& files, const std::string& path)
{
    const ReadObstacle obstacle = files.obstacle_to_opening(path);
    const std::string name = lower_ascii(path);
    if (obstacle != ReadObstacle::none || name.ends_with("doc"))
        return obstacle;
    std::string bytes;
    try {
        bytes = files.read(path);
    } catch (const Failure&) {
        return ReadObstacle::not_readable;
    }
    const bool is_rich = name.ends_with("rtf");
    if (is_rich && !rtf::is_rich_text(bytes))
        return ReadObstacle::no_rich_text;
    if (bytes.size() < most_text_paragraphs) // a paragraph takes a byte at least
        return ReadObstacle::none;
    try {
        if (is_rich)
            rtf::read_rich_text(bytes);
        else
            decode_plain_text(bytes);
    } catch (const Failure&) {
        return ReadObstacle::too_long;
    }
    return ReadObstacle::none;
}

} // namespace tessavox
