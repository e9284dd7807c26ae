#pragma once
// Names of attributes in the text of an expression node. Such a text is MEL in which attributes, `time` and
// `frame` stand where variables could: `pCube1.ty = sin(time) * 2;`.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::mel {

/// A place in the text that names something outside of the language.
struct Mention {
    enum class Kind {
        Plug,   ///< `node.attr`, `|group|node.attr[3].child`
        Name,   ///< a bare name that is no call: it may be an attribute
        Time,   ///< `time`
        Frame,  ///< `frame`
        Input,  ///< `.I[3]`: what stands for a plug in the text that a node holds
        Output, ///< `.O[3]`
    };
    Kind kind = Kind::Plug;
    std::size_t begin = 0, end = 0; ///< bytes of the text
    int index = -1;                 ///< of Input and Output
    bool isWritten = false;         ///< assigned or stepped here
};

/// In the order of the text. The words of commands, strings and comments are left alone, except for what
/// stands in parentheses. What is no MEL ends the search.
std::vector<Mention> mentionsIn(std::string_view text);

/// The text with the mentions replaced: `replacement(mention)` gives the new text, or the old one.
template <class F>
std::string replaceMentions(std::string_view text, const std::vector<Mention>& mentions, F replacement) {
    std::string result;
    std::size_t done = 0;
    for (const Mention& mention : mentions) {
        result += text.substr(done, mention.begin - done);
        result += replacement(mention);
        done = mention.end;
    }
    result += text.substr(done);
    return result;
}

} // namespace vesk::mel
