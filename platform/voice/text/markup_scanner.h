// Recognises one piece of markup at a place of a text: a tag, an entity, a comment.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessavox::voice {

/// An attribute as it stands in the text, entities undecoded.
struct MarkupAttribute {
    std::u16string_view name;
    std::u16string_view value;
};

/// What stands at a place of the text.
struct Markup {
    enum class Kind {
        none, // nothing well-formed: the character is text
        start_tag,
        empty_tag,
        end_tag,
        skipped, // comment, processing instruction, document type
        cdata, // end is the first unit of the content; content_end the first one after it
        character, // an entity
    };
    Kind kind = Kind::none;
    std::size_t end = 0; // the first unit after it
    std::size_t content_end = 0;
    std::u16string_view name = {}; // of a tag
    char32_t character = 0;
};

constexpr std::size_t cdata_end_mark_length = 3; // "]]>"

/// Works on one text. All scans of a text together cost in proportion to its length, whatever it
/// holds: a '<' outside quotes ends the attempt at a tag, so at most three attempts can run over
/// the same character (out of quotes, in double and in single ones; two attempts that are in the
/// same state at a character would have begun at the same place). How far a text has been searched
/// in vain for the end of a comment is remembered.
class MarkupScanner {
public:
    /// A tag, comment or the like that is longer is taken for text, so that one character never
    /// costs a search of a whole book. UTF-16 code units.
    static constexpr std::size_t longest_markup = 1 << 20;

    explicit MarkupScanner(std::u16string_view text);

    /// What begins at `at`, where a '<' or '&' stands.
    Markup scan(std::size_t at);

    /// The attributes of the tag that scan() found last, in their order.
    std::span<const MarkupAttribute> attributes() const { return m_attributes; }

private:
    /// Finds an end mark; the searches for one mark start at rising places.
    class EndSearch {
    public:
        explicit EndSearch(std::u16string_view mark)
            : m_mark(mark)
        {
        }
        /// The first place of the mark at or after `from` and before `limit`, or npos.
        std::size_t find(std::u16string_view text, std::size_t from, std::size_t limit);

    private:
        std::u16string_view m_mark;
        std::size_t m_from = 0;
        std::size_t m_searched_to = 0; // no mark begins in m_from..m_searched_to
        std::size_t m_found = std::u16string_view::npos;
    };

    Markup scan_tag(std::size_t at);
    Markup scan_end_tag(std::size_t at);
    Markup scan_declaration(std::size_t at);
    Markup skipped_to(EndSearch& search, std::size_t at, std::size_t from);
    Markup scan_entity(std::size_t at) const;
    std::size_t limit_from(std::size_t at) const;
    std::size_t past_blanks(std::size_t at, std::size_t limit) const;
    std::size_t past_name(std::size_t at, std::size_t limit) const;
    std::size_t read_attribute(std::size_t at, std::size_t limit);

    std::u16string_view m_text;
    std::vector<MarkupAttribute> m_attributes;
    EndSearch m_comment_end{ u"-->" };
    EndSearch m_instruction_end{ u"?>" };
    EndSearch m_cdata_end{ u"]]>" };
    EndSearch m_doctype_end{ u">" };
    EndSearch m_subset_begin{ u"[" };
    EndSearch m_subset_end{ u"]" };
};

/// The text of an attribute value, its entities decoded.
std::u16string decoded_value(std::u16string_view value);

} // namespace tessavox::voice
